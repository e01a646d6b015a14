// Language-sensitive comparison of word pairs, next to ICU's collator and the C library's; patterns next to fnmatch.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "vqtm.h"

#ifdef __linux__
#include <fnmatch.h>
#include <locale.h>
#include <string.h>
#endif
#ifdef VQTM_HAVE_ICU
#include <unicode/ucol.h>
#endif

namespace {

// So few that all forms of them stay in the cache: comparison is measured, not memory.
constexpr std::size_t PairCount = 5000;
constexpr unsigned char Latin = 1, Unicode = 253;

struct Language {
    const char* name;
    const char* wordList;
    const char* icuLocale;
    const char* systemLocale;
    unsigned char number;
};
constexpr Language languages[] = {
    {"German", "/usr/share/dict/ngerman", "de", "de_DE.UTF-8", 2},
    {"French", "/usr/share/dict/french", "fr", "fr_FR.UTF-8", 3},
};

// --- Word pairs: adjacent in sorted order, equal, and apart in the first letter's case

// Texts one behind the other, each with its zero character.
template <class Char>
class Arena {
  public:
    struct Text {
        const Char* text;
        int length;
    };
    void Add(const std::basic_string<Char>& text) {
        places_.push_back({all_.size(), static_cast<int>(text.size())});
        all_ += text;
        all_ += Char{};
    }
    Text operator[](std::size_t i) const { return {all_.data() + places_[i].offset, places_[i].length}; }

