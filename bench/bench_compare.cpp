// Typed key comparison through the type manager: single keys next to a comparator of bytes behind a virtual function,
// arrays next to the standard library's comparison, to memcmp and, where stored, to the memory form.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <compare>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

#ifdef VQTM_HAVE_LEVELDB
#include <leveldb/comparator.h>
#include <leveldb/slice.h>
#endif

#include "vqnull.h"
#include "vqtypes.h"

namespace {

constexpr std::size_t PairCount = 64;

// --- Single keys

struct Slice {
    const char* data;
    std::size_t size;
};

// The shape in which key-value stores order keys whose type they do not know.
struct Comparator {
    virtual ~Comparator() = default;
    virtual int Compare(const Slice& a, const Slice& b) const = 0;
};
struct BytewiseComparator : Comparator {
    int Compare(const Slice& a, const Slice& b) const override {
        const int order = std::memcmp(a.data, b.data, std::min(a.size, b.size));
        return order != 0 ? order : a.size < b.size ? -1 : a.size > b.size;
    }
};
// As keys are ordered whose last bytes tell their age: the newest first.
struct AgedComparator final : BytewiseComparator {
    int Compare(const Slice& a, const Slice& b) const override {
        constexpr std::size_t Age = sizeof(std::uint64_t);
        const int order = BytewiseComparator::Compare({a.data, a.size - Age}, {b.data, b.size - Age});
        return order != 0 ? order : std::memcmp(b.data + b.size - Age, a.data + a.size - Age, Age);
    }
};
// Callers know no more than the interface.
[[gnu::noinline]] std::unique_ptr<Comparator> MakeComparator(bool aged) {
    if (aged) return std::make_unique<AgedComparator>();
    return std::make_unique<BytewiseComparator>();
}

std::vector<std::uint32_t> StoredLongs() {
    std::mt19937 random(3);
    std::vector<std::uint32_t> keys(2 * PairCount);
    for (std::uint32_t& key : keys) key = random() % 4 == 0 ? 7 : static_cast<std::uint32_t>(random());
    return keys;
}

template <class Compare>
void RunSingle(benchmark::State& state, Compare compare) {
    const std::vector<std::uint32_t> keys = StoredLongs();
    for (auto _ : state) {
        for (std::size_t i = 0; i < keys.size(); i += 2) benchmark::DoNotOptimize(compare(&keys[i], &keys[i + 1]));
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(PairCount));
}

void OneByTheManager(benchmark::State& state) {
    const VqTypeMgr manager(12);
    RunSingle(state, [&](const std::uint32_t* a, const std::uint32_t* b) {
        return manager.Cmp(VqTypeId_long, a, b, 0, 1, VqFormat_BigEndian);
    });
}

// As an index does that asks the manager once.
void OneByTheFunction(benchmark::State& state) {
    const VqCompareFunc compare = VqTypeMgr(12).CmpFuncPtrGet(VqTypeId_long);
    int status = 0;
    RunSingle(state, [&](const std::uint32_t* a, const std::uint32_t* b) {
        return compare(VqFormat_BigEndian, 0, a, 0, b, 0, 1, status);
    });
}

void OneByBytes(benchmark::State& state) {
    const std::unique_ptr<Comparator> comparator = MakeComparator(false);
    RunSingle(state, [&](const std::uint32_t* a, const std::uint32_t* b) {
        return comparator->Compare({reinterpret_cast<const char*>(a), sizeof *a},
                                   {reinterpret_cast<const char*>(b), sizeof *b});
    });
}

#ifdef VQTM_HAVE_LEVELDB
void OneByLevelDb(benchmark::State& state) {
    const leveldb::Comparator* const comparator = leveldb::BytewiseComparator();
    RunSingle(state, [&](const std::uint32_t* a, const std::uint32_t* b) {
        return comparator->Compare(leveldb::Slice(reinterpret_cast<const char*>(a), sizeof *a),
                                   leveldb::Slice(reinterpret_cast<const char*>(b), sizeof *b));
    });
}
#endif

// --- Arrays

// Pairs of arrays in memory and stored form; every other pair differs in its last element.
template <class T>
struct Pairs {
    Pairs(const VqTypeMgr& manager, char id, std::size_t elements, unsigned char form) : count(elements), format(form) {
        std::mt19937 random(9);
        a.resize(PairCount * count);
        for (T& value : a) value = T(static_cast<std::int32_t>(random()));
        b = a;
        for (std::size_t pair = 1; pair < PairCount; pair += 2) b[pair * count + count - 1] = T(7);
        for (auto* values : {&a, &b}) {
            std::string& bytes = stored[values == &b];
            const auto all = static_cast<unsigned long>(values->size());
            bytes.resize(manager.DiskLenGet(id, values->data(), format, all, VqFormat_Memory));
            if (format != VqFormat_Memory) manager.Store(id, bytes.data(), values->data(), format, all);
        }
    }
    // The pair of a number, as the form says.
    const void* At(int which, std::size_t pair) const {
        const std::size_t first = pair * count;
        if (format == VqFormat_Memory) return (which == 0 ? a : b).data() + first;
        return stored[which].data() + stored[which].size() / PairCount * pair;
    }

