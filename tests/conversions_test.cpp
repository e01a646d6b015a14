// Conversion between types: every row into every other by way of exchange texts, the records that hold them, default
// values, and all values in one text.
#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <iomanip>
#include <map>
#include <memory>
#include <sstream>

#include "rowtest.h"
#include "vqchar.h"
#include "vqistring.h"
#include "vqlanguagecontext.h"

using namespace vqtest;

namespace {

using Record = std::unique_ptr<VqTypeConvertData>;

// --- The table: a text is "null" or stands between quotation marks behind its code set and language

VqString ReadText(const std::string& shown) {
    VqString text("");
    if (shown == "null") {
        text.SetNullValue();
        return text;
    }
    unsigned codeSet = 1, language = 0;
    char colon;
    if (shown[0] != '"') std::istringstream(shown) >> codeSet >> colon >> language;
    std::vector<unsigned short> units;
    for (std::size_t i = shown.find('"') + 1; i + 1 < shown.size(); ++i) {
        const std::size_t digits = shown[i] != '\\' ? 0 : shown[i + 1] == 'u' ? 4 : 2;
        const auto code =
            digits == 0 ? static_cast<unsigned char>(shown[i]) : std::stoul(shown.substr(i + 2, digits), nullptr, 16);
        units.push_back(static_cast<unsigned short>(code));
        if (digits != 0) i += 1 + digits;
    }
    const std::string bytes(units.begin(), units.end());
    const bool wide = codeSet >= 225;
    text = VqString(static_cast<unsigned char>(codeSet), static_cast<unsigned char>(language));
    text.AssignChars(wide ? static_cast<const void*>(units.data()) : bytes.data(), text.GetCodeSet(),
                     static_cast<unsigned short>(units.size()));
    return text;
}

std::string ShowText(const VqString& text) {
    if (text.IsNullValue()) return "null";
    std::ostringstream out;
    const unsigned codeSet = text.GetCodeSet(), language = text.GetLanguage();
    if (codeSet != 1 || language != 0) out << codeSet << ':' << language << ':';
    out << '"' << std::hex;
    const bool wide = codeSet >= 225;
    for (int i = 0; i < text.Len(); ++i) {
        const unsigned code = text[i].GetCode();
        if (code >= ' ' && code <= '~' && code != '\\') {
            out << static_cast<char>(code);
        } else {
            out << (wide ? "\\u" : "\\x") << std::setfill('0') << std::setw(wide ? 4 : 2) << code;
        }
    }
    out << '"';
    return out.str();
}

std::string StoredHex(const RowValues& values, unsigned long i) {
    const ByteVector bytes = values.Store(VqFormat_BigEndian, i, 1);
    std::string hex = Hex(bytes.data(), bytes.size());
    std::erase(hex, ' ');
    return hex;
}

ByteVector BytesOf(const std::string& hex) {
    ByteVector bytes;
    for (std::size_t i = 0; i < hex.size(); i += 2) {
        bytes.push_back(static_cast<unsigned char>(std::stoul(hex.substr(i, 2), nullptr, 16)));
    }
    return bytes;
}

class Table {
  public:
    struct Value {
        std::string bytes, text;
    };
    std::map<std::string, std::string> columnOf;                     // of each row
    std::map<std::string, std::vector<Value>> values;                // of each column
    std::vector<std::string> texts;                                  // as shown
    std::map<std::string, std::map<std::string, std::string>> made;  // of each text, in each column

    static const Table& Get() {
        static const Table table;
        return table;
    }

