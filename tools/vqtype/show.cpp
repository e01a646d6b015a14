#include <fmt/format.h>

#include <memory>

#include "command.h"
#include "diskform.h"
#include "files.h"
#include "keynotes.h"
#include "layout.h"
#include "operations.h"
#include "table.h"
#include "textrules.h"
#include "values.h"

namespace {

struct RowNotes {
    VqTypeId id;
    const char* meaning;
    const char* range;
    const char* null;     // how it looks; null where the type has none
    const char* example;  // null for a row without a text of its own
};

constexpr const char* Indicator = "the indicator is 1 and the value 0";

constexpr RowNotes Notes[] = {
    {VqTypeId_char, "a signed byte", "-128 to 127", nullptr, "A"},
    {VqTypeId_short, "a number of 16 bits", "-32768 to 32767", nullptr, "1000"},
    {VqTypeId_long, "a number of 32 bits", "-2147483648 to 2147483647", nullptr, "100000"},
    {VqTypeId_double, "a floating number of 64 bits", "to about 1.8e308 either side of 0, inf, nan", nullptr, "0.1"},
    {VqTypeId_float, "a floating number of 32 bits", "to about 3.4e38 either side of 0, inf, nan", nullptr, "0.1"},
    {VqTypeId_VqWord, "an unsigned number of 16 bits", "0 to 65535", nullptr, "60000"},
    {VqTypeId_VqDWord, "an unsigned number of 32 bits", "0 to 4294967295", nullptr, "4000000000"},
    {VqTypeId_int, "a number of 32 bits", "-2147483648 to 2147483647", nullptr, "100000"},
    {VqTypeId_unsigned, "an unsigned number of 32 bits", "0 to 4294967295", nullptr, "4000000000"},
    {VqTypeId_enum, "a number of 32 bits that stands for a name", "-2147483648 to 2147483647", nullptr, "3"},
    {VqTypeId_VqByte, "an unsigned byte", "0 to 255", nullptr, "A"},
    {VqTypeId_VqString, "a text with a code set and a language", "0 to 65532 bytes of characters, none of them zero",
     "language 254, no text", "Zürich"},
    {VqTypeId_VqDate, "a day of the calendar", "years -32768 to 32767, -128 to 127 in the other parts",
     "year -32768, month and day -128", "2005-03-07"},
    {VqTypeId_VqTime, "a time of day to the second", "-128 to 127 in every part", "all three parts -128", "12:05:09"},
    {VqTypeId_BlockId, "a storage block", "#0 to #4294967295", nullptr, "#7"},
    {VqTypeId_VqObjId, "an object within its database", "48 bits of number, 32 bits of block", "number 0", "(1-42#7)"},
    {VqTypeId_VqClassId, "a class and its version", "0 to 65535 each", "class and version 65535", "(12v3)"},
    {VqTypeId_VqRef, "an object in any database, and its class",
     "48 bits of number, 32 bits of block, 0 to 65535 in every other part", "object number 0", "(3:1-42#7, 12)"},
    {VqTypeId_VqBlob, "a sequence of bytes", "0 to 2147483647 bytes; the total stands once, in front of all values",
     "no record; length -1 on disk", "00ff2a"},
    {VqTypeId_VqDateTime, "a day of the calendar and a time of day",
     "years -32768 to 32767, -128 to 127 in every other part", "year -32768, all other parts -128",
     "2005-03-07T12:05:09"},
    {VqTypeId_VqIString, "a text of 1-byte characters", "0 to 65535 bytes of characters, none of them zero", nullptr,
     "Zürich"},
    {VqTypeId_VqCaseIString, "a text of 1-byte characters, ordered without case",
     "0 to 65535 bytes of characters, none of them zero", nullptr, "Zürich"},
    {VqTypeId_d_Date, "a day of the standard calendar", "years -32768 to 32767, -128 to 127 in the other parts",
     nullptr, "2005-03-07"},
    {VqTypeId_d_Time, "a time of day with hundredths and a time zone", "-128 to 127 in every part", nullptr,
     "12:05:09.25+01:00"},
    {VqTypeId_d_Timestamp, "a day of the standard calendar and a time of day",
     "years -32768 to 32767, -128 to 127 in every other part", nullptr, "2005-03-07T12:05:09.25+01:00"},
    {VqTypeId_d_Interval, "a span of time in seconds", "to about 3.4e38 either side of 0", nullptr, "93784.5"},
    {VqTypeId_VqInt64, "a number of 64 bits in two halves", "-9223372036854775808 to 9223372036854775807", nullptr,
     "4294967298"},
    {VqTypeId_VqBoolean, "true, false or null", "FALSE and TRUE, the bytes 0 and 1; others are kept", "the byte 255",
     "TRUE"},
    {VqTypeId_VqNull_char, "a signed byte, or null", "-128 to 127", Indicator, "A"},
    {VqTypeId_VqNull_uchar, "an unsigned byte, or null", "0 to 255", Indicator, "A"},
    {VqTypeId_VqNull_short, "a number of 16 bits, or null", "-32768 to 32767", Indicator, "1000"},
    {VqTypeId_VqNull_ushort, "an unsigned number of 16 bits, or null", "0 to 65535", Indicator, "60000"},
    {VqTypeId_VqNull_int, "a number of 32 bits, or null", "-2147483648 to 2147483647", Indicator, "100000"},
    {VqTypeId_VqNull_unsigned, "an unsigned number of 32 bits, or null", "0 to 4294967295", Indicator, "4000000000"},
    {VqTypeId_VqNull_long, "a number of 32 bits, or null", "-2147483648 to 2147483647", Indicator, "100000"},
    {VqTypeId_VqNull_ulong, "an unsigned number of 32 bits, or null", "0 to 4294967295", Indicator, "4000000000"},
    {VqTypeId_VqNull_float, "a floating number of 32 bits, or null", "to about 3.4e38 either side of 0, inf, nan",
     Indicator, "0.1"},
    {VqTypeId_VqNull_double, "a floating number of 64 bits, or null", "to about 1.8e308 either side of 0, inf, nan",
     Indicator, "0.1"},
    {VqTypeId_VqNull_VqInt64, "a number of 64 bits in two halves, or null",
     "-9223372036854775808 to 9223372036854775807", Indicator, "4294967298"},
    {VqTypeId_VqSeal, "an unsigned number of 48 bits", "0 to 281474976710655", nullptr, "8590131204"},
    {VqTypeId_illegal, "no type: its operations do nothing", "no values", nullptr, nullptr},
};

constexpr bool EveryRowIsInItsPlace() {
    for (int i = 0; i < VqTypeCount; ++i) {
        if (Notes[i].id != i) return false;
    }
    return std::size(Notes) == VqTypeCount;
}
static_assert(EveryRowIsInItsPlace());

std::string Lines(std::initializer_list<std::pair<const char*, std::string>> lines) {
    std::string out;
    for (const auto& [name, text] : lines) out += fmt::format("{:<12}{}\n", name, text);
    return out;
}

std::string CountedBytes(std::size_t count) { return fmt::format("{} byte{}", count, count == 1 ? "" : "s"); }

void ShowMemory(VqTypeId id) {
    const std::size_t size = Manager().MemLenGet(id, 1);
    Write(fmt::format("\nIn memory, {}:\n\n{}", CountedBytes(size), DrawParts(MemoryParts(id), size, 2)));
}

void ShowDisk(VqTypeId id) {
    const std::vector<Part> parts = DiskParts(id);
    const std::size_t size = Manager().IsFixed(id) ? parts.back().offset + parts.back().size : 0;
    Write(fmt::format("\nOn disk, {}:\n\n{}", size ? CountedBytes(size) : "as many bytes as the value takes",
                      DrawParts(parts, size, 2)));
}

// The operations that the row has, or those that it lacks.
std::string Operations(VqTypeId id, bool has) {
    std::string list;
    for (const Operation* operation = FirstOperation(); operation != EndOfOperations(); ++operation) {
        if (operation->isDone(id) == has) list += (list.empty() ? "" : ", ") + std::string(operation->name);
    }
    return list.empty() ? "nothing" : list;
}

void ShowKeys(VqTypeId id) {
    const KeyNotes& notes = KeyNotesOf(id);
    Write("\nAs a key:\n\n" + Lines({{"  orders", std::string("  ") + notes.order},
                                     {"  hashes", std::string("  ") + notes.hash},
                                     {"  estimates", std::string("  ") + notes.estimate}}));
}

void ShowFacts(const RowNotes& notes) {
    const bool isFixed = Manager().IsFixed(notes.id) != 0;
    Write("\n" + Lines({{"range", notes.range},
                        {"null", notes.null ? notes.null : "none"},
                        {"length", isFixed ? "fixed: every value takes the same bytes on disk" : "variable"},
                        {"format", RowFormat(notes.id)},
                        {"does", Operations(notes.id, true)},
                        {"lacks", Operations(notes.id, false)}}));
}

std::string ExchangeLine(const ValueArray& value) {
    const auto text = value.ExchangeText(0);
    return text ? Quoted(*text) : "null string";
}

void ShowExample(const RowNotes& notes) {
    if (!notes.example || !CanEncode(notes.id)) return;
    const ValueArray value(notes.id, {notes.example}, {VqString::GetDefault8CodeSet(), 0});
    Write(fmt::format("\nExample {}:\n\n", value.Describe(0)) +
          Lines({{"  prints as", "  " + Quoted(value.Print(0))},
                 {"  exchange", "  " + ExchangeLine(value)},
                 {"  little", "  " + FormatHex(value.Store(VqFormat_LittleEndian))},
                 {"  big", "  " + FormatHex(value.Store(VqFormat_BigEndian))}}));
}

void Show(const std::string& type) {
    const RowNotes& notes = Notes[ParseType(type)];
    Write(fmt::format("{}, type {}: {}\n", TypeName(notes.id), static_cast<int>(notes.id), notes.meaning));
    if (notes.id != VqTypeId_illegal) {
        ShowMemory(notes.id);
        ShowDisk(notes.id);
    }
    ShowFacts(notes);
    if (notes.id != VqTypeId_illegal) ShowKeys(notes.id);
    ShowExample(notes);
}

}  // namespace

void AddShowCommand(CLI::App& program) {
    const auto type = std::make_shared<std::string>();
    CLI::App* command = program.add_subcommand("show", "Explain one type: its parts, its texts, what it does");
    AddType(*command, *type, "The type");
    command->footer(
        "The boxes stand under the offsets of their first bytes; behind a part of any length offsets count anew. In "
        "the example, little and big are the bytes of the disk form in either byte order.\n\n"
        "  $ vqtype show VqDateTime");
    command->callback([type] { Show(*type); });
}
