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
    const TextOptions text{ParseCodeSet(options.codeSet), ParseLanguage(options.language)};
    const ValueArray values(id, static_cast<unsigned long>(options.values.size()));
    for (unsigned long i = 0; i < values.GetCount(); ++i) {
        values.Scan(i, Unshielded(options.values[i]), text, fmt::format("VALUE {}", i + 1));
    }
    return values.Store(ByteOrderOf(options.order));
}

void Encode(const EncodeOptions& options) {
    const VqTypeId id = ParseType(Unshielded(options.type));
    if (!CanEncode(id)) {
        throw CommandError("TYPE {}: cannot be encoded (`vqtype types` shows which can: disk and text)", TypeName(id));
    }
    const Bytes bytes = EncodeValues(id, options);
    if (options.plain) return Write(FormatHex(bytes) + "\n");
    const DiskForm form = ReadDiskForm(id, bytes, ByteOrderOf(options.order));
    Write(FormatFields(bytes, form.fields) + FormatSummary(form, bytes, options.order));
}

}  // namespace

std::vector<std::string> ShieldedValues(const std::vector<std::string>& arguments) {
    std::vector<std::string> shielded;
    bool onlyValues = false;
    for (const std::string& argument : arguments) {
        const bool isList =
            argument == "{}" || (argument.size() > 1 && argument.front() == '[' && argument.back() == ']');
        if (argument == "--" && !onlyValues) {
            onlyValues = true;
        } else {
            shielded.push_back((onlyValues || isList ? std::string(1, '\0') : "") + argument);
        }
    }
    return shielded;
}

void AddEncodeCommand(CLI::App& program) {
    const auto options = std::make_shared<EncodeOptions>();
    CLI::App* command = program.add_subcommand("encode", "Show the disk form of values, byte by byte");
    command->add_option("TYPE", options->type, "The values' type")->required();
    command->add_option("VALUE", options->values, "Values as text; {NULL} is the null value")->required();
    AddOrderOption(*command, options->order);
    AddTextOptions(*command, options->codeSet, options->language);
    command->add_flag("--plain", options->plain, "Only the bytes, as `vqtype decode` reads them");
    command->footer(
        "A value that begins with '-' and is no number stands behind `--`.\n"
        "Example: vqtype encode VqNull_short 7 '{NULL}' --order big");
    command->callback([options] { Encode(*options); });
}
