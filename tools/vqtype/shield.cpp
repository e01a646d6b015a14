#include "command.h"

std::vector<std::string> ShieldedArguments(const std::vector<std::string>& arguments) {
    std::vector<std::string> shielded;
    bool onlyValues = false;
    for (const std::string& argument : arguments) {
        const bool isList =
            argument == "{}" || (argument.size() > 1 && argument.front() == '[' && argument.back() == ']');
        if (argument == "--" && !onlyValues) {
            onlyValues = true;
        } else if (!onlyValues && argument.rfind("--", 0) == 0 && argument.find('=') == argument.size() - 1) {
            shielded.push_back(argument.substr(0, argument.size() - 1));
            shielded.emplace_back();
        } else {
            shielded.push_back((onlyValues || isList ? std::string(1, '\0') : "") + argument);
        }
    }
    return shielded;
}

std::string Unshielded(const std::string& argument) {
    return !argument.empty() && argument[0] == '\0' ? argument.substr(1) : argument;
}

CLI::Option* AddTexts(CLI::App& command, const std::string& name, std::vector<std::string>& texts,
                      const std::string& description) {
    const auto take = [&texts](const CLI::results_t& given) {
        texts.clear();
        for (const std::string& text : given) texts.push_back(Unshielded(text));
        return true;
    };
    CLI::Option* option = command.add_option(name, take, description)->type_name("TEXT");
    return option->expected(1, CLI::detail::expected_max_vector_size)->allow_extra_args();
}
