#include "vqnull.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <memory>
#include <vector>

#include "_vqnulty.h"
#include "convert.h"
#include "testsupport.h"
#include "vqtypes.h"

namespace {

using vqtest::Bytes;
using vqtest::Hex;

// Two values of each type in their order, and the second one's text and bytes on disk, high byte first.
template <class Null>
struct Sample;

#define VQ_SAMPLE(Null, Low, High, Format, Text, Exchange, Disk) \
    template <>                                                  \
    struct Sample<Null> {                                        \
        static Null::ValueType low() { return Low; }             \
        static Null::ValueType high() { return High; }           \
        static constexpr const char* format = Format;            \
        static constexpr const char* text = Text;                \
        static constexpr const char* exchange = Exchange;        \
        static constexpr const char* disk = Disk;                \
    };

VQ_SAMPLE(VqNull_char, static_cast<char>(0x80), 'A', "%c", "A", "65", "00 41")
VQ_SAMPLE(VqNull_uchar, 'A', 0x80, "%c", "0x80", "-128", "00 80")
VQ_SAMPLE(VqNull_short, -2, 0x1234, "%hd", "4660", "4660", "00 12 34")
VQ_SAMPLE(VqNull_ushort, 1, 0xFFFE, "%hu", "65534", "-2", "00 ff fe")
VQ_SAMPLE(VqNull_int, -2, 0x12345678, "%d", "305419896", "305419896", "00 12 34 56 78")
VQ_SAMPLE(VqNull_unsigned, 1, 0xFFFFFFFE, "%u", "4294967294", "-2", "00 ff ff ff fe")
VQ_SAMPLE(VqNull_long, INT32_MIN, -1, "%ld", "-1", "-1", "00 ff ff ff ff")
VQ_SAMPLE(VqNull_ulong, 1, 0x80000000, "%lu", "2147483648", "-2147483648", "00 80 00 00 00")
VQ_SAMPLE(VqNull_float, -2.5f, 1.5f, "%f", "1.500000", "1.5", "00 3f c0 00 00")
VQ_SAMPLE(VqNull_double, -2.5, 0.1, "%lf", "0.100000", "0.1", "00 3f b9 99 99 99 99 99 9a")
VQ_SAMPLE(VqNull_VqInt64, VqInt64(0xFFFFFFFF, -1), VqInt64(0x89ABCDEF, 1), "%S", "6604705263", "6604705263",
          "00 89 ab cd ef 00 00 00 01")

#undef VQ_SAMPLE

template <class Value>
constexpr char PlainRow = VqTypeId_char;
template <>
constexpr char PlainRow<unsigned char> = VqTypeId_VqByte;
template <>
constexpr char PlainRow<std::int16_t> = VqTypeId_short;
template <>
constexpr char PlainRow<std::uint16_t> = VqTypeId_VqWord;
template <>
constexpr char PlainRow<std::int32_t> = VqTypeId_int;
template <>
constexpr char PlainRow<std::uint32_t> = VqTypeId_unsigned;
template <>
constexpr char PlainRow<float> = VqTypeId_float;
template <>
constexpr char PlainRow<double> = VqTypeId_double;
template <>
constexpr char PlainRow<VqInt64> = VqTypeId_VqInt64;

template <class Null>
class Nullable : public testing::Test {
  protected:
    using Slots = VqNullSlots<Null>;

    static Null Low() { return Sample<Null>::low(); }
    static Null High() { return Sample<Null>::high(); }
    static int Compare(unsigned char format, const void* a, const void* b, unsigned long count) {
        int error = 77;
        const int result = Slots::Compare(format, 0, a, 0, b, 0, count, error);
        EXPECT_EQ(error, VqStatus_Ok);
        return result;
    }
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

TYPED_TEST(Nullable, OrdersNullFirst) {
    const TypeParam ascending[] = {TypeParam(), this->Low(), this->High()};
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) {
            const TypeParam &a = ascending[i], &b = ascending[j];
            EXPECT_EQ(a == b, i == j);
            EXPECT_EQ(a != b, i != j);
            EXPECT_EQ(a < b, i < j);
            EXPECT_EQ(a > b, i > j);
            EXPECT_EQ(a <= b, i <= j);
            EXPECT_EQ(a >= b, i >= j);
            EXPECT_EQ(this->Compare(VqFormat_Memory, &a, &b, 1), vqtest::Sign(i - j));
            for (const unsigned char format : {VqFormat_LittleEndian, VqFormat_BigEndian}) {
                unsigned char stored[2][16];
                TestFixture::Slots::Store(stored[0], &a, format, 1);
                TestFixture::Slots::Store(stored[1], &b, format, 1);
                EXPECT_EQ(this->Compare(format, stored[0], stored[1], 1), vqtest::Sign(i - j));
            }
        }
    }
}