  private:
    struct Place {
        std::size_t offset;
        int length;
    };
    std::basic_string<Char> all_;
    std::vector<Place> places_;
};

// Word pairs in every form that a call wants; text 2 * i and the one behind it are a pair.
struct Pairs {
    Arena<char> latin;
    Arena<char> utf8;
    Arena<char16_t> utf16;
    std::vector<VqString> latinStrings;
    std::vector<VqString> wideStrings;
};

enum PairKind { Adjacent, Random, Equal, FirstCase };
constexpr std::pair<const char*, PairKind> pairKinds[] = {
    {"Adjacent", Adjacent},
    {"Random", Random},
    {"Equal", Equal},
    {"FirstCase", FirstCase},
};

// UTF-8 as UTF-16; empty where a character takes more than one unit or the bytes are none.
std::u16string Decoded(const std::string& text) {
    std::u16string units;
    for (std::size_t i = 0; i < text.size();) {
        const unsigned char lead = static_cast<unsigned char>(text[i]);
        const std::size_t length = lead < 0x80                   ? 1
                                   : lead >= 0xC2 && lead < 0xE0 ? 2
                                   : lead >= 0xE0 && lead < 0xF0 ? 3
                                                                 : 0;
        if (length == 0 || i + length > text.size()) return {};
        unsigned unit = length == 1 ? lead : lead & (0xFFU >> (length + 1));
        for (std::size_t k = 1; k < length; ++k) unit = unit << 6 | (static_cast<unsigned char>(text[i + k]) & 0x3FU);
        units += static_cast<char16_t>(unit);
        i += length;
    }
    return units;
}

std::string Encoded(const std::u16string& units) {
    std::string text;
    for (const unsigned unit : units) {
        if (unit < 0x80) {
            text += static_cast<char>(unit);
        } else if (unit < 0x800) {
            text += static_cast<char>(0xC0 | unit >> 6);
            text += static_cast<char>(0x80 | (unit & 0x3F));
        } else {
            text += static_cast<char>(0xE0 | unit >> 12);
            text += static_cast<char>(0x80 | (unit >> 6 & 0x3F));
            text += static_cast<char>(0x80 | (unit & 0x3F));
        }
    }
    return text;
}

VqString WideString(const std::u16string& units, const Language& language) {
    const std::vector<unsigned short> codes(units.begin(), units.end());
    VqString string(codes.data(), static_cast<unsigned short>(codes.size()));
    string.SetLanguage(language.number);
    return string;
}

VqString LatinString(const std::u16string& units, const Language& language) {
    VqString string = WideString(units, language);
    string.MapToCodeSet(Latin);
    return string;
}

void Add(Pairs& pairs, const std::u16string& word, const Language& language) {
    pairs.utf16.Add(word);
    pairs.utf8.Add(Encoded(word));
    pairs.latin.Add(LatinString(word, language).StrGet());
    pairs.latinStrings.push_back(LatinString(word, language));
    pairs.wideStrings.push_back(WideString(word, language));
}

bool InLatin(const std::u16string& units) {
    const VqCodeSet& set = *VqLanguageContext::QueryCodeSet(Latin);
    for (const char16_t unit : units) {
        if (!set.HasUnicode(unit)) return false;
    }
    return !units.empty();
}

// The list's words in the order of their language.
std::vector<std::u16string> SortedWords(const Language& language) {
    std::vector<std::pair<VqString, std::u16string>> words;
    std::ifstream in(language.wordList);
    for (std::string line; std::getline(in, line);) {
        const std::u16string units = Decoded(line);
        if (InLatin(units)) words.emplace_back(LatinString(units, language), units);
    }
    std::sort(words.begin(), words.end(), [](const auto& x, const auto& y) { return x.first < y.first; });
    std::vector<std::u16string> sorted;
    for (const auto& word : words) sorted.push_back(word.second);
    return sorted;
}

std::u16string OtherFirstCase(std::u16string word) {
    const VqCodeSet& set = *VqLanguageContext::QueryCodeSet(Unicode);
    const unsigned short upper = set.ToUpper(word[0]);
    word[0] = static_cast<char16_t>(upper != word[0] ? upper : set.ToLower(word[0]));
    return word;
}

std::u16string PartnerOf(const std::vector<std::u16string>& words, std::size_t i, PairKind kind, std::mt19937& random) {
    switch (kind) {
        case Adjacent:
            return words[i + 1];
        case Random:
            return words[random() % words.size()];
        case Equal:
            return words[i];
        case FirstCase:
            return OtherFirstCase(words[i]);
    }
    return {};
}

// Null without the word list.
const Pairs* PairsOf(const Language& language, PairKind kind) {
    static std::unique_ptr<Pairs> all[std::size(languages)][std::size(pairKinds)];
    static std::vector<std::u16string> lists[std::size(languages)];
    const std::size_t at = static_cast<std::size_t>(&language - languages);
    std::unique_ptr<Pairs>& pairs = all[at][kind];
    if (pairs != nullptr) return pairs.get();
    std::vector<std::u16string>& words = lists[at];
    if (words.empty()) words = SortedWords(language);
    if (words.size() < 2) return nullptr;
    pairs = std::make_unique<Pairs>();
    std::mt19937 random(static_cast<unsigned>(7 + kind));
    for (std::size_t n = 0; n < PairCount; ++n) {
        const std::size_t i = random() % (words.size() - 1);
        Add(*pairs, words[i], language);
        Add(*pairs, PartnerOf(words, i, kind, random), language);
    }
    return pairs.get();
}

// Compares the pairs of one form, over and over.
template <class Texts, class Compare>
void Run(benchmark::State& state, const Pairs* pairs, Texts Pairs::*form, Compare compare) {
    if (pairs == nullptr) {
        state.SkipWithError("the word list holds no words");
        return;
    }
    const Texts& texts = pairs->*form;
    long sum = 0;
    for (auto _ : state) {
        for (std::size_t i = 0; i < 2 * PairCount; i += 2) sum += compare(texts[i], texts[i + 1]);
    }
    benchmark::DoNotOptimize(sum);
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * static_cast<std::int64_t>(PairCount));
}

// --- Ours: by text pointers, and by strings that know the size of their buffer

