// 64-bit integers: arithmetic next to the native type, and decimal text next to the standard library, once into and out
// of a buffer and once through strings.
#include <benchmark/benchmark.h>

#include <charconv>
#include <random>
#include <string>
#include <vector>

#include "../src/decimaltext.h"
#include "vqint64.h"
#include "vqstring.h"

namespace {

constexpr std::size_t Count = 10000;
enum Kind { Small, Mixed, Full, KindCount };
const char* const kindNames[] = {"1-4_digits", "1-18_digits", "full_width"};

// Mixed: every number of digits is as frequent as the others.
std::int64_t Draw(Kind kind, std::mt19937_64& random) {
    if (kind == Small) return static_cast<std::int64_t>(random() % 10000);
    if (kind == Full) return static_cast<std::int64_t>(random());
    std::int64_t least = 1;
    for (auto digits = random() % 18; digits != 0; --digits) least *= 10;
    const auto value = least + static_cast<std::int64_t>(random() % static_cast<std::uint64_t>(9 * least));
    return random() & 1 ? value : -value;
}

const std::vector<std::int64_t>& Numbers(Kind kind) {
    static const auto all = [] {
        std::vector<std::vector<std::int64_t>> numbers;
        std::mt19937_64 random(1);
        for (const Kind kind : {Small, Mixed, Full}) {
            std::vector<std::int64_t>& drawn = numbers.emplace_back();
            while (drawn.size() < Count) drawn.push_back(Draw(kind, random));
        }
        return numbers;
    }();
    return all[kind];
}

// Their texts one after the other, each with a zero character behind it.
struct Texts {
    std::string characters;
    std::vector<std::pair<std::uint32_t, std::uint32_t>> places;  // start and length

