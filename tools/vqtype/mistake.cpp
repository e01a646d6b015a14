#include "mistake.h"

#include <fmt/format.h>

#include <algorithm>

#include "command.h"
#include "error.h"
#include "nearest.h"
#include "text.h"

namespace {

std::string NameOf(const std::string& argument) { return argument.substr(0, argument.find('=')); }

std::string NoSuchOption(const CLI::App& command, const std::string& argument) {
    const std::string name = NameOf(argument);
    NearestName nearest(std::string_view(name).substr(std::min(name.find_first_not_of('-'), name.size())));
    for (const CLI::Option* option : command.get_options()) {
        for (const std::string& known : option->get_lnames()) nearest.Try(known, "--" + known);
    }
    return fmt::format("{}: there is no such option{}", Echo(name), nearest.Question());
}

// One that stands in a group may be meant, too.
std::string NoSuchCommand(const CLI::App& group, const std::string& name) {
    NearestName nearest(name);
    std::string names;
    for (const CLI::App* command : group.get_subcommands({})) {
        nearest.Try(command->get_name());
        for (const CLI::App* inner : command->get_subcommands({})) {
            nearest.Try(inner->get_name(), command->get_name() + ' ' + inner->get_name());
        }
        names += (names.empty() ? "" : ", ") + command->get_name();
    }
    const std::string question = nearest.Question();
    return fmt::format("{}: there is no such command{}", Echo(name),
                       question.empty() ? "; expected one of " + names : question);
}

// The parser's error begins with the name of the option that lacks its value.
std::string DescribeMissing(const CLI::App& command, const std::string& text) {
    const std::string name = text.substr(0, text.find(':'));
    const CLI::Option* option = command.get_option_no_throw(name);
    return option ? fmt::format("{}: its {} is missing", name, option->get_type_name()) : text;
}

}  // namespace

void CheckCommand(const CLI::App& program, const std::vector<std::string>& arguments) {
    const auto [called, names] = FindCall(program, arguments);
    if (!HasCommands(*called)) return;
    if (arguments.size() == names || arguments[names] == "--") throw UsageError("a command is missing");
    const std::string& word = arguments[names];
    if (!IsOption(word)) throw UsageError("{}", NoSuchCommand(*called, word));
    if (!called->get_option_no_throw(NameOf(word))) throw UsageError("{}", NoSuchOption(*called, word));
}

std::string DescribeMistake(const CLI::App& program, const CLI::ParseError& error,
                            const std::vector<std::string>& arguments) {
    const CLI::App& command = *FindCall(program, arguments).command;
    const std::string text = error.what();
    if (dynamic_cast<const CLI::ArgumentMismatch*>(&error)) return DescribeMissing(command, text);
    const std::vector<std::string> extras = command.remaining();
    const auto option = std::find_if(extras.begin(), extras.end(), IsOption);
    if (option != extras.end()) return NoSuchOption(command, *option);
    if (extras.empty()) return text;
    return fmt::format("{}: one argument too many", Echo(Unshielded(extras.front())));
}
