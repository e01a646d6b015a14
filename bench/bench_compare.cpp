// Typed key comparison through the type manager: single keys next to a comparator of bytes behind a virtual function,
// arrays next to the standard library's comparison, to memcmp and, where stored, to the memory form.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <compare>
#include <cstring>
#include <limits>
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

struct Case {
    char id;
    std::size_t count;
    unsigned char format;
    bool bytesMislead = false;
};

// Makes equal values whose bytes do not show it: infinities, which look as if they were no numbers, and nullables with
// other bytes behind their indicators.
template <class T>
void Mislead(T& a, T& b) {
    if constexpr (std::is_floating_point_v<T>) {
        a = b = std::numeric_limits<T>::infinity();
    } else {
        reinterpret_cast<unsigned char*>(&b)[sizeof b - 1] ^= 1;
    }
}

// Pairs of arrays in memory and stored form; every other pair differs in its last element.
template <class T>
struct Pairs {
    Pairs(const VqTypeMgr& manager, const Case& of) : count(of.count), format(of.format) {
        const char id = of.id;
        std::mt19937 random(9);
        a.resize(PairCount * count);
        for (T& value : a) value = T(static_cast<std::int32_t>(random()));
        b = a;
        for (std::size_t i = 0; of.bytesMislead && i < a.size(); ++i) Mislead(a[i], b[i]);
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
void RunArrays(benchmark::State& state, const Case& of, Compare compare) {
    const VqTypeMgr manager(12);
    const Pairs<T> pairs(manager, of);
    std::size_t pair = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(compare(manager, pairs.At(0, pair), pairs.At(1, pair)));
        pair = (pair * 5 + 1) % PairCount;
    }
    state.SetItemsProcessed(state.iterations());
}

template <class T>
void Ours(benchmark::State& state, const Case& of) {
    RunArrays<T>(state, of, [=](const VqTypeMgr& manager, const void* a, const void* b) {
        return manager.Cmp(of.id, a, b, 0, static_cast<unsigned long>(of.count), of.format);
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
void Standard(benchmark::State& state, const Case& of) {
    RunArrays<T>(state, of, [=](const VqTypeMgr&, const void* a, const void* b) {
        return CompareByStandard(static_cast<const T*>(a), static_cast<const T*>(b), of.count);
    });
}

template <class T>
void Bytes(benchmark::State& state, const Case& of) {
    RunArrays<T>(state, of, [=](const VqTypeMgr&, const void* a, const void* b) {
        return std::memcmp(a, b, of.count * sizeof(T));
    });
}

template <class T>
void RegisterMisleading(const std::string& name, char id) {
    const Case inMemory = {id, 1024, VqFormat_Memory, true};
    const std::string stem = "Compare/" + name + "/" + std::to_string(inMemory.count) + "/";
    benchmark::RegisterBenchmark((stem + "ours").c_str(), Ours<T>, inMemory);
    benchmark::RegisterBenchmark((stem + "peer_std").c_str(), Standard<T>, inMemory);
}

template <class T>
void RegisterArrays(const std::string& name, char id, std::initializer_list<std::size_t> counts = {16, 1024}) {
    for (const std::size_t count : counts) {
        const std::string size = "/" + std::to_string(count) + "/", memory = "Compare/" + name + size,
                          stored = "Compare/Stored" + name + size;
        const Case inMemory = {id, count, VqFormat_Memory}, onDisk = {id, count, VqFormat_BigEndian};
        benchmark::RegisterBenchmark((memory + "ours").c_str(), Ours<T>, inMemory);
        benchmark::RegisterBenchmark((memory + "peer_std").c_str(), Standard<T>, inMemory);
        benchmark::RegisterBenchmark((memory + "peer_memcmp").c_str(), Bytes<T>, inMemory);
        benchmark::RegisterBenchmark((stored + "ours").c_str(), Ours<T>, onDisk);
        benchmark::RegisterBenchmark((stored + "peer_memory_form").c_str(), Ours<T>, inMemory);
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
    RegisterArrays<VqNull_long>("NullLong", VqTypeId_VqNull_long, {1, 16, 1024});
    RegisterArrays<VqNull_double>("NullDouble", VqTypeId_VqNull_double, {1, 16, 1024});
    RegisterMisleading<double>("DoubleInfinite", VqTypeId_double);
    RegisterMisleading<VqNull_long>("NullLongOtherPadding", VqTypeId_VqNull_long);
    return true;
}();

}  // namespace
