// Keys from disk, cut anywhere and with any byte wrong, in blocks of exactly the length that is given: no function of a
// row reads behind it (an address sanitizer looks), and each says how it ended.
#include <gtest/gtest.h>

#include <cmath>
#include <set>

#include "rowtest.h"
#include "vqtypevl.h"

using namespace vqtest;

namespace {

constexpr unsigned char disk[] = {VqFormat_LittleEndian, VqFormat_BigEndian};
constexpr unsigned short operations[] = {0, VqCmp_Exact, VqCmp_Report, VqCmp_KeyOnly};
constexpr unsigned short predicates[] = {1, 2, 4, 3, 5, 0x8007};

class KeyBuffers : public RowTest {
  protected:
    // One key for each sample, arrays of three, and texts around the length of a clipped key.
    std::vector<ByteVector> Keys(unsigned char format, unsigned long n) {
        std::vector<ByteVector> keys;
        for (unsigned long i = 0; i + n <= count; i += n) keys.push_back(samples->Store(format, i, n));
        if (!manager.IsFixed(id)) {
            for (const unsigned long length : {245ul, 250ul, 300ul}) {
                const RowValues texts(manager, id, std::vector<std::string>(n, std::string(length, 'x')));
                keys.push_back(texts.Store(format, 0, n));
            }
        }
        return keys;
    }

    // Asks with both operands as they are, under all flags.
    void Compare(const ByteVector& bytes, const ByteVector& against, unsigned char format, unsigned long n) {
        const Block a(bytes.data(), bytes.size()), b(against.data(), against.size());
        const auto lengthA = static_cast<unsigned long>(bytes.size());
        const auto lengthB = static_cast<unsigned long>(against.size());
        for (const unsigned short flags : operations) {
            int status = 77;
            manager.Cmp(id, lengthA, a.Get(), lengthB, b.Get(), flags, n, format, status);
            seen.insert(status);
            status = 77;
            manager.Cmp(id, lengthB, b.Get(), lengthA, a.Get(), flags, n, format, status);
            seen.insert(status);
        }
        int status = 77;
        EXPECT_LE(manager.Hash(id, lengthA, a.Get(), n, format, status), 0xFFFFFFFFul);
        seen.insert(status);
    }

    // What one of the samples is estimated at, with these keys as the ends of the index.
    void Estimate(const ByteVector& low, const ByteVector& high, unsigned char format) {
        const Block lowest(low.data(), low.size()), highest(high.data(), high.size());
        VqIdxBounds index = {const_cast<unsigned char*>(lowest.Get()), const_cast<unsigned char*>(highest.Get()),
                             static_cast<std::uint32_t>(low.size()), static_cast<std::uint32_t>(high.size())};
        const ByteVector& bytes = keys[asked++ % keys.size()];
        const Block key(bytes.data(), bytes.size());
        for (const unsigned short asks : predicates) {
            unsigned short operators = asks;
            VqIdxBounds scan;
            const float part = manager.EvalAndBound(id, &index, operators, key.Get(), format, 1, &scan, nullptr);
            EXPECT_TRUE(std::isfinite(part) && part >= 0) << part << " of " << Hex(bytes.data(), bytes.size());
            VqFreeBounds(scan);
        }
    }

    std::set<int> Statuses(std::initializer_list<int> always) const {
        std::set<int> statuses = always;
        if (!manager.IsFixed(id)) statuses.insert({VqStatus_Ok, VqStatus_BufferEnd, VqStatus_NotSupported});
        return statuses;
    }
    void ExpectSeen(const std::set<int>& statuses) {
        for (const int status : seen) EXPECT_TRUE(statuses.contains(status)) << status;
        seen.clear();
    }

    const AssertRecorder quiet;
    std::vector<ByteVector> keys;
    std::size_t asked = 0;
    std::set<int> seen;
};

ByteVector Prefix(const ByteVector& bytes, std::size_t n) {
    return ByteVector(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(n));
}

TEST_P(KeyBuffers, AreNotReadForNoKeys) {
    for (const unsigned char format : {VqFormat_Memory, VqFormat_LittleEndian, VqFormat_BigEndian}) {
        for (const unsigned short flags : operations) {
            int status = 77;
            EXPECT_EQ(manager.Cmp(id, 0, nullptr, 0, nullptr, flags, 0, format, status), 0);
            EXPECT_EQ(status, VqStatus_Ok);
        }
        int status = 77;
        EXPECT_EQ(manager.Hash(id, 0, nullptr, 0, format, status), 0u);
        EXPECT_EQ(status, VqStatus_Ok);
    }
}

TEST_P(KeyBuffers, MayEndAnywhere) {
    for (const unsigned char format : disk) {
        for (const unsigned long n : {1ul, 3ul}) {
            keys = Keys(format, n);
            for (const ByteVector& key : keys) {
                SCOPED_TRACE(Hex(key.data(), std::min<std::size_t>(key.size(), 40)));
                for (std::size_t size = 1; size < key.size(); ++size) Compare(Prefix(key, size), key, format, n);
                ExpectSeen(Statuses({VqStatus_BufferEnd}));
                Compare(key, key, format, n);
                ExpectSeen({VqStatus_Ok});
            }
        }
        keys = Keys(format, 1);
        for (std::size_t size = 1; size <= keys[0].size(); ++size) {
            for (const ByteVector& key : keys) {
                Estimate(Prefix(keys[0], size), key, format);
                Estimate(key, Prefix(keys[0], size), format);
            }
        }
    }
}

// Every wrong byte where a key is short, telling ones where it is long.
ByteVector WrongBytes(unsigned char right, bool all) {
    ByteVector wrong;
    for (int byte = 0; byte < 256 && all; ++byte) wrong.push_back(static_cast<unsigned char>(byte));
    if (!all)
        wrong = {0, 1, 0x7F, 0x80, 0xFF, static_cast<unsigned char>(right - 1), static_cast<unsigned char>(right + 1)};
    std::erase(wrong, right);
    return wrong;
}

TEST_P(KeyBuffers, MayHoldAnyByte) {
    constexpr std::size_t ShortKey = 12, Exhaustive = 4, Ends = 16;
    for (const unsigned char format : disk) {
        keys = Keys(format, 1);
        for (std::size_t i = 0; i < keys.size(); ++i) {
            for (std::size_t at = 0; at < keys[i].size(); ++at) {
                if (at >= Ends && at + Ends < keys[i].size()) continue;
                const bool all = i < Exhaustive && keys[i].size() <= ShortKey;
                ByteVector wrong = keys[i];
                for (const unsigned char byte : WrongBytes(keys[i][at], all)) {
                    wrong[at] = byte;
                    Compare(wrong, keys[i], format, 1);
                    Estimate(wrong, keys[i], format);
                    Estimate(keys[i], wrong, format);
                }
            }
        }
        ExpectSeen(Statuses({VqStatus_Ok}));
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, KeyBuffers, testing::ValuesIn(Subjects(true)), SubjectName);

}  // namespace
