// Identifiers and references as keys, against slow readings of their bytes, and their disk form.
#include <gtest/gtest.h>

#include "idsupport.h"
#include "testsupport.h"
#include "vqtypevl.h"

using namespace vqtest;

namespace {

using ByteVector = std::vector<unsigned char>;

template <class Id>
ByteVector Store(const std::vector<Id>& ids, unsigned char format) {
    ByteVector bytes(ids.size() * Id::StoredSize);
    EXPECT_EQ(Id::Store(bytes.data(), ids.data(), format, ids.size()), bytes.size());
    return bytes;
}

// Numbers that often share their bytes.
class Numbers {
  public:
    std::uint32_t operator()() {
        static constexpr std::uint32_t some[] = {0, 1, 255, 256, 0x8000, 0xFFFF, 0x10000, 0x80000000, 0xFFFFFFFF};
        return random_() % 3 != 0 ? some[random_() % std::size(some)] : static_cast<std::uint32_t>(random_());
    }
    void Fill(VqObjId& id) { id = Object((*this)() & 0xFFFF, (*this)(), (*this)()); }
    void Fill(VqClassId& id) { id = Class((*this)() & 0xFFFF, (*this)() & 0xFFFF); }
    void Fill(VqRef& ref) {
        Fill(ref.id);
        Fill(ref.classId);
        ref = static_cast<unsigned short>((*this)());
    }

