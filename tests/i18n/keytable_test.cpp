// Ready keys and letters of several characters beside the orders of single ones.
#include <gtest/gtest.h>

#include "i18nsupport.h"
#include "vqcollation.h"

namespace vqtest {
namespace {

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
                } else if (table.keys[code] >= 0 || !table.contractions) {
                    ASSERT_EQ(table.keys[code], key) << Label(*set, code);
                }
            }
        }
    }
}

}  // namespace
}  // namespace vqtest
