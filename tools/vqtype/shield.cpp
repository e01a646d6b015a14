#include <algorithm>

#include "command.h"
#include "error.h"
#include "text.h"

namespace {

const std::string Shield(1, '\0');

bool LooksLikeList(const std::string& argument) {
    return argument == "{}" || (argument.size() > 1 && argument.front() == '[' && argument.back() == ']');
}

// The parser knows negative numbers by their first digit.
bool IsNegative(const std::string& argument) {
    return argument.rfind("-.", 0) == 0 || EqualIgnoringCase(argument, "-inf") || EqualIgnoringCase(argument, "-nan");
}

// `--name=value`. The value may be empty, as in `--low=`; an option that there is not is left to the parser.
void AddAssignment(const CLI::App& command, const std::string& argument, std::vector<std::string>& shielded) {
    const std::size_t equals = argument.find('=');
    const std::string name = argument.substr(0, equals), value = argument.substr(equals + 1);
    if (TakesValue(command, name)) {
        shielded.insert(shielded.end(), {name, value.empty() ? value : Shield + value});
    } else if (name != "--" && command.get_option_no_throw(name)) {
        throw UsageError("{} takes no value", name);
    } else {
        shielded.push_back(argument);
    }
}

bool IsAssignment(const std::string& argument) {
    return argument.rfind("--", 0) == 0 && argument.find('=') != argument.npos;
}

}  // namespace

bool IsList(const CLI::Option& argument) {
    return argument.get_expected_max() >= CLI::detail::expected_max_vector_size;
}

bool HasCommands(const CLI::App& command) { return !command.get_subcommands({}).empty(); }

Call FindCall(const CLI::App& program, const std::vector<std::string>& arguments) {
    Call call{&program, 0};
    for (const std::string& argument : arguments) {
        const auto commands = call.command->get_subcommands({});
        const auto named = std::find_if(commands.begin(), commands.end(),
                                        [&](const CLI::App* command) { return command->get_name() == argument; });
        if (named == commands.end()) break;
        call = {*named, call.names + 1};
    }
    return call;
}

bool TakesValue(const CLI::App& command, const std::string& name) {
    const CLI::Option* option = command.get_option_no_throw(name);
    return option != nullptr && option->get_items_expected_max() > 0;
}

std::vector<std::string> ShieldedArguments(const CLI::App& program, const std::vector<std::string>& arguments) {
    const CLI::App& command = *FindCall(program, arguments).command;
    std::vector<std::string> shielded;
    bool onlyValues = false;
    for (const std::string& argument : arguments) {
        if (argument == "--" && !onlyValues) {
            onlyValues = true;
        } else if (onlyValues || LooksLikeList(argument) || IsNegative(argument)) {
            shielded.push_back(Shield + argument);
        } else if (IsAssignment(argument)) {
            AddAssignment(command, argument, shielded);
        } else {
            shielded.push_back(argument);
        }
    }
    return shielded;
}

std::string Unshielded(const std::string& argument) {
    return !argument.empty() && argument[0] == '\0' ? argument.substr(1) : argument;
}

CLI::Option* AddTexts(CLI::App& command, const std::string& name, Takes takes, std::vector<std::string>& texts,
                      const std::string& description) {
    const auto take = [&texts](const CLI::results_t& given) {
        texts.clear();
        for (const std::string& text : given) texts.push_back(Unshielded(text));
        return true;
    };
    CLI::Option* option = command.add_option(name, take, description)->type_name(PlaceName(takes));
    return option->expected(1, CLI::detail::expected_max_vector_size)->allow_extra_args(option->get_positional());
}
