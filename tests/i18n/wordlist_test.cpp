// Whole dictionaries, sorted under their language, beside the order that ICU's collator of the locale gives them.
#include <gtest/gtest.h>

#include "i18nsupport.h"
#include "strcompare.h"

#ifdef VQTM_HAVE_ICU
#include <unicode/ucol.h>

#include <algorithm>
#include <cstdio>
#include <fstream>

#include "multibyte.h"
#include "testsupport.h"
#endif

namespace vqtest {
namespace {

struct WordList {
    const char* file;  // in /usr/share/dict
    const char* language;
    const char* locale;
    unsigned char byteSet;
    const char* package;
};

class Dictionary : public testing::TestWithParam<WordList> {};

#ifndef VQTM_HAVE_ICU

TEST_P(Dictionary, SortsLikeTheLocale) {
    GTEST_SKIP() << "no ICU here: native builds compare with it where libicu-dev is installed";
}

#else

// Lists are in UTF-8 or in ISO 8859-1.
std::u16string Decode(const std::string& line) {
    VqString text;
    if (VqMBS2VqString(line.c_str(), text, static_cast<long>(line.size())) >= 0) return Units(text);
    return std::u16string(reinterpret_cast<const unsigned char*>(line.data()),
                          reinterpret_cast<const unsigned char*>(line.data()) + line.size());
}

bool AllLetters(const std::u16string& text, const VqCodeSet& set) {
    return !text.empty() && std::all_of(text.begin(), text.end(), [&](char16_t unit) {
        return (Unicode().GetProperties(unit) & VqCharProperty_Letter) && set.HasUnicode(unit);
    });
}

struct Word {
    std::u16string text;
    std::string bytes;  // in the 1-byte set
};

// Every word of letters, or as many of a longer list, evenly spread.
std::vector<Word> ReadWords(const WordList& list) {
    constexpr std::size_t most = 400000;
    const VqCodeSet& set = *VqLanguageContext::QueryCodeSet(list.byteSet);
    std::vector<Word> all;
    std::ifstream file(std::string("/usr/share/dict/") + list.file);
    for (std::string line; std::getline(file, line);) {
        Word word{Decode(line), {}};
        if (!AllLetters(word.text, set)) continue;
        for (const char16_t unit : word.text) word.bytes += static_cast<char>(set.FromUnicode(unit));
        all.push_back(std::move(word));
    }
    const std::size_t step = all.size() / most + 1;
    std::vector<Word> words;
    for (std::size_t i = 0; i < all.size(); i += step) words.push_back(std::move(all[i]));
    return words;
}

class Locale {
  public:
    explicit Locale(const char* name) : collator_(ucol_open(name, &status_)) {
        ucol_setAttribute(collator_, UCOL_ALTERNATE_HANDLING, UCOL_NON_IGNORABLE, &status_);
    }
    ~Locale() { ucol_close(collator_); }
    Locale(const Locale&) = delete;
    Locale& operator=(const Locale&) = delete;

    bool IsOpen() const { return U_SUCCESS(status_); }
    int Compare(const Word& a, const Word& b, UCollationStrength strength) {
        ucol_setStrength(collator_, strength);
        return ucol_strcoll(collator_, a.text.data(), static_cast<std::int32_t>(a.text.size()), b.text.data(),
                            static_cast<std::int32_t>(b.text.size()));
    }

  private:
    UErrorCode status_ = U_ZERO_ERROR;
    UCollator* collator_;
};

using Compare = int (*)(const WordList& list, unsigned char language, const Word& a, const Word& b, unsigned short op);

int CompareBytes(const WordList& list, unsigned char language, const Word& a, const Word& b, unsigned short op) {
    return VqStrCmp(list.byteSet, language, a.bytes.c_str(), list.byteSet, language, b.bytes.c_str(), op, -1, 1,
                    nullptr);
}

int CompareUnits(const WordList&, unsigned char language, const Word& a, const Word& b, unsigned short op) {
    const auto text = [](const Word& word) { return reinterpret_cast<const char*>(word.text.c_str()); };
    return VqStrCmp(253, language, text(a), 253, language, text(b), op, -1, 1, nullptr);
}

// Sorts the words by `compare` and calls `use` for each with the next.
template <class Use>
void ForEachNeighbour(std::vector<Word>& words, const WordList& list, Compare compare, unsigned short op, Use use) {
    const auto language = static_cast<unsigned char>(VqLanguageContext::FindLanguage(list.language));
    std::sort(words.begin(), words.end(),
              [&](const Word& a, const Word& b) { return compare(list, language, a, b, op) < 0; });
    for (std::size_t i = 1; i < words.size(); ++i) {
        use(words[i - 1], words[i], compare(list, language, words[i - 1], words[i], op));
    }
}

TEST_P(Dictionary, SortsLikeTheLocale) {
    const WordList& list = GetParam();
    std::vector<Word> words = ReadWords(list);
    if (words.empty()) GTEST_SKIP() << "the word list of " << list.package << " is not installed";
    Locale locale(list.locale);
    ASSERT_TRUE(locale.IsOpen());
    for (const Compare compare : {CompareBytes, CompareUnits}) {
        constexpr unsigned short letters = VqCmp_Exact | VqCmp_IgnoreCase | VqCmp_IgnoreAccents;
        unsigned turned = 0, tied = 0;  // at the primary level
        ForEachNeighbour(words, list, compare, letters, [&](const Word& a, const Word& b, int ours) {
            const int theirs = locale.Compare(a, b, UCOL_PRIMARY);
            turned += theirs > 0;
            tied += (theirs == 0) != (ours == 0);
        });
        EXPECT_EQ(turned, 0U) << list.language;
        EXPECT_EQ(tied, 0U) << list.language;

        // Below, the order is another on purpose, but only among words of the same letters.
        unsigned primary = 0, accent = 0, letterCase = 0;
        ForEachNeighbour(words, list, compare, VqCmp_Exact, [&](const Word& a, const Word& b, int) {
            if (locale.Compare(a, b, UCOL_TERTIARY) <= 0) return;
            if (locale.Compare(a, b, UCOL_PRIMARY) != 0)
                ++primary;
            else if (locale.Compare(a, b, UCOL_SECONDARY) != 0)
                ++accent;
            else
                ++letterCase;
        });
        EXPECT_EQ(primary, 0U) << list.language;
        std::printf("%s, %s: %zu words; by accents %u pairs the other way round, by case %u\n", list.language,
                    compare == CompareBytes ? "bytes" : "Unicode", words.size(), accent, letterCase);
    }
}

#endif

INSTANTIATE_TEST_SUITE_P(WordLists, Dictionary,
                         testing::Values(WordList{"american-english", "english", "en", 1, "wamerican"},
                                         WordList{"ngerman", "german", "de", 1, "wngerman"},
                                         WordList{"french", "french", "fr", 1, "wfrench"},
                                         WordList{"spanish", "spanish", "es", 1, "wspanish"},
                                         WordList{"swedish", "swedish", "sv", 1, "wswedish"},
                                         WordList{"danish", "danish", "da", 1, "wdanish"},
                                         WordList{"polish", "polish", "pl", 12, "wpolish"}),
                         [](const auto& list) { return std::string(list.param.language); });

}  // namespace
}  // namespace vqtest
