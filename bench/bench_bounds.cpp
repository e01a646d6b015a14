// Estimates of predicates through the manager, next to the same formula on values that need not be read.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>
#include <string>
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

// --- Texts

// Words of an index in Windows-1252 and German, stored one by one.
struct Words {
    std::vector<std::vector<unsigned char>> records;
    std::vector<unsigned char> low, high;

    Words() {
        std::mt19937 random(4);
        for (std::size_t i = 0; i < Keys; ++i) {
            std::string text;
            for (std::size_t k = 3 + random() % 15; k != 0; --k) text += static_cast<char>('a' + random() % 26);
            records.push_back(Stored(text));
        }
        low = Stored("aal");
        high = Stored("zylinder");
    }
    static std::vector<unsigned char> Stored(const std::string& text) {
        VqString word(1, 2);
        word.AssignChars(text.c_str(), 1, static_cast<unsigned short>(text.size()));
        std::vector<unsigned char> record(StringSizeGet(&word, VqFormat_Memory, BigEndian, 1));
        StringStore(record.data(), &word, BigEndian, 1);
        return record;
    }
};

void EstimateStrings(benchmark::State& state) {
    Words words;
    VqIdxBounds bounds = {words.low.data(), words.high.data(), static_cast<std::uint32_t>(words.low.size()),
                          static_cast<std::uint32_t>(words.high.size())};
    for (auto _ : state) {
        for (const auto& record : words.records) {
            unsigned short operators = VqOperator_Less;
            benchmark::DoNotOptimize(manager.EvalAndBound(Opaque(VqTypeId_VqString), &bounds, operators, record.data(),
                                                          BigEndian, 1, nullptr, nullptr));
        }
    }
    state.SetItemsProcessed(state.iterations() * std::int64_t{Keys});
}

// The eight bytes behind a common beginning as a number: how far a text is from one end to the other if all bytes are
// as frequent.
[[gnu::noinline]] double EightBytes(const std::vector<unsigned char>& key, const std::vector<unsigned char>& low,
                                    const std::vector<unsigned char>& high) {
    constexpr std::size_t head = 4, trailer = 2;
    const auto length = [](const auto& record) { return record.size() - trailer; };
    std::size_t from = head;
    while (from < std::min({length(key), length(low), length(high)}) && low[from] == high[from]) ++from;
    const auto number = [&](const auto& record) {
        double value = 0;
        for (std::size_t i = 0; i < 8; ++i) value = value * 256 + (from + i < length(record) ? record[from + i] : 0);
        return value;
    };
    const double below = number(low);
    return std::clamp((number(key) - below) / (number(high) - below), 0.0, 1.0);
}

void ComputeEightBytes(benchmark::State& state) {
    const Words words;
    for (auto _ : state) {
        for (const auto& record : words.records) {
            benchmark::DoNotOptimize(EightBytes(record, words.low, words.high));
        }
    }
    state.SetItemsProcessed(state.iterations() * std::int64_t{Keys});
}

BENCHMARK(EstimateStrings)->Name("Bounds/String/ours");
BENCHMARK(ComputeEightBytes)->Name("Bounds/String/peer_eight_bytes");
BENCHMARK(EstimateLongs)->Name("Bounds/Long/ours");
BENCHMARK(ComputeFormula)->Name("Bounds/Long/peer_formula");

}  // namespace
