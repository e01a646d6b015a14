// Finding and replacing in texts: ignoring case and accents next to ICU's search, by bytes next to the C library's
// memmem, replacing bytes next to a loop of std::string's find and replace.
#include <benchmark/benchmark.h>

#include <memory>
#include <random>
#include <string>
#include <vector>

#include "vqtm.h"

#ifdef __linux__
#include <string.h>
#endif
#ifdef VQTM_HAVE_ICU
#include <unicode/ucol.h>
#include <unicode/usearch.h>
#endif

namespace {

constexpr unsigned short Loose = VqCmp_Exact | VqCmp_IgnoreCase | VqCmp_IgnoreAccents;

// Windows-1252, whose letters here have the same numbers in Unicode.
constexpr const char* words[] = {
    "der",
    "die",
    "und",
    "in",
    "den",
    "von",
    "zu",
    "das",
    "mit",
    "sich",
    "des",
    "auf",
    "f\xFCr",
    "ist",
    "im",
    "dem",
    "nicht",
    "ein",
    "Die",
    "eine",
    "als",
    "auch",
    "es",
    "an",
    "werden",
    "aus",
    "er",
    "hat",
    "da\xDF",
    "sie",
    "nach",
    "wird",
    "bei",
    "einer",
    "Der",
    "um",
    "am",
    "sind",
    "noch",
    "wie",
    "einem",
    "\xFC"
    "ber",
    "Jahr",
    "Menge",
    "Stra\xDF"
    "e",
    "Gr\xF6\xDF"
    "e",
    "m\xF6glich",
    "Ausgabe",
    "Verwaltung",
    "sp\xE4ter",
};
constexpr const char* rareWords[] = {
    "\xDC"
    "bermut",
    "Knopfloch",
    "Sch\xE4"
    "del",
    "Quittung",
    "Wolkenzug",
    "Libelle",
    "Ern\xE4hrung",
    "Vorgarten"};
// The same as somebody would type them.
constexpr const char* typedWords[] = {"ubermut",   "knopfloch", "SCHADEL",   "quittung",
                                      "wolkenzug", "LIBELLE",   "ernahrung", "vorgarten"};
constexpr std::size_t patternCount = std::size(typedWords);

// Words in random order, with each rare word once in the last quarter.
std::string MakeText(std::size_t bytes) {
    std::mt19937 random(4096);
    std::string text;
    while (text.size() < bytes * 3 / 4) text += std::string(words[random() % std::size(words)]) + ' ';
    for (const char* rare : rareWords) {
        const std::size_t until = text.size() + bytes / 40;
        while (text.size() < until) text += std::string(words[random() % std::size(words)]) + ' ';
        text += std::string(rare) + ' ';
    }
    text.resize(bytes, ' ');
    return text;
}

VqString Make(const std::string& text, unsigned char codeSet) {
    VqString s(codeSet == 0 ? 0 : 1, static_cast<unsigned char>(2));
    s.AssignChars(text.c_str(), s.GetCodeSet(), VqString::All);
    if (codeSet > 1) s.MapToCodeSet(codeSet);
    return s;
}

// --- Ignoring case and accents

void FindLoosely(benchmark::State& state, unsigned char codeSet) {
    const VqString text = Make(MakeText(4096), codeSet);
    std::vector<VqString> patterns;
    for (const char* word : typedWords) patterns.push_back(Make(word, codeSet));
    std::size_t i = 0;
    for (auto _ : state) {
        const short place = text.Find(patterns[i], 0, Loose);
        if (place < 3000) state.SkipWithError("not found");
        i = (i + 1) % patternCount;
    }
}

void ReplaceLoosely(benchmark::State& state, unsigned char codeSet) {
    VqString::SetDefaultCmpOp(Loose);
    const VqString text = Make(MakeText(4096), codeSet), from = Make("DIE", codeSet), to = Make("jene", codeSet);
    for (auto _ : state) {
        VqString changed(text);
        changed.ReplaceAll(from, to);
        if (changed.Len() <= text.Len()) state.SkipWithError("nothing replaced");
    }
    VqString::SetDefaultCmpOp(VqCmp_Exact);
}

#ifdef VQTM_HAVE_ICU
std::u16string Utf16(const std::string& text) {
    std::u16string units;
    for (const char c : text) units += static_cast<char16_t>(static_cast<unsigned char>(c));
    return units;
}

// A search at primary strength, opened once.
class IcuSearch {
  public:
    IcuSearch(const std::u16string& pattern, const std::u16string& text) {
        UErrorCode status = U_ZERO_ERROR;
        collator_ = ucol_open("de", &status);
        ucol_setStrength(collator_, UCOL_PRIMARY);
        search_ = usearch_openFromCollator(pattern.data(), static_cast<int>(pattern.size()), text.data(),
                                           static_cast<int>(text.size()), collator_, nullptr, &status);
    }
    ~IcuSearch() {
        usearch_close(search_);
        ucol_close(collator_);
    }
    IcuSearch(const IcuSearch&) = delete;
    IcuSearch& operator=(const IcuSearch&) = delete;

