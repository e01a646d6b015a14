// Estimates of predicates through the manager, next to the same formula on values that need not be read.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>
#include <vector>

#include "vqtm.h"

namespace {

constexpr unsigned char BigEndian = VqFormat_BigEndian;
constexpr std::size_t Keys = 1024;

VqTypeMgr manager(5);

// The identifier is no constant to the compiler, as it is none to an engine.
char Opaque(char id) {
    benchmark::DoNotOptimize(id);
    return id;
}

// --- Numbers

struct Numbers {
    std::int32_t low = -1000000, high = 1000000;
    std::vector<std::int32_t> keys;
    std::vector<unsigned short> operators;

    Numbers() {
        std::mt19937 random(3);
        for (std::size_t i = 0; i < Keys; ++i) {
            keys.push_back(static_cast<std::int32_t>(random() % 2400000) - 1200000);
            operators.push_back(static_cast<unsigned short>(1 + random() % 6));
        }
    }
};

void EstimateLongs(benchmark::State& state) {
    const Numbers numbers;
    std::vector<std::int32_t> stored(Keys);
    LongStore(stored.data(), numbers.keys.data(), BigEndian, Keys);
    std::int32_t ends[2];
    LongStore(ends, &numbers.low, BigEndian, 2);
    VqIdxBounds bounds = {&ends[0], &ends[1], 4, 4};
    for (auto _ : state) {
        for (std::size_t i = 0; i < Keys; ++i) {
            unsigned short operators = numbers.operators[i];
            benchmark::DoNotOptimize(manager.EvalAndBound(Opaque(VqTypeId_long), &bounds, operators, &stored[i],
                                                          BigEndian, 1, nullptr, nullptr));
        }
    }
    state.SetItemsProcessed(state.iterations() * std::int64_t{Keys});
}

[[gnu::noinline]] double Formula(unsigned operators, double key, double low, double high) {
    double area = 0;
    if (operators & VqOperator_Greater) area += std::max(high - (low <= key ? key : low - 1), 0.0);
    if (operators & VqOperator_Less) area += std::max((high < key ? high + 1 : key) - low, 0.0);
    if (operators & VqOperator_Equal) area += std::max(std::min(key, high) - std::max(key, low) + 1, 0.0);
    return area / (high - low + 1);
}

void ComputeFormula(benchmark::State& state) {
    const Numbers numbers;
    for (auto _ : state) {
        for (std::size_t i = 0; i < Keys; ++i) {
            benchmark::DoNotOptimize(Formula(numbers.operators[i], numbers.keys[i], numbers.low, numbers.high));
        }
    }
    state.SetItemsProcessed(state.iterations() * std::int64_t{Keys});
}

BENCHMARK(EstimateLongs)->Name("Bounds/Long/ours");
BENCHMARK(ComputeFormula)->Name("Bounds/Long/peer_formula");

}  // namespace
