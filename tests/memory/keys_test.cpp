// Keys and memory: comparing and hashing them takes none, and where texts and recorded keys need some, its lack shows.
#include <gtest/gtest.h>

#include <cstring>

#include "../rowtest.h"
#include "allocations.h"
#include "vqtypevl.h"

namespace {

using namespace vqtest;

constexpr unsigned short operations[] = {0x00, 0x10, 0x70, 0x80, 0x100};
constexpr unsigned char forms[] = {VqFormat_Memory, VqFormat_LittleEndian, VqFormat_BigEndian};

class KeyMemory : public RowTest {};

TEST_P(KeyMemory, IsNotNeededToCompareOrHash) {
    for (const unsigned char format : forms) {
        const bool inMemory = format == VqFormat_Memory;
        for (unsigned long i = 0; i < count; ++i) {
            const ByteVector a = inMemory ? ByteVector() : samples->Store(format, i, 1);
            const ByteVector b = inMemory ? ByteVector() : samples->Store(format, count - 1 - i, 1);
            const void* const first = inMemory ? samples->At(i) : a.data();
            const void* const second = inMemory ? samples->At(count - 1 - i) : b.data();
            const auto length1 = static_cast<unsigned long>(a.size()), length2 = static_cast<unsigned long>(b.size());
            const long before = Allocations::made;
            int status;
            for (const unsigned short flags : operations) {
                manager.Cmp(id, length1, first, length2, second, flags, 1, format, status);
            }
            manager.Hash(id, length1, first, 1, format, status);
            EXPECT_EQ(Allocations::made, before) << samples->Print(i);
        }
    }
}

TEST_P(KeyMemory, ThatLacksLeavesTheEndOfTheRangeOpen) {
    if (id == VqTypeId_VqClassId) return;  // nothing is recorded of it
    const ByteVector key = samples->Store(VqFormat_LittleEndian, 1, 1);
    for (const bool helps : {false, true}) {
        for (long allocation = 0;; ++allocation) {
            VqIdxBounds scan;
            unsigned short operators = VqOperator_Equal;
            const long before = Allocations::blocks;
            const RefusedMemory refused(helps);
            const bool ran = Allocations::Failing(allocation, [&] {
                manager.EvalAndBound(id, nullptr, operators, key.data(), VqFormat_LittleEndian, 1, &scan, nullptr);
            });
            EXPECT_EQ(refused.Sizes().size(), ran ? 1u : 0u) << allocation;
            EXPECT_EQ((scan.lowKey == nullptr) + (scan.highKey == nullptr), ran && !helps ? 1 : 0) << allocation;
            EXPECT_EQ(scan.lowKey == nullptr, scan.lowKeyLength == 0);
            EXPECT_EQ(scan.highKey == nullptr, scan.highKeyLength == 0);
            VqFreeBounds(scan);
            EXPECT_EQ(Allocations::blocks, before);
            if (!ran) break;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, KeyMemory, testing::ValuesIn(Subjects(true)), SubjectName);

// A text of 2-byte characters, stored, has no terminator; a long one needs a copy from the heap.
TEST(KeyMemory, OfLongTextsThatLacksIsTold) {
    const VqString text = Wide(std::u16string(300, u'x')), greater = Wide(std::u16string(300, u'y'));
    VqTypeMgr manager(5);
    const auto stored = [&](const VqString& string) {
        ByteVector bytes(manager.DiskLenGet(VqTypeId_VqString, &string, VqFormat_BigEndian, 1, VqFormat_Memory));
        manager.Store(VqTypeId_VqString, bytes.data(), &string, VqFormat_BigEndian, 1);
        return bytes;
    };
    const ByteVector a = stored(text), b = stored(greater);
    const auto size = static_cast<unsigned long>(a.size());
    int status = VqStatus_Ok;
    const auto compare = [&] {
        return manager.Cmp(VqTypeId_VqString, size, a.data(), size, b.data(), VqCmp_Exact, 1, VqFormat_BigEndian,
                           status);
    };
    const auto hash = [&] { return manager.Hash(VqTypeId_VqString, size, a.data(), 1, VqFormat_BigEndian, status); };
    const long order = Sign(compare());
    const unsigned long code = hash();
    EXPECT_EQ(order, -1);
    for (const bool helps : {false, true}) {
        const long before = Allocations::blocks;
        const RefusedMemory refused(helps);
        for (long allocation = 0; allocation < 2; ++allocation) {
            EXPECT_TRUE(Allocations::Failing(allocation, [&] { EXPECT_EQ(Sign(compare()), order); }));
            EXPECT_EQ(status, helps ? VqStatus_Ok : VqStatus_NotSupported);
        }
        EXPECT_TRUE(Allocations::Failing(0, [&] { EXPECT_EQ(hash(), helps ? code : 0); }));
        EXPECT_EQ(status, helps ? VqStatus_Ok : VqStatus_NotSupported);
        EXPECT_EQ(refused.Sizes().size(), 3u);
        EXPECT_EQ(Allocations::blocks, before);
    }
}

}  // namespace
