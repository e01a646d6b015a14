// The type manager: what it adds to its rows.
#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <new>

#include "_vqnulty.h"
#include "rowvalues.h"
#include "vqnull.h"

using namespace vqtest;

namespace {

TEST(TypeMgr, FactoryVersionsChooseTheTable) {
    const struct {
        unsigned long version;
        bool current;
    } cases[] = {{0, false},  {3, false}, {4, true},  {5, true},         {10, true},
                 {11, false}, {12, true}, {99, true}, {0x10003ul, true}, {ULONG_MAX, true}};
    VqTypeMgr manager(5);
    for (const auto& c : cases) {
        manager.SetFactory(c.version);
        EXPECT_EQ(manager.SupportsNullValue(VqTypeId_VqString) != 0, c.current) << c.version;
        EXPECT_EQ(manager.MemLenGet(VqTypeId_VqNull_char, 1), c.current ? 2u : 0u) << c.version;
        EXPECT_EQ(manager.MemLenGet(VqTypeId_VqBoolean, 1), 1u) << c.version;
    }
}

TEST(TypeMgr, IdentifiersWithoutARowAreTheIllegalOne) {
    const struct {
        int id;
        int valid;
        const char* name;
    } cases[] = {{0, 1, "char"},      {39, 1, "VqSeal"},   {40, 1, "illegal"}, {41, 0, "illegal"},  {99, 0, "illegal"},
                 {100, 1, "illegal"}, {127, 1, "illegal"}, {-1, 1, "illegal"}, {-128, 1, "illegal"}};
    const VqTypeMgr manager(5);
    for (const auto& c : cases) {
        const char id = static_cast<char>(c.id);
        EXPECT_EQ(manager.IsValidType(id), c.valid) << c.id;
        EXPECT_STREQ(manager.NameGet(id, nullptr), c.name) << c.id;
    }
    EXPECT_EQ(manager.Create(100, 5), nullptr);
}

TEST(TypeMgr, FindsRowsByName) {
    const VqTypeMgr manager(5);
    char id;
    for (char i = 0; i < VqTypeCount; ++i) {
        char name[32];
        EXPECT_EQ(manager.Name2VqTypeId(manager.NameGet(i, name), id), 0) << name;
        EXPECT_EQ(id, i) << name;
    }
    for (const char* name : {"vqint64", "VqInt64 ", "", "string"}) {
        EXPECT_EQ(manager.Name2VqTypeId(name, id), 1) << name;
        EXPECT_EQ(id, 41) << name;
    }
    EXPECT_EQ(VqTypeMgr(3).Name2VqTypeId("VqSeal", id), 1);
}

TEST(TypeMgr, FamiliesShareTheirFunctions) {
    VqTypeMgr manager(5), older(3);
    const auto expectShared = [](VqTypeMgr& m1, char a, VqTypeMgr& m2, char b, bool store, bool compare) {
        SCOPED_TRACE(m1.NameGet(a, nullptr) + std::string(" and ") + m2.NameGet(b, nullptr));
        EXPECT_EQ(m1.ConstructorPtrGet(a), m2.ConstructorPtrGet(b));
        EXPECT_EQ(m1.DestructorPtrGet(a), m2.DestructorPtrGet(b));
        EXPECT_EQ(m1.AssignmentPtrGet(a), m2.AssignmentPtrGet(b));
        EXPECT_EQ(m1.CopyPtrGet(a), m2.CopyPtrGet(b));
        EXPECT_EQ(m1.StorePtrGet(a) == m2.StorePtrGet(b), store);
        EXPECT_EQ(m1.CmpFuncPtrGet(a) == m2.CmpFuncPtrGet(b), compare);
        EXPECT_EQ(m1.ExchangePrintToVqStringFunc(a, nullptr), m2.ExchangePrintToVqStringFunc(b, nullptr));
        EXPECT_EQ(m1.ExchangeScanFromVqStringFunc(a, nullptr), m2.ExchangeScanFromVqStringFunc(b, nullptr));
    };
    expectShared(manager, VqTypeId_char, manager, VqTypeId_VqByte, true, false);
    expectShared(manager, VqTypeId_short, manager, VqTypeId_VqWord, true, false);
    expectShared(manager, VqTypeId_long, manager, VqTypeId_VqDWord, true, false);
    expectShared(manager, VqTypeId_VqDWord, manager, VqTypeId_BlockId, true, true);
    expectShared(manager, VqTypeId_int, manager, VqTypeId_enum, true, true);
    expectShared(manager, VqTypeId_int, manager, VqTypeId_unsigned, false, false);
    expectShared(manager, VqTypeId_VqString, older, VqTypeId_VqString, false, false);
    EXPECT_EQ(manager.LoadPtrGet(VqTypeId_VqString), older.LoadPtrGet(VqTypeId_VqString));
    EXPECT_EQ(manager.ComparePtrGet(VqTypeId_long), nullptr);
}

TEST(TypeMgr, ElementsAreFoundWithinTheCount) {
    const VqTypeMgr manager(5);
    std::int32_t longs[3];
    EXPECT_EQ(manager.GetArrayElement(VqTypeId_long, longs, 2, 3), longs + 2);
    EXPECT_EQ(manager.GetArrayElement(VqTypeId_long, longs, 3, 3), nullptr);
    EXPECT_EQ(manager.GetArrayElement(VqTypeId_long, longs, 2, 0), longs + 2);
    EXPECT_EQ(manager.GetArrayElement(VqTypeId_long, nullptr, 2, 0), nullptr);
}

TEST(TypeMgr, ArraysPrintWithCommasButBytesAsOnePiece) {
    VqTypeMgr manager(5);
    std::int32_t longs[] = {1, -2, 3};
    VqString text("=");
    EXPECT_EQ(Bytes(manager.PrintToVqString(VqTypeId_long, text, longs, nullptr, 3)), "=1,-2,3");
    EXPECT_EQ(Bytes(manager.PrintToVqString(VqTypeId_BlockId, text, longs, nullptr, 1)), "=1,-2,3#1");
    char bytes[] = {'a', ',', 'b'};
    EXPECT_EQ(Bytes(manager.PrintToVqString(VqTypeId_VqByte, text = VqString(""), bytes, nullptr, 3)), "a,b");

    // A text keeps the characters of its own code set in an array.
    VqString wide[] = {Wide(u"\u0141"), Wide(u"\u20AC")}, out(253, 0);
    EXPECT_EQ(Units(manager.PrintToVqString(VqTypeId_VqString, out, wide, nullptr, 2)), u"\u0141,\u20AC");
}

TEST(TypeMgr, NullPrintStringIsOneForAll) {
    VqTypeMgr manager(5);
    EXPECT_EQ(Bytes(VqTypeMgr::GetNullPrintString()), "{NULL}");
    VqTypeMgr::SetNullPrintString(VqString("n/a"));
    VqNull_int null;
    VqString text;
    EXPECT_EQ(Bytes(manager.PrintToVqString(VqTypeId_VqNull_int, text, &null, nullptr, 1)), "n/a");
    VqTypeMgr::SetNullPrintString(VqString("{NULL}"));
    EXPECT_EQ(Bytes(VqNullPrintString()), "{NULL}");
}

int CompareNever(unsigned char, unsigned long, const void*, unsigned long, const void*, unsigned short, unsigned long,
                 int& status) {
    status = VqStatus_Refused;
    return 42;
}
VqString& PrintStar(VqString& out, void*, const char*, unsigned long) { return out << '*'; }
void* ScanSeven(void* values, VqString&, const char*, unsigned long) {
    static_cast<std::int16_t*>(values)[0] = 7;
    return values;
}

TEST(TypeMgr, ExchangedEntriesAreSeenByEveryManagerAndCanBePutBack) {
    VqTypeMgr manager(5), older(3);
    const VqCompareFunc compare = manager.ExchangeVqTypeCmpFunc(VqTypeId_short, CompareNever);
    const VqPrintFunc print = manager.ExchangePrintToVqStringFunc(VqTypeId_short, PrintStar);
    const VqScanFunc scan = manager.ExchangeScanFromVqStringFunc(VqTypeId_short, ScanSeven);
    const char* const format = manager.ExchangeFormat(VqTypeId_short, "<%hd>");

    std::int16_t value = 1;
    VqString text;
    int status = 0;
    EXPECT_EQ(older.Cmp(VqTypeId_short, &value, &value, 0, 1, VqFormat_Memory), 42);
    EXPECT_EQ(older.Cmp(VqTypeId_short, 0, &value, 0, &value, 0, 1, VqFormat_Memory, status), 42);
    EXPECT_EQ(status, VqStatus_Refused);
    EXPECT_EQ(Bytes(older.PrintToVqString(VqTypeId_short, text, &value, nullptr, 1)), "*");
    older.ScanFromVqString(VqTypeId_short, &value, text, nullptr, 1);
    EXPECT_EQ(value, 7);
    EXPECT_EQ(older.Cmp(VqTypeId_VqWord, &value, &value, 0, 1, VqFormat_Memory), 0) << "another row's";

    EXPECT_EQ(older.ExchangeVqTypeCmpFunc(VqTypeId_short, compare), CompareNever);
    EXPECT_EQ(older.ExchangePrintToVqStringFunc(VqTypeId_short, print), PrintStar);
    EXPECT_EQ(older.ExchangeScanFromVqStringFunc(VqTypeId_short, scan), ScanSeven);
    text = "";
    EXPECT_EQ(Bytes(manager.PrintToVqString(VqTypeId_short, text, &value, nullptr, 1)), "<7>");
    EXPECT_STREQ(older.ExchangeFormat(VqTypeId_short, format), "<%hd>");
    EXPECT_STREQ(manager.ExchangeFormat(VqTypeId_short, nullptr), "%hd");
    EXPECT_STREQ(manager.ExchangeFormat(VqTypeId_short, nullptr), "%hd");
    EXPECT_EQ(manager.CmpFuncPtrGet(VqTypeId_short), compare);
}

// --- Memory that runs out

unsigned long refusedBytes = 0;
int refusals = 0;

TEST(TypeMgr, CreateAsksTheMemoryHandlerAndGivesNull) {
    refusals = 0;
    const VqMemoryHandler before = VqSetMemoryHandler([](unsigned long size) {
        refusedBytes = size;
        ++refusals;
        return 1;
    });
    VqTypeMgr manager(5);
    EXPECT_EQ(manager.Create(VqTypeId_double, ULONG_MAX / 4), nullptr);
    EXPECT_EQ(refusals, 1) << "no help makes room for so many";
    EXPECT_EQ(refusedBytes, ULONG_MAX);
    EXPECT_EQ(manager.DefaultValue(VqTypeId_short, ULONG_MAX, 0), nullptr);
    EXPECT_EQ(manager.ConvertFrom(VqTypeId_int, nullptr, ULONG_MAX), nullptr);
    VqSetMemoryHandler(before);
}

// --- Nullity

TEST(Nullity, NullSortsFirstAndNoneIsReported) {
    AssertRecorder asserts;
    EXPECT_EQ(VqNullityCompare(VqNullityClass(true, true)), 0);
    EXPECT_EQ(VqNullityCompare(VqNullityClass(true, false)), -1);
    EXPECT_EQ(VqNullityCompare(VqNullityClass(false, true)), 1);
    EXPECT_TRUE(asserts.Lines().empty());
    EXPECT_EQ(VqNullityCompare(VqNullityClass(false, false)), 0);
    ASSERT_EQ(asserts.Lines().size(), 1u);
    EXPECT_EQ(asserts.Lines()[0].rfind("nr != unknown src\\_vqnulty:", 0), 0u);
}

}  // namespace