template <unsigned char CodeSet, class Char>
void OursByPointers(benchmark::State& state, const Language* language, Arena<Char> Pairs::*form, PairKind kind,
                    unsigned short op) {
    const unsigned char number = language->number;
    Run(state, PairsOf(*language, kind), form, [number, op](const auto& a, const auto& b) {
        return VqStrCmp(CodeSet, number, reinterpret_cast<const char*>(a.text), CodeSet, number,
                        reinterpret_cast<const char*>(b.text), op, -1, 1, nullptr);
    });
}

void LatinByPointers(benchmark::State& state, const Language* language, PairKind kind, unsigned short op) {
    OursByPointers<Latin>(state, language, &Pairs::latin, kind, op);
}

void UnicodeByPointers(benchmark::State& state, const Language* language, PairKind kind, unsigned short op) {
    OursByPointers<Unicode>(state, language, &Pairs::utf16, kind, op);
}

template <std::vector<VqString> Pairs::*Form>
void ByStrings(benchmark::State& state, const Language* language, PairKind kind, unsigned short op) {
    Run(state, PairsOf(*language, kind), Form,
        [op](const VqString& a, const VqString& b) { return a.Compare(b, -1, op); });
}

// --- Peers

#ifdef VQTM_HAVE_ICU

class Collator {
  public:
    Collator(const char* locale, unsigned short op) {
        UErrorCode error = U_ZERO_ERROR;
        collator_ = ucol_open(locale, &error);
        ucol_setStrength(collator_, op & VqCmp_IgnoreCase ? UCOL_SECONDARY : UCOL_TERTIARY);
    }
    ~Collator() { ucol_close(collator_); }
    Collator(const Collator&) = delete;
    Collator& operator=(const Collator&) = delete;
    const UCollator* Get() const { return collator_; }

  private:
    UCollator* collator_;
};

void IcuUtf8(benchmark::State& state, const Language* language, PairKind kind, unsigned short op) {
    const Collator collator(language->icuLocale, op);
    Run(state, PairsOf(*language, kind), &Pairs::utf8, [&collator](const auto& a, const auto& b) {
        UErrorCode error = U_ZERO_ERROR;
        return ucol_strcollUTF8(collator.Get(), a.text, a.length, b.text, b.length, &error);
    });
}

void IcuUtf16(benchmark::State& state, const Language* language, PairKind kind, unsigned short op) {
    const Collator collator(language->icuLocale, op);
    Run(state, PairsOf(*language, kind), &Pairs::utf16, [&collator](const auto& a, const auto& b) {
        return ucol_strcoll(collator.Get(), a.text, a.length, b.text, b.length);
    });
}

#endif

#ifdef __linux__

void Glibc(benchmark::State& state, const Language* language, PairKind kind, unsigned short) {
    const locale_t locale = newlocale(LC_ALL_MASK, language->systemLocale, nullptr);
    Run(state, PairsOf(*language, kind), &Pairs::utf8,
        [locale](const auto& a, const auto& b) { return strcoll_l(a.text, b.text, locale); });
    freelocale(locale);
}

#endif

// --- Patterns: each word against its neighbour with two letters exchanged for a star

std::string PatternFrom(std::string word, std::mt19937& random) {
    if (word.size() <= 6) return word + "*";
    return word.replace(2 + random() % 3, 2, "*");
}

template <class Match>
void RunPatterns(benchmark::State& state, Match match) {
    const Pairs* const pairs = PairsOf(languages[0], Adjacent);
    std::mt19937 random(5);
    std::vector<std::string> patterns;
    for (std::size_t i = 0; pairs != nullptr && i < PairCount; ++i) {
        patterns.push_back(PatternFrom(pairs->latin[2 * i].text, random));
    }
    std::size_t i = 0;
    Run(state, pairs, &Pairs::latin, [&](const auto&, const auto& text) {
        const int result = match(patterns[i].c_str(), text.text);
        i = i + 1 < PairCount ? i + 1 : 0;
        return result;
    });
}

void PatternOurs(benchmark::State& state, unsigned char codeSet, unsigned short op) {
    RunPatterns(state, [codeSet, op](const char* pattern, const char* text) {
        return VqStrCmp(codeSet, 2, text, codeSet, 2, pattern, op, -1, 1, nullptr);
    });
}

