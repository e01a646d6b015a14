/// \file
/// The subcommands. Each adds itself with its options to the program and runs from its callback.
#ifndef VQTYPE_COMMAND_H
#define VQTYPE_COMMAND_H

#include <CLI/CLI.hpp>

#include <optional>
#include <string>
#include <vector>

void AddTypesCommand(CLI::App& program);
void AddEncodeCommand(CLI::App& program);
void AddDecodeCommand(CLI::App& program);
void AddShowCommand(CLI::App& program);
void AddPrintCommand(CLI::App& program);
void AddScanCommand(CLI::App& program);
void AddConvertCommand(CLI::App& program);
void AddCompareCommand(CLI::App& program);
void AddHashCommand(CLI::App& program);
void AddEstimateCommand(CLI::App& program);
void AddSortCommand(CLI::App& program);
void AddCollateCommand(CLI::App& program);
void AddCodeSetsCommand(CLI::App& program);
void AddLanguagesCommand(CLI::App& program);
void AddDemoCommand(CLI::App& program);

/// The parser would take an argument like [a,b] or {} for a list, -inf for options, the next argument for the value of
/// `--low=`, and cannot go on with values behind `--`. A zero character in front, which no argument can hold, makes
/// such arguments plain text; behind `--plain=` it is a value that the flag refuses.
std::vector<std::string> ShieldedArguments(const CLI::App& program, const std::vector<std::string>& arguments);
std::string Unshielded(const std::string& argument);

/// Adds an option or an argument that is stored as it was given, without that zero character.
template <class Text>  // std::string, or an optional one
CLI::Option* AddText(CLI::App& command, const std::string& name, Text& text, const std::string& description) {
    const auto take = [&text](const CLI::results_t& given) {
        text = Unshielded(given.back());
        return true;
    };
    return command.add_option(name, take, description)->type_name("TEXT");
}
/// The same for one text or more.
CLI::Option* AddTexts(CLI::App& command, const std::string& name, std::vector<std::string>& texts,
                      const std::string& description);

/// Adds the values as texts that most commands take.
inline void AddValues(CLI::App& command, std::vector<std::string>& values) {
    AddTexts(command, "VALUE", values, "Values as text; {NULL} is the null value")->required();
}

/// Adds --format; `format` stays empty without it.
inline void AddFormatOption(CLI::App& command, std::optional<std::string>& format) {
    AddText(command, "--format", format, "The format instead of the row's own")->type_name("FORMAT");
}

/// Adds --order little|big, stored as its name.
inline void AddOrderOption(CLI::App& command, std::string& order) {
    command.add_option("--order", order, "Byte order of the disk form: little or big (default little)")
        ->check(CLI::IsMember({"little", "big"}))
        ->type_name("ORDER");
}

/// Adds --code-set and --language, stored as their texts.
inline void AddTextOptions(CLI::App& command, std::string& codeSet, std::string& language) {
    AddText(command, "--code-set", codeSet,
            "Code set of strings, by number or name: 1 is Windows-1252, 253 Unicode (default " + codeSet + ")")
        ->type_name("N|NAME");
    AddText(command, "--language", language, "Language of strings, by number or name (default " + language + ")")
        ->type_name("N|NAME");
}

/// Adds --ignore-case and --ignore-accents.
inline void AddLevelOptions(CLI::App& command, bool& ignoreCase, bool& ignoreAccents) {
    command.add_flag("--ignore-case", ignoreCase, "Differences of case do not count");
    command.add_flag("--ignore-accents", ignoreAccents, "Differences of accents do not count");
}

#endif
