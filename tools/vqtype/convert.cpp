#include <memory>

#include "command.h"
#include "error.h"
#include "files.h"
#include "table.h"
#include "values.h"

namespace {

struct ConvertOptions {
    std::string from, to;
    std::vector<std::string> values;
    std::string codeSet = "1";
    std::string language = "0";
    bool plain = false;
};

VqTypeId ParseEnd(const std::string& name, const char* place, bool (*can)(VqTypeId)) {
    const VqTypeId id = ParseType(name, place);
    if (can(id)) return id;
    throw CommandError("{} {}: cannot be converted (`vqtype types` shows which can: convert)", place, TypeName(id));
}

std::string ExchangeCell(const VqTypeConvertData& record, unsigned long index) {
    const VqString* text = record.GetString(static_cast<int>(index));
    return !text || text->IsNullValue() ? "null string" : Quoted(ToUtf8(*text));
}

void ShowTable(const ValueArray& from, const VqTypeConvertData& record, const ValueArray& to) {
    const std::string fromName = TypeName(from.GetType()), toName = TypeName(to.GetType());
    Table table{{fromName.c_str()}, {"exchange text"}, {toName.c_str()}};
    for (unsigned long i = 0; i < from.GetCount(); ++i) {
        table.AddRow({from.Describe(i), ExchangeCell(record, i), to.Describe(i)});
    }
    Write(table.Format());
}

void Convert(const ConvertOptions& options) {
    const VqTypeId from = ParseEnd(options.from, "FROM", CanConvertTo);
    const VqTypeId to = ParseEnd(options.to, "TO", CanConvertFrom);
    const ValueArray values(from, options.values, {ParseCodeSet(options.codeSet), ParseLanguage(options.language)});
    const std::unique_ptr<VqTypeConvertData> record(Manager().ConvertTo(from, values.Data(), values.GetCount()));
    const ValueArray converted(to, values.GetCount(), Manager().ConvertFrom(to, record.get(), values.GetCount()));
    if (options.plain) return Write(converted.PrintLines());
    ShowTable(values, *record, converted);
}

}  // namespace

void AddConvertCommand(CLI::App& program) {
    const auto options = std::make_shared<ConvertOptions>();
    CLI::App* command = program.add_subcommand("convert", "Convert values of one type into another");
    AddText(*command, "FROM", Takes::Type, options->from, "The values' type")->required();
    AddText(*command, "TO", Takes::Type, options->to, "The type that they become")->required();
    AddValues(*command, options->values);
    AddTextOptions(*command, options->codeSet, options->language);
    command->add_flag("--plain", options->plain, "Only the results, one a line");
    command->footer(
        "Types that have an exchange text convert into each other: a value travels as that text, from which the other "
        "type reads what it can, and no conversion fails. Plain numbers, VqDate and VqTime read the number that a "
        "text begins with; VqInt64 reads all of it or becomes -1. A null value travels as the null string, a VqDate "
        "as its day number, a VqTime as its seconds, of a blob nothing but whether it is null.\n\n"
        "  $ vqtype convert VqBoolean short TRUE FALSE '{NULL}'");
    command->callback([options] { Convert(*options); });
}
