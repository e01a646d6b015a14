// The type manager: arrays stored and loaded through it, and what a call through it costs beyond the row's own
// function.
#include "scalararrays.h"
#include "vqtm.h"

namespace {

using vqbench::ArrayOperation;
using vqbench::BigEndian;
using vqbench::RegisterArrays;

VqTypeMgr manager(5);

// The identifier is no constant to the compiler, as it is none to an engine.
char Opaque(char id) {
    benchmark::DoNotOptimize(id);
    return id;
}

template <char Id>
unsigned long Store(void* dst, const void* src, unsigned char format, unsigned long count) {
    return manager.Store(Opaque(Id), dst, src, format, count);
}
template <char Id>
unsigned long Load(void* dst, const void* src, unsigned char format, unsigned long count) {
    return manager.Load(Opaque(Id), dst, src, format, count);
}

template <class Word, char Id>
void RegisterRow(const std::string& type) {
    RegisterArrays<Word>("Manager/Store" + type + "BE", Store<Id>, {1, 1024, 1 << 20});
    RegisterArrays<Word>("Manager/Load" + type + "BE", Load<Id>, {1, 1024, 1 << 20});
}

// --- One value: the manager's call next to a direct call of the row's function, both as engines make them

template <class Call>
void RunCall(benchmark::State& state, Call call) {
    for (auto _ : state) benchmark::DoNotOptimize(call());
}

template <class Call, class Peer>
void RegisterDispatch(const std::string& name, Call ours, Peer direct) {
    const std::string full = "Manager/Dispatch" + name + "/1/";
    benchmark::RegisterBenchmark((full + "ours").c_str(), RunCall<Call>, ours);
    benchmark::RegisterBenchmark((full + "peer_direct").c_str(), RunCall<Peer>, direct);
}

// Read as volatile, so that a call through it stays a call.
template <class Function>
struct Slot {
    volatile Function function;
};

std::int32_t value = 0x01020304;
std::int32_t other = 0x01020305;
unsigned char bytes[16];
Slot<VqSizeGetFunc> sizeSlot{LongSizeGet};
Slot<VqStoreFunc> storeSlot{LongStore};
Slot<VqCompareFunc> compareSlot{LongCompare};

const bool registered = [] {
    RegisterRow<std::uint16_t, VqTypeId_short>("Short");
    RegisterRow<std::uint32_t, VqTypeId_long>("Long");
    RegisterRow<std::uint64_t, VqTypeId_double>("Double");

    RegisterDispatch(
        "Size", [] { return manager.DiskLenGet(Opaque(VqTypeId_long), &value, BigEndian, 1, VqFormat_Memory); },
        [] { return sizeSlot.function(&value, VqFormat_Memory, BigEndian, 1); });
    RegisterDispatch(
        "StoreLong", [] { return manager.Store(Opaque(VqTypeId_long), bytes, &value, BigEndian, 1); },
        [] { return storeSlot.function(bytes, &value, BigEndian, 1); });
    RegisterDispatch(
        "CmpLong", [] { return manager.Cmp(Opaque(VqTypeId_long), &value, &other, VqCmp_Default, 1, VqFormat_Memory); },
        [] {
            int status = 0;
            return static_cast<long>(
                compareSlot.function(VqFormat_Memory, 0, &value, 0, &other, VqCmp_Default, 1, status));
        });
    return true;
}();

}  // namespace