TYPED_TEST(Nullable, StoresGoldenBytesAndLoadsThemBack) {
    using Slots = typename TestFixture::Slots;
    const TypeParam values[] = {this->High(), TypeParam(), this->Low()};
    const unsigned long width = sizeof(typename TypeParam::ValueType) + 1;
    std::string null = "01";
    for (unsigned long i = 1; i < width; ++i) null += " 00";

    for (const unsigned char format : {VqFormat_LittleEndian, VqFormat_BigEndian, VqFormat_Memory}) {
        std::vector<unsigned char> stored(3 * width);
        ASSERT_EQ(Slots::Store(stored.data(), values, format, 3), stored.size());
        EXPECT_EQ(Slots::SizeGet(values, VqFormat_Memory, format, 3), stored.size());
        EXPECT_EQ(Slots::NullSizeGet(3), stored.size());
        MemFile file(stored.data(), 3 * width);
        EXPECT_EQ(Slots::SizeGetFromMemFile(&file, format, 3), stored.size());
        if (format == VqFormat_BigEndian) {
            EXPECT_EQ(Hex(stored.data(), width), Sample<TypeParam>::disk);
            EXPECT_EQ(Hex(stored.data() + width, width), null);
        }
        TypeParam loaded[3];
        EXPECT_EQ(Slots::Load(loaded, stored.data(), format, 3), stored.size());
        for (int i = 0; i < 3; ++i) EXPECT_EQ(loaded[i], values[i]) << i;
    }
    // Behind the value in memory order, before it on disk; only 1 is null.
    unsigned char stored[16];
    Slots::Store(stored, values + 1, VqFormat_Memory, 1);
    EXPECT_EQ(stored[width - 1], 1);
    Slots::Store(stored, values, VqFormat_BigEndian, 1);
    stored[0] = 2;
    TypeParam loaded;
    Slots::Load(&loaded, stored, VqFormat_BigEndian, 1);
    EXPECT_EQ(loaded, values[0]);
}

TYPED_TEST(Nullable, ComparesArraysWithinTheirLengths) {
    using Slots = typename TestFixture::Slots;
    const TypeParam a[] = {this->High(), TypeParam(), this->Low()}, b[] = {this->High(), TypeParam(), this->High()};
    EXPECT_EQ(this->Compare(VqFormat_Memory, a, b, 3), -1);
    EXPECT_EQ(this->Compare(VqFormat_Memory, b, a, 3), 1);
    EXPECT_EQ(this->Compare(VqFormat_Memory, a, b, 2), 0);

    unsigned char storedA[64], storedB[64];
    const unsigned long width = Slots::Store(storedA, a, VqFormat_BigEndian, 3) / 3;
    Slots::Store(storedB, b, VqFormat_BigEndian, 3);
    for (const auto& [format, size, first, second] :
         {std::tuple<unsigned char, unsigned long, const void*, const void*>{VqFormat_Memory, sizeof(TypeParam), a, b},
          {VqFormat_BigEndian, width, storedA, storedB}}) {
        int error = 0;
        EXPECT_EQ(Slots::Compare(format, 3 * size, first, 3 * size, second, 0, 3, error), -1);
        EXPECT_EQ(error, VqStatus_Ok);
        EXPECT_EQ(Slots::Compare(format, 2 * size, first, 0, second, 0, 3, error), 0);
        EXPECT_EQ(error, VqStatus_BufferEnd);
    }
}

