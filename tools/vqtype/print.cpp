#include <memory>

#include "command.h"
#include "files.h"
#include "textrules.h"
#include "values.h"

namespace {

struct PrintOptions {
    std::string type;
    std::vector<std::string> values;
    std::optional<std::string> format;
    bool array = false;
    std::string codeSet = "1";
    std::string language = "0";
};

void Print(const PrintOptions& options) {
    const VqTypeId id = ParsePrintableType(options.type, "printed");
    const TextOptions text{ParseCodeSet(options.codeSet), ParseLanguage(options.language)};
    const ValueArray values(id, options.values, text);
    const ChosenFormat format(id, options.format);
    if (options.array) return Write(values.PrintAll(format.Get(), text) + "\n");
    std::string lines;
    for (unsigned long i = 0; i < values.GetCount(); ++i) lines += values.Print(i, format.Get()) + "\n";
    Write(lines);
}

}  // namespace

void AddPrintCommand(CLI::App& program) {
    const auto options = std::make_shared<PrintOptions>();
    CLI::App* command = program.add_subcommand("print", "Print values under a format");
    AddType(*command, options->type);
    AddValues(*command, options->values);
    AddFormatOption(*command, options->format);
    command->add_flag("--array", options->array, "All values as one array, with commas between");
    AddTextOptions(*command, options->codeSet, options->language);
    command->footer(
        "What a directive of a format stands for depends on the type; `vqtype show TYPE` names its own format. A "
        "directive for a part that the value does not have "
        "prints the clock: %H of a VqDate is the hour it is now.\n\n"
        "  $ vqtype print VqDate 2005-03-07 --format '%A, %e %B %Y'");
    command->callback([options] { Print(*options); });
}