  private:
    std::mt19937_64 random_{20051};
};

// The places of the bytes that decide, in this order.
template <class Id>
constexpr std::initializer_list<std::size_t> decisive = {};
template <>
constexpr std::initializer_list<std::size_t> decisive<VqObjId> = {9, 8, 7, 6, 5, 4};
template <>
constexpr std::initializer_list<std::size_t> decisive<VqRef> = {11, 10, 9, 8, 7, 6, 5, 4};
template <>
constexpr std::initializer_list<std::size_t> decisive<VqClassId> = {1, 0, 3, 2};

template <class Id>
int CompareStored(const ByteVector& a, const ByteVector& b) {
    const auto isNull = [](const ByteVector& bytes) {
        return std::is_same_v<Id, VqClassId> &&
               std::all_of(bytes.begin(), bytes.begin() + 4, [](int byte) { return byte == 255; });
    };
    for (std::size_t at = 0; at < a.size(); at += Id::StoredSize) {
        for (const std::size_t byte : decisive<Id>) {
            const int difference = a[at + byte] - b[at + byte];
            if (difference != 0) return isNull(a) ? -1 : isNull(b) ? 1 : difference;
        }
    }
    return 0;
}

std::uint32_t HashWord(const VqObjId& id) { return id.low ^ id.high; }
std::uint32_t HashWord(const VqClassId& id) { return static_cast<std::uint32_t>(id.classNumber ^ id.version); }
std::uint32_t HashWord(const VqRef& ref) { return ref.database ^ HashWord(ref.id); }

template <class Id>
class IdentifierKeys : public testing::Test {};
using Ids = testing::Types<VqObjId, VqClassId, VqRef>;
TYPED_TEST_SUITE(IdentifierKeys, Ids);

TYPED_TEST(IdentifierKeys, CompareAndHashInEveryForm) {
    using Id = TypeParam;
    Numbers numbers;
    for (unsigned round = 0; round < 20000; ++round) {
        std::vector<Id> a(1 + round % 3), b(a.size());
        for (std::size_t i = 0; i < a.size(); ++i) {
            numbers.Fill(a[i]);
            b[i] = a[i];
            if (round % 5 == 0 && i == 0) a[0].SetNullValue();
            if (round % 2 != 0 || i + 1 == a.size()) numbers.Fill(b[i]);
        }
        const auto count = static_cast<unsigned long>(a.size());
        int expected = 0, status = -1;
        std::uint32_t word = 0;
        for (std::size_t i = 0; i < a.size(); ++i) {
            if (expected == 0) expected = a[i] != b[i];
            word ^= HashWord(a[i]);
        }
        ASSERT_EQ(Id::Compare(VqFormat_Memory, 0, a.data(), 0, b.data(), 0, count, status), expected);
        const unsigned long code = word * 1103515245u;
        ASSERT_EQ(Id::Hash(VqFormat_Memory, 0, a.data(), count, status), code);
        const ByteVector storedA = Store(a, VqFormat_LittleEndian), storedB = Store(b, VqFormat_LittleEndian);
        // Codes that are not exactly the memory form's, and the order bits, mean nothing.
        for (const unsigned char format : std::initializer_list<unsigned char>{0, 1, 2, 0x18, 0x88}) {
            ASSERT_EQ(Id::Compare(format, 0, storedA.data(), 0, storedB.data(), 0, count, status),
                      CompareStored<Id>(storedA, storedB));
            ASSERT_EQ(Id::Hash(format, 0, storedA.data(), count, status), code);
        }
        for (const unsigned char format : {VqFormat_LittleEndian, VqFormat_BigEndian}) {
            std::vector<Id> loaded(a.size());
            std::memset(static_cast<void*>(loaded.data()), 0xA5, loaded.size() * sizeof(Id));
            const ByteVector stored = Store(a, format);
            ASSERT_EQ(Id::Load(loaded.data(), stored.data(), format, count), stored.size());
            for (std::size_t i = 0; i < a.size(); ++i) {
                Id expectedId = a[i];
                if constexpr (std::is_same_v<Id, VqRef>) expectedId.classId.version = 0;  // not stored
                ASSERT_EQ(NumbersOf(loaded[i]), NumbersOf(expectedId));
            }
        }
    }
}

// --- Bounds

struct Index {
    ByteVector low, high;
    VqIdxBounds bounds;
    Index(const VqObjId& first, const VqObjId& last, unsigned char format)
        : low(Store(std::vector{first}, format)), high(Store(std::vector{last}, format)) {
        bounds = {low.data(), high.data(), static_cast<std::uint32_t>(low.size()),
                  static_cast<std::uint32_t>(high.size())};
    }
};

TEST(IdentifierBounds, TakeTheShareOfTheIndex) {
    const VqObjId low = Object(0, 100), high = Object(0, 199), key = Object(0, 124);
    const struct {
        VqObjId key;
        unsigned short operators;
        double estimate;
    } cases[] = {
        {key, 1, 0.01},
        {key, 2, 0.24},
        {key, 4, 0.75},
        {key, 3, 0.25},
        {key, 5, 0.76},
        {Object(0, 99), 2, 0},
        {Object(0, 99), 4, 1},
        {Object(0, 99), 1, 0},
        {Object(0, 200), 2, 1},
        {Object(0, 200), 4, 0},
        {Object(1, 0), 3, 1},
        {high, 3, 1},
        {key, 0, 0},
    };
    for (const unsigned char format : {VqFormat_LittleEndian, VqFormat_BigEndian}) {
        Index index(low, high, format);
        for (const auto& c : cases) {
            unsigned short operators = c.operators;
            EXPECT_NEAR(VqObjId::EvalAndBound(&index.bounds, operators, Store(std::vector{c.key}, format).data(),
                                              format, 1, nullptr),
                        c.estimate, 1e-12)
                << NumbersOf(c.key) << " " << c.operators;
        }
        // 65535, not 65536, keys make one of high; bounds that are none, and none at all.
        Index wide(Object(0, 0), Object(1, 0), format);
        unsigned short equal = 1, less = 2;
        const ByteVector stored = Store(std::vector{key}, format);
        EXPECT_EQ(VqObjId::EvalAndBound(&wide.bounds, equal, stored.data(), format, 1, nullptr), 1 / 65536.);
        Index backward(Object(0, 125), key, format);
        for (unsigned short operators = 0; operators < 8; ++operators) {
            unsigned short given = operators;
            EXPECT_EQ(VqObjId::EvalAndBound(&backward.bounds, given, stored.data(), format, 1, nullptr), 0);
        }
        EXPECT_EQ(VqObjId::EvalAndBound(nullptr, less, stored.data(), format, 1, nullptr), 1);
    }
}

// All keys of the index are the number 0 then.
TEST(IdentifierBounds, OfObjectsNeedTwoWholeKeysOfTheIndex) {
    Index index(Object(0, 100), Object(0, 199), VqFormat_LittleEndian);
    VqIdxBounds noLow = index.bounds, noHigh = index.bounds, shortLow = index.bounds, shortHigh = index.bounds;
    noLow.lowKey = noHigh.highKey = nullptr;
    shortLow.lowKeyLength = 9;
    shortHigh.highKeyLength = 0;
    const ByteVector key = Store(std::vector{Object(0, 124)}, VqFormat_LittleEndian);
    const ByteVector zero = Store(std::vector{Object(0, 0, 5)}, VqFormat_LittleEndian);
    for (VqIdxBounds* bounds : {&noLow, &noHigh, &shortLow, &shortHigh}) {
        unsigned short equal = 1, less = 2;
        EXPECT_EQ(VqObjId::EvalAndBound(bounds, equal, key.data(), VqFormat_LittleEndian, 1, nullptr), 0);
        EXPECT_EQ(VqObjId::EvalAndBound(bounds, less, key.data(), VqFormat_LittleEndian, 1, nullptr), 1);
        EXPECT_EQ(VqObjId::EvalAndBound(bounds, equal, zero.data(), VqFormat_LittleEndian, 1, nullptr), 1);
    }
}

TEST(IdentifierBounds, OfReferencesAreSharesOfAllReferences) {
    constexpr double Lows = 4294967295.0, All = Lows * Lows;
    const std::vector<VqRef> key = {Ref(3, Object(2, 1))};
    const double number = (3 * 65535. + 2) * Lows + 1;
    for (const unsigned char format : {VqFormat_LittleEndian, VqFormat_BigEndian}) {
        const struct {
            unsigned short operators;
            double area;
        } cases[] = {{2, number}, {4, All - (number + 1)}, {1, 1}, {7, number + (All - (number + 1)) + 1}, {0x8010, 0}};
        for (const auto& c : cases) {
            unsigned short operators = static_cast<unsigned short>(c.operators | 0x7FF0);
            EXPECT_DOUBLE_EQ(VqRef::EvalAndBound(nullptr, operators, Store(key, format).data(), format, 1, nullptr),
                             c.area / All);
            EXPECT_EQ(operators, c.operators & 0x800F);
        }
    }
}

}  // namespace
