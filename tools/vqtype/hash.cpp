#include <fmt/format.h>

#include <memory>

#include "command.h"
#include "files.h"
#include "keys.h"
#include "table.h"

namespace {

struct HashOptions {
    std::string type;
    std::vector<std::string> values;
    std::string codeSet = "1";
    std::string language = "0";
    bool json = false;
};

// A key's name and its codes, one for each form.
struct Codes {
    std::string name;
    std::vector<unsigned long> codes;
};

Codes CodesOf(std::string name, const ValueArray& key) {
    Codes codes{std::move(name), {}};
    for (const KeyForm& form : KeyFormsOf("")) codes.codes.push_back(HashKey(Key(key, form.format)).number);
    return codes;
}

// Those of every value, and of all of them as one key.
std::vector<Codes> HashValues(VqTypeId id, const HashOptions& options) {
    const TextOptions text{ParseCodeSet(options.codeSet), ParseLanguage(options.language)};
    const ValueArray array(id, static_cast<unsigned long>(options.values.size()));
    std::vector<Codes> all;
    for (unsigned long i = 0; i < array.GetCount(); ++i) {
        const std::string &given = options.values[i], place = fmt::format("VALUE {}", i + 1);
        const ValueArray value(id, 1);
        ScanKey(value, 0, given, text, place);
        ScanKey(array, i, given, text, place);
        all.push_back(CodesOf(DescribeKey(value, given), value));
    }
    if (array.GetCount() > 1) all.push_back(CodesOf(fmt::format("all {} as one key", array.GetCount()), array));
    return all;
}

bool DoAgree(const Codes& key) { return key.codes[0] == key.codes[1] && key.codes[0] == key.codes[2]; }

void PrintText(VqTypeId id, const std::vector<Codes>& all) {
    Table table{{"value"}, {"memory"}, {"little"}, {"big"}, {"decimal", true}};
    bool isSame = true;
    for (const Codes& key : all) {
        std::vector<std::string> cells{key.name};
        for (const unsigned long code : key.codes) cells.push_back(fmt::format("0x{:08x}", code));
        cells.push_back(fmt::to_string(key.codes[0]));
        table.AddRow(std::move(cells));
        isSame = isSame && DoAgree(key);
    }
    Write(table.Format());
    if (isSame) return;
    Write(fmt::format("note: not all forms agree; `vqtype show {}` tells how each of them hashes\n", TypeName(id)));
}

void PrintJson(const std::vector<Codes>& all) {
    const char* separator = "[\n  ";
    for (const Codes& key : all) {
        Write(fmt::format("{}{{\"key\": {}, \"memory\": {}, \"little\": {}, \"big\": {}}}", separator, Quoted(key.name),
                          key.codes[0], key.codes[1], key.codes[2]));
        separator = ",\n  ";
    }
    Write("\n]\n");
}

}  // namespace

void AddHashCommand(CLI::App& program) {
    const auto options = std::make_shared<HashOptions>();
    CLI::App* command = program.add_subcommand("hash", "Show the codes by which hashed indexes find values");
    AddType(*command, options->type);
    AddValues(*command, options->values);
    AddTextOptions(*command, options->codeSet, options->language);
    command->add_flag("--json", options->json, "As JSON, with decimal codes");
    command->footer(
        "Each value has its code in memory and in both byte orders on disk, and so has the array of all of them as "
        "one key. Equal keys have equal codes in every form, but for a few kept on purpose, as 0 and -0. The order of "
        "an "
        "array's values does not count.\n\n"
        "  $ vqtype hash VqNull_short 5 -5 '{NULL}'");
    command->callback([options] {
        const VqTypeId id = ParseKeyType(options->type, "hash", "hashed", "hash");
        const std::vector<Codes> all = HashValues(id, *options);
        options->json ? PrintJson(all) : PrintText(id, all);
    });
}