  private:
    Table() {
        std::ifstream file(VQTM_SOURCE_DIR "/tests/golden/conversions.txt");
        for (std::string line; std::getline(file, line);) {
            if (!line.empty() && line.back() == '\r') line.pop_back();
            std::string kind, column, bytes;
            std::istringstream in(line);
            if (line[0] == ' ') {
                for (std::string entry; in >> entry;) {
                    const std::size_t sign = entry.find('=');
                    made[texts.back()][entry.substr(0, sign)] = entry.substr(sign + 1);
                }
            } else if (in >> kind >> column; kind == "column") {
                columnOf[column] = column;
                for (std::string row; in >> row;) columnOf[row] = column;
            } else if (kind == "value" && in >> bytes) {
                values[column].push_back({bytes, line.substr(static_cast<std::size_t>(in.tellg()) + 1)});
            } else if (kind == "text") {
                texts.push_back(line.substr(5));
            }
        }
    }
};

// --- Rows

// Every row of the newer table, and those of the older one that differ from it.
std::vector<Subject> AllRows() {
    std::vector<Subject> rows = {{3, VqTypeId_VqString}};
    for (char id = 0; id < VqTypeId_illegal; ++id) rows.push_back({5, id});
    return rows;
}

std::string ColumnOf(const Subject& row) {
    const std::string name = VqTypeMgr(row.version).NameGet(row.id, nullptr);
    const auto column = Table::Get().columnOf.find(row.version == 3 ? "legacy-" + name : name);
    return column != Table::Get().columnOf.end() ? column->second : "no column of " + name;
}

// What the row makes of texts, and of two that are missing.
void ExpectMade(const Subject& row, VqTypeConvertData* texts, const std::vector<std::string>& shown) {
    VqTypeMgr manager(row.version), *const owner = texts != nullptr ? texts->manager : nullptr;
    const auto count = static_cast<unsigned long>(shown.size());
    const RowValues values(manager, row.id, count + 2, manager.ConvertFrom(row.id, texts, count + 2));
    if (texts != nullptr) texts->manager = owner;  // which this manager became
    ASSERT_NE(values.Get(), nullptr);
    const std::string column = ColumnOf(row);
    const auto& made = Table::Get().made;
    for (unsigned long i = 0; i < count + 2; ++i) {
        const std::string& text = i < count ? shown[i] : "null";
        EXPECT_EQ(StoredHex(values, i), made.at(text).at(column)) << text << " as " << row.Name();
        if (text == "null") {
            EXPECT_EQ(values.IsNull(i), manager.SupportsNullValue(row.id) != 0) << row.Name();
        }
    }
}

Record RecordOf(VqTypeMgr& manager, const std::vector<std::string>& shown) {
    auto* const strings =
        static_cast<VqString*>(manager.Create(VqTypeId_VqString, static_cast<unsigned long>(shown.size())));
    for (std::size_t i = 0; i < shown.size(); ++i) strings[i] = ReadText(shown[i]);
    return Record(
        VqTypeConvertData::Make(VqTypeId_VqString, static_cast<unsigned long>(shown.size()), strings, &manager));
}

// The texts to which a row's values of the table convert, which are to be those of the table.
Record TextsOfValues(VqTypeMgr& manager, char id, const std::vector<Table::Value>& known) {
    const auto count = static_cast<unsigned long>(known.size());
    const RowValues values(manager, id, count);
    for (unsigned long i = 0; i < count; ++i) {
        manager.Load(id, values.At(i), BytesOf(known[i].bytes).data(), VqFormat_BigEndian, 1);
    }
    return Record(manager.ConvertTo(id, values.Get(), count));
}

class DefaultCodeSet {
  public:
    explicit DefaultCodeSet(unsigned char codeSet) : before_(VqString::GetDefaultCodeSet()) {
        VqString::SetDefaultCodeSet(codeSet);
    }
    ~DefaultCodeSet() { VqString::SetDefaultCodeSet(before_); }
    DefaultCodeSet(const DefaultCodeSet&) = delete;
    DefaultCodeSet& operator=(const DefaultCodeSet&) = delete;