    int First() { return usearch_first(search_, &status_); }
    int Next() { return usearch_next(search_, &status_); }
    std::size_t MatchedLength() const { return static_cast<std::size_t>(usearch_getMatchedLength(search_)); }

  private:
    UErrorCode status_ = U_ZERO_ERROR;
    UCollator* collator_;
    UStringSearch* search_;
};

void FindByIcu(benchmark::State& state, unsigned char) {
    const std::u16string text = Utf16(MakeText(4096));
    std::vector<std::u16string> patterns;
    for (const char* word : typedWords) patterns.push_back(Utf16(word));
    std::vector<std::unique_ptr<IcuSearch>> searches;
    for (const std::u16string& pattern : patterns) searches.push_back(std::make_unique<IcuSearch>(pattern, text));
    std::size_t i = 0;
    for (auto _ : state) {
        if (searches[i]->First() < 3000) state.SkipWithError("not found");
        i = (i + 1) % patternCount;
    }
}

void ReplaceByIcu(benchmark::State& state, unsigned char) {
    const std::u16string text = Utf16(MakeText(4096)), from = u"DIE", to = u"jene";
    IcuSearch search(from, text);
    for (auto _ : state) {
        std::u16string changed;
        std::size_t done = 0;
        for (int place = search.First(); place != USEARCH_DONE; place = search.Next()) {
            changed.append(text, done, static_cast<std::size_t>(place) - done).append(to);
            done = static_cast<std::size_t>(place) + search.MatchedLength();
        }
        changed.append(text, done);
        if (changed.size() <= text.size()) state.SkipWithError("nothing replaced");
    }
}
#endif

// --- Bytes

struct ByteCase {
    const char* name;
    std::string text;
    std::string pattern;
};

// The pattern at or near the end of the text in each.
const std::vector<ByteCase>& ByteCases() {
    static const std::vector<ByteCase> cases = [] {
        std::vector<ByteCase> made;
        const std::string field = MakeText(64).substr(0, 58) + "Ablage";
        made.push_back({"Field/64", field, "Ablage"});
        for (const unsigned bytes : {1024U, 4096U, 60000U}) {
            made.push_back({bytes == 1024   ? "Text/1024"
                            : bytes == 4096 ? "Text/4096"
                                            : "Text/60000",
                            MakeText(bytes) + "unter den Linden", "unter den Linden"});
        }
        made.push_back({"OneByte/4096", MakeText(4096) + "#", "#"});
        made.push_back({"RunHard/4096", std::string(4096, 'a') + "aaaaabaaaaaaaaaa", "aaaaabaaaaaaaaaa"});
        std::string periodic;
        while (periodic.size() < 4096) periodic += "ab";
        made.push_back({"PeriodHard/4096", periodic + "abababababababba", "abababababababba"});
        made.push_back({"EndsHard/4096", std::string(4096, 'a') + "abaaaaaabaaaaaaaaac", "abaaaaaabaaaaaaaaac"});
        std::string gaps;
        while (gaps.size() < 4096) gaps += "aaaaaaaab";
        made.push_back({"GapsHard/4096", gaps + "aaaaaaabaaaaaaaba", "aaaaaaabaaaaaaaba"});
        return made;
    }();
    return cases;
}

void FindBytes(benchmark::State& state, const ByteCase& c) {
    const VqString text = Make(c.text, 0), pattern = Make(c.pattern, 0);
    const auto expected = static_cast<unsigned short>(c.text.find(c.pattern));
    for (auto _ : state) {
        const auto place = static_cast<unsigned short>(text.Find(pattern, 0, VqCmp_Exact));
        if (place != expected) state.SkipWithError("not found");
    }
}

#ifdef __linux__
void FindByMemmem(benchmark::State& state, const ByteCase& c) {
    const auto expected = static_cast<std::ptrdiff_t>(c.text.find(c.pattern));
    for (auto _ : state) {
        const void* const found = memmem(c.text.data(), c.text.size(), c.pattern.data(), c.pattern.size());
        if (static_cast<const char*>(found) - c.text.data() != expected) state.SkipWithError("not found");
    }
}
#endif

void FindByStdString(benchmark::State& state, const ByteCase& c) {
    const std::size_t expected = c.text.find(c.pattern);
    for (auto _ : state) {
        if (c.text.find(c.pattern) != expected) state.SkipWithError("not found");
    }
}

void ReplaceBytes(benchmark::State& state, std::size_t bytes) {
    const VqString text = Make(MakeText(bytes), 0), from = Make("die", 0), to = Make("jene", 0);
    for (auto _ : state) {
        VqString changed(text);
        changed.ReplaceAll(from, to);
        if (changed.Len() <= text.Len()) state.SkipWithError("nothing replaced");
    }
}

void ReplaceByStdString(benchmark::State& state, std::size_t bytes) {
    const std::string text = MakeText(bytes), from = "die", to = "jene";
    for (auto _ : state) {
        std::string changed;
        std::size_t done = 0;
        for (std::size_t place; (place = text.find(from, done)) != std::string::npos; done = place + from.size()) {
            changed.append(text, done, place - done).append(to);
        }
        changed.append(text, done);
        if (changed.size() <= text.size()) state.SkipWithError("nothing replaced");
    }
}

template <class... Arguments>
void Register(const std::string& name, Arguments... arguments) {
    benchmark::RegisterBenchmark(("Search/" + name).c_str(), arguments...);
}

const bool registered = [] {
    for (const unsigned char codeSet : std::initializer_list<unsigned char>{1, 253}) {
        const std::string name = codeSet == 1 ? "/Windows1252/4096/" : "/Unicode/4096/";
        Register("FindLoosely" + name + "ours", FindLoosely, codeSet);
        Register("ReplaceLoosely" + name + "ours", ReplaceLoosely, codeSet);
#ifdef VQTM_HAVE_ICU
        Register("FindLoosely" + name + "peer_ICU", FindByIcu, codeSet);
        Register("ReplaceLoosely" + name + "peer_ICU", ReplaceByIcu, codeSet);
#endif
    }
    for (const ByteCase& c : ByteCases()) {
        const std::string name = std::string("Bytes/") + c.name;
        Register(name + "/ours", FindBytes, c);
        Register(name + "/peer_std_string", FindByStdString, c);
#ifdef __linux__
        Register(name + "/peer_memmem", FindByMemmem, c);
#endif
    }
    for (const std::size_t bytes : {std::size_t{4096}, std::size_t{60000}}) {
        const std::string name = "ReplaceBytes/" + std::to_string(bytes);
        Register(name + "/ours", ReplaceBytes, bytes);
        Register(name + "/peer_std_string", ReplaceByStdString, bytes);
    }
    return true;
}();

}  // namespace
