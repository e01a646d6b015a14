#include "vqnull.h"

#include <gtest/gtest.h>

#include <cstring>
#include <sstream>

#include "_vqnulty.h"
#include "testsupport.h"
#include "vqtypes.h"

namespace {

using vqtest::Bytes;

// Two values of each type in their order, the second one's texts, and the row of its values without null.
template <class Null>
struct Sample;

#define VQ_SAMPLE(Null, Low, High, Format, Text, PlainRow)    \
    template <>                                               \
    struct Sample<Null> {                                     \
        static Null::ValueType low() { return Low; }          \
        static Null::ValueType high() { return High; }        \
        static constexpr const char* format = Format;         \
        static constexpr const char* text = Text;             \
        static constexpr char plainRow = VqTypeId_##PlainRow; \
    };

VQ_SAMPLE(VqNull_char, static_cast<char>(0x80), 'A', "%c", "A", char)
VQ_SAMPLE(VqNull_uchar, 'A', 0x80, "%c", "0x80", VqByte)
VQ_SAMPLE(VqNull_short, -2, 0x1234, "%hd", "4660", short)
VQ_SAMPLE(VqNull_ushort, 1, 0xFFFE, "%hu", "65534", VqWord)
VQ_SAMPLE(VqNull_int, -2, 0x12345678, "%d", "305419896", int)
VQ_SAMPLE(VqNull_unsigned, 1, 0xFFFFFFFE, "%u", "4294967294", unsigned)
VQ_SAMPLE(VqNull_long, INT32_MIN, -1, "%ld", "-1", int)
VQ_SAMPLE(VqNull_ulong, 1, 0x80000000, "%lu", "2147483648", unsigned)
VQ_SAMPLE(VqNull_float, -2.5f, 1.5f, "%f", "1.500000", float)
VQ_SAMPLE(VqNull_double, -2.5, 0.1, "%lf", "0.100000", double)
VQ_SAMPLE(VqNull_VqInt64, VqInt64(0xFFFFFFFF, -1), VqInt64(0x89ABCDEF, 1), "%S", "6604705263", VqInt64)

#undef VQ_SAMPLE

template <class Null>
class Nullable : public testing::Test {
  protected:
    using Slots = VqNullSlots<Null>;

