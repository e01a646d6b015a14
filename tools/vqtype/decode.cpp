#include <fmt/format.h>

#include <memory>

#include "command.h"
#include "diskform.h"
#include "error.h"
#include "files.h"

namespace {

struct DecodeOptions {
    std::string type;
    std::vector<std::string> hex;
    std::string order = "little";
    bool plain = false;
};

void Decode(const DecodeOptions& options) {
    const VqTypeId id = ParseType(options.type);
    if (!CanEncode(id)) {
        throw CommandError("TYPE {}: cannot be decoded (`vqtype types` shows which can: disk and text)", TypeName(id));
    }
    const bool fromInput = options.hex == std::vector<std::string>{"-"};
    const Bytes bytes = ParseHex(fromInput ? ReadFile("-") : fmt::to_string(fmt::join(options.hex, " ")));
    const DiskForm form = ReadDiskForm(id, bytes, ByteOrderOf(options.order));
    if (options.plain) return Write(form.values->PrintLines());
    Write(FormatFields(bytes, form.fields) + FormatSummary(form, bytes, options.order));
}

}  // namespace

void AddDecodeCommand(CLI::App& program) {
    const auto options = std::make_shared<DecodeOptions>();
    CLI::App* command = program.add_subcommand("decode", "Read values from the bytes of their disk form");
    AddType(*command, options->type);
    AddTexts(*command, "HEX", Takes::Hex, options->hex,
             "Pairs of hexadecimal digits, blanks between at will; - reads standard input")
        ->required();
    AddOrderOption(*command, options->order);
    command->add_flag("--plain", options->plain, "Only the values' texts, one a line");
    command->footer(
        "Bytes that are not whole values of the type are refused with the offset at fault.\n\n"
        "  $ vqtype decode long --order big 00 00 00 07");
    command->callback([options] { Decode(*options); });
}