    std::size_t count;
    unsigned char format;
    std::vector<T> a, b;
    std::string stored[2];
};

template <class T, class Compare>
void RunArrays(benchmark::State& state, char id, std::size_t count, unsigned char format, Compare compare) {
    const VqTypeMgr manager(12);
    const Pairs<T> pairs(manager, id, count, format);
    std::size_t pair = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(compare(manager, pairs.At(0, pair), pairs.At(1, pair)));
        pair = (pair * 5 + 1) % PairCount;
    }
    state.SetItemsProcessed(state.iterations());
}

template <class T>
void Ours(benchmark::State& state, char id, std::size_t count, unsigned char format) {
    RunArrays<T>(state, id, count, format, [=](const VqTypeMgr& manager, const void* a, const void* b) {
        return manager.Cmp(id, a, b, 0, static_cast<unsigned long>(count), format);
    });
}

// Nullables have no operator of three results.
constexpr auto byTwoOrders = [](const auto& x, const auto& y) {
    return x < y   ? std::partial_ordering::less
           : y < x ? std::partial_ordering::greater
                   : std::partial_ordering::equivalent;
};

template <class T>
[[gnu::noinline]] int CompareByStandard(const T* a, const T* b, std::size_t count) {
    using Order = std::conditional_t<std::three_way_comparable<T>, std::compare_three_way, decltype(byTwoOrders)>;
    const auto order = std::lexicographical_compare_three_way(a, a + count, b, b + count, Order());
    return order < 0 ? -1 : order > 0;
}

template <class T>
void Standard(benchmark::State& state, char id, std::size_t count) {
    RunArrays<T>(state, id, count, VqFormat_Memory, [=](const VqTypeMgr&, const void* a, const void* b) {
        return CompareByStandard(static_cast<const T*>(a), static_cast<const T*>(b), count);
    });
}

template <class T>
void Bytes(benchmark::State& state, char id, std::size_t count) {
    RunArrays<T>(state, id, count, VqFormat_Memory,
                 [=](const VqTypeMgr&, const void* a, const void* b) { return std::memcmp(a, b, count * sizeof(T)); });
}

template <class T>
void RegisterArrays(const std::string& name, char id) {
    for (const std::size_t count : {std::size_t{16}, std::size_t{1024}}) {
        const std::string size = "/" + std::to_string(count) + "/", memory = "Compare/" + name + size,
                          stored = "Compare/Stored" + name + size;
        benchmark::RegisterBenchmark((memory + "ours").c_str(), Ours<T>, id, count, VqFormat_Memory);
        benchmark::RegisterBenchmark((memory + "peer_std").c_str(), Standard<T>, id, count);
        benchmark::RegisterBenchmark((memory + "peer_memcmp").c_str(), Bytes<T>, id, count);
        benchmark::RegisterBenchmark((stored + "ours").c_str(), Ours<T>, id, count, VqFormat_BigEndian);
        benchmark::RegisterBenchmark((stored + "peer_memory_form").c_str(), Ours<T>, id, count, VqFormat_Memory);
    }
}

const bool registered = [] {
    benchmark::RegisterBenchmark("Compare/StoredLong/1/ours", OneByTheManager);
    benchmark::RegisterBenchmark("Compare/StoredLong/1/peer_virtual_bytewise", OneByBytes);
#ifdef VQTM_HAVE_LEVELDB
    benchmark::RegisterBenchmark("Compare/StoredLong/1/peer_leveldb", OneByLevelDb);
#endif
    benchmark::RegisterBenchmark("Compare/LongFunction/1/ours", OneByTheFunction);
    RegisterArrays<std::int32_t>("Long", VqTypeId_long);
    RegisterArrays<float>("Float", VqTypeId_float);
    RegisterArrays<double>("Double", VqTypeId_double);
    RegisterArrays<VqNull_long>("NullLong", VqTypeId_VqNull_long);
    RegisterArrays<VqNull_double>("NullDouble", VqTypeId_VqNull_double);
    return true;
}();

}  // namespace
