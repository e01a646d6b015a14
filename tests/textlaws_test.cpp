// Laws about texts that hold for every row, whatever the text and whatever the format.
#include <gtest/gtest.h>

#include <cstring>

#include "rowtest.h"
#include "vqbase.h"

using namespace vqtest;

namespace {

class TextLaws : public RowTest {
  protected:
    const FixedClock clock{{2024, 2, 29}, {13, 14, 15, 0}};
};

// The samples of all rows, and what is special to some.
const std::vector<std::string>& TextsOfAllRows() {
    static const std::vector<std::string> texts = [] {
        std::vector<std::string> all = {"{NULL}", "{NULL}x", "\xE9t\xE9", "0xe9", "Mar 1", "1,2,3", "%d", " 7", "+7"};
        for (char id = 0; id < VqTypeCount; ++id) {
            const auto& own = SamplesOf(id).texts;
            all.insert(all.end(), own.begin(), own.end());
        }
        return all;
    }();
    return texts;
}

TEST_P(TextLaws, TextsOfTwoByteCharactersReadAsTheirOneByteForms) {
    for (const std::string& bytes : TextsOfAllRows()) {
        VqString narrow(bytes.c_str()), wide(narrow);
        ASSERT_EQ(wide.SetCodeSet(253), 0);
        for (const char* const under : {format, static_cast<const char*>(nullptr)}) {
            for (const unsigned long n : {1ul, 3ul}) {
                const RowValues fromNarrow(manager, id, n), fromWide(manager, id, n);
                manager.ScanFromVqString(id, fromNarrow.Get(), narrow, under, n);
                manager.ScanFromVqString(id, fromWide.Get(), wide, under, n);
                for (unsigned long i = 0; i < n; ++i) {
                    EXPECT_EQ(fromNarrow.Print(i, format), fromWide.Print(i, format)) << bytes;
                    EXPECT_EQ(fromNarrow.IsNull(i), fromWide.IsNull(i)) << bytes;
                }
            }
        }
    }
}

TEST_P(TextLaws, AnArrayScansAsItPrints) {
    VqString text;
    manager.PrintToVqString(id, text, samples->Get(), format, readable);
    const RowValues scanned(manager, id, readable);
    EXPECT_EQ(manager.ScanFromVqString(id, scanned.Get(), text, format, readable), scanned.Get());
    ExpectEqualArrays(*samples, scanned);
}

// A row's print function prints arrays also without the manager, which takes them apart itself.
TEST_P(TextLaws, TheRowsOwnPrintFunctionPrintsArraysAsTheManagerDoes) {
    const VqPrintFunc print = manager.ExchangePrintToVqStringFunc(id, nullptr);
    const char* const rowFormat = manager.ExchangeFormat(id, nullptr);
    for (const char* const under : {rowFormat, format != nullptr ? format : rowFormat}) {
        for (const unsigned long n : {0ul, 1ul, 3ul, count}) {
            VqString own("<"), managed("<");
            EXPECT_EQ(&print(own, samples->Get(), under, n), &own);
            manager.PrintToVqString(id, managed, samples->Get(), under, n);
            EXPECT_EQ(Bytes(own), Bytes(managed)) << n;
        }
    }
}

// All values in one text: what was null comes back as what an empty text gives.
TEST_P(TextLaws, OneExchangeTextGivesTheValuesBack) {
    VqString* const text = manager.ConvertToVqStringOld(samples->Get(), id, count);
    ASSERT_NE(text, nullptr);
    const RowValues back(manager, id, count, manager.ConvertFromVqStringOld(*text, id, count));
    manager.Delete(VqTypeId_VqString, text, 1);
    VqString separator("\x01");
    const RowValues empty(manager, id, 1, manager.ConvertFromVqStringOld(separator, id, 1));
    VqTypeConvertData* const texts = manager.ConvertTo(id, samples->Get(), count);
    const RowValues converted(manager, id, count, manager.ConvertFrom(id, texts, count));
    delete texts;
    for (unsigned long i = 0; i < count; ++i) {
        if (samples->IsNull(i)) {
            ExpectEqual(back, i, empty, 0);
        } else {
            ExpectEqual(back, i, converted, i);
        }
    }
}

// Values of fixed length are plain memory, which a caller may have at any address.
TEST_P(TextLaws, ValuesOfFixedLengthNeedNoAlignment) {
    if (!manager.IsFixed(id)) return;
    const unsigned long size = manager.MemLenGet(id, count);
    ByteVector memory(size + 3, 0xA5);
    void* const values = memory.data() + 1;
    manager.ConstructorPtrGet(id)(values, count);
    manager.AssignmentPtrGet(id)(values, samples->Get(), count, 0);
    EXPECT_EQ(std::memcmp(values, samples->Get(), size), 0);

    VqString aligned, unaligned;
    manager.PrintToVqString(id, aligned, samples->Get(), format, count);
    manager.PrintToVqString(id, unaligned, values, format, count);
    EXPECT_EQ(Bytes(unaligned), Bytes(aligned));
    for (unsigned long i = 0; i < count; ++i) {
        EXPECT_EQ(manager.IsNullValue(id, manager.GetArrayElement(id, values, i, count)), samples->IsNull(i));
    }
    VqTypeConvertData* const texts = manager.ConvertTo(id, values, count);
    const RowValues converted(manager, id, count, manager.ConvertFrom(id, texts, count));
    delete texts;

    const ByteVector stored = samples->Store(VqFormat_BigEndian, 0, count);
    ByteVector bytes(stored.size());
    manager.Store(id, bytes.data(), values, VqFormat_BigEndian, count);
    EXPECT_EQ(bytes, stored);
    manager.SetNullValue(id, manager.GetArrayElement(id, values, count - 1, count));
    manager.Load(id, values, stored.data(), VqFormat_BigEndian, count);
    EXPECT_EQ(manager.Cmp(id, values, samples->Get(), VqCmp_Exact, count, VqFormat_Memory), 0);
    manager.ScanFromVqString(id, values, aligned, format, readable);
    manager.Store(id, bytes.data(), values, VqFormat_BigEndian, count);
    EXPECT_EQ(bytes, stored);
    EXPECT_EQ(memory[0], 0xA5);
    EXPECT_EQ(memory[size + 1], 0xA5);
}

INSTANTIATE_TEST_SUITE_P(Rows, TextLaws, testing::ValuesIn(Subjects(true)), SubjectName);

}  // namespace
