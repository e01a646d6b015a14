// Looking up keys in an index: a binary search over a million stored keys by the type manager's comparison, next to
// std::lower_bound over the same values in memory and, for texts, over ICU's collator.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <compare>
#include <cstdio>
#include <fstream>
#include <functional>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "vqtm.h"

#ifdef VQTM_HAVE_ICU
#include <unicode/ucol.h>
#include <unicode/ustring.h>
#endif

namespace {

constexpr std::size_t KeyCount = 1000000;
constexpr std::size_t ProbeCount = 4096;
constexpr unsigned char Latin = 1, German = 2;

const VqTypeMgr manager(5);

// Keys of one length, one behind the other, in their order.
struct StoredKeys {
    char id;
    unsigned char format;
    unsigned long length;
    std::vector<unsigned char> bytes;

    const unsigned char* At(std::size_t i) const { return bytes.data() + i * length; }
    long Compare(const unsigned char* a, const unsigned char* b) const {
        int error = 0;
        return manager.Cmp(id, length, a, length, b, VqCmp_Exact, 1, format, error);
    }
    std::size_t LowerBound(const unsigned char* key) const {
        std::size_t first = 0;
        for (std::size_t count = bytes.size() / length; count != 0;) {
            const std::size_t half = count / 2;
            if (Compare(At(first + half), key) < 0) {
                first += half + 1;
                count -= half + 1;
            } else {
                count = half;
            }
        }
        return first;
    }
};

// The same probes for all.
std::vector<std::size_t> Probes() {
    std::mt19937 random(11);
    std::vector<std::size_t> probes(ProbeCount);
    for (std::size_t& probe : probes) probe = random() % KeyCount;
    return probes;
}

template <class Find>
void Run(benchmark::State& state, Find find) {
    const std::vector<std::size_t> probes = Probes();
    for (const std::size_t probe : probes) {
        if (find(probe) != probe) return state.SkipWithError("a key is not found at its place");
    }
    for (auto _ : state) {
        std::size_t sum = 0;
        for (const std::size_t probe : probes) sum += find(probe);
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * static_cast<std::int64_t>(ProbeCount));
}

void FindStored(benchmark::State& state, const StoredKeys& keys) {
    Run(state, [&](std::size_t probe) { return keys.LowerBound(keys.At(probe)); });
}

template <class Value, class Less>
void FindNative(benchmark::State& state, const std::vector<Value>& values, Less less) {
    Run(state, [&](std::size_t probe) {
        const auto at = std::lower_bound(values.begin(), values.end(), values[probe], less);
        return static_cast<std::size_t>(at - values.begin());
    });
}

// --- Keys

template <class Value>
StoredKeys Store(char id, unsigned char format, const std::vector<Value>& values) {
    StoredKeys keys{id, format, manager.DiskLenGet(id, values.data(), format, 1, VqFormat_Memory), {}};
    keys.bytes.resize(keys.length * values.size());
    manager.Store(id, keys.bytes.data(), values.data(), format, static_cast<unsigned long>(values.size()));
    return keys;
}

const std::vector<std::int32_t>& Longs() {
    static const std::vector<std::int32_t> values = [] {
        std::mt19937 random(1);
        std::set<std::int32_t> chosen;
        while (chosen.size() < KeyCount) chosen.insert(static_cast<std::int32_t>(random()));
        return std::vector<std::int32_t>(chosen.begin(), chosen.end());
    }();
    return values;
}

// What a program that knows the type would keep.
struct PlainDateTime {
    std::int16_t year;
    std::int8_t month, day, hour, minute, second;
    auto operator<=>(const PlainDateTime&) const = default;
};

const std::vector<PlainDateTime>& PlainDateTimes() {
    static const std::vector<PlainDateTime> values = [] {
        std::mt19937 random(2);
        const auto pick = [&random](int from, int to) {
            return static_cast<std::int8_t>(from + static_cast<int>(random() % static_cast<unsigned>(to - from + 1)));
        };
        std::set<PlainDateTime> chosen;
        while (chosen.size() < KeyCount) {
            const auto year = static_cast<std::int16_t>(1990 + random() % 40);
            chosen.insert({year, pick(1, 12), pick(1, 28), pick(0, 23), pick(0, 59), pick(0, 59)});
        }
        return std::vector<PlainDateTime>(chosen.begin(), chosen.end());
    }();
    return values;
}

const std::vector<VqDateTime>& DateTimes() {
    static const std::vector<VqDateTime> values = [] {
        std::vector<VqDateTime> all;
        for (const PlainDateTime& at : PlainDateTimes()) {
            all.emplace_back(VqDate(at.year, at.month, at.day), VqTime(at.hour, at.minute, at.second));
        }
        return all;
    }();
    return values;
}

// --- Texts: twelve characters of words that follow each other by chance, in their German order

constexpr std::size_t TextLength = 12;

std::vector<std::string> Words() {
    std::vector<std::string> words;
    std::ifstream list("/usr/share/dict/ngerman");
    for (std::string line; std::getline(list, line);) {
        VqString word;
        VqMBS2VqString(line.c_str(), word, static_cast<long>(line.size()));
        word.MapToCodeSet(Latin);
        if (word.Len() > 2) words.emplace_back(word.StrGet());
    }
    return words;
}

VqString GermanString(const std::string& text) {
    VqString string(Latin, German);
    string.AssignChars(text.data(), Latin, TextLength);
    return string;
}

// As many as there are keys; none without the word list.
const std::vector<VqString>& Strings() {
    static const std::vector<VqString> strings = [] {
        std::vector<VqString> all;
        const std::vector<std::string> words = Words();
        if (words.empty()) return all;
        std::mt19937 random(3);
        std::set<std::string> chosen;
        while (chosen.size() < KeyCount) {
            std::string text = words[random() % words.size()];
            while (text.size() < TextLength) text += ' ' + words[random() % words.size()];
            chosen.insert(text.substr(0, TextLength));
        }
        for (const std::string& text : chosen) all.push_back(GermanString(text));
        std::sort(all.begin(), all.end());
        return all;
    }();
    return strings;
}

#ifdef VQTM_HAVE_ICU

UCollator* GermanCollator() {
    static UErrorCode error = U_ZERO_ERROR;
    static UCollator* const collator = ucol_open("de", &error);
    return collator;
}

// The texts in the collator's own order, as close together as they get in memory.
struct Utf16 {
    UChar units[TextLength];