    explicit Texts(Kind kind) {
        for (const std::int64_t value : Numbers(kind)) {
            const std::string text = std::to_string(value);
            places.emplace_back(characters.size(), text.size());
            characters += text + '\0';
        }
    }
};

void CountItems(benchmark::State& state) { state.SetItemsProcessed(state.iterations() * std::int64_t{Count}); }

// --- Text in a buffer

[[gnu::noinline]] char* PrintOurs(std::int64_t value, char* out) { return vq::WriteSignedDecimal(out, value); }
[[gnu::noinline]] char* PrintStd(std::int64_t value, char* out) { return std::to_chars(out, out + 32, value).ptr; }

template <char* (*Print)(std::int64_t, char*)>
void PrintBuffer(benchmark::State& state, Kind kind) {
    char buffer[64];
    for (const std::int64_t value : Numbers(kind)) {
        if (std::string(buffer, Print(value, buffer)) != std::to_string(value)) {
            return state.SkipWithError("another text");
        }
    }
    for (auto _ : state) {
        for (const std::int64_t value : Numbers(kind)) {
            benchmark::DoNotOptimize(Print(value, buffer));
            benchmark::ClobberMemory();
        }
    }
    CountItems(state);
}

// Digits up to a known end, as the scanner reads them once it has found base and terminator. The peer finds the end
// itself and looks for overflow; through strings both sides do all that they do.
[[gnu::noinline]] std::int64_t ScanOurs(const char* at, const char* end) {
    const bool negative = at != end && *at == '-';
    std::uint64_t bits;
    if (!vq::ReadDecimal(at + negative, end, bits)) return -1;
    return static_cast<std::int64_t>(negative ? 0 - bits : bits);
}
[[gnu::noinline]] std::int64_t ScanStd(const char* at, const char* end) {
    std::int64_t value = 0;
    return std::from_chars(at, end, value).ec == std::errc() ? value : -1;
}

template <std::int64_t (*Scan)(const char*, const char*)>
void ScanBuffer(benchmark::State& state, Kind kind) {
    const Texts texts(kind);
    for (std::size_t i = 0; i < Count; ++i) {
        const char* const at = texts.characters.data() + texts.places[i].first;
        if (Scan(at, at + texts.places[i].second) != Numbers(kind)[i]) return state.SkipWithError("another value");
    }
    for (auto _ : state) {
        for (const auto& [start, length] : texts.places) {
            const char* const at = texts.characters.data() + start;
            benchmark::DoNotOptimize(Scan(at, at + length));
        }
    }
    CountItems(state);
}

// --- Text in strings: a new string for each number

void PrintString(benchmark::State& state, Kind kind) {
    for (auto _ : state) {
        for (const VqInt64 value : Numbers(kind)) {
            VqString text;
            value.PrintToVqString(text, "%S");
            benchmark::DoNotOptimize(text.StrGet());
        }
    }
    CountItems(state);
}

void PrintStdString(benchmark::State& state, Kind kind) {
    for (auto _ : state) {
        for (const std::int64_t value : Numbers(kind)) {
            const std::string text = std::to_string(value);
            benchmark::DoNotOptimize(text.c_str());
        }
    }
    CountItems(state);
}

// What a string that owns its buffer costs: short texts lie in the std::string itself.
void PrintCopiedString(benchmark::State& state, Kind kind) {
    for (auto _ : state) {
        for (const std::int64_t value : Numbers(kind)) {
            const VqString text(std::to_string(value).c_str());
            benchmark::DoNotOptimize(text.StrGet());
        }
    }
    CountItems(state);
}

// Into a string that had the same text: it keeps its buffer.
void PrintEmptiedString(benchmark::State& state, Kind kind) {
    std::vector<VqString> texts;
    for (const std::int64_t value : Numbers(kind)) texts.emplace_back(std::to_string(value).c_str());
    for (auto _ : state) {
        for (std::size_t i = 0; i < Count; ++i) {
            *const_cast<char*>(texts[i].StrGet()) = 0;  // what a VqChar does, with checks that are not to be measured
            VqInt64(Numbers(kind)[i]).PrintToVqString(texts[i], "%S");
            benchmark::DoNotOptimize(texts[i].StrGet());
        }
    }
    CountItems(state);
}

void AssignStdString(benchmark::State& state, Kind kind) {
    std::vector<std::string> texts;
    for (const std::int64_t value : Numbers(kind)) texts.push_back(std::to_string(value));
    for (auto _ : state) {
        for (std::size_t i = 0; i < Count; ++i) {
            char text[32];
            texts[i].assign(text, std::to_chars(text, text + sizeof text, Numbers(kind)[i]).ptr);
            benchmark::DoNotOptimize(texts[i].c_str());
        }
    }
    CountItems(state);
}

void ScanString(benchmark::State& state, Kind kind) {
    std::vector<VqString> texts;
    for (const std::int64_t value : Numbers(kind)) texts.emplace_back(std::to_string(value).c_str());
    for (auto _ : state) {
        for (const VqString& text : texts) {
            VqInt64 value;
            value.ScanFromVqString(text, "%S");
            benchmark::DoNotOptimize(value);
        }
    }
    CountItems(state);
}

void ScanStdString(benchmark::State& state, Kind kind) {
    std::vector<std::string> texts;
    for (const std::int64_t value : Numbers(kind)) texts.push_back(std::to_string(value));
    for (auto _ : state) {
        for (const std::string& text : texts) benchmark::DoNotOptimize(std::stoll(text));
    }
    CountItems(state);
}

// --- Arithmetic over arrays

template <class Number, class Operation>
void Arithmetic(benchmark::State& state, Operation operation) {
    std::vector<Number> a, b, results(Count);
    for (std::size_t i = 0; i < Count; ++i) {
        a.push_back(Numbers(Full)[i]);
        b.push_back(Numbers(Mixed)[i]);
    }
    for (auto _ : state) {
        for (std::size_t i = 0; i < Count; ++i) results[i] = operation(a[i], b[i]);
        benchmark::DoNotOptimize(results.data());
        benchmark::ClobberMemory();
    }
    CountItems(state);
}

template <class Operation>
void AddArithmetic(const std::string& name, Operation operation) {
    benchmark::RegisterBenchmark(("Int64/" + name + "/ours").c_str(), Arithmetic<VqInt64, Operation>, operation);
    benchmark::RegisterBenchmark(("Int64/" + name + "/peer_int64_t").c_str(), Arithmetic<std::int64_t, Operation>,
                                 operation);
}

using Case = void (*)(benchmark::State&, Kind);

void AddTexts(const std::string& name, Case ours, const std::vector<std::pair<std::string, Case>>& peers) {
    for (int k = 0; k < KindCount; ++k) {
        const std::string stem = "Int64/" + name + "/" + kindNames[k];
        benchmark::RegisterBenchmark((stem + "/ours").c_str(), ours, static_cast<Kind>(k));
        for (const auto& [peer, run] : peers) {
            benchmark::RegisterBenchmark((stem + "/peer_" + peer).c_str(), run, static_cast<Kind>(k));
        }
    }
}

const bool registered = [] {
    AddArithmetic("Divide", [](const auto& a, const auto& b) { return a / b; });
    AddArithmetic("Remainder", [](const auto& a, const auto& b) { return a % b; });
    // The native type without its overflows.
    AddArithmetic("Multiply", [](const auto& a, const auto& b) {
        using Number = std::decay_t<decltype(a)>;
        if constexpr (std::is_integral_v<Number>) {
            return static_cast<Number>(static_cast<std::uint64_t>(a) * static_cast<std::uint64_t>(b));
        } else {
            return a * b;
        }
    });
    AddTexts("Print", PrintBuffer<PrintOurs>, {{"to_chars", PrintBuffer<PrintStd>}});
    AddTexts("Scan", ScanBuffer<ScanOurs>, {{"from_chars", ScanBuffer<ScanStd>}});
    AddTexts("PrintString", PrintString, {{"to_string", PrintStdString}, {"to_string_copied", PrintCopiedString}});
    AddTexts("PrintEmptiedString", PrintEmptiedString, {{"to_chars_assigned", AssignStdString}});
    AddTexts("ScanString", ScanString, {{"stoll", ScanStdString}});
    return true;
}();

}  // namespace
