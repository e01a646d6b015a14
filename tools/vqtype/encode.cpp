#include <fmt/format.h>

#include <memory>

#include "command.h"
#include "diskform.h"
#include "error.h"
#include "files.h"

namespace {

struct EncodeOptions {
    std::string type;
    std::vector<std::string> values;
    std::string order = "little";
    std::string codeSet = "1";
    std::string language = "0";
    bool plain = false;
};

Bytes EncodeValues(VqTypeId id, const EncodeOptions& options) {
    const ValueArray values(id, options.values, {ParseCodeSet(options.codeSet), ParseLanguage(options.language)});
    return values.Store(ByteOrderOf(options.order));
}

void Encode(const EncodeOptions& options) {
    const VqTypeId id = ParseType(options.type);
    if (!CanEncode(id)) {
        throw CommandError("TYPE {}: cannot be encoded (`vqtype types` shows which can: disk and text)", TypeName(id));
    }
    const Bytes bytes = EncodeValues(id, options);
    if (options.plain) return Write(FormatHex(bytes) + "\n");
    const DiskForm form = ReadDiskForm(id, bytes, ByteOrderOf(options.order));
    Write(FormatFields(bytes, form.fields) + FormatSummary(form, bytes, options.order));
}

}  // namespace

void AddEncodeCommand(CLI::App& program) {
    const auto options = std::make_shared<EncodeOptions>();
    CLI::App* command = program.add_subcommand("encode", "Show the disk form of values, byte by byte");
    AddType(*command, options->type);
    AddValues(*command, options->values);
    AddOrderOption(*command, options->order);
    AddTextOptions(*command, options->codeSet, options->language);
    command->add_flag("--plain", options->plain, "Only the bytes, as `vqtype decode` reads them");
    command->footer(
        "Each value stands with its bytes and what they mean. What `vqtype show TYPE` shows as range and format is "
        "accepted.\n\n"
        "  $ vqtype encode VqNull_short 7 '{NULL}' --order big");
    command->callback([options] { Encode(*options); });
}
