// Ready keys, and letters of several characters, beside the orders of single characters.
#include <gtest/gtest.h>

#include <set>

#include "i18nsupport.h"
#include "vqcollation.h"

namespace vqtest {
namespace {

TEST(CollationKey, LeadsBackToTheOrder) {
    for (const char collationClass : {char{1}, char{19}, char{20}}) {
        for (unsigned order = 0; order < 65536; ++order) {
            const auto o = static_cast<unsigned short>(order);
            const std::int32_t key = VqCollationKey(o, static_cast<unsigned char>(collationClass));
            ASSERT_EQ(VqCollationOrder(key), order);
            ASSERT_GE(key, 0);
        }
    }
}

TEST(KeyTable, AgreesWithTheOrders) {
    for (const VqCodeSet* set : AllSets()) {
        for (const unsigned char language : ClassLanguages()) {
            const VqKeyTable table = set->GetKeyTable(language);
            ASSERT_EQ(table.count, set->GetCharSize() == 1 ? 256U : set == &Unicode() ? 0x250U : 0U);
            for (unsigned code = 0; code < table.count; ++code) {
                const Orders orders = OrdersOf(*set, code, language);
                const std::int32_t key = VqCollationKey(orders.order[0], set->GetCollationClass(language));
                if (orders.count == 2) {
                    ASSERT_LT(table.keys[code], 0) << Label(*set, code);
                    ASSERT_LT(table.keys[code] & 0x7FFFFFFF, 0x01000000) << Label(*set, code);
                } else {
                    ASSERT_EQ(table.keys[code] & 0x7FFFFFFF, key) << Label(*set, code);
                    ASSERT_TRUE(table.keys[code] >= 0 || table.contractions) << Label(*set, code);
                }
            }
        }
    }
}

TEST(Contraction, IsNoneWhereTheTextEndsOrGoesOnOtherwise) {
    for (const auto& [language, text] : {std::pair{"czech", "c"},
                                         {"czech", "hc"},
                                         {"neutral", "ch"},
                                         {"danish", "ab"},
                                         {"hungarian", "cz"},
                                         {"swedish", "aa"},
                                         {"japanese", "ch"},
                                         {"czech", "\u010Dh"}}) {
        const auto number = static_cast<unsigned char>(VqLanguageContext::FindLanguage(language));
        EXPECT_EQ(ContractionOf(Unicode(), text, number).count, 0) << language << ' ' << text;
    }
}

// No spelling has the orders of another, or of the same letters one by one.
TEST(Contraction, IsDistinctInEverySpelling) {
    unsigned spellings = 0;
    for (const unsigned char language : ClassLanguages()) {
        std::set<unsigned> single;
        for (unsigned unit = 0; unit < 65536; ++unit) {
            const Orders orders = OrdersOf(Unicode(), unit, language);
            if (orders.count == 1) single.insert(orders.order[0]);
        }
        std::set<Orders> doubled;
        ForEachContraction(Unicode(), language, [&](const unsigned short*, const Orders& orders) {
            ++spellings;
            ASSERT_TRUE(orders.count == 2 ? doubled.insert(orders).second : single.insert(orders.order[0]).second);
        });
        for (const Orders& orders : doubled) ASSERT_FALSE(single.contains(orders.order[1]));
    }
    EXPECT_EQ(spellings, 2 * 4 + 2 * 4 + (8 * 4 + 8) + 8 * 8);  // ch, aa, digraphs with dzs, doubled ones
}

TEST(Contraction, IsTheSameInAllSetsAndMarkedInTheirTables) {
    for (const unsigned char language : ClassLanguages()) {
        for (const VqCodeSet* set : AllSets()) {
            const VqKeyTable table = set->GetKeyTable(language);
            unsigned found = 0;
            ForEachContraction(Unicode(), language, [&](const unsigned short* codes, const Orders& orders) {
                ++found;
                unsigned short here[2];
                const int count = codes[2] != 0 ? 3 : 2;
                ASSERT_EQ(set->GetContraction(codes, language, here), count) << set->GetName();
                ASSERT_TRUE(here[0] == orders.order[0] && here[1] == orders.order[1]) << set->GetName();
                for (int i = 0; i < count - 1 && table.count != 0; ++i) ASSERT_LT(table.keys[codes[i]], 0);
            });
            ASSERT_EQ(table.contractions, found > 0) << set->GetName();
        }
    }
}

}  // namespace
}  // namespace vqtest