    static Null Low() { return Sample<Null>::low(); }
    static Null High() { return Sample<Null>::high(); }
};

using Types = testing::Types<VqNull_char, VqNull_uchar, VqNull_short, VqNull_ushort, VqNull_int, VqNull_unsigned,
                             VqNull_long, VqNull_ulong, VqNull_float, VqNull_double, VqNull_VqInt64>;
TYPED_TEST_SUITE(Nullable, Types);

TYPED_TEST(Nullable, StartsNullAndTakesValues) {
    TypeParam n;
    EXPECT_TRUE(n.IsNullValue());
    n = Sample<TypeParam>::high();
    EXPECT_FALSE(n.IsNullValue());
    EXPECT_EQ(n, this->High());
    EXPECT_EQ(n.SetNullValue(), 0);
    EXPECT_EQ(n, TypeParam());
    const typename TypeParam::ValueType zero{};
    EXPECT_EQ(std::memcmp(&n, &zero, sizeof zero), 0);
}

// The mark is behind the value in memory order, before it on disk; only 1 is null.
TYPED_TEST(Nullable, MarksNullsWithOne) {
    using Slots = typename TestFixture::Slots;
    const TypeParam null, value = this->High();
    unsigned char stored[16];
    EXPECT_EQ(Slots::Store(stored, &null, VqFormat_Memory, 1), sizeof(typename TypeParam::ValueType) + 1);
    EXPECT_EQ(stored[sizeof(typename TypeParam::ValueType)], 1);
    Slots::Store(stored, &value, VqFormat_BigEndian, 1);
    stored[0] = 2;
    TypeParam loaded;
    Slots::Load(&loaded, stored, VqFormat_BigEndian, 1);
    EXPECT_EQ(loaded, value);
}

TYPED_TEST(Nullable, CopiesOverlappingArrays) {
    using Slots = typename TestFixture::Slots;
    TypeParam values[] = {this->Low(), TypeParam(), this->High(), this->High()};
    Slots::Assignment(values + 1, values, 3, 0);
    const TypeParam shifted[] = {this->Low(), this->Low(), TypeParam(), this->High()};
    EXPECT_TRUE(std::equal(values, values + 4, shifted));
    Slots::Constructor(values, 2);
    EXPECT_TRUE(values[0].IsNullValue() && values[1].IsNullValue() && !values[3].IsNullValue());
}

// Texts and formats that the plain row and its nullable one read to the same values, whatever they make of them.
TYPED_TEST(Nullable, ScansAsThePlainRow) {
    using Slots = typename TestFixture::Slots;
    using Value = typename TypeParam::ValueType;
    VqTypeMgr manager(5);
    const char* const own = Sample<TypeParam>::format;
    const std::string quoted = std::string("<") + own + ">", comma = std::string(own) + ",";
    std::istringstream texts(
        "|7|-3| 12|1,2|1 2,3|x|0x1F|017|1.5e1|<7>|<7,|7,x|7,|999999|0x80|A,B|,|1,,2|-|<1>,<2>|"
        "1,2,3,4|99999999999999999999");
    for (std::string text; std::getline(texts, text, '|');) {
        for (const char* const format : {own, quoted.c_str(), comma.c_str(), "", "%", "%%"}) {
            for (const unsigned long count : {1ul, 3ul}) {
                if (sizeof(Value) == 1 && count != 1) continue;  // arrays of plain bytes have no separator
                const Value first = Sample<TypeParam>::low();
                Value plain[] = {first, first, first};
                TypeParam values[] = {first, first, first};
                VqString a(text.c_str()), b(text.c_str());
                manager.ScanFromVqString(Sample<TypeParam>::plainRow, plain, a, format, count);
                Slots::Scan(values, b, format, count);
                for (int i = 0; i < 3; ++i) {
                    EXPECT_EQ(values[i], TypeParam(plain[i])) << text << " under " << format << ", " << i;
                }
            }
        }
    }
}

TYPED_TEST(Nullable, PrintsItsTexts) {
    using Slots = typename TestFixture::Slots;
    TypeParam values[] = {this->High(), TypeParam()};
    VqString text("=");
    Slots::Print(text, values, Sample<TypeParam>::format, 2);
    EXPECT_EQ(Bytes(text), std::string("=") + Sample<TypeParam>::text + ",{NULL}");
}

TEST(NullableText, FollowsTheNullPrintString) {
    const VqString before = VqNullPrintString();
    VqNullPrintString() = "-";
    VqNull_int value = 5;
    VqString text("-12"), out;
    VqNullSlots<VqNull_int>::Scan(&value, text, "%d", 1);  // begins with it
    EXPECT_TRUE(value.IsNullValue());
    VqNullSlots<VqNull_int>::Print(out, &value, "[%d]", 1);
    EXPECT_EQ(Bytes(out), "-");

    VqNullPrintString() = "";
    VqString number("7"), empty("");
    VqNullSlots<VqNull_int>::Scan(&value, number, "%d", 1);
    EXPECT_EQ(value, VqNull_int(7));
    VqNullSlots<VqNull_int>::Scan(&value, empty, "%d", 1);
    EXPECT_TRUE(value.IsNullValue());
    VqNullPrintString() = before;
}

TEST(NullableText, KeepsTheValueWhenNothingIsRead) {
    VqNull_short values[] = {VqNull_short(), 3};
    VqString text("x,x");
    VqNullSlots<VqNull_short>::Scan(values, text, nullptr, 2);
    EXPECT_TRUE(values[0].IsNullValue());
    EXPECT_EQ(values[1], VqNull_short(3));
}

}  // namespace
