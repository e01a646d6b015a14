#include "complete.h"

#include <algorithm>
#include <iterator>
#include <set>

#include "command.h"
#include "text.h"

namespace {

using Words = std::vector<std::string>;

constexpr const char* Command = "COMMAND";
constexpr const char* OptionName = "OPTION";
constexpr const char* Nothing = "NOTHING";

struct Answer {
    std::string place;
    Words words;
};

// --- What has been typed

// The command line in front of the cursor.
struct CommandLine {
    const CLI::App& command;
    std::vector<const CLI::Option*> arguments;
    std::size_t argumentsGiven = 0;
    std::set<const CLI::Option*> optionsGiven = {};
    const CLI::Option* waiting = nullptr;  // for its value
    bool onlyArguments = false;            // behind --
    std::string type = {}, store = {};     // the first of each
};

// The argument that is next, or none.
const CLI::Option* NextArgument(const CommandLine& line) {
    if (line.argumentsGiven < line.arguments.size()) return line.arguments[line.argumentsGiven];
    return !line.arguments.empty() && IsList(*line.arguments.back()) ? line.arguments.back() : nullptr;
}

const CLI::Option* FindOption(const CommandLine& line, const std::string& word) {
    if (line.onlyArguments || !IsOption(word)) return nullptr;
    return line.command.get_option_no_throw(word.substr(0, word.find('=')));
}

void TakeFirst(std::string& first, Takes takes, const CLI::Option& argument, const std::string& word) {
    if (first.empty() && argument.get_type_name() == PlaceName(takes)) first = word;
}

void TakeArgument(CommandLine& line, const std::string& word) {
    if (const CLI::Option* argument = NextArgument(line)) {
        TakeFirst(line.type, Takes::Type, *argument, word);
        TakeFirst(line.store, Takes::Store, *argument, word);
    }
    ++line.argumentsGiven;
}

void TakeWord(CommandLine& line, const std::string& word) {
    if (line.waiting) {
        line.waiting = nullptr;
    } else if (word == "--" && !line.onlyArguments) {
        line.onlyArguments = true;
    } else if (const CLI::Option* option = FindOption(line, word)) {
        if (!IsList(*option)) line.optionsGiven.insert(option);
        if (word.find('=') == word.npos && TakesValue(line.command, word)) line.waiting = option;
    } else {
        TakeArgument(line, word);
    }
}

CommandLine Read(const Call& call, const Words& words) {
    CommandLine line{*call.command,
                     call.command->get_options([](const CLI::Option* o) { return o->get_positional(); })};
    for (std::size_t i = call.names; i + 1 < words.size(); ++i) TakeWord(line, words[i]);
    return line;
}

// --- What can follow

bool BeginsIgnoringCase(const std::string& text, const std::string& start) {
    return EqualIgnoringCase(text.substr(0, start.size()), start);
}

template <class Predicate>
Words Filtered(const Words& words, Predicate isWanted) {
    Words wanted;
    std::copy_if(words.begin(), words.end(), std::back_inserter(wanted), isWanted);
    return wanted;
}

Words BeginningWith(const Words& words, const std::string& start) {
    Words found = Filtered(words, [&](const std::string& word) { return word.rfind(start, 0) == 0; });
    for (const char* prefix : {"", "Vq"}) {
        if (!found.empty()) break;
        found = Filtered(words, [&](const std::string& word) { return BeginsIgnoringCase(word, prefix + start); });
    }
    return found;
}

Words OptionsOf(const CLI::App& app, const std::set<const CLI::Option*>& given) {
    Words names;
    for (const CLI::Option* option : app.get_options([](const CLI::Option* o) { return o->nonpositional(); })) {
        if (given.count(option)) continue;
        for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
    }
    return names;
}

Answer AtCommand(const CLI::App& group, const std::string& word) {
    if (IsOption(word)) return {OptionName, BeginningWith(OptionsOf(group, {}), word)};
    Words names;
    for (const CLI::App* command : group.get_subcommands({})) names.push_back(command->get_name());
    return {Command, BeginningWith(names, word)};
}

Answer AtPlace(const CommandLine& line, const CLI::Option& place, const std::string& word) {
    Answer answer{place.get_type_name(), {}};
    const std::size_t start = PartStart(answer.place, word);
    const Typed typed{line.type, line.store, word.substr(0, start), word.substr(start)};
    if (!ListChoices(answer.place, typed, answer.words)) return {"?" + answer.place, {}};
    answer.words = BeginningWith(answer.words, typed.part);
    for (std::string& choice : answer.words) choice.insert(0, typed.before);
    return answer;
}

// Behind `--name=`.
Answer AtAssignment(const CommandLine& line, const CLI::Option& option, const std::string& word) {
    const std::size_t start = word.find('=') + 1;
    Answer answer = AtPlace(line, option, word.substr(start));
    for (std::string& choice : answer.words) choice.insert(0, word, 0, start);
    return answer;
}

Answer AtWord(const CommandLine& line, const std::string& word) {
    if (line.waiting) return AtPlace(line, *line.waiting, word);
    const CLI::Option* option = FindOption(line, word);
    const bool isAssignment = option && word.find('=') != word.npos;
    if (isAssignment && TakesValue(line.command, word.substr(0, word.find('='))))
        return AtAssignment(line, *option, word);
    const CLI::Option* argument = NextArgument(line);
    const bool canBeOption = !line.onlyArguments && (IsOption(word) || (!argument && word.empty()));
    if (canBeOption) return {OptionName, BeginningWith(OptionsOf(line.command, line.optionsGiven), word)};
    return argument ? AtPlace(line, *argument, word) : Answer{Nothing, {}};
}

Answer Ask(const CLI::App& program, const Words& words) {
    if (words.empty()) return AtCommand(program, "");
    const Call call = FindCall(program, Words(words.begin(), words.end() - 1));
    if (!HasCommands(*call.command)) return AtWord(Read(call, words), words.back());
    return call.names + 1 == words.size() ? AtCommand(*call.command, words.back()) : Answer{Nothing, {}};
}

}  // namespace

std::string Complete(const CLI::App& program, const std::vector<std::string>& words) {
    const Answer answer = Ask(program, words);
    std::string lines = answer.place + '\n';
    for (const std::string& word : answer.words) lines += word + '\n';
    return lines;
}
