#include "order.h"

#include <gtest/gtest.h>

#include <set>

#include "stringiterator.h"
#include "testsupport.h"
#include "vqlanguagecontext.h"

using namespace vqtest;

namespace {

std::string Name(unsigned short order, unsigned char collationClass = 1) {
    VqString text("before");
    EXPECT_EQ(VqConvertOrderToString(order, collationClass, text), 0);
    return Bytes(text);
}

constexpr unsigned short Letter(unsigned index, unsigned letterCase, unsigned accent, unsigned extension = 0) {
    return static_cast<unsigned short>(0x4000 | letterCase << 12 | accent << 7 | index << 2 | extension);
}

TEST(Orders, AreNamedInEnglish) {
    static const struct {
        unsigned short order;
        unsigned char collationClass;
        const char* name;
    } cases[] = {
        {0, 1, "space"},
        {13, 1, "undefined ordering indicator"},
        {79, 1, "space"},
        {80, 1, "symbol "},
        {80 + 32, 1, "symbol _"},
        {80 + 33, 1, "symbol "},
        {80 + 55, 1, "symbol \""},
        {80 + 139, 1, "symbol inverted question mark"},
        {80 + 288, 1, "symbol "},  // 32 more than 8 bits hold
        {16127, 1, "symbol "},
        {16128, 1, "digit 0"},
        {16199, 1, "digit 7 with expand"},
        {16383, 1, "digit 25 with expand"},
        {Letter(3, 0, 0), 1, "upper letter A"},
        {Letter(3, 1, 2), 1, "lower letter a with accent acute"},
        {Letter(28, 3, 14, 3), 1, "lower letter z with accent double acute with extension"},
        {Letter(4, 0, 15), 1, "upper letter B with "},
        {40000, 1, "HAN character 0x9c40\n"},
        {Letter(3, 0, 0), 20, "HAN character 0x400c\n"},
        {16, 20 | 128, "HAN character 0x0010\n"},
        {Letter(3, 0, 0), 1 | 128, "upper letter A"},
    };
    for (const auto& c : cases) EXPECT_EQ(Name(c.order, c.collationClass), c.name) << c.order;
}

TEST(Orders, SymbolsHaveFiftySevenNames) {
    std::set<std::string> names;
    for (unsigned short order = 80; order < 16128; ++order) names.insert(Name(order).substr(7));
    names.erase("");
    EXPECT_EQ(names.size(), 57u);
}

TEST(Orders, AreTakenApartByKind) {
    for (unsigned order = 0; order < 65536; ++order) {
        unsigned short symbol = 7, digit = 7, expand = 7;
        const bool isSymbol = order >= 80 && order < 16128, isDigit = order >= 16128 && order < 16384;
        const auto o = static_cast<unsigned short>(order);
        ASSERT_EQ(VqExtractSymbolFromOrder(o, symbol), isSymbol ? VqStatus_Ok : VqStatus_Refused);
        ASSERT_EQ(VqExtractDigitFromOrder(o, digit, expand), isDigit ? VqStatus_Ok : VqStatus_Refused);
        ASSERT_EQ(symbol, isSymbol ? order - 80 : 7);
        ASSERT_EQ(digit, isDigit ? (order - 16128) / 10 : 7);
        ASSERT_EQ(expand, isDigit ? order & 1 : 7);
    }
}

struct Found {
    short status;
    unsigned char c;
    int count;
    const char* name;
};

Found Find(unsigned short order, unsigned char collationClass) {
    Found found = {77, 77, 77, ""};
    found.status = VqConvertOrderToChar(order, collationClass, found.c, &found.count, &found.name);
    return found;
}

// All orders of one character.
std::vector<unsigned short> OrdersOf(unsigned char code, unsigned char language) {
    const char text[2] = {static_cast<char>(code), 0};
    VqStringIterator at(1, language, text);
    std::vector<unsigned short> orders;
    while (!at.IsEnd()) orders.push_back(at.GetNextOrder(1));
    return orders;
}

// A character comes back from its order; one that sorts as two comes back as two letters that differ at no
// first level.
TEST(Orders, LeadBackToTheirCharactersInEveryLanguage) {
    const VqCodeSet& set = *VqLanguageContext::QueryCodeSet(1);
    for (unsigned char language = 0; language < 24; ++language) {
        const unsigned char collationClass = set.GetCollationClass(language);
        for (unsigned code = 0; code < 256; ++code) {
            SCOPED_TRACE(testing::Message() << "character " << code << " in language " << int{language});
            const std::vector<unsigned short> orders = OrdersOf(static_cast<unsigned char>(code), language);
            for (const unsigned short order : orders) {
                const Found found = Find(order, collationClass);
                ASSERT_EQ(found.status, VqStatus_Ok) << order;
                EXPECT_GE(found.count, 1);
                const std::vector<unsigned short> back = OrdersOf(found.c, language);
                if (orders.size() == 1) {
                    EXPECT_EQ(found.c, code);
                } else if (collationClass != 20) {
                    ASSERT_EQ(back.size(), 1u);
                    EXPECT_EQ(back[0] & 0x407F, order & 0x407F);
                } else {
                    EXPECT_TRUE(back[0] == order || back.back() == order);
                }
            }
        }
    }
}

TEST(Orders, OfNoCharacterLeadNowhere) {
    EXPECT_EQ(Find(0, 1).status, VqStatus_Ok);
    EXPECT_EQ(Find(0, 1).c, 0);
    for (const unsigned short order : std::initializer_list<unsigned short>{1, 16127, 16383, 40000}) {
        const Found found = Find(order, 1);
        EXPECT_EQ(found.status, VqStatus_Refused) << order;
        EXPECT_EQ(found.c, 0);
        EXPECT_EQ(found.count, 0);
    }
    EXPECT_EQ(Find(Letter(3, 0, 0), 126).status, VqStatus_Refused);
    EXPECT_EQ(Find(Letter(3, 1, 2), 1).c, 0xE1);
    EXPECT_STREQ(Find(Letter(3, 1, 2), 1).name, "accent acute");
    EXPECT_STREQ(Find(80 + 85, 1).name, "+");
    EXPECT_EQ(Find(Letter(17, 0, 0), 1).count, 2);  // O and Œ
    unsigned char c = 7;
    EXPECT_EQ(VqConvertOrderToChar(80 + 40, 1, c, nullptr, nullptr), VqStatus_Ok);
    EXPECT_EQ(c, '!');
}

}  // namespace