TYPED_TEST(Nullable, CreatesNullsAndCopiesArrays) {
    using Slots = typename TestFixture::Slots;
    for (void* const array : {Slots::Create(3), Slots::DefaultValue(3, 0), Slots::DefaultValue(3, 1)}) {
        for (int i = 0; i < 3; ++i) EXPECT_NE(Slots::IsNull(static_cast<TypeParam*>(array) + i), 0);
        EXPECT_EQ(Slots::Delete(array, 3), 0u);
    }
    TypeParam values[] = {this->Low(), TypeParam(), this->High(), this->High()};
    EXPECT_EQ(Slots::IsNull(values), 0);
    EXPECT_EQ(Slots::SetNull(values + 3), 0);
    EXPECT_TRUE(values[3].IsNullValue());

    Slots::Assignment(values + 1, values, 3, 0);  // overlapping
    const TypeParam shifted[] = {this->Low(), this->Low(), TypeParam(), this->High()};
    EXPECT_TRUE(std::equal(values, values + 4, shifted));
    Slots::Copy(values, shifted + 3, 4, 1);
    for (const TypeParam& value : values) EXPECT_EQ(value, this->High());
    Slots::Constructor(values, 2);
    EXPECT_TRUE(values[0].IsNullValue() && values[1].IsNullValue() && !values[2].IsNullValue());
    Slots::Constructor(nullptr, 2);
    Slots::Destructor(values, 4);
}

TYPED_TEST(Nullable, TranslatesBetweenForms) {
    using Slots = typename TestFixture::Slots;
    const TypeParam values[] = {this->High(), TypeParam()};
    unsigned char stored[32], copied[40];
    const unsigned long size =
        Slots::Translate(stored, VqFormat_BigEndian, sizeof stored, values, VqFormat_Memory, sizeof values, 2);
    EXPECT_EQ(size, Slots::NullSizeGet(2));
    std::memset(copied, 0xEE, sizeof copied);
    EXPECT_EQ(Slots::Translate(copied, VqFormat_BigEndian, size + 2, stored, VqFormat_BigEndian, size, 2), size + 2);
    EXPECT_EQ(std::memcmp(copied, stored, size), 0);
    EXPECT_EQ(Hex(copied + size, 3), "00 00 ee");

    TypeParam loaded[2], assigned[2];
    EXPECT_EQ(Slots::Translate(loaded, VqFormat_Memory, 0, copied, VqFormat_BigEndian, size, 2), sizeof loaded);
    EXPECT_EQ(Slots::Translate(assigned, VqFormat_Memory, 0, loaded, VqFormat_Memory, 0, 2), sizeof loaded);
    EXPECT_TRUE(std::equal(values, values + 2, assigned));
}

TYPED_TEST(Nullable, PrintsAndScansValuesAndNulls) {
    using Slots = typename TestFixture::Slots;
    TypeParam values[] = {this->High(), TypeParam(), this->High()};
    VqString text("=");
    EXPECT_EQ(&Slots::Print(text, values, Sample<TypeParam>::format, 3), &text);
    const std::string one = Sample<TypeParam>::text;
    EXPECT_EQ(Bytes(text), "=" + one + ",{NULL}," + one);

    TypeParam scanned[] = {TypeParam(), this->Low(), TypeParam(), this->Low()};
    VqString in(Bytes(text).substr(1).c_str());
    EXPECT_EQ(Slots::Scan(scanned, in, Sample<TypeParam>::format, 4), scanned);
    EXPECT_TRUE(scanned[1].IsNullValue());
    EXPECT_FALSE(scanned[2].IsNullValue());
    EXPECT_EQ(scanned[3], this->Low());  // no text for it
    VqString again;
    Slots::Print(again, scanned, Sample<TypeParam>::format, 3);
    EXPECT_EQ(Bytes(again), Bytes(in));
}

