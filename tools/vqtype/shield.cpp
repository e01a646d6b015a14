#include "command.h"

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

std::vector<std::string> Unshielded(const std::vector<std::string>& values) {
    std::vector<std::string> texts;
    for (const std::string& value : values) texts.push_back(Unshielded(value));
    return texts;
}
