// Date-times into strings and out of them under formats, next to strftime, {fmt} and strptime, which write to and read
// from plain buffers. ToText prints into a string that keeps its buffer; ToNewText makes and releases the string, where
// the peers have no allocation to pay for. {fmt} reads the format at run time, as the others do, or has it compiled in.
#include <benchmark/benchmark.h>

#include <array>
#include <ctime>
#include <random>
#include <string>
#include <vector>

#include "datetime.h"
#include "vqstring.h"

#ifdef VQTM_HAVE_FMT
#include <fmt/chrono.h>
#include <fmt/compile.h>
#endif

namespace {

struct Format {
    const char* name;
    const char* text;
    const char* fmtText;
};

constexpr Format Iso = {"Iso", "%Y-%m-%dT%H:%M:%S", "{:%Y-%m-%dT%H:%M:%S}"};
constexpr Format Named = {"Named", "%a %d.%b %Y", "{:%a %d.%b %Y}"};
constexpr Format Twelve = {"Twelve", "%I:%M:%S %p", "{:%I:%M:%S %p}"};

constexpr std::size_t Count = 4096;

std::vector<VqDateTime> Values() {
    std::mt19937 random(20050307);
    const auto below = [&](unsigned n) { return static_cast<int>(random() % n); };
    std::vector<VqDateTime> values;
    for (std::size_t i = 0; i < Count; ++i) {
        // Letters of the two month names that are spelled in another way would differ.
        values.emplace_back(VqDate(1600 + below(800), 3 + below(10), 1 + below(28)),
                            VqTime(below(24), below(60), below(60)));
    }
    return values;
}

std::tm TmOf(const VqDateTime& value) {
    std::tm tm = {};
    tm.tm_year = value.date.year - 1900;
    tm.tm_mon = value.date.month - 1;
    tm.tm_mday = value.date.day;
    tm.tm_hour = value.time.hour;
    tm.tm_min = value.time.minute;
    tm.tm_sec = value.time.second;
    tm.tm_wday = (VqDate(value.date).DayOfTheDate() + 1) % 7;
    return tm;
}

std::vector<std::tm> Tms() {
    std::vector<std::tm> tms;
    for (const VqDateTime& value : Values()) tms.push_back(TmOf(value));
    return tms;
}

void CountItems(benchmark::State& state) {
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(Count));
}

void Print(benchmark::State& state, const Format& format) {
    const std::vector<VqDateTime> values = Values();
    VqString text;
    values[0].PrintToVqString(text, format.text);
    for (auto _ : state) {
        for (const VqDateTime& value : values) {
            *const_cast<char*>(text.StrGet()) = 0;  // what a VqChar does, with checks that are not to be measured
            value.PrintToVqString(text, format.text);
            benchmark::DoNotOptimize(text.StrGet());
            benchmark::ClobberMemory();
        }
    }
    CountItems(state);
}

void PrintNew(benchmark::State& state, const Format& format) {
    const std::vector<VqDateTime> values = Values();
    for (auto _ : state) {
        for (const VqDateTime& value : values) {
            VqString text;
            value.PrintToVqString(text, format.text);
            benchmark::DoNotOptimize(text.StrGet());
            benchmark::ClobberMemory();
        }
    }
    CountItems(state);
}

// `print` writes one time to a buffer and returns where it ended.
template <class PrintTm>
void PrintPeer(benchmark::State& state, const Format& format, PrintTm print) {
    const std::vector<VqDateTime> values = Values();
    const std::vector<std::tm> tms = Tms();
    std::array<char, 128> buffer;
    for (std::size_t i = 0; i < Count; ++i) {
        VqString text;
        values[i].PrintToVqString(text, format.text);
        const std::string theirs(buffer.data(), print(buffer.data(), tms[i]));
        // The C locale's halves of the day are in capitals.
        if (&format != &Twelve && theirs != text.StrGet()) return state.SkipWithError("wrong text");
    }
    for (auto _ : state) {
        for (const std::tm& tm : tms) {
            benchmark::DoNotOptimize(print(buffer.data(), tm));
            benchmark::ClobberMemory();
        }
    }
    CountItems(state);
}

// Formats reach every contender through memory, so that none is known where it is used.
const char* Opaque(const char* text) {
    const char* volatile hidden = text;
    return hidden;
}

void Scan(benchmark::State& state, const Format& format) {
    std::vector<VqString> texts(Count);
    const std::vector<VqDateTime> values = Values();
    for (std::size_t i = 0; i < Count; ++i) values[i].PrintToVqString(texts[i], format.text);
    VqDateTime read;
    for (auto _ : state) {
        for (const VqString& text : texts) {
            read.ScanFromVqString(text, format.text);
            benchmark::DoNotOptimize(read);
        }
    }
    VqString back;
    read.PrintToVqString(back, format.text);
    if (back != texts.back()) state.SkipWithError("wrong time");
    CountItems(state);
}

void ScanPeer(benchmark::State& state, const Format& format) {
    std::vector<VqString> texts(Count);
    const std::vector<VqDateTime> values = Values();
    for (std::size_t i = 0; i < Count; ++i) values[i].PrintToVqString(texts[i], format.text);
    std::tm read = {};
    for (auto _ : state) {
        for (const VqString& text : texts) {
            benchmark::DoNotOptimize(strptime(text.StrGet(), format.text, &read));
            benchmark::DoNotOptimize(read);
        }
    }
    if (read.tm_mday != values.back().date.day) state.SkipWithError("wrong time");
    CountItems(state);
}

void RegisterPeers(const std::string& name, const Format& format) {
    benchmark::RegisterBenchmark((name + "/peer_strftime").c_str(), [&format](benchmark::State& state) {
        PrintPeer(state, format, [text = Opaque(format.text)](char* out, const std::tm& tm) {
            return out + std::strftime(out, 128, text, &tm);
        });
    });
#ifdef VQTM_HAVE_FMT
    benchmark::RegisterBenchmark((name + "/peer_fmt").c_str(), [&format](benchmark::State& state) {
        PrintPeer(state, format, [text = Opaque(format.fmtText)](char* out, const std::tm& tm) {
            return fmt::format_to(out, fmt::runtime(text), tm);
        });
    });
#endif
}

const bool registered = [] {
    for (const Format* format : {&Iso, &Named, &Twelve}) {
        const std::string name = format->name;
        for (const auto& kind : {std::pair("ToText", &Print), std::pair("ToNewText", &PrintNew)}) {
            const std::string area = std::string("DateText/") + kind.first + "/" + name;
            const auto ours = kind.second;
            benchmark::RegisterBenchmark((area + "/ours").c_str(),
                                         [=](benchmark::State& state) { ours(state, *format); });
            RegisterPeers(area, *format);
        }
    }
#ifdef VQTM_HAVE_FMT
    benchmark::RegisterBenchmark("DateText/ToText/Iso/peer_fmt_compiled", [](benchmark::State& state) {
        PrintPeer(state, Iso, [](char* out, const std::tm& tm) {
            return fmt::format_to(out, FMT_COMPILE("{:%Y-%m-%dT%H:%M:%S}"), tm);
        });
    });
#endif
    for (const Format* format : {&Iso, &Named}) {
        const std::string name = std::string("DateText/Scan/") + format->name;
        benchmark::RegisterBenchmark((name + "/ours").c_str(), [=](benchmark::State& state) { Scan(state, *format); });
        benchmark::RegisterBenchmark((name + "/peer_strptime").c_str(),
                                     [=](benchmark::State& state) { ScanPeer(state, *format); });
    }
    return true;
}();

}  // namespace
