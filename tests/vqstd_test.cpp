#include "vqstd.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <iomanip>
#include <map>
#include <set>
#include <sstream>
#include <unordered_set>
#include <vector>

#include "idsupport.h"
#include "testsupport.h"

using namespace vqtest;

namespace {

template <class Value>
Value Null() {
    Value value;
    value.SetNullValue();
    return value;
}

VqBoolean Byte(int byte) {
    VqBoolean boolean;
    boolean.value = static_cast<std::uint8_t>(byte);
    return boolean;
}

VqSeal Seal(VqInt64 number) {
    VqSeal seal;
    seal.ConvertFrom(number);
    return seal;
}

template <class Value>
std::string Streamed(const Value& value) {
    std::ostringstream out;
    out << value;
    return out.str();
}

// --- Order

// Ascending values: <=>, the six comparisons, and sorting agree about them.
template <class Category, class Value>
void ExpectAscending(const std::vector<Value>& values) {
    for (const Value& a : values) {
        for (const Value& b : values) {
            const auto places = &a <=> &b;
            SCOPED_TRACE(Streamed(a) + " and " + Streamed(b));
            static_assert(std::same_as<decltype(a <=> b), Category>);
            EXPECT_TRUE((a <=> b) == places);
            EXPECT_TRUE((a < b) == (places < 0) && (a > b) == (places > 0));
            EXPECT_TRUE((a <= b) == (places <= 0) && (a >= b) == (places >= 0) && (a == b) == (places == 0));
        }
    }
    std::vector<Value> sorted(values.rbegin(), values.rend());
    std::ranges::sort(sorted, [](const Value& a, const Value& b) { return std::compare_three_way()(a, b) < 0; });
    EXPECT_TRUE(std::ranges::equal(sorted, values, [](const Value& a, const Value& b) { return a == b; }));
}

TEST(StandardLibrary, OrdersAsTheClassesDoNullFirst) {
    using Date = VqDate;
    using Time = VqTime;
    ExpectAscending<std::strong_ordering, VqInt64>({VqInt64(0, -5), -1, 0, 1, VqInt64(0x80000000, 0), VqInt64(0, 5)});
    ExpectAscending<std::partial_ordering, VqDate>(
        {Null<Date>(), Date(1999, 12, 31), Date(2000, 1, 1), Date(2000, 2, 1)});
    ExpectAscending<std::strong_ordering, VqTime>({Null<Time>(), Time(0, 0, 59), Time(0, 1, 0), Time(23, 59, 59)});
    ExpectAscending<std::partial_ordering, VqDateTime>({Null<VqDateTime>(),
                                                        {Date(1999, 12, 31), Time(23, 0, 0)},
                                                        {Date(2000, 1, 1), Time(0, 0, 0)},
                                                        {Date(2000, 1, 1), Time(0, 0, 1)}});
    ExpectAscending<std::weak_ordering, d_Date>(
        {{-4712, 1, 1}, {1582, 10, 4}, {1582, 10, 15}, {1999, 12, 31}, {2000, 1, 1}, {2000, 2, 1}});
    ExpectAscending<std::partial_ordering, d_Time>({{0, 0, 0, 9, 0},
                                                    {11, 59, 59, -5, 0},
                                                    {12, 0, 0, 0, 0},
                                                    {12, 0, 1, 0, 0},
                                                    {12, 1, 0, 0, 30},
                                                    {13, 0, 0, 0, 0}});
    ExpectAscending<std::partial_ordering, d_Timestamp>(
        {{{2000, 1, 1}, {23, 0, 0}}, {{2000, 1, 2}, {1, 0, 0, 9, 0}}, {{2000, 1, 2}, {2, 0, 0}}});
    constexpr float Infinity = std::numeric_limits<float>::infinity();
    ExpectAscending<std::weak_ordering, d_Interval>({{0, 0, 0, -Infinity},
                                                     {-1, 0, 0, 0},
                                                     {0, 0, 0, -0.5f},
                                                     {0, 0, 0, 0},
                                                     {1, 0, 0, 0},
                                                     {0, 0, 0, Infinity},
                                                     {0, 0, 0, std::nanf("")}});
    ExpectAscending<std::weak_ordering, VqBoolean>({Byte(255), 0, 1});
    ExpectAscending<std::strong_ordering, VqSeal>({Seal(0), Seal(65536), Seal(VqInt64(0, 1)), Seal(-1)});
    ExpectAscending<std::weak_ordering, VqObjId>(
        {Object(0, 0), Object(0, 9), Object(0, 0xFFFFFFFF), Object(1, 0), Object(0xFFFF, 0)});
    ExpectAscending<std::weak_ordering, VqDBOId>({Object(Object(1, 4), 0), Object(Object(0, 9), 1)});
    ExpectAscending<std::strong_ordering, VqClassId>({Null<VqClassId>(), Class(0, 0), Class(0, 65535), Class(1, 0),
                                                      Class(32768, 1), Class(65534, 65535), Class(65535, 3)});
    ExpectAscending<std::weak_ordering, VqRef>(
        {Ref(9, Object(0, 9)), Ref(0, Object(1, 4)), Ref(65535, Object(1, 4)), Ref(0, Object(2, 0))});
    ExpectAscending<std::weak_ordering, VqLocalRef>({Local(Object(0, 9)), Local(Object(1, 4))});
    ExpectAscending<std::strong_ordering, VqBlob>({Null<VqBlob>(), VqBlob(), "a", "aa", "b"});
    ExpectAscending<std::weak_ordering, VqString>({"", "a", "\xE4", "b"});
    ExpectAscending<std::strong_ordering, VqNull_char>({VqNull_char(), '\x80', 'A'});
    ExpectAscending<std::strong_ordering, VqNull_uchar>({VqNull_uchar(), 'A', 0x80});
    ExpectAscending<std::strong_ordering, VqNull_ushort>({VqNull_ushort(), 0, 65535});
    ExpectAscending<std::strong_ordering, VqNull_unsigned>({VqNull_unsigned(), 0, 0xFFFFFFFE});
    ExpectAscending<std::strong_ordering, VqNull_VqInt64>({VqNull_VqInt64(), VqInt64(-1), VqInt64(0)});
    ExpectAscending<std::partial_ordering, VqNull_double>({VqNull_double(), -1e300, 0.5});
    EXPECT_EQ(Object(1, 4, 9) != Object(1, 4), 0) << "whatever the block";
    EXPECT_EQ(Ref(1, Object(1, 4, 9), Class(2, 3)) != Ref(1, Object(1, 4)), 0) << "whatever the class";
    const VqNull_double none(std::numeric_limits<double>::quiet_NaN());
    EXPECT_TRUE((none <=> VqNull_double(1.0)) == std::partial_ordering::unordered);
    EXPECT_FALSE(none == none || none < VqNull_double(1.0) || none >= VqNull_double(1.0));
    EXPECT_TRUE(VqDate(-1, 5, 7) <=> VqDate(2000, 5, 7) == 0);
    static_assert(!std::three_way_comparable<VqDate, std::weak_ordering>, "2000-05-07 and 2001-05-07 are not equal");
    EXPECT_FALSE(VqDateTime(VqDate(-1, 5, 7), VqTime(0, 0, 0)) == VqDateTime(VqDate(2000, 5, 7), VqTime(0, 0, 0)));
    EXPECT_TRUE(Byte(200) <=> Byte(1) == 0 && Byte(1) <=> Byte(200) == 0);
}

template <class A, class B>
concept Orders = requires(const A& a, const B& b) {
    a <=> b;
};
template <class Value>
concept Prints = requires(std::ostream& out, const Value& value) {
    out << value;
};
template <class Value>
concept Hashes = std::is_default_constructible_v<std::hash<Value>>;

static_assert(std::three_way_comparable<VqSeal> && std::three_way_comparable<VqDateTime>);
static_assert(!Orders<VqIString, VqIString> && !Orders<VqString, const char*> && !Orders<d_Date, d_Timestamp>);
static_assert(Prints<VqIString> && Prints<int> && Prints<char[4]> && !Prints<std::vector<VqDate>>);
static_assert(!Hashes<VqString> && !Hashes<VqIString> && !Hashes<d_Time> && !Hashes<d_Interval>);
static_assert(!Hashes<VqNull_float> && Hashes<VqNull_long>);

// What compiled without this header does so with it, and means the same.
TEST(StandardLibrary, LeavesTheClassesOperatorsAsTheyAre) {
    const auto differs = [](const auto&... value) { return (std::same_as<decltype(value != value), int> && ...); };
    EXPECT_TRUE(differs(VqDate(), VqDateTime(), VqSeal(), d_Date(), VqBlob(), VqObjId(), VqRef(), VqClassId()));
    EXPECT_EQ(Local(Object(1, 4)) != Ref(2, Object(1, 4)), -1);
    EXPECT_EQ(VqDate(2000, 1, 9) != VqDate(2000, 1, 2), 7);
    const VqDateTime a(VqDate(2000, 1, 9), VqTime(0, 0, 0)), b(VqDate(2000, 1, 2), VqTime(0, 0, 0));
    EXPECT_EQ(a != b, 7);
    const VqString text("b");
    EXPECT_TRUE(text < "c" && text == "b" && text >= "a" && VqIString("a") < "b");
    EXPECT_TRUE(VqBoolean(1) > 0 && VqBoolean(0) == 0L && VqInt64(5) < 6 && VqInt64(5) == 5L);
    EXPECT_TRUE(VqNull_int(5) < 6 && VqNull_int() != 5);
    EXPECT_TRUE(d_Date(2000, 1, 1) < VqDate(2000, 1, 2) && VqTime(1, 0, 0) < VqTime(2, 0, 0));
    struct Record {  // members' categories combine
        VqDate date;
        VqNull_int number;
        auto operator<=>(const Record&) const = default;
    };
    EXPECT_TRUE((Record{VqDate(2000, 1, 1), 2} <=> Record{VqDate(2000, 1, 1), {}}) > 0);
}

// --- Hash

template <class Value>
void ExpectHashes(const std::vector<Value>& different) {
    std::set<std::size_t> codes;
    std::unordered_set<Value> table;
    for (const Value& value : different) {
        codes.insert(std::hash<Value>()(value));
        table.insert(value);
        EXPECT_FALSE(table.insert(Value(value)).second) << Streamed(value);
    }
    EXPECT_EQ(codes.size(), different.size()) << Streamed(different.front());
    EXPECT_EQ(table.size(), different.size()) << Streamed(different.front());
}

TEST(StandardLibrary, HashesEqualValuesEqual) {
    ExpectHashes<VqInt64>({0, -1, VqInt64(0, 1), VqInt64(1, 0)});
    ExpectHashes<VqDate>({VqDate(2000, 1, 2), VqDate(2000, 2, 1), Null<VqDate>(), VqDate(-1, 5, 7), VqDate(-1, -1, 7)});
    ExpectHashes<VqTime>({VqTime(1, 2, 3), VqTime(3, 2, 1), Null<VqTime>(), VqTime(-1, 0, 0)});
    ExpectHashes<VqDateTime>({{VqDate(2000, 1, 2), VqTime(1, 2, 3)}, {VqDate(2000, 1, 2), VqTime(1, 2, 4)}});
    ExpectHashes<d_Date>({d_Date(2000, 1, 2), d_Date(1582, 10, 4), d_Date(-5, 1, 1)});
    ExpectHashes<VqBoolean>({0, 1, Byte(255)});
    ExpectHashes<VqSeal>({Seal(0), Seal(1), Seal(65536), Seal(VqInt64(0, 1))});
    ExpectHashes<VqObjId>({Object(0, 0), Object(0, 1), Object(1, 0)});
    ExpectHashes<VqDBOId>({Object(Object(1, 4), 0), Object(Object(1, 4), 1)});
    ExpectHashes<VqClassId>({Class(0, 1), Class(1, 0), Null<VqClassId>()});
    ExpectHashes<VqRef>({Ref(0, Object(1, 4)), Ref(1, Object(1, 4)), Ref(1, Object(4, 1))});
    ExpectHashes<VqLocalRef>({Local(Object(1, 4)), Local(Object(4, 1))});
    EXPECT_EQ(std::hash<VqRef>()(Ref(1, Object(1, 4, 9), Class(2, 3))), std::hash<VqRef>()(Ref(1, Object(1, 4))));
    ExpectHashes<VqBlob>({Null<VqBlob>(), VqBlob(), "a", VqBlob(1L), VqBlob(2L)});
    ExpectHashes<VqNull_char>({VqNull_char(), '\0', 'a', '\xFF'});
    ExpectHashes<VqNull_VqInt64>({VqNull_VqInt64(), VqInt64(0), VqInt64(-1)});
    EXPECT_EQ(std::hash<VqBoolean>()(Byte(200)), std::hash<VqBoolean>()(1)) << "equal truth";
    EXPECT_EQ(std::hash<d_Date>()(d_Date(2000, 2, 30)), std::hash<d_Date>()(d_Date(2000, 3, 1))) << "equal days";
}

// --- Streams

TEST(StandardLibrary, StreamsDefaultTexts) {
    EXPECT_EQ(Streamed(VqInt64(-31)), "-31");
    const VqDate date(2005, 3, 7);
    EXPECT_EQ(Streamed(date) + Streamed(d_Date(2005, 3, 7)) + Streamed(VqTime(12, 5, 9)),
              "2005-03-072005-03-0712:05:09");
    EXPECT_EQ(Streamed(Ref(3, Object(1, 42, 7), Class(12, 5))) + Streamed(Class(12, 3)) + Streamed(Object(0, 0)),
              "(3:1-42#7,12v5)(12v3){NULL}");
    EXPECT_EQ(Streamed(VqBlob("ab")), "[BLOB,len=3]");
    EXPECT_EQ(Streamed(VqIString("caf\xE9")) + Streamed(VqCaseIString("")), "caf\u00E9");
    EXPECT_EQ(Streamed(Wide(u"\u6771\u4EAC")), "\u6771\u4EAC");
    EXPECT_EQ(Streamed(In(9, "\xC1")), "\u0430") << "KOI8-R";
    EXPECT_EQ(Streamed(VqNull_ushort(65535)) + Streamed(VqNull_int(-1)) + Streamed(VqNull_ulong(4294967295)),
              "65535-14294967295");
    EXPECT_EQ(Streamed(VqNull_char('a')) + Streamed(VqNull_float(1.5f)), "a1.500000");
    for (const std::string& null : {Streamed(Null<VqDate>()), Streamed(Null<VqString>()), Streamed(Null<VqBlob>()),
                                    Streamed(VqNull_double()), Streamed(Byte(255))}) {
        EXPECT_EQ(null, "{NULL}");
    }
    std::ostringstream out;
    out << std::left << std::setw(8) << std::setfill('.') << VqBoolean(1) << VqInt64(7);
    EXPECT_EQ(out.str(), "TRUE....7");
}

}  // namespace
