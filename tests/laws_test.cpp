// Laws that hold for every row of both tables. A new row is tested by being there.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <set>
#include <sstream>

#include "rowtest.h"
#include "vqtm.h"

using namespace vqtest;

namespace {

constexpr unsigned char disk[] = {VqFormat_LittleEndian, VqFormat_BigEndian};

class Laws : public RowTest {
  protected:
    // The value at any address as bytes.
    ByteVector Stored(const void* value) const {
        const unsigned long size = manager.DiskLenGet(id, value, VqFormat_BigEndian, 1, VqFormat_Memory);
        ByteVector bytes(size);
        EXPECT_EQ(manager.Store(id, bytes.data(), value, VqFormat_BigEndian, 1), size);
        return bytes;
    }

  private:
    const FixedClock clock_{{2005, 3, 7}, {12, 5, 9, 0}};  // new dates and times are the clock's
};

TEST_P(Laws, LoadGivesWhatStoreTookAndSizesAreWhatIsWritten) {
    for (const unsigned char format : disk) {
        const ByteVector bytes = samples->Store(format, 0, count);
        EXPECT_EQ(manager.DiskLenGet(id, bytes.data(), format, count, format), bytes.size());
        MemFile file(bytes.data(), static_cast<unsigned long>(bytes.size()));
        EXPECT_EQ(manager.DiskLenGetFromMemFile(id, &file, format, count), bytes.size());
        EXPECT_EQ(file.Position(), 0u);
        if (manager.IsFixed(id)) {
            EXPECT_EQ(bytes.size() % count, 0u);
        }

        const RowValues loaded(manager, id, count);
        EXPECT_EQ(manager.Load(id, loaded.Get(), bytes.data(), format, count), bytes.size());
        ExpectEqualArrays(*samples, loaded);
    }
}

TEST_P(Laws, ScanReadsWhatPrintWrites) {
    const RowValues scanned(manager, id, readable);
    for (unsigned long i = 0; i < readable; ++i) {
        VqString text(samples->Print(i, format).c_str());
        EXPECT_EQ(manager.ScanFromVqString(id, scanned.At(i), text, format, 1), scanned.At(i));
    }
    ExpectEqualArrays(*samples, scanned);
}

TEST_P(Laws, AnArrayPrintsAsItsElements) {
    const bool bytes =
        manager.ExchangePrintToVqStringFunc(id, nullptr) == manager.ExchangePrintToVqStringFunc(VqTypeId_char, nullptr);
    std::string expected;
    for (unsigned long i = 0; i < count; ++i) expected += (i == 0 || bytes ? "" : ",") + samples->Print(i);
    VqString text;
    EXPECT_EQ(Bytes(manager.PrintToVqString(id, text, samples->Get(), nullptr, count)), expected);
}

TEST_P(Laws, CopiesAreEqualAndApart) {
    const RowValues assigned(manager, id, count);
    manager.AssignmentPtrGet(id)(assigned.Get(), samples->Get(), count, 0);
    ExpectEqualArrays(*samples, assigned);

    // In raw memory, and then each element the last sample.
    ByteVector raw(manager.MemLenGet(id, count) + 8);
    void* const values = raw.data() + (8 - reinterpret_cast<std::uintptr_t>(raw.data()) % 8) % 8;
    manager.CopyPtrGet(id)(values, samples->Get(), count, 0);
    manager.AssignmentPtrGet(id)(values, samples->At(count - 1), count, 1);
    for (unsigned long i = 0; i < count; ++i) {
        EXPECT_EQ(Stored(manager.GetArrayElement(id, values, i, count)), Stored(samples->At(count - 1))) << i;
    }
    manager.DestructorPtrGet(id)(values, count);

    manager.CopyPtrGet(id)(values, samples->Get(), count, 1);
    EXPECT_EQ(Stored(manager.GetArrayElement(id, values, count - 1, count)), Stored(samples->Get()));
    manager.DestructorPtrGet(id)(values, count);

    std::memset(raw.data(), 0xA5, raw.size());
    manager.ConstructorPtrGet(id)(values, count);
    const RowValues created(manager, id, 1);
    EXPECT_EQ(Stored(manager.GetArrayElement(id, values, count - 1, count)), Stored(created.Get()));
    manager.DestructorPtrGet(id)(values, count);
    ExpectEqualArrays(*samples, assigned);
}

TEST_P(Laws, TranslateIsStoreLoadAssignOrCopy) {
    for (const unsigned char format : disk) {
        const ByteVector stored = samples->Store(format, 0, count);
        const auto size = static_cast<unsigned long>(stored.size());
        ByteVector bytes(size + 3, 0xA5);
        EXPECT_EQ(manager.Translate(id, bytes.data(), format, size, samples->Get(), VqFormat_Memory, 0, count), size);
        EXPECT_EQ(ByteVector(bytes.begin(), bytes.end() - 3), stored);

        const RowValues loaded(manager, id, count);
        const unsigned long inMemory = manager.MemLenGet(id, count);
        EXPECT_EQ(manager.Translate(id, loaded.Get(), VqFormat_Memory, 0, stored.data(), format, size, count),
                  inMemory);
        ExpectEqualArrays(*samples, loaded);

        const RowValues assigned(manager, id, count);
        manager.Translate(id, assigned.Get(), VqFormat_Memory, 0, samples->Get(), VqFormat_Memory, 0, count);
        ExpectEqualArrays(*samples, assigned);

        ByteVector expected = stored;
        expected.insert(expected.end(), 2, 0);
        std::fill(bytes.begin(), bytes.end(), 0xA5);
        EXPECT_EQ(manager.Translate(id, bytes.data(), format, size + 2, stored.data(), format, size, count), size + 2);
        EXPECT_EQ(ByteVector(bytes.begin(), bytes.end() - 1), expected);
        EXPECT_EQ(bytes.back(), 0xA5);
        EXPECT_EQ(manager.Translate(id, bytes.data(), format, 1, expected.data() + size, format, 2, count), 1u);
        EXPECT_EQ(bytes[0], 0);
        EXPECT_EQ(bytes[1], expected[1]);
    }
}

TEST_P(Laws, NoValuesAreNoTrouble) {
    unsigned char nothing[1] = {0xA5};
    const RowValues none(manager, id, 0ul);
    EXPECT_NE(none.Get(), nullptr);
    int status = VqStatus_BufferEnd;
    EXPECT_EQ(manager.Cmp(id, 0, nullptr, 0, nullptr, VqCmp_Exact, 0, VqFormat_LittleEndian, status), 0);
    EXPECT_EQ(status, VqStatus_Ok);
    manager.ConstructorPtrGet(id)(nullptr, 1);
    manager.DestructorPtrGet(id)(nullptr, 1);
    manager.AssignmentPtrGet(id)(nothing, samples->Get(), 0, 1);
    manager.CopyPtrGet(id)(samples->Get(), nullptr, 1, 0);
    manager.Delete(id, nullptr, 1);
    VqString text;
    manager.PrintToVqString(id, text, nullptr, nullptr, 3);
    EXPECT_TRUE(text.IsEmpty());
    EXPECT_EQ(manager.ConvertTo(id, nullptr, 1), nullptr);
    EXPECT_EQ(nothing[0], 0xA5);
}

// Slots that no manager shows are told by what they do.
TEST_P(Laws, EverySlotIsTheTypesOwn) {
    const char none = VqTypeId_illegal;
    EXPECT_NE(manager.ConstructorPtrGet(id), manager.ConstructorPtrGet(none));
    EXPECT_NE(manager.DestructorPtrGet(id), manager.DestructorPtrGet(none));
    EXPECT_NE(manager.AssignmentPtrGet(id), manager.AssignmentPtrGet(none));
    EXPECT_NE(manager.CopyPtrGet(id), manager.CopyPtrGet(none));
    EXPECT_NE(manager.LoadPtrGet(id), manager.LoadPtrGet(none));
    EXPECT_NE(manager.StorePtrGet(id), manager.StorePtrGet(none));
    EXPECT_NE(manager.CmpFuncPtrGet(id), manager.CmpFuncPtrGet(none));
    EXPECT_NE(manager.ExchangePrintToVqStringFunc(id, nullptr), manager.ExchangePrintToVqStringFunc(none, nullptr));
    EXPECT_NE(manager.ExchangeScanFromVqStringFunc(id, nullptr), manager.ExchangeScanFromVqStringFunc(none, nullptr));
    EXPECT_EQ(manager.IsNullPtrGet(id) != manager.IsNullPtrGet(none), manager.SupportsNullValue(id) != 0);

    const ByteVector key = samples->Store(VqFormat_LittleEndian, 1, 1);
    VqIdxBounds scan;
    unsigned short operators = VqOperator_Equal;
    const float part =
        manager.EvalAndBound(id, nullptr, operators, key.data(), VqFormat_LittleEndian, 1, &scan, nullptr);
    EXPECT_TRUE(scan.lowKey != nullptr || part == 1);
    VqFreeBounds(scan);
    unsigned long codes = 0;
    for (unsigned long i = 0; i < count; ++i) {
        int status = VqStatus_BufferEnd;
        codes |= manager.Hash(id, 0, samples->At(i), 1, VqFormat_Memory, status);
        EXPECT_EQ(status, VqStatus_Ok);
    }
    EXPECT_EQ(codes == 0, id == VqTypeId_VqIString || id == VqTypeId_VqCaseIString);
}

INSTANTIATE_TEST_SUITE_P(Rows, Laws, testing::ValuesIn(Subjects(true)), SubjectName);

// The illegal row, and the types that the older table does not know.
TEST(RowsWithoutFunctions, DoNothing) {
    const std::vector<Subject> subjects = Subjects(false);
    EXPECT_EQ(subjects.size(), 1u + VqTypeCount - VqTypeId_VqNull_char);
    for (const Subject& subject : subjects) {
        EXPECT_EQ(VqTypeMgr(subject.version).NameGet(subject.id, nullptr), std::string("illegal"));
        SCOPED_TRACE(subject.Name());
        VqTypeMgr manager(subject.version);
        const char id = subject.id;
        unsigned char value[24], untouched[24];
        std::memset(value, 0xA5, sizeof value);
        std::memset(untouched, 0xA5, sizeof untouched);
        VqString text("1");
        unsigned short operators = 7;
        int status = VqStatus_Ok;
        MemFile file(value, sizeof value);

        EXPECT_EQ(manager.DefaultValue(id, 2, 1), nullptr);
        EXPECT_EQ(manager.Store(id, value, untouched, VqFormat_BigEndian, 1), 0u);
        EXPECT_EQ(manager.Load(id, value, untouched, VqFormat_BigEndian, 1), 0u);
        EXPECT_EQ(manager.DiskLenGet(id, value, VqFormat_BigEndian, 1, VqFormat_Memory), 0u);
        EXPECT_EQ(manager.DiskLenGetFromMemFile(id, &file, VqFormat_BigEndian, 1), 0u);
        EXPECT_EQ(manager.Translate(id, value, VqFormat_Memory, 4, untouched, 1, 4, 1), 0u);
        EXPECT_EQ(manager.Cmp(id, value, untouched, VqCmp_Exact, 1, VqFormat_Memory), 0);
        EXPECT_EQ(manager.EvalAndBound(id, nullptr, operators, value, 1, 1, nullptr, nullptr), 0);
        EXPECT_EQ(manager.Hash(id, 0, value, 1, VqFormat_Memory, status), 0u);
        EXPECT_EQ(manager.ConvertTo(id, value, 1), nullptr);
        EXPECT_EQ(manager.ConvertToVqStringOld(value, id, 1), nullptr);
        EXPECT_EQ(manager.ConvertFromVqStringOld(text, id, 1), nullptr);
        EXPECT_EQ(Bytes(manager.PrintToVqString(id, text, value, nullptr, 3)), "1");
        EXPECT_EQ(manager.ScanFromVqString(id, value, text, nullptr, 1), value);
        EXPECT_EQ(manager.IsNullValue(id, value), 0);
        EXPECT_EQ(manager.SetNullValue(id, value), VqStatus_Ok);
        status = VqStatus_BufferEnd;
        EXPECT_EQ(manager.Cmp(id, 0, value, 0, untouched, VqCmp_Exact, 1, VqFormat_Memory, status), 0);
        EXPECT_EQ(status, VqStatus_Ok);
        manager.ConstructorPtrGet(id)(value, 1);
        manager.DestructorPtrGet(id)(value, 1);
        manager.AssignmentPtrGet(id)(value, &text, 1, 0);
        manager.CopyPtrGet(id)(value, &text, 1, 0);
        EXPECT_EQ(std::memcmp(value, untouched, sizeof value), 0);
    }
}

// --- Disk bytes

// A caller who has no values yet makes room for null ones.
TEST(NullSizes, AreWhatNullValuesTake) {
    const struct {
        char id;
        VqNullSizeGetFunc nullSizeGet;
    } rows[] = {
        {VqTypeId_char, CharNullSizeGet},
        {VqTypeId_short, ShortNullSizeGet},
        {VqTypeId_long, LongNullSizeGet},
        {VqTypeId_int, IntNullSizeGet},
        {VqTypeId_float, FloatNullSizeGet},
        {VqTypeId_double, DoubleNullSizeGet},
        {VqTypeId_VqString, StringNullSizeGet},
        {VqTypeId_VqIString, VqIStringNullSizeGet},
        {VqTypeId_VqCaseIString, VqCaseIStringNullSizeGet},
        {VqTypeId_VqDate, DateNullSizeGet},
        {VqTypeId_VqTime, TimeNullSizeGet},
        {VqTypeId_VqDateTime, DaTimeNullSizeGet},
        {VqTypeId_VqBlob, BlobNullSizeGet},
        {VqTypeId_VqObjId, VqObjId::NullSizeGet},
        {VqTypeId_VqClassId, VqClassId::NullSizeGet},
        {VqTypeId_VqRef, VqRef::NullSizeGet},
        {VqTypeId_VqBoolean, BooleanNullSizeGet},
        {VqTypeId_VqSeal, SealNullSizeGet},
        {VqTypeId_VqInt64, Int64NullSizeGet},
        {VqTypeId_d_Date, d_DateNullSizeGet},
        {VqTypeId_d_Time, d_TimeNullSizeGet},
        {VqTypeId_d_Timestamp, d_TimestampNullSizeGet},
        {VqTypeId_d_Interval, FloatNullSizeGet},
    };
    VqTypeMgr manager(5);
    for (const auto& row : rows) {
        const RowValues nulls(manager, row.id, 3, manager.DefaultValue(row.id, 3, 1));
        EXPECT_EQ(nulls.Store(VqFormat_BigEndian, 0, 3).size(), row.nullSizeGet(3)) << manager.NameGet(row.id, nullptr);
    }
}

// A line of a golden file: its columns, of which the first is the name of a row.
struct GoldenRow {
    std::vector<std::string> columns;
    unsigned long version;
};

std::string Trimmed(const std::string& text) {
    const auto first = text.find_first_not_of(" \r"), last = text.find_last_not_of(" \r");
    return first == text.npos ? "" : text.substr(first, last - first + 1);
}

std::vector<GoldenRow> ReadGoldenRows(const char* name) {
    std::ifstream file(std::string(VQTM_SOURCE_DIR "/tests/golden/") + name);
    std::vector<GoldenRow> rows;
    for (std::string line; std::getline(file, line);) {
        if (Trimmed(line).empty() || line[0] == '#') continue;
        GoldenRow& row = rows.emplace_back();
        std::istringstream in(line);
        for (std::string column; std::getline(in, column, '|');) row.columns.push_back(Trimmed(column));
        const bool legacy = row.columns[0].starts_with("legacy ");
        row.columns[0].erase(0, legacy ? 7 : 0);
        row.version = legacy ? 3 : 5;
    }
    return rows;
}

// Checks each line with its row, and that every row has one: `check(manager, id, columns)`.
template <class Check>
void CheckGoldenRows(const char* file, Check check) {
    std::set<std::string> seen;
    for (const GoldenRow& golden : ReadGoldenRows(file)) {
        SCOPED_TRACE(golden.columns[0] + " " + golden.columns[1]);
        VqTypeMgr manager(golden.version);
        char id;
        ASSERT_EQ(manager.Name2VqTypeId(golden.columns[0].c_str(), id), 0);
        check(manager, id, golden.columns);
        seen.insert(golden.columns[0]);
    }
    for (const Subject& subject : Subjects(true)) {
        const std::string name = VqTypeMgr(subject.version).NameGet(subject.id, nullptr);
        EXPECT_TRUE(seen.contains(name)) << name << " has no golden bytes";
    }
}

std::string StoredHex(const RowValues& values, unsigned char format) {
    const ByteVector bytes = values.Store(format, 0, 1);
    return Hex(bytes.data(), bytes.size());
}

TEST(GoldenBytes, EveryRowWritesThem) {
    CheckGoldenRows("rows.txt", [](VqTypeMgr& manager, char id, const std::vector<std::string>& columns) {
        const Samples& own = SamplesOf(id);
        const std::vector<std::string> none, text = {columns[1]};
        const RowValues value(manager, id, own.exchange.empty() ? text : none, own.format,
                              own.exchange.empty() ? none : text);
        EXPECT_EQ(StoredHex(value, VqFormat_LittleEndian), columns[2]);
        EXPECT_EQ(StoredHex(value, VqFormat_BigEndian), columns.back());
    });
}

}  // namespace