    explicit Utf16(const VqString& string) {
        const VqCodeSet& set = *VqLanguageContext::QueryCodeSet(Latin);
        for (std::size_t i = 0; i < TextLength; ++i) {
            units[i] = set.ToUnicode(static_cast<unsigned char>(string.StrGet()[i]));
        }
    }
    bool operator<(const Utf16& other) const {
        return ucol_strcoll(GermanCollator(), units, TextLength, other.units, TextLength) < 0;
    }
};

struct Utf8 {
    char bytes[2 * TextLength];  // German letters need no more
    std::uint8_t length;

    explicit Utf8(const VqString& string) {
        UErrorCode error = U_ZERO_ERROR;
        std::int32_t size = 0;
        u_strToUTF8(bytes, sizeof bytes, &size, Utf16(string).units, TextLength, &error);
        length = static_cast<std::uint8_t>(size);
    }
    bool operator<(const Utf8& other) const {
        UErrorCode error = U_ZERO_ERROR;
        return ucol_strcollUTF8(GermanCollator(), bytes, length, other.bytes, other.length, &error) < 0;
    }
};

template <class Text>
void FindByCollator(benchmark::State& state) {
    static const std::vector<Text> texts = [] {
        std::vector<Text> all(Strings().begin(), Strings().end());
        std::sort(all.begin(), all.end());
        return all;
    }();
    FindNative(state, texts, std::less<>());
}

#endif

// --- The cases

template <class Values, class Keys>
void RegisterStored(const std::string& name, char id, Values values, Keys keys) {
    for (const auto& [suffix, format] : {std::pair("LE", VqFormat_LittleEndian), std::pair("BE", VqFormat_BigEndian)}) {
        const auto run = [=](benchmark::State& state) {
            static const StoredKeys stored[] = {Store(id, VqFormat_LittleEndian, values()),
                                                Store(id, VqFormat_BigEndian, values())};
            FindStored(state, stored[format == VqFormat_BigEndian]);
        };
        benchmark::RegisterBenchmark((name + suffix + "/ours").c_str(), run);
        keys(name + suffix + "/");
    }
}

const bool registered = [] {
    RegisterStored("Lookup/Long", VqTypeId_long, Longs, [](const std::string& name) {
        benchmark::RegisterBenchmark((name + "peer_native").c_str(),
                                     [](benchmark::State& state) { FindNative(state, Longs(), std::less<>()); });
    });
    RegisterStored("Lookup/DateTime", VqTypeId_VqDateTime, DateTimes, [](const std::string& name) {
        benchmark::RegisterBenchmark((name + "peer_plain").c_str(), [](benchmark::State& state) {
            FindNative(state, PlainDateTimes(), std::less<>());
        });
        benchmark::RegisterBenchmark((name + "peer_class").c_str(), [](benchmark::State& state) {
            FindNative(state, DateTimes(), [](const VqDateTime& a, const VqDateTime& b) { return a < b; });
        });
    });
    if (!std::ifstream("/usr/share/dict/ngerman").good()) {
        std::fprintf(stderr, "no /usr/share/dict/ngerman: no texts are looked up (wngerman)\n");
        return true;
    }
    RegisterStored("Lookup/German1252", VqTypeId_VqString, Strings, [](const std::string& name) {
#ifdef VQTM_HAVE_ICU
        benchmark::RegisterBenchmark((name + "peer_icu_utf8").c_str(), FindByCollator<Utf8>);
        benchmark::RegisterBenchmark((name + "peer_icu_utf16").c_str(), FindByCollator<Utf16>);
#endif
    });
    return true;
}();

}  // namespace
