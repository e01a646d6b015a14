#include "vqtypevl.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "date.h"
#include "rowrandom.h"
#include "vqnull.h"

using namespace vqtest;

namespace {

constexpr unsigned short Equal = VqOperator_Equal, Less = VqOperator_Less, Greater = VqOperator_Greater;
constexpr unsigned char storedFormats[] = {VqFormat_LittleEndian, VqFormat_BigEndian};

VqTypeMgr manager(5);

// An index from its lowest to its highest key, each in a block of exactly its size.
class Index {
  public:
    Index(const ByteVector& low, const ByteVector& high)
        : low_(low.data(), low.size()), high_(high.data(), high.size()) {
        bounds_ = {const_cast<unsigned char*>(low_.Get()), const_cast<unsigned char*>(high_.Get()),
                   static_cast<std::uint32_t>(low.size()), static_cast<std::uint32_t>(high.size())};
    }
    VqIdxBounds* Get() { return &bounds_; }

  private:
    Block low_, high_;
    VqIdxBounds bounds_;
};

double Estimate(char id, Index& index, unsigned short operators, const ByteVector& key, unsigned char format) {
    const Block block(key.data(), key.size());
    return static_cast<double>(
        manager.EvalAndBound(id, index.Get(), operators, block.Get(), format, 1, nullptr, nullptr));
}

// --- The formula

// As it is defined, one step after the other, for sound bounds.
double Area(unsigned short operators, double a, double b, double lo, double hi) {
    const double most = std::numeric_limits<double>::max();
    double sum = 0;
    const auto add = [&](double part) {
        if (std::isnan(part) || std::isinf(part)) part = most;
        if (part >= 0) sum += part;
    };
    if (operators & 4) add(hi - (lo <= b ? b : lo - 1));
    if (operators & 2) add((hi < a ? hi + 1 : a) - lo);
    if (operators & 1) add((b <= hi ? b : hi) - (a < lo ? lo : a) + 1);
    return std::isinf(sum) ? most : sum;
}

double Reference(unsigned short operators, double key, double lo, double hi, bool isFloating) {
    if (hi < lo) return 0;
    double range = hi - lo + 1;
    if (std::isnan(range) || std::isinf(range)) range = std::numeric_limits<double>::max();
    const double estimate = Area(operators, key, key, lo, hi) / range;
    return isFloating && estimate > 0 && estimate < 1.1920929e-7 ? static_cast<double>(1.1920929e-7f) : estimate;
}

template <class T>
void FollowsTheFormula(VqEvalAndBoundFunc evaluate, const std::vector<T>& pool) {
    std::mt19937 random(5);
    const auto pick = [&] { return pool[random() % pool.size()]; };
    for (int i = 0; i < 20000; ++i) {
        T low = pick(), high = pick(), key = pick();
        VqIdxBounds bounds = {&low, &high, sizeof low, sizeof high};
        const auto operators = static_cast<unsigned short>(random());
        unsigned short given = operators;
        const double estimate = evaluate(&bounds, given, &key, VqFormat_LittleEndian, 1, nullptr);
        const double expected = Reference(operators, static_cast<double>(key), static_cast<double>(low),
                                          static_cast<double>(high), std::is_floating_point_v<T>);
        ASSERT_EQ(estimate, expected) << low << " " << high << " " << key << " " << operators % 8;
        ASSERT_TRUE(std::isfinite(estimate) && estimate >= 0);
        ASSERT_EQ(given, operators);
    }
}

template <class T>
void FloatingFollowsTheFormula(VqEvalAndBoundFunc evaluate) {
    using Limits = std::numeric_limits<T>;
    FollowsTheFormula<T>(evaluate,
                         {0, T(0.25), T(-0.5), 1, 9, T(9.5), -3, T(1e30), T(-1e30), Limits::max(), Limits::lowest(),
                          Limits::denorm_min(), Limits::infinity(), -Limits::infinity(), Limits::quiet_NaN()});
}

TEST(Bounds, FollowTheFormula) {
    FollowsTheFormula<std::int32_t>(LongEvalAndBound, {0, 1, 2, 3, 5, 9, 10, -1, -7, 2147483647, -2147483647 - 1});
    FollowsTheFormula<std::uint16_t>(WordEvalAndBound, {0, 1, 2, 5, 9, 32767, 32768, 65535});
    FloatingFollowsTheFormula<float>(FloatEvalAndBound);
    FloatingFollowsTheFormula<double>(DoubleEvalAndBound);
}

// --- Where the keys of each type lie

// Values of a row, of texts under its samples' format, or of exchange texts; "null" is the null value.
ByteVector Key(char id, const std::string& text, unsigned char format) {
    const bool isExchange = id == VqTypeId_VqDateTime || (id >= VqTypeId_d_Time && id <= VqTypeId_d_Interval);
    const std::vector<std::string> texts(isExchange ? 0 : 1, text), exchange(isExchange ? 1 : 0, text);
    const RowValues value(manager, id, texts, SamplesOf(id).format, exchange);
    if (text == "null") manager.SetNullValue(id, value.At(0));
    return value.Store(format, 0, 1);
}

TEST(Bounds, PlaceKeysOnALine) {
    static const struct {
        char id;
        const char *low, *high, *key;
        double less, length;
    } cases[] = {
        {VqTypeId_char, "\xFB", "\x04", "\x02", 7, 10},  // -5 to 4
        {VqTypeId_VqByte, "\x7A", "\x83", "\x80", 6, 10},
        {VqTypeId_short, "-5", "4", "-1", 4, 10},
        {VqTypeId_VqWord, "32764", "32773", "32768", 4, 10},
        {VqTypeId_int, "-5", "4", "-1", 4, 10},
        {VqTypeId_enum, "-5", "4", "-1", 4, 10},
        {VqTypeId_unsigned, "2147483644", "2147483653", "2147483648", 4, 10},
        {VqTypeId_long, "-2147483648", "-2147483639", "-2147483646", 2, 10},
        {VqTypeId_VqDWord, "4294967286", "4294967295", "4294967290", 4, 10},
        {VqTypeId_BlockId, "#2147483644", "#2147483653", "#2147483648", 4, 10},
        {VqTypeId_float, "-5", "4", "-0.5", 4.5, 10},
        {VqTypeId_double, "-5", "4", "-0.5", 4.5, 10},
        {VqTypeId_d_Interval, "-5", "4", "-0.5", 4.5, 10},
        {VqTypeId_VqInt64, "4294967290", "4294967299", "4294967296", 6, 10},
        {VqTypeId_VqInt64, "-4294967299", "-4294967290", "-4294967296", 3, 10},
        {VqTypeId_VqDate, "2004-02-25", "2004-03-05", "2004-03-01", 5, 10},
        {VqTypeId_VqTime, "10:59:58", "11:00:07", "11:00:01", 3, 10},
        {VqTypeId_VqDateTime, "2004-02-29T23:59:58", "2004-03-01T00:00:07", "2004-03-01T00:00:01", 3, 10},
        {VqTypeId_VqDateTime, "2004-02-29T23:59:58", "2004-03-01T00:00:07", "2004-02-29T99:00:00", 2, 10},
        {VqTypeId_d_Date, "1582-10-01", "1582-10-20", "1582-10-15", 4, 10},
        {VqTypeId_d_Time, "10:59:58+00:00", "11:00:07+00:00", "11:00:01.50+00:00", 3.5, 10},
        {VqTypeId_d_Time, "10:59:58+00:00", "11:00:07+00:00", "10:59:99+00:00", 2, 10},
        {VqTypeId_d_Time, "10:59:58+00:00", "11:00:07+00:00", "12:30:01+01:30", 3, 10},
        {VqTypeId_d_Timestamp, "2004-02-29T23:59:58+00:00", "2004-03-01T00:00:07+00:00", "2004-03-01T00:00:01.25+00:00",
         3.25, 10},
        {VqTypeId_VqBoolean, "FALSE", "TRUE", "TRUE", 1, 2},
        {VqTypeId_VqBoolean, "null", "TRUE", "FALSE", 1, 3},
        {VqTypeId_VqSeal, "65530", "65539", "65536", 6, 10},
        {VqTypeId_VqSeal, "4294967290", "4294967299", "4294967296", 6, 10},
        {VqTypeId_VqBlob, "616263646578", "616263646581", "61626364657aff", 2, 10},
        {VqTypeId_VqBlob, "6162636465", "616263646508", "616263646500", 1, 10},  // behind its own beginning
        {VqTypeId_VqBlob, "null", "", "", 1, 2},
        {VqTypeId_VqNull_char, "null", "\x08", "\x02", 3, 10},
        {VqTypeId_VqNull_uchar, "null", "\x08", "\x02", 3, 10},
        {VqTypeId_VqNull_short, "null", "-32760", "-32766", 1, 2},
        {VqTypeId_VqNull_ushort, "32764", "32773", "32768", 4, 10},
        {VqTypeId_VqNull_int, "null", "8", "-3", 1, 10},
        {VqTypeId_VqNull_int, "null", "8", "null", 0, 10},
        {VqTypeId_VqNull_int, "null", "null", "null", 0, 1},
        {VqTypeId_VqNull_unsigned, "2147483644", "2147483653", "2147483648", 4, 10},
        {VqTypeId_VqNull_long, "-5", "4", "-1", 4, 10},
        {VqTypeId_VqNull_long, "null", "998", "499", 500, 1000},
        {VqTypeId_VqNull_ulong, "null", "8", "2", 3, 10},
        {VqTypeId_VqNull_float, "-5", "4", "-0.5", 4.5, 10},
        {VqTypeId_VqNull_float, "null", "8", "1.5", 2.5, 10},
        {VqTypeId_VqNull_double, "-5", "4", "-0.5", 4.5, 10},
        {VqTypeId_VqNull_double, "null", "-8.5", "-100", 1, 2},
        {VqTypeId_VqNull_VqInt64, "4294967290", "4294967299", "4294967296", 6, 10},
    };
    for (const auto& c : cases) {
        for (const unsigned char format : storedFormats) {
            Index index(Key(c.id, c.low, format), Key(c.id, c.high, format));
            const ByteVector key = Key(c.id, c.key, format);
            const auto expect = [&](unsigned short operators, double steps) {
                EXPECT_FLOAT_EQ(static_cast<float>(Estimate(c.id, index, operators, key, format)),
                                static_cast<float>(steps / c.length))
                    << manager.NameGet(c.id, nullptr) << " " << c.key << " " << operators;
            };
            expect(Less, c.less);
            expect(Equal, 1);
            expect(Greater, c.length - 1 - c.less);
            expect(Greater | Equal, c.length - c.less);
        }
    }
}

TEST(Bounds, HaveNullBelowAnIndexOfValues) {
    for (const unsigned char format : storedFormats) {
        Index index(Key(VqTypeId_VqNull_short, "-5", format), Key(VqTypeId_VqNull_short, "4", format));
        ByteVector key = Key(VqTypeId_VqNull_short, "null", format);
        const auto part = [&](unsigned short op) { return Estimate(VqTypeId_VqNull_short, index, op, key, format); };
        EXPECT_TRUE(part(Less) == 0 && part(Equal) == 0 && part(Greater) == 1);
        key[0] = 2;  // no indicator of null on disk
        EXPECT_FLOAT_EQ(static_cast<float>(part(Less)), 0.5f);
    }
}

// Format codes with the memory bit store the value first; as in every stored form only a flag of 1 means null.
TEST(Bounds, ReadNullablesWithTheValueFirst) {
    unsigned char low[] = {3, 0, 0}, high[] = {12, 0, 0}, key[] = {5, 0, 0};
    VqIdxBounds bounds = {low, high, 3, 3};
    for (key[2] = 0; key[2] < 3; ++key[2]) {
        unsigned short operators = Less;
        EXPECT_DOUBLE_EQ(VqNullSlots<VqNull_short>::EvalAndBound(&bounds, operators, key, VqFormat_Memory, 1, nullptr),
                         key[2] == 1 ? 0 : 0.2);
    }
}

TEST(Bounds, CoverWhatADateWithWildcardsMayBe) {
    static const struct {
        int year, month, day;
        double less, equal, greater;  // in days of 2003-01-01 to 2005-12-31
    } cases[] = {
        {2004, 2, -1, 396, 29, 671},  {2004, -1, -1, 365, 366, 365}, {2004, -1, 15, 365, 366, 365},
        {-1, -1, -1, 0, 1096, 0},     {-1, 5, -1, 0, 1096, 0},       {2006, -1, -1, 1096, 0, 0},
        {2002, 12, -1, 0, 0, 1096},   {2004, 12, -1, 700, 31, 365},  {2004, 2, 29, 424, 1, 671},
        {2004, 127, -1, 731, 1, 364},  // no month: the end of the year
    };
    for (const unsigned char format : storedFormats) {
        const auto stored = [&](const VqDate& date) {
            ByteVector bytes(4);
            DateStore(bytes.data(), &date, format, 1);
            return bytes;
        };
        Index index(stored(VqDate(2003, 1, 1)), stored(VqDate(2005, 12, 31)));
        for (const auto& c : cases) {
            const ByteVector key = stored(VqDate(c.year, c.month, c.day));
            const double days[] = {c.equal, c.less, c.greater};
            for (int i = 0; i < 3; ++i) {
                const double estimate =
                    Estimate(VqTypeId_VqDate, index, static_cast<unsigned short>(1 << i), key, format);
                EXPECT_NEAR(estimate * 1096, days[i], 1e-3) << c.year << " " << c.month << " " << c.day << " " << i;
            }
        }
    }
}

// --- Every row: texts and identifiers place their keys otherwise

bool IsOnALine(char id) {
    const bool isText = id == VqTypeId_VqString || id == VqTypeId_VqIString || id == VqTypeId_VqCaseIString;
    return !isText && id != VqTypeId_VqObjId && id != VqTypeId_VqClassId && id != VqTypeId_VqRef;
}

// Not a number, too large for differences, a date that stands for others, or a boolean that is neither: what has no
// place of its own.
bool HasNoPlace(char id, const ByteVector& bytes) {
    if (id == VqTypeId_VqDate) return bytes[2] == 0xFF || bytes[3] == 0xFF || (bytes[0] & bytes[1]) == 0xFF;
    if (id == VqTypeId_VqBoolean) return bytes[0] > 0x7F && bytes[0] != 0xFF;
    const auto isTooLarge = [&](auto number) {
        if (bytes.size() < sizeof number) return false;
        std::memcpy(&number, bytes.data() + bytes.size() - sizeof number, sizeof number);
        return !(std::abs(static_cast<double>(number)) < 1e290);
    };
    switch (id) {
        case VqTypeId_float:
        case VqTypeId_d_Interval:
        case VqTypeId_VqNull_float:
            return isTooLarge(0.0f);
        case VqTypeId_double:
        case VqTypeId_VqNull_double:
            return isTooLarge(0.0);
        default:
            return false;
    }
}

// Any fields, in and out of range.
TEST(Bounds, RiseWithTheKey) {
    constexpr unsigned char Format = VqFormat_LittleEndian;
    for (char id = 0; id < VqTypeId_illegal; ++id) {
        if (!IsOnALine(id)) continue;
        RandomRow random(manager, id);
        std::vector<ByteVector> keys;
        for (int round = 0; round < 20; ++round) {
            const RowValues values(manager, id, 100);
            random.Fill(values);
            for (unsigned long i = 0; i < values.Count(); ++i) {
                ByteVector key = values.Store(Format, i, 1);
                if (!HasNoPlace(id, key)) keys.push_back(std::move(key));
            }
        }
        std::sort(keys.begin(), keys.end(), [&](const ByteVector& a, const ByteVector& b) {
            return manager.Cmp(id, a.data(), b.data(), VqCmp_Exact, 1, Format) < 0;
        });
        for (const auto& [low, high] : {std::pair<std::size_t, std::size_t>{0, 1}, {3, 4}, {0, 20}}) {
            Index index(keys[keys.size() * low / 20], keys[std::min(keys.size() * high / 20, keys.size() - 1)]);
            double less = 0, greater = 4;
            for (const ByteVector& key : keys) {
                const double nextLess = Estimate(id, index, Less, key, Format);
                const double nextGreater = Estimate(id, index, Greater, key, Format);
                ASSERT_LE(less, nextLess) << manager.NameGet(id, nullptr) << " " << Hex(key.data(), key.size());
                ASSERT_GE(greater, nextGreater) << manager.NameGet(id, nullptr) << " " << Hex(key.data(), key.size());
                less = nextLess;
                greater = nextGreater;
            }
            EXPECT_LE(less, 1);
        }
    }
}

// --- What is no statistics

TEST(Bounds, NeedTwoWholeKeysOfTheIndex) {
    for (char id = 0; id < VqTypeId_illegal; ++id) {
        if (!IsOnALine(id)) continue;
        const RowValues value(manager, id, 1);
        const ByteVector key = value.Store(VqFormat_LittleEndian, 0, 1);
        for (std::size_t size = 0; size < key.size(); ++size) {
            const ByteVector cut(key.begin(), key.begin() + static_cast<std::ptrdiff_t>(size));
            Index high(key, cut), low(cut, key);
            EXPECT_EQ(Estimate(id, high, 7, key, 1), 0) << manager.NameGet(id, nullptr) << " " << size;
            EXPECT_EQ(Estimate(id, low, 7, key, 1), 0) << manager.NameGet(id, nullptr) << " " << size;
        }
        unsigned short operators = 7;
        VqIdxBounds lacking = {nullptr, const_cast<unsigned char*>(key.data()), 0,
                               static_cast<std::uint32_t>(key.size())};
        EXPECT_EQ(manager.EvalAndBound(id, nullptr, operators, key.data(), 1, 1, nullptr, nullptr), 0);
        EXPECT_EQ(manager.EvalAndBound(id, &lacking, operators, key.data(), 1, 1, nullptr, nullptr), 0);
    }
}

TEST(Bounds, ReadNoMoreOfABlobThanThereIs) {
    const ByteVector whole = Key(VqTypeId_VqBlob, "616263646566", 1);
    for (std::size_t size = 8; size < whole.size(); ++size) {
        const ByteVector cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        Index index(cut, whole);
        EXPECT_GT(Estimate(VqTypeId_VqBlob, index, Less | Equal, whole, 1), 0.99) << size;
    }
    ByteVector hostile = whole;
    std::fill(hostile.begin(), hostile.begin() + 4, static_cast<unsigned char>(0xFF));
    Index index(whole, whole);
    VqIdxBounds scan;
    unsigned short operators = Equal;
    EXPECT_EQ(BlobEvalAndBound(index.Get(), operators, hostile.data(), 1, 1, &scan), 0);
    EXPECT_EQ(scan.lowKey, nullptr);
}

// But for classes, of which no predicate selects.
TEST(Bounds, AreNothingWithoutAKey) {
    for (char id = 0; id < VqTypeId_illegal; ++id) {
        const double nothing = id == VqTypeId_VqClassId ? 1 : 0;
        const ByteVector key = RowValues(manager, id, 1).Store(VqFormat_LittleEndian, 0, 1);
        Index index(key, key);
        VqIdxBounds scan;
        for (VqIdxBounds* bounds : {index.Get(), static_cast<VqIdxBounds*>(nullptr)}) {
            unsigned short operators = 7;
            EXPECT_EQ(manager.EvalAndBound(id, bounds, operators, nullptr, 1, 1, &scan, nullptr), nothing) << int{id};
            operators = Equal;
            EXPECT_EQ(manager.EvalAndBound(id, bounds, operators, key.data(), 1, 0, &scan, nullptr), nothing)
                << int{id};
        }
        EXPECT_TRUE(scan.lowKey == nullptr && scan.highKey == nullptr) << manager.NameGet(id, nullptr);
    }
}

TEST(Bounds, StayInTheRangeOfAFloat) {
    double low = 0, high = 1, key = -std::numeric_limits<double>::infinity();
    VqIdxBounds bounds = {&low, &high, 8, 8};
    unsigned short operators = Less;
    EXPECT_TRUE(std::isfinite(manager.EvalAndBound(VqTypeId_double, &bounds, operators, &key, 1, 1, nullptr, nullptr)));
}

// --- Recorded keys

TEST(Bounds, RecordTheKeyAsEndsOfTheRange) {
    static const struct {
        unsigned short operators;
        bool low, high;
    } cases[] = {{Equal, true, true},           {Less, false, true}, {Less | Equal, false, true},
                 {Greater, true, false},        {0, true, true},     {Greater | Equal | 0x10, true, false},
                 {Less | Greater, false, false}};
    for (char id = 0; id < VqTypeId_illegal; ++id) {
        if (!IsOnALine(id) && id != VqTypeId_VqObjId && id != VqTypeId_VqRef) continue;
        const RowValues values(manager, id, 3);
        const ByteVector key = values.Store(VqFormat_BigEndian, 0, 3);
        for (const auto& c : cases) {
            VqIdxBounds scan;
            unsigned short operators = c.operators;
            manager.EvalAndBound(id, nullptr, operators, key.data(), VqFormat_BigEndian, 3, &scan, nullptr);
            const auto check = [&](const void* end, std::uint32_t length, bool isSet) {
                EXPECT_EQ(end != nullptr, isSet);
                EXPECT_NE(end, key.data());
                EXPECT_EQ(Hex(end, length), isSet ? Hex(key.data(), key.size()) : "") << manager.NameGet(id, nullptr);
            };
            check(scan.lowKey, scan.lowKeyLength, c.low);
            check(scan.highKey, scan.highKeyLength, c.high);
            if (c.low && c.high) {
                EXPECT_NE(scan.lowKey, scan.highKey);
            }
            VqFreeBounds(scan);
            EXPECT_EQ(scan.lowKey, nullptr);
        }
    }
}

// Two predicates, "at least 3" and "less than 7", make one range.
TEST(Bounds, KeepTheEndsThatAreSet) {
    VqIdxBounds scan;
    const std::int16_t keys[] = {3, 7, 9};
    unsigned short operators[] = {Greater | Equal, Less, Equal};
    for (int i = 0; i < 3; ++i) ShortEvalAndBound(nullptr, operators[i], &keys[i], 1, 1, &scan);
    EXPECT_EQ(Hex(scan.lowKey, scan.lowKeyLength), "03 00");
    EXPECT_EQ(Hex(scan.highKey, scan.highKeyLength), "07 00");
    VqFreeBounds(scan);
}

}  // namespace
