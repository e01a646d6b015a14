#include "seal.h"

#include <gtest/gtest.h>

#include "testsupport.h"
#include "vqbase.h"
#include "vqtypes.h"

using namespace vqtest;

namespace {

VqSeal Seal(int high, int middle, int low) {
    VqSeal seal;
    seal.high = static_cast<std::uint16_t>(high);
    seal.middle = static_cast<std::uint16_t>(middle);
    seal.low = static_cast<std::uint16_t>(low);
    return seal;
}

std::string Words(const VqSeal& seal) {
    return std::to_string(seal.high) + " " + std::to_string(seal.middle) + " " + std::to_string(seal.low);
}

TEST(VqSeal, TakesTheLow48BitsOfNumbersAndObjects) {
    EXPECT_EQ(Words(VqSeal()), "0 0 0");
    VqSeal seal;
    seal.ConvertFrom(VqInt64(0x00030004, 0x00010002));
    EXPECT_EQ(Words(seal), "2 3 4");
    VqInt64 number(7, -1);
    seal.ConvertTo(number);
    EXPECT_EQ(number, VqInt64(0x00030004, 2));
    seal.ConvertFrom(VqInt64(0xFFFFFFFF, -1));
    EXPECT_EQ(Words(seal), "65535 65535 65535");
    seal.ConvertTo(number);
    EXPECT_EQ(number, VqInt64(0xFFFFFFFF, 0xFFFF)) << "words are not signed";

    VqObjId object;
    object.block = 0x99999999;
    object.low = 0xFFFE8001;
    object.high = 0x8002;
    seal.ConvertFrom(object);
    EXPECT_EQ(Words(seal), "32770 65534 32769");
}

TEST(VqSeal, ComparesByWordsFromTheHighest) {
    const VqSeal ascending[] = {Seal(0, 0, 0),         Seal(0, 0, 1), Seal(0, 0, 65535), Seal(0, 1, 0),
                                Seal(0, 65535, 65535), Seal(1, 0, 0), Seal(32768, 0, 0), Seal(65535, 65535, 65535)};
    for (const VqSeal& a : ascending) {
        for (const VqSeal& b : ascending) {
            EXPECT_EQ(Sign(a != b), Sign(&a - &b)) << Words(a) << " and " << Words(b);
            EXPECT_EQ(a == b, &a == &b) << Words(a) << " and " << Words(b);
        }
    }
    EXPECT_EQ(Seal(9, 0, 0) != Seal(2, 5, 5), 7);
    EXPECT_EQ(Seal(2, 0, 0) != Seal(2, 5, 5), -5);
}

TEST(VqSeal, PrintsAndScans) {
    VqSeal seal;
    seal.ScanFromVqString(Wide(u"8590131204"), "noop");
    EXPECT_EQ(Words(seal), "2 3 4");
    VqSeal seals[2];
    VqString array("5,8590131204");
    VqTypeMgr(5).ScanFromVqString(VqTypeId_VqSeal, seals, array, ",,", 2);  // whatever commas the format has
    EXPECT_EQ(Words(seals[0]) + ", " + Words(seals[1]), "0 0 5, 2 3 4");
    VqString text(">");
    seal.PrintToVqString(text, "%x");
    Seal(65535, 65535, 65535).PrintToVqString(text << ' ');
    EXPECT_EQ(Bytes(text), ">8590131204 281474976710655");
}

}  // namespace
