// Keys and memory: comparing and hashing them takes none, and where texts and recorded keys need some, its lack shows.
#include <gtest/gtest.h>

#include <cstring>

#include "../rowrandom.h"
#include "../rowtest.h"
#include "allocations.h"
#include "vqtypevl.h"

namespace {

using namespace vqtest;

constexpr unsigned short operations[] = {0x00, 0x10, 0x70, 0x80, 0x100};
constexpr unsigned char forms[] = {VqFormat_Memory, VqFormat_LittleEndian, VqFormat_BigEndian};

struct Operand {
    const void* values;
    unsigned long length;  // 0 in memory
};

// What is allocated to compare two arrays under every operation and to hash the first one.
long AllocationsOf(VqTypeMgr& manager, char id, Operand a, Operand b, unsigned long count, unsigned char format) {
    const long before = Allocations::made;
    int status;
    for (const unsigned short flags : operations) {
        manager.Cmp(id, a.length, a.values, b.length, b.values, flags, count, format, status);
    }
    manager.Hash(id, a.length, a.values, count, format, status);
    return Allocations::made - before;
}

class KeyMemory : public RowTest {
  protected:
    // An array's values from `i` on against others of it, in every form.
    void ExpectNoneNeeded(const RowValues& values, unsigned long i, unsigned long j, unsigned long n) {
        for (const unsigned char format : forms) {
            const bool inMemory = format == VqFormat_Memory;
            const ByteVector a = inMemory ? ByteVector() : values.Store(format, i, n);
            const ByteVector b = inMemory ? ByteVector() : values.Store(format, j, n);
            const Operand first = {inMemory ? values.At(i) : a.data(), static_cast<unsigned long>(a.size())};
            const Operand second = {inMemory ? values.At(j) : b.data(), static_cast<unsigned long>(b.size())};
            EXPECT_EQ(AllocationsOf(manager, id, first, second, n, format), 0) << values.Print(i) << ", " << n;
        }
    }
};

TEST_P(KeyMemory, IsNotNeededToCompareOrHash) {
    for (unsigned long i = 0; i < count; ++i) ExpectNoneNeeded(*samples, i, count - 1 - i, 1);
    for (const unsigned long n : {3ul, 40ul}) {
        const RowValues values(manager, id, 2 * n);
        RandomRow(manager, id).Fill(values);
        ExpectNoneNeeded(values, 0, n, n);
        ExpectNoneNeeded(values, 0, 0, n);
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

// A text of 2-byte characters, stored, has no terminator, and is copied: as far as 256 bytes go, not to the heap.
TEST(KeyMemory, OfTextsOfTwoBytesIsNeededBehind128Characters) {
    VqTypeMgr manager(5);
    for (const unsigned long length : {1ul, 100ul, 128ul, 129ul}) {
        const VqString text = Wide(std::u16string(length, u'x')), other = Wide(std::u16string(length, u'X'));
        for (const unsigned char format : {VqFormat_LittleEndian, VqFormat_BigEndian}) {
            ByteVector a(2 * length + 6), b(2 * length + 6);
            ASSERT_EQ(manager.Store(VqTypeId_VqString, a.data(), &text, format, 1), a.size());
            manager.Store(VqTypeId_VqString, b.data(), &other, format, 1);
            const auto needed = [&](unsigned long size) {
                return AllocationsOf(manager, VqTypeId_VqString, {a.data(), size}, {b.data(), size}, 1, format);
            };
            EXPECT_EQ(needed(static_cast<unsigned long>(a.size())) > 0, length > 128) << length;
            for (unsigned long size = 1; size < std::min<unsigned long>(length * 2 + 6, 256); ++size) {
                EXPECT_EQ(needed(size), 0) << length << ", cut to " << size;
            }
        }
    }
}

// A long one needs a copy from the heap.
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
