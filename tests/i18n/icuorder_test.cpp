// The orders of letters and digits beside those of ICU, where it is installed.
#include <gtest/gtest.h>

#include "i18nsupport.h"
#include "strcompare.h"

#ifdef VQTM_HAVE_ICU
#include <unicode/ucol.h>
#endif

namespace vqtest {
namespace {

// The digits and letters of one alphabet, each with each, at the primary level.
TEST(IcuOrder, SortsEveryAlphabetTheSame) {
#ifndef VQTM_HAVE_ICU
    GTEST_SKIP() << "no ICU here: native builds compare with it where libicu-dev is installed";
#else
    struct Alphabet {
        const char* language;
        const char* locale;
        char16_t first, last;
        std::u16string_view different;
    };
    // Eth is a letter of its own here and a marked d there; thorn stands behind t here, behind z there. N after an
    // apostrophe is an n here, t with stroke a marked t. A Turkish capital with marks goes with its small letter.
    constexpr std::u16string_view latin = u"\u00D0\u00F0\u00DE\u00FE\u0149\u0166\u0167";
    constexpr std::u16string_view turkish =
        u"\u00D0\u00F0\u00DE\u00FE\u0149\u0166\u0167\u00CC\u00CD\u00CE\u00CF\u0128\u012A\u012C\u012E\u0132";
    static const Alphabet alphabets[] = {
        {"neutral", "", u'0', u'\u017F', latin},     {"german", "de", u'A', u'\u017F', latin},
        {"spanish", "es", u'A', u'\u017F', latin},   {"swedish", "sv", u'A', u'\u017F', latin},
        {"finnish", "fi", u'A', u'\u017F', latin},   {"danish", "da", u'A', u'\u017F', latin},
        {"norwegian", "nb", u'A', u'\u017F', latin}, {"icelandic", "is", u'A', u'\u017F', latin},
        {"polish", "pl", u'A', u'\u017F', latin},    {"czech", "cs", u'A', u'\u017F', latin},
        {"slovak", "sk", u'A', u'\u017F', latin},    {"hungarian", "hu", u'A', u'\u017F', latin},
        {"turkish", "tr", u'A', u'\u017F', turkish}, {"russian", "ru", u'A', u'z', {}},
        {"russian", "ru", u'\u0400', u'\u045F', {}}, {"greek", "el", u'\u0370', u'\u03CF', {}},
    };
    // Letters of several characters, and what they stand beside.
    static const std::u16string_view texts[] = {u"aa",  u"Aa", u"ch",  u"Ch", u"cs", u"ccs", u"dz",
                                                u"dzs", u"gy", u"ggy", u"ly", u"ny", u"nny", u"sz",
                                                u"ssz", u"ty", u"zs",  u"ss", u"ae", u"oe",  u"th"};
    // No fractions and no raised digits, which sort behind their digit here.
    const auto isLetterOrDigit = [](unsigned order) {
        return IsLetterOrder(order) || (order >= 16128 && order < 16384 && (order - 16128) % 10 == 0);
    };
    for (const Alphabet& alphabet : alphabets) {
        const auto language = static_cast<unsigned char>(VqLanguageContext::FindLanguage(alphabet.language));
        std::vector<std::u16string> letters(std::begin(texts), std::end(texts));
        for (char16_t unit = alphabet.first; unit <= alphabet.last; ++unit) {
            const bool common = alphabet.different.find(unit) == std::u16string_view::npos;
            if (common && isLetterOrDigit(OrdersOf(Unicode(), unit, language).order[0])) letters.emplace_back(1, unit);
        }
        UErrorCode status = U_ZERO_ERROR;
        UCollator* locale = ucol_open(alphabet.locale, &status);
        ASSERT_TRUE(U_SUCCESS(status)) << u_errorName(status);
        ucol_setStrength(locale, UCOL_PRIMARY);
        const auto text = [](const std::u16string& letter) { return reinterpret_cast<const char*>(letter.c_str()); };
        const auto sign = [](int order) { return order < 0 ? -1 : order > 0; };
        for (const std::u16string& a : letters) {
            for (const std::u16string& b : letters) {
                const int ours = VqStrCmp(253, language, text(a), 253, language, text(b),
                                          VqCmp_Exact | VqCmp_IgnoreCase | VqCmp_IgnoreAccents, -1, 1, nullptr);
                const int theirs = ucol_strcoll(locale, a.data(), static_cast<std::int32_t>(a.size()), b.data(),
                                                static_cast<std::int32_t>(b.size()));
                EXPECT_EQ(sign(ours), sign(theirs)) << alphabet.language << std::hex << ' ' << +a[0] << ' ' << +b[0];
            }
        }
        ucol_close(locale);
        EXPECT_GT(letters.size(), 60u) << alphabet.language;
    }
#endif
}

}  // namespace
}  // namespace vqtest