#ifdef __linux__

void PatternFnmatch(benchmark::State& state, int flags) {
    RunPatterns(state, [flags](const char* pattern, const char* text) { return fnmatch(pattern, text, flags); });
}

#endif

// --- The list of cases

using Case = void (*)(benchmark::State&, const Language*, PairKind, unsigned short);

struct Who {
    const char* name;
    Case run;
    bool byLocale;  // full strength only
};

struct Entry {
    const char* name;
    std::vector<Who> who;
};

std::vector<Entry> Entries() {
    std::vector<Who> latinPeers, widePeers;
#ifdef VQTM_HAVE_ICU
    widePeers.push_back({"peer_icu_utf16", IcuUtf16, false});
    latinPeers = widePeers;
    latinPeers.push_back({"peer_icu_utf8", IcuUtf8, false});
#endif
#ifdef __linux__
    latinPeers.push_back({"peer_glibc", Glibc, true});
#endif
    std::vector<Entry> entries = {
        {"1252/VqStrCmp", latinPeers},
        {"1252/VqString", latinPeers},
        {"Unicode/VqStrCmp", widePeers},
        {"Unicode/VqString", widePeers},
    };
    const Case ours[] = {LatinByPointers, ByStrings<&Pairs::latinStrings>, UnicodeByPointers,
                         ByStrings<&Pairs::wideStrings>};
    for (std::size_t i = 0; i < entries.size(); ++i) entries[i].who.push_back({"ours", ours[i], false});
    return entries;
}

bool HasWords(const Language& language) {
    const bool has = std::ifstream(language.wordList).good();
    if (!has) std::fprintf(stderr, "no %s: these cases are left out (wngerman, wfrench)\n", language.wordList);
    return has;
}

bool HasLocale(const Language& language) {
#ifdef __linux__
    const locale_t locale = newlocale(LC_ALL_MASK, language.systemLocale, nullptr);
    if (locale != nullptr) {
        freelocale(locale);
        return true;
    }
#endif
    std::fprintf(stderr, "no locale %s: the C library is left out (LOCPATH names a folder made by localedef)\n",
                 language.systemLocale);
    return false;
}

void RegisterPairs() {
    const std::pair<const char*, unsigned short> strengths[] = {
        {"Full", VqCmp_Exact},
        {"IgnoreCase", VqCmp_Exact | VqCmp_IgnoreCase},
    };
    const std::vector<Entry> entries = Entries();
    for (const Language& language : languages) {
        if (!HasWords(language)) continue;
        const bool hasLocale = HasLocale(language);
        for (const Entry& entry : entries) {
            for (const auto& [kindName, kind] : pairKinds) {
                for (const auto& [strengthName, op] : strengths) {
                    const std::string stem = std::string("Collate/") + entry.name + "/" + language.name + "/" +
                                             kindName + "/" + strengthName + "/";
                    for (const Who& who : entry.who) {
                        if (who.byLocale && (op != VqCmp_Exact || !hasLocale)) continue;
                        benchmark::RegisterBenchmark((stem + who.name).c_str(), who.run, &language, kind, op);
                    }
                }
            }
        }
    }
}

void RegisterPatterns() {
    if (!HasWords(languages[0])) return;
    benchmark::RegisterBenchmark("Pattern/Native/ours", PatternOurs, 0, 0);
    benchmark::RegisterBenchmark("Pattern/1252IgnoreCase/ours", PatternOurs, Latin, VqCmp_IgnoreCase);
#ifdef __linux__
    benchmark::RegisterBenchmark("Pattern/Native/peer_fnmatch", PatternFnmatch, 0);
    benchmark::RegisterBenchmark("Pattern/1252IgnoreCase/peer_fnmatch", PatternFnmatch, FNM_CASEFOLD);
#endif
}

const bool registered = [] {
    RegisterPairs();
    RegisterPatterns();
    return true;
}();

}  // namespace