// Texts and formats that the plain row and its nullable one read to the same values, whatever they make of them.
TYPED_TEST(Nullable, ScansAsThePlainRow) {
    using Slots = typename TestFixture::Slots;
    using Value = typename TypeParam::ValueType;
    VqTypeMgr manager(5);
    const char* const own = Sample<TypeParam>::format;
    const std::string quoted = std::string("<") + own + ">", comma = std::string(own) + ",";
    const char* const texts[] = {"",
                                 "7",
                                 "-3",
                                 " 12",
                                 "1,2",
                                 "1 2,3",
                                 "x",
                                 "0x1F",
                                 "017",
                                 "1.5e1",
                                 "<7>",
                                 "<7,",
                                 "7,x",
                                 "7,",
                                 "999999",
                                 "0x80",
                                 "A,B",
                                 ",",
                                 "1,,2",
                                 "-",
                                 "<1>,<2>",
                                 "1,2,3,4",
                                 "99999999999999999999"};
    for (const char* const format : {own, quoted.c_str(), comma.c_str(), "", "%", "%%"}) {
        for (const char* const text : texts) {
            for (const unsigned long count : {1ul, 3ul}) {
                if (sizeof(Value) == 1 && count != 1) continue;  // arrays of plain bytes have no separator
                const Value first = Sample<TypeParam>::low();
                Value plain[] = {first, first, first};
                TypeParam values[] = {first, first, first};
                VqString a(text), b(text);
                manager.ScanFromVqString(PlainRow<Value>, plain, a, format, count);
                Slots::Scan(values, b, format, count);
                for (int i = 0; i < 3; ++i) {
                    EXPECT_EQ(values[i], TypeParam(plain[i])) << text << " under " << format << ", " << i;
                }
            }
        }
    }
}

TYPED_TEST(Nullable, ConvertsThroughStrings) {
    using Slots = typename TestFixture::Slots;
    TypeParam values[] = {this->High(), TypeParam()};
    VqTypeConvertData* const data = Slots::ConvertTo(values, 2);
    ASSERT_NE(data, nullptr);
    EXPECT_EQ(data->count, 2u);
    EXPECT_EQ(data->type, VqTypeId_VqString);
    EXPECT_EQ(data->manager, nullptr);
    EXPECT_EQ(Bytes(*data->GetString(0)), Sample<TypeParam>::exchange);
    EXPECT_TRUE(data->GetString(1)->IsNullValue());

    TypeParam* const back = static_cast<TypeParam*>(Slots::ConvertFrom(data, 3));
    EXPECT_EQ(back[0], values[0]);
    EXPECT_TRUE(back[1].IsNullValue());
    EXPECT_TRUE(back[2].IsNullValue());
    Slots::Delete(back, 3);

    *data->GetString(0) = "";
    TypeParam* const fromEmpty = static_cast<TypeParam*>(Slots::ConvertFrom(data, 1));
    EXPECT_EQ(*fromEmpty, TypeParam(typename TypeParam::ValueType{}));
    Slots::Delete(fromEmpty, 1);
    delete[] static_cast<VqString*>(data->data);
    delete data;

    TypeParam* const fromNothing = static_cast<TypeParam*>(Slots::ConvertFrom(nullptr, 1));
    EXPECT_TRUE(fromNothing->IsNullValue());
    Slots::Delete(fromNothing, 1);
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
    VqNull_short value;
    VqString text("x");
    VqNullSlots<VqNull_short>::Scan(&value, text, nullptr, 1);
    EXPECT_TRUE(value.IsNullValue());
    value = 3;
    VqNullSlots<VqNull_short>::Scan(&value, text, nullptr, 1);
    EXPECT_EQ(value, VqNull_short(3));
}

TEST(NullableFloat, ANumberThatIsNoneIsLessThanEverything) {
    const VqNull_double null, nan = std::numeric_limits<double>::quiet_NaN(), one = 1.0;
    int error;
    const auto compare = [&](const VqNull_double& a, const VqNull_double& b) {
        return VqNullSlots<VqNull_double>::Compare(VqFormat_Memory, 0, &a, 0, &b, 0, 1, error);
    };
    EXPECT_EQ(compare(nan, one), -1);
    EXPECT_EQ(compare(one, nan), -1);
    EXPECT_EQ(compare(nan, nan), -1);
    EXPECT_EQ(compare(null, nan), -1);
    EXPECT_EQ(compare(nan, null), 1);
    EXPECT_FALSE(nan == nan || nan < one || nan >= one);
}

}  // namespace
