/// \file
/// The subcommands. Each adds itself with its options to the program and runs from its callback.
#ifndef VQTYPE_COMMAND_H
#define VQTYPE_COMMAND_H

#include <CLI/CLI.hpp>

#include <optional>
#include <string>
#include <vector>

#include "place.h"

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
void AddStoreCommands(CLI::App& program);

/// True for the program and for a group of commands.
bool HasCommands(const CLI::App& command);

/// The names that `vqtype compare --flags` and `vqtype estimate --op` take.
std::vector<std::string> ComparisonFlags();
std::vector<std::string> ComparisonOperators();

/// True for an argument or an option of which there can be any number.
bool IsList(const CLI::Option& argument);

/// True for a word that begins as options do.
inline bool IsOption(const std::string& word) { return word.rfind('-', 0) == 0; }

/// The parser would take an argument like [a,b] or {} for a list, -inf for options, the next argument for the value of
/// `--low=`, and cannot go on with values behind `--`. A zero character in front, which no argument can hold, makes
/// such arguments plain text. Throws UsageError for a flag with a value.
std::vector<std::string> ShieldedArguments(const CLI::App& program, const std::vector<std::string>& arguments);
std::string Unshielded(const std::string& argument);

/// The command that arguments call.
struct Call {
    const CLI::App* command;  ///< the group or the program itself where no command of theirs is named
    std::size_t names;        ///< how many of the arguments, from the first, are its name and those of its groups
};
Call FindCall(const CLI::App& program, const std::vector<std::string>& arguments);

/// True for an option of that name that takes a value.
bool TakesValue(const CLI::App& command, const std::string& name);

/// Adds an option or an argument that is stored as it was given, without that zero character. Of an option that is
/// given twice the last counts.
template <class Text>  // std::string, or an optional one
CLI::Option* AddText(CLI::App& command, const std::string& name, Takes takes, Text& text,
                     const std::string& description) {
    const auto take = [&text, takes, name](const CLI::results_t& given) {
        text = CheckChoice(takes, name, Unshielded(given.back()));
        return true;
    };
    CLI::Option* option = command.add_option(name, take, description)->type_name(PlaceName(takes));
    return option->get_positional() ? option : option->take_last();
}
/// The same for one argument or more, or for an option that can be given more than once, with one value each time.
CLI::Option* AddTexts(CLI::App& command, const std::string& name, Takes takes, std::vector<std::string>& texts,
                      const std::string& description);

/// Adds the type that most commands begin with.
inline void AddType(CLI::App& command, std::string& type, const std::string& description = "The values' type") {
    AddText(command, "TYPE", Takes::Type, type, description)->required();
}

/// Adds the values as texts that most commands take.
inline void AddValues(CLI::App& command, std::vector<std::string>& values) {
    AddTexts(command, "VALUE", Takes::Value, values, "Values as text; {NULL} is the null value")->required();
}

/// Adds --format; `format` stays empty without it.
inline void AddFormatOption(CLI::App& command, std::optional<std::string>& format) {
    AddText(command, "--format", Takes::Format, format, "The format instead of the type's own");
}

/// Adds --order little|big, stored as its name.
inline void AddOrderOption(CLI::App& command, std::string& order) {
    AddText(command, "--order", Takes::Order, order, "Byte order of the disk form: little or big (default little)");
}

/// Adds --code-set and --language, stored as their texts.
inline void AddTextOptions(CLI::App& command, std::string& codeSet, std::string& language) {
    AddText(command, "--code-set", Takes::CodeSet, codeSet,
            "Code set of strings, a number or a name of `vqtype codesets`: 1 is Windows-1252, 253 Unicode (default " +
                codeSet + ")");
    AddText(command, "--language", Takes::Language, language,
            "Language of strings, a number or a name of `vqtype languages` (default " + language + ")");
}

/// Adds --ignore-case and --ignore-accents.
inline void AddLevelOptions(CLI::App& command, bool& ignoreCase, bool& ignoreAccents) {
    command.add_flag("--ignore-case", ignoreCase, "Differences of case do not count");
    command.add_flag("--ignore-accents", ignoreAccents, "Differences of accents do not count");
}

#endif