  private:
    unsigned char before_;
};

// --- Every row and every other

TEST(Conversions, OfEveryRowIntoEveryOther) {
    for (const Subject& source : AllRows()) {
        SCOPED_TRACE(source.Name());
        VqTypeMgr manager(source.version);
        const std::vector<Table::Value>& known = Table::Get().values.at(ColumnOf(source));
        const Record record = TextsOfValues(manager, source.id, known);
        ASSERT_NE(record, nullptr);
        ASSERT_EQ(record->count, known.size());
        EXPECT_EQ(record->manager, &manager);
        EXPECT_EQ(record->type, VqTypeId_VqString);
        std::vector<std::string> shown;
        for (std::size_t i = 0; i < known.size(); ++i) {
            shown.push_back(ShowText(*record->GetString(static_cast<int>(i))));
            EXPECT_EQ(shown.back(), known[i].text) << known[i].bytes;
        }
        if (HasFailure()) return;
        for (const Subject& target : AllRows()) ExpectMade(target, record.get(), shown);
    }
}

TEST(Conversions, OfEveryTextIntoEveryRow) {
    const std::vector<std::string>& shown = Table::Get().texts;
    ASSERT_GT(shown.size(), 100u);
    VqTypeMgr manager(5);
    const Record record = RecordOf(manager, shown);
    for (const Subject& target : AllRows()) ExpectMade(target, record.get(), shown);
}

// Whatever the code set of a text is, its characters tell; only a string keeps the code set too.
TEST(Conversions, OfTextsOfTwoByteCharacters) {
    std::vector<std::string> shown;
    for (const std::string& text : Table::Get().texts) {
        if (text[0] == '"') shown.push_back(text);
    }
    VqTypeMgr manager(5);
    const Record record = RecordOf(manager, shown);
    for (std::size_t i = 0; i < shown.size(); ++i) record->GetString(static_cast<int>(i))->SetCodeSet(253);
    for (const Subject& target : AllRows()) {
        if (target.version == 3 || target.id != VqTypeId_VqString) ExpectMade(target, record.get(), shown);
    }
}

TEST(Conversions, UnderADefaultCodeSetOfTwoByteCharacters) {
    const DefaultCodeSet wide(253);
    for (const Subject& row : AllRows()) {
        SCOPED_TRACE(row.Name());
        if (row.id == VqTypeId_VqString) continue;
        VqTypeMgr manager(row.version);
        const std::vector<Table::Value>& known = Table::Get().values.at(ColumnOf(row));
        const Record record = TextsOfValues(manager, row.id, known);
        std::vector<std::string> shown;
        for (std::size_t i = 0; i < known.size(); ++i) {
            shown.push_back(known[i].text);
            const unsigned char expected = row.id == VqTypeId_VqIString || row.id == VqTypeId_VqCaseIString ? 1 : 253;
            const VqString& text = *record->GetString(static_cast<int>(i));
            EXPECT_TRUE(text.IsNullValue() || text.GetCodeSet() == expected);
        }
        ExpectMade(row, record.get(), shown);
    }
}

// --- Default values and null

TEST(Conversions, OfEmptyTextsGiveTheDefaultValues) {
    for (const Subject& row : AllRows()) {
        SCOPED_TRACE(row.Name());
        VqTypeMgr manager(row.version);
        const auto &ofEmpty = Table::Get().made.at("\"\""), &ofNull = Table::Get().made.at("null");
        const std::string column = ColumnOf(row);
        // A new nullable scalar is null.
        const bool isNullable = row.id >= VqTypeId_VqNull_char && row.id <= VqTypeId_VqNull_VqInt64;
        for (const int asNull : {0, 1, -1}) {
            const std::string& expected = (asNull != 0 || isNullable ? ofNull : ofEmpty).at(column);
            const RowValues values(manager, row.id, 3, manager.DefaultValue(row.id, 3, asNull));
            for (unsigned long i = 0; i < 3; ++i) EXPECT_EQ(StoredHex(values, i), expected) << asNull;
            const RowValues none(manager, row.id, 0, manager.DefaultValue(row.id, 0, asNull));
            EXPECT_NE(none.Get(), nullptr);
        }
        // The older strings know no null, yet are set to one where a default value is asked for as null.
        const RowValues null(manager, VqTypeId_VqString, 1, manager.DefaultValue(VqTypeId_VqString, 1, 1));
        EXPECT_TRUE(static_cast<const VqString*>(null.Get())->IsNullValue());
    }
}

TEST(Conversions, SetToNullGivesNullOrTheDefaultValue) {
    for (const Subject& row : AllRows()) {
        SCOPED_TRACE(row.Name());
        VqTypeMgr manager(row.version);
        const std::vector<Table::Value>& known = Table::Get().values.at(ColumnOf(row));
        const RowValues values(manager, row.id, 3);
        for (unsigned long i = 0; i < 3; ++i) {
            manager.Load(row.id, values.At(i), BytesOf(known[i % known.size()].bytes).data(), VqFormat_BigEndian, 1);
        }
        const std::string first = StoredHex(values, 0), last = StoredHex(values, 2);
        EXPECT_EQ(manager.DiskIsNullValue(row.id, BytesOf(first).data()), VqStatus_NotSupported);
        EXPECT_EQ(manager.SetNullValue(row.id, values.At(1)), VqStatus_Ok);
        EXPECT_EQ(StoredHex(values, 1), Table::Get().made.at("null").at(ColumnOf(row)));
        EXPECT_EQ(values.IsNull(1), manager.SupportsNullValue(row.id) != 0);
        EXPECT_EQ(StoredHex(values, 0), first);
        EXPECT_EQ(StoredHex(values, 2), last);
    }
    // A string of the older table becomes an empty one, which is not null.
    VqString text("text");
    VqTypeMgr older(3);
    EXPECT_EQ(older.SetNullPtrGet(VqTypeId_VqString), nullptr);
    older.SetNullValue(VqTypeId_VqString, &text);
    EXPECT_EQ(ShowText(text), "\"\"");
}

// --- Records

// Released a second time, it is as after the first.
TEST(ConvertData, AReleasedRecordHoldsNothingButStringsWithoutAManager) {
    VqTypeMgr manager(5);
    VqString strings[2] = {VqString("a"), VqString("b")};
    std::int32_t value = 1;
    alignas(VqTypeConvertData) unsigned char memory[sizeof(VqTypeConvertData)];
    for (VqTypeConvertData* const made : {manager.ConvertTo(VqTypeId_long, &value, 1),
                                          VqTypeConvertData::Make(VqTypeId_VqString, 2, strings, nullptr)}) {
        ASSERT_NE(made, nullptr);
        std::memcpy(memory, made, sizeof memory);
        void* const left = made->manager == nullptr ? strings : nullptr;
        made->manager = nullptr;
        delete made;
        auto* const record = reinterpret_cast<VqTypeConvertData*>(memory);
        EXPECT_EQ(Bytes(*record->GetString(0)), left == nullptr ? "1" : "a");
        for (int releases = 0; releases < 2; ++releases) {
            record->~VqTypeConvertData();
            EXPECT_EQ(record->type, VqTypeConvertData::Released);
            EXPECT_EQ(record->count, 0u);
            EXPECT_EQ(record->data, left);
            EXPECT_EQ(record->GetString(0), nullptr);
        }
    }
    EXPECT_EQ(Bytes(strings[1]), "b");
}

TEST(ConvertData, GivesTheStringsThatItHas) {
    VqString strings[2];
    const Record record(VqTypeConvertData::Make(VqTypeId_VqString, 2, strings, nullptr));
    EXPECT_EQ(record->GetString(0), strings);
    EXPECT_EQ(record->GetString(1), strings + 1);
    for (const int index : {INT32_MIN, -1, 2, INT32_MAX}) EXPECT_EQ(record->GetString(index), nullptr) << index;
    record->type = VqTypeId_VqIString;
    EXPECT_EQ(record->GetString(0), nullptr) << "values of another type are no strings";
    record->type = VqTypeId_VqString;
    record->data = nullptr;
    EXPECT_EQ(record->GetString(0), nullptr);
}

TEST(ConvertData, WithoutStringsGivesNullOrDefaultValues) {
    VqTypeMgr manager(5);
    std::int32_t longs[] = {5, 6};
    const Record ofLongs(VqTypeConvertData::Make(VqTypeId_long, 2, longs, nullptr));
    const Record empty(VqTypeConvertData::Make(VqTypeId_VqString, 2, nullptr, nullptr));
    for (const Subject& row : AllRows()) {
        for (VqTypeConvertData* const record : {ofLongs.get(), empty.get(), static_cast<VqTypeConvertData*>(nullptr)}) {
            ExpectMade(row, record, {});
        }
    }
    const RowValues none(manager, VqTypeId_VqDate, 0, manager.ConvertFrom(VqTypeId_VqDate, empty.get(), 0));
    EXPECT_NE(none.Get(), nullptr);
}

TEST(ConvertData, BelongsToTheManagerThatConvertsFromIt) {
    VqTypeMgr manager(5);
    for (const char id : {VqTypeId_long, VqTypeId_illegal}) {
        const Record record = RecordOf(manager, {"\"7\""});
        record->manager = nullptr;
        manager.Delete(id, manager.ConvertFrom(id, record.get(), 1), 1);
        EXPECT_EQ(record->manager, &manager) << static_cast<int>(id);
        EXPECT_EQ(ShowText(*record->GetString(0)), "\"7\"") << "the strings stay";
    }
}

// --- All values in one text

using OneText = std::unique_ptr<VqString, void (*)(VqString*)>;

OneText InOneText(VqTypeMgr& manager, char id, void* values, unsigned long count) {
    return OneText(manager.ConvertToVqStringOld(values, id, count),
                   [](VqString* text) { VqTypeMgr(5).Delete(VqTypeId_VqString, text, 1); });
}

TEST(OneTextForAll, EndsEveryValueWithASeparator) {
    VqTypeMgr manager(5);
    const std::vector<std::vector<std::string>> cases = {{"a", "b"}, {"", "\x01,\x02", "x"}, {"one"}, {}, {"", ""}};
    for (const auto& texts : cases) {
        const RowValues strings(manager, VqTypeId_VqString, texts);
        const OneText text = InOneText(manager, VqTypeId_VqString, strings.Get(), strings.Count());
        std::string expected;
        const char separator = texts.size() == 3 ? '\x03' : '\x01';
        for (const std::string& one : texts) expected += one + separator;
        EXPECT_EQ(Bytes(*text), expected);

        const auto count = strings.Count();
        const RowValues back(manager, VqTypeId_VqString, count + 1,
                             manager.ConvertFromVqStringOld(*text, VqTypeId_VqString, count + 1));
        for (unsigned long i = 0; i < count; ++i) EXPECT_EQ(back.Print(i), texts[i]);
        EXPECT_EQ(back.Print(count), "");
        EXPECT_EQ(Bytes(*text), expected) << "the text stays";
    }
}

// A character is found in a string by comparing; the separator is chosen by codes. Other code sets give some of them.
TEST(OneTextForAll, ChoosesTheSeparatorThatASearchWouldChoose) {
    VqTypeMgr manager(5);
    std::string used;
    for (int c = 1; c < 255; ++c) {
        VqString strings[] = {VqString(used.c_str()), Wide(u"x,\u017E")};
        int first = 1;
        const auto occurs = [&](int code) {
            const VqString one(static_cast<char>(code));
            return strings[0].SubStringPos(one, VqCmp_Default) >= 0 ||
                   VqString("x,\x9E").SubStringPos(one, VqCmp_Default) >= 0;
        };
        while (first < 255 && occurs(first)) ++first;
        const std::string text = Bytes(*InOneText(manager, VqTypeId_VqString, strings, 2));
        EXPECT_EQ(static_cast<unsigned char>(text.back()), first < 255 ? first : ',');
        used += static_cast<char>(first);
    }
}

TEST(OneTextForAll, IsInTheDefaultCodeSet) {
    VqTypeMgr manager(5);
    VqString strings[] = {In(7, "\xBB", 18), Wide(u"\u20AC"), VqString("\xE9"), VqString()};
    strings[3].SetNullValue();
    EXPECT_EQ(ShowText(*InOneText(manager, VqTypeId_VqString, strings, 4)), "\"?\\x01\\x80\\x01\\xe9\\x01\\x01\"");

    const DefaultCodeSet wide(253);
    const OneText text = InOneText(manager, VqTypeId_VqString, strings, 4);
    EXPECT_EQ(ShowText(*text), "253:0:\"\\u041b\\u0001\\u20ac\\u0001\\u00e9\\u0001\\u0001\"");
    const RowValues back(manager, VqTypeId_VqString, 4, manager.ConvertFromVqStringOld(*text, VqTypeId_VqString, 4));
    const auto* const values = static_cast<const VqString*>(back.Get());
    EXPECT_EQ(ShowText(values[0]) + ShowText(values[1]), "253:0:\"\\u041b\"253:0:\"\\u20ac\"");
    EXPECT_EQ(ShowText(values[3]), "253:0:\"\"") << "null comes back as no text";
}

TEST(OneTextForAll, IsReadByItsLastCharacter) {
    const struct {
        const char* text;
        unsigned long count;
        std::vector<std::string> values;
    } cases[] = {
        {"\"10;0x20;-3;\"", 3, {"10", "32", "-3"}},
        {"\"10;0x20;-3;\"", 5, {"10", "32", "-3", "0", "0"}},
        {"\"10;0x20;-3;\"", 1, {"10"}},
        {"\"10;0x20;-3;\"", 0, {}},
        {"\"12\"", 2, {"1", "0"}},  // the 2 ends the 1
        {"\",,7,\"", 3, {"0", "0", "7"}},
        {"\"\"", 2, {"0", "0"}},
        {"null", 2, {"0", "0"}},
        {"253:0:\"7\\u01418\\u0141\"", 3, {"7", "8", "0"}},
        {"7:18:\"7\\xbb8\\xbb\"", 2, {"7", "8"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        VqTypeMgr manager(5);
        VqString text = ReadText(c.text);
        const RowValues longs(manager, VqTypeId_long, c.count,
                              manager.ConvertFromVqStringOld(text, VqTypeId_long, c.count));
        for (unsigned long i = 0; i < c.count; ++i) EXPECT_EQ(longs.Print(i), c.values[i]);
        EXPECT_EQ(ShowText(text), c.text) << "stays";
    }
}

// However it is put together, it is what fits of all texts and separators.
TEST(OneTextForAll, IsCutWhereNoTextIsLonger) {
    AssertRecorder asserts;
    VqTypeMgr manager(5);
    constexpr std::size_t Longest = VqString::MaxSize - 1;
    for (const std::vector<std::size_t>& lengths : std::vector<std::vector<std::size_t>>{
             {Longest - 1}, {Longest}, {30000, 35530, 0}, {30000, 35531, 1}, {Longest, Longest}, {5, Longest, 7}}) {
        std::vector<VqString> strings;
        std::string all;
        for (const std::size_t length : lengths) {
            const std::string text(length, static_cast<char>('a' + strings.size()));
            strings.push_back(VqString(text.c_str()));
            all += text + '\x01';
        }
        asserts.Lines().clear();
        const OneText text =
            InOneText(manager, VqTypeId_VqString, strings.data(), static_cast<unsigned long>(strings.size()));
        EXPECT_EQ(Bytes(*text), all.substr(0, Longest));
        EXPECT_EQ(asserts.Lines().size(), all.size() > Longest ? 1u : 0u);
    }
    asserts.Lines().clear();
    std::vector<std::int32_t> many(100000, 7);
    const OneText text = InOneText(manager, VqTypeId_long, many.data(), 100000);
    EXPECT_EQ(asserts.Lines().size(), 1u) << "not one for each that finds no room";
    EXPECT_EQ(text->Len(), Longest);
    EXPECT_EQ(Bytes(*text).substr(Longest - 4),
              "7\x01"
              "7\x01");
}

}  // namespace
