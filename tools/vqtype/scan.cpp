#include <fmt/format.h>

#include <memory>

#include "command.h"
#include "diskform.h"
#include "files.h"
#include "operations.h"
#include "table.h"
#include "textrules.h"
#include "values.h"

namespace {

struct ScanOptions {
    std::string type, text;
    std::optional<std::string> format;
    std::string order = "little";
    std::string codeSet = "1";
    std::string language = "0";
    bool plain = false;
};

// What the library gives for a text that it cannot read; but there are texts that say just that.
struct Fallback {
    VqTypeId id;
    std::string_view value;
    const char* text;
};

constexpr Fallback Fallbacks[] = {
    {VqTypeId_VqDate, "0000-01-01", "a text without a day of the calendar"},
    {VqTypeId_VqTime, "00:00:00", "a text without a time of day"},
    {VqTypeId_VqDateTime, "0000-01-01T00:00:00", "a text without a day and a time"},
    {VqTypeId_VqInt64, "-1", "a text that does not fit the format"},
    {VqTypeId_VqNull_VqInt64, "-1", "a text that does not fit the format"},
    {VqTypeId_VqSeal, "281474976710655", "a text that is no number"},
    {VqTypeId_VqBoolean, "FALSE", "every text but T, t, TRUE, true and 1"},
    {VqTypeId_d_Date, "0000-01-01", "a text without a date"},
    {VqTypeId_d_Time, "00:00:00.00+00:00", "a text without a time"},
    {VqTypeId_d_Timestamp, "0000-01-01T00:00:00.00+00:00", "a text without a date and a time"},
    {VqTypeId_d_Interval, "0", "a text without a span of time"},
};

// Two values that differ, before the scan and after it: a text that cannot be read leaves them as they were.
bool LeavesValue(const ValueArray& scanned, VqString& text, const char* format) {
    const VqTypeId id = scanned.GetType();
    if (!Manager().IsFixed(id) || !Does(id, "load")) return false;
    const ValueArray other(id, 1);
    other.Load(Bytes(scanned.Store(VqFormat_LittleEndian).size(), 0x05), VqFormat_LittleEndian);
    Manager().ScanFromVqString(id, other.Data(), text, format, 1);
    return other.Store(VqFormat_LittleEndian) != scanned.Store(VqFormat_LittleEndian);
}

std::string Note(const ValueArray& value, bool isLeft, bool isSame) {
    if (isLeft) return "note: the text was not read: the value, or a part of it, stayed as it was\n";
    if (isSame) return "";
    const std::string exact = value.PrintExact(0);
    for (const Fallback& fallback : Fallbacks) {
        if (fallback.id == value.GetType() && fallback.value == exact) {
            return fmt::format("note: {} is also what {} gives\n", exact, fallback.text);
        }
    }
    return "note: this is not the text that was read\n";
}

void Scan(const ScanOptions& options) {
    const VqTypeId id = ParsePrintableType(options.type, "scanned");
    const std::string given = options.text;
    const ChosenFormat format(id, options.format);
    const TextOptions chosen{ParseCodeSet(options.codeSet), ParseLanguage(options.language)};
    VqString text = ScannedText(id, given, chosen, "TEXT");
    const ValueArray value(id, 1);
    Manager().ScanFromVqString(id, value.Data(), text, format.Get(), 1);
    if (options.plain) return Write(value.PrintExact(0) + "\n");

    const std::string printed = value.Print(0, format.Get());
    const bool isLeft = LeavesValue(value, text, format.Get());
    Table table{{"text"}, {"format"}, {"value"}, {"prints again as"}};
    table.AddRow({Quoted(given), Quoted(format.Utf8()), value.Describe(0), Quoted(printed)});
    Write(table.Format() + Note(value, isLeft, EqualIgnoringCase(printed, given)));
    if (!CanEncode(id)) return;
    const Bytes bytes = value.Store(ByteOrderOf(options.order));
    const DiskForm form = ReadDiskForm(id, bytes, ByteOrderOf(options.order));
    Write("\n" + FormatFields(bytes, form.fields) + FormatSummary(form, bytes, options.order));
}

}  // namespace

void AddScanCommand(CLI::App& program) {
    const auto options = std::make_shared<ScanOptions>();
    CLI::App* command = program.add_subcommand("scan", "Read a value from text under a format");
    AddType(*command, options->type, "The value's type");
    AddText(*command, "TEXT", Takes::Text, options->text, "The text")->required();
    AddFormatOption(*command, options->format);
    AddOrderOption(*command, options->order);
    AddTextOptions(*command, options->codeSet, options->language);
    command->add_flag("--plain", options->plain, "Only the value");
    command->footer(
        "The library scans without errors: what it cannot read leaves the value as it was made, or gives one that "
        "stands for it. The value is shown with the text that it prints as under the same format, and with its bytes "
        "on disk.\n\n"
        "  $ vqtype scan VqTime '07:30:00 PM'");
    command->callback([options] { Scan(*options); });
}
