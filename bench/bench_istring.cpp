// Comparison of 8-bit strings: Latin words adjacent in sorted order, equal, and apart in the first letter's case; next
// to ICU where only letters count, and to the C library in a Latin-1 locale (LOCPATH may name a folder made by
// localedef).
#include <benchmark/benchmark.h>

#include <algorithm>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "vqistring.h"

#ifdef __linux__
#include <locale.h>
#include <string.h>
#endif
#ifdef VQTM_HAVE_ICU
#include <unicode/ucol.h>
#endif

namespace {

constexpr std::size_t PairCount = 20000;

// Words one behind the other, each with its zero character, in both encodings that the callers want.
class Words {
  public:
    struct Word {
        const char* latin;
        const char16_t* units;
        int length;
    };
    void Add(const std::string& text) {
        offsets_.push_back(latin_.size());
        latin_ += text;
        latin_ += '\0';
        for (const char c : text) units_ += static_cast<unsigned char>(c);
        units_ += u'\0';
    }
    std::size_t Count() const { return offsets_.size(); }
    Word operator[](std::size_t i) const {
        const std::size_t end = i + 1 < Count() ? offsets_[i + 1] : latin_.size();
        return {&latin_[offsets_[i]], &units_[offsets_[i]], static_cast<int>(end - offsets_[i] - 1)};
    }

  private:
    std::string latin_;
    std::u16string units_;
    std::vector<std::size_t> offsets_;
};
using Word = Words::Word;

// The Latin-1 form of a word in UTF-8; empty where it has none.
std::string Latin1(const std::string& utf8) {
    std::string text;
    for (std::size_t i = 0; i < utf8.size(); ++i) {
        const auto byte = static_cast<unsigned char>(utf8[i]);
        if (byte < 0x80) {
            text += utf8[i];
        } else if ((byte == 0xC2 || byte == 0xC3) && i + 1 < utf8.size()) {
            text += static_cast<char>((byte & 3) << 6 | (static_cast<unsigned char>(utf8[++i]) & 0x3F));
        } else {
            return {};
        }
    }
    return text;
}

std::vector<std::string> ReadWords() {
    std::vector<std::string> words;
    std::ifstream file("/usr/share/dict/ngerman");
    for (std::string line; std::getline(file, line);) {
        if (std::string word = Latin1(line); !word.empty()) words.push_back(std::move(word));
    }
    std::sort(words.begin(), words.end(), [](const std::string& a, const std::string& b) {
        const int order = VqCaseIString::Compare(a.c_str(), b.c_str());
        return order != 0 ? order < 0 : a < b;
    });
    return words;
}

enum class PairKind { Adjacent, Equal, FirstCase };

Words MakePairs(PairKind kind) {
    static const std::vector<std::string> words = ReadWords();
    Words pairs;
    std::mt19937 random(7);
    for (std::size_t i = 0; i < PairCount && words.size() > 1; ++i) {
        const std::size_t at = random() % (words.size() - 1);
        std::string other = words[kind == PairKind::Adjacent ? at + 1 : at];
        if (kind == PairKind::FirstCase) other[0] = static_cast<char>(other[0] ^ 0x20);
        pairs.Add(words[at]);
        pairs.Add(other);
    }
    return pairs;
}

template <class Compare>
void Run(benchmark::State& state, PairKind kind, Compare compare) {
    const Words pairs = MakePairs(kind);
    if (pairs.Count() == 0) return state.SkipWithError("no word list: wngerman is missing");
    for (auto _ : state) {
        int sum = 0;
        for (std::size_t i = 0; i < pairs.Count(); i += 2) sum += compare(pairs[i], pairs[i + 1]);
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * pairs.Count() / 2));
}

void Ours(benchmark::State& state, PairKind kind) {
    Run(state, kind, [](const Word& a, const Word& b) { return VqCaseIString::Compare(a.latin, b.latin); });
}

void OursCased(benchmark::State& state, PairKind kind) {
    Run(state, kind, [](const Word& a, const Word& b) { return VqIString::Compare(a.latin, b.latin); });
}

#ifdef VQTM_HAVE_ICU
void Icu(benchmark::State& state, PairKind kind) {
    UErrorCode error = U_ZERO_ERROR;
    UCollator* const collator = ucol_open("de", &error);
    ucol_setStrength(collator, UCOL_PRIMARY);
    Run(state, kind, [collator](const Word& a, const Word& b) {
        return static_cast<int>(ucol_strcoll(collator, a.units, a.length, b.units, b.length));
    });
    ucol_close(collator);
}
#endif

#ifdef __linux__
void System(benchmark::State& state, PairKind kind) {
    const locale_t locale = newlocale(LC_ALL_MASK, "de_DE.ISO-8859-1", nullptr);
    if (locale == nullptr) return state.SkipWithError("no locale de_DE.ISO-8859-1; LOCPATH may name its folder");
    Run(state, kind, [locale](const Word& a, const Word& b) { return strcoll_l(a.latin, b.latin, locale); });
    freelocale(locale);
}
#endif

const bool registered = [] {
    const std::pair<const char*, PairKind> kinds[] = {
        {"Adjacent", PairKind::Adjacent}, {"Equal", PairKind::Equal}, {"FirstCase", PairKind::FirstCase}};
    for (const auto& [name, kind] : kinds) {
        for (const bool caseless : {true, false}) {
            const std::string stem = std::string(caseless ? "IString/Caseless/" : "IString/Cased/") + name;
            benchmark::RegisterBenchmark((stem + "/ours").c_str(), caseless ? Ours : OursCased, kind);
#ifdef VQTM_HAVE_ICU
            benchmark::RegisterBenchmark((stem + "/peer_icu").c_str(), Icu, kind);
#endif
#ifdef __linux__
            benchmark::RegisterBenchmark((stem + "/peer_strcoll").c_str(), System, kind);
#endif
        }
    }
    return true;
}();

}  // namespace
