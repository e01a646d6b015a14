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

// What the library gives for a text that it cannot read.
struct Fallback {
    VqTypeId id;
    std::string_view value;
    const char* why;
};

constexpr Fallback Fallbacks[] = {
    {VqTypeId_VqDate, "0000-01-01", "what a text without a day of the calendar gives"},
    {VqTypeId_VqTime, "00:00:00", "what a text without a time of day gives"},
    {VqTypeId_VqDateTime, "0000-01-01T00:00:00", "what a text without a day and a time gives"},
    {VqTypeId_VqInt64, "-1", "what a text that does not fit the format gives"},
    {VqTypeId_VqNull_VqInt64, "-1", "what a text that does not fit the format gives"},
    {VqTypeId_VqSeal, "281474976710655", "what a text that is no number gives"},
    {VqTypeId_VqBoolean, "FALSE", "what every text but T, t, TRUE, true and 1 gives"},
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

std::string Remark(const ValueArray& value, bool isLeft, bool isSame) {
    if (isLeft) return "the text was not read: the value, or a part of it, stayed as it was";
    if (isSame || value.IsNull(0)) return "";
    const std::string exact = value.PrintExact(0);
    for (const Fallback& fallback : Fallbacks) {
        if (fallback.id == value.GetType() && fallback.value == exact) return fallback.why;
    }
    return "not the text that was read";
}

void Scan(const ScanOptions& options) {
    const VqTypeId id = ParsePrintableType(Unshielded(options.type), "scanned");
    const std::string given = Unshielded(options.text);
    const ChosenFormat format(id, options.format);
    const TextOptions chosen{ParseCodeSet(options.codeSet), ParseLanguage(options.language)};
    VqString text = ScannedText(id, given, chosen, "TEXT");
    const ValueArray value(id, 1);
    Manager().ScanFromVqString(id, value.Data(), text, format.Get(), 1);
    if (options.plain) return Write(value.PrintExact(0) + "\n");

    const std::string printed = value.Print(0, format.Get());
    const std::string remark = Remark(value, LeavesValue(value, text, format.Get()), printed == given);
    Table table{{"text"}, {"format"}, {"value"}, {"prints again as"}};
    table.AddRow({Quoted(given), Quoted(format.Utf8()), value.Describe(0), Quoted(printed)});
    Write(table.Format() + (remark.empty() ? "" : remark + "\n"));
    if (!CanEncode(id)) return;
    const Bytes bytes = value.Store(ByteOrderOf(options.order));
    const DiskForm form = ReadDiskForm(id, bytes, ByteOrderOf(options.order));
    Write("\n" + FormatFields(bytes, form.fields) + FormatSummary(form, bytes, options.order));
}

}  // namespace

void AddScanCommand(CLI::App& program) {
    const auto options = std::make_shared<ScanOptions>();
    CLI::App* command = program.add_subcommand("scan", "Read a value from text under a format");
    command->add_option("TYPE", options->type, "The value's type")->required();
    command->add_option("TEXT", options->text, "The text")->required();
    AddFormatOption(*command, options->format);
    AddOrderOption(*command, options->order);
    AddTextOptions(*command, options->codeSet, options->language);
    command->add_flag("--plain", options->plain, "Only the value");
    command->footer(
        "The library scans without errors: what it cannot read leaves the value, or gives one that stands for it. The\n"
        "value is shown with the text that it prints as under the same format, and with its bytes on disk.\n"
        "Example: vqtype scan VqTime '07:30:00 PM'");
    command->callback([options] { Scan(*options); });
}
