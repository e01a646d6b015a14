#include "help.h"

#include <fmt/format.h>

#include <algorithm>
#include <sstream>

#include "command.h"
#include "utf8.h"

namespace {

constexpr std::size_t Width = 100;

// The text's words in lines; all but the first begin with `indent` blanks. `column` is where the first word stands.
std::string Wrapped(const std::string& text, std::size_t column, std::size_t indent) {
    std::string out, word;
    for (std::istringstream words(text); words >> word;) {
        const std::size_t width = DisplayWidth(word);
        if (!out.empty() && column + 1 + width > Width) {
            out += '\n' + std::string(indent, ' ');
            column = indent;
        } else if (!out.empty()) {
            out += ' ';
            ++column;
        }
        out += word;
        column += width;
    }
    return out;
}

// --- Names and what they mean

struct Entry {
    std::string name, meaning;
};
using Entries = std::vector<Entry>;

std::size_t WidthOfNames(const Entries& entries) {
    std::size_t width = 0;
    for (const Entry& entry : entries) width = std::max(width, entry.name.size());
    return width;
}

std::string Listed(const Entries& entries, std::size_t width) {
    std::string out;
    for (const auto& [name, meaning] : entries) {
        out += fmt::format("  {:<{}}  {}\n", name, width, Wrapped(meaning, width + 4, width + 4));
    }
    return out;
}

// Lists under their titles, with the meanings below each other throughout.
struct Section {
    std::string title;
    Entries entries;
};

std::string Listed(const std::vector<Section>& sections, bool withTitles) {
    std::size_t width = 0;
    for (const Section& section : sections) width = std::max(width, WidthOfNames(section.entries));
    std::string out;
    for (const Section& section : sections) {
        if (section.entries.empty()) continue;
        out += '\n' + (withTitles ? section.title + ":\n" : "") + Listed(section.entries, width);
    }
    return out;
}

// --- Options and arguments

std::vector<const CLI::Option*> NamedOptionsOf(const CLI::App& app) {
    return app.get_options([](const CLI::Option* option) { return option->nonpositional(); });
}

std::string OptionNames(const CLI::Option& option) {
    std::string names;
    for (const std::string& name : option.get_snames()) names += (names.empty() ? "-" : ", -") + name;
    for (const std::string& name : option.get_lnames()) names += (names.empty() ? "--" : ", --") + name;
    return option.get_items_expected_max() > 0 ? names + ' ' + option.get_type_name() : names;
}

Section OptionsOf(const CLI::App& app, bool withHelp) {
    Section section{"Options", {}};
    for (const CLI::Option* option : NamedOptionsOf(app)) {
        const bool isHelp = option == app.get_help_ptr() || option == app.get_help_all_ptr();
        if (isHelp && !withHelp) continue;
        section.entries.push_back({OptionNames(*option), option->get_description()});
    }
    return section;
}

std::vector<const CLI::Option*> ArgumentsOf(const CLI::App& app) {
    return app.get_options([](const CLI::Option* option) { return option->get_positional(); });
}

Section ArgumentSection(const CLI::App& app) {
    Section section{"Arguments", {}};
    for (const CLI::Option* argument : ArgumentsOf(app)) {
        section.entries.push_back({argument->get_name(true, false), argument->get_description()});
    }
    return section;
}

std::string Usage(const CLI::App& app, const std::string& name) {
    if (HasCommands(app)) return name + " COMMAND [OPTION]... [ARGUMENT]...";
    std::string usage = name;
    for (const CLI::Option* option : NamedOptionsOf(app)) {
        if (option->get_required()) usage += ' ' + OptionNames(*option);
    }
    usage += " [OPTION]...";
    for (const CLI::Option* argument : ArgumentsOf(app)) {
        const std::string place = argument->get_name(true, false) + (IsList(*argument) ? "..." : "");
        usage += argument->get_required() ? ' ' + place : " [" + place + ']';
    }
    return usage;
}

// --- Footers

std::string FooterLine(const std::string& line, std::size_t indent) {
    const std::string margin(indent, ' ');
    if (line.rfind("  ", 0) == 0) return margin + line + '\n';
    return line.empty() ? "\n" : margin + Wrapped(line, indent, indent) + '\n';
}

std::string Footer(const CLI::App& app, std::size_t indent) {
    std::string out, line;
    for (std::istringstream lines(app.get_footer()); std::getline(lines, line);) out += FooterLine(line, indent);
    return out.empty() ? out : '\n' + out;
}

// --- The whole

std::vector<Section> Groups(const CLI::App& program) {
    std::vector<Section> sections;
    for (const CLI::App* command : program.get_subcommands({})) {
        auto section = std::find_if(sections.begin(), sections.end(),
                                    [&](const Section& known) { return known.title == command->get_group(); });
        if (section == sections.end()) section = sections.insert(section, {command->get_group(), {}});
        section->entries.push_back({command->get_name(), command->get_description()});
    }
    return sections;
}

std::string Help(const CLI::App& app, const std::string& name) {
    std::vector<Section> sections = Groups(app);
    sections.push_back(ArgumentSection(app));
    sections.push_back(OptionsOf(app, true));
    return fmt::format("Usage: {}\n\n{}.\n", Usage(app, name), Wrapped(app.get_description(), 0, 0)) +
           Listed(sections, true) + Footer(app, 0);
}

// A title, and below it indented paragraphs and lists, make a section of a manual page.
std::string CommandChapter(const CLI::App& command, const std::string& name) {
    return fmt::format("\n{}:\n  {}.\n", Usage(command, name), Wrapped(command.get_description(), 2, 2)) +
           Listed({ArgumentSection(command), OptionsOf(command, false)}, false) + Footer(command, 2);
}

// Of all commands, each group's behind its own.
std::string Chapters(const CLI::App& group, const std::string& name) {
    std::string chapters;
    for (const CLI::App* command : group.get_subcommands({})) {
        const std::string called = name + ' ' + command->get_name();
        chapters += CommandChapter(*command, called) + Chapters(*command, called);
    }
    return chapters;
}

}  // namespace

std::string HelpFormatter::make_help(const CLI::App* app, std::string name, CLI::AppFormatMode mode) const {
    const std::string help = Help(*app, name);
    return mode == CLI::AppFormatMode::All ? help + "\n*Commands*\n" + Chapters(*app, name) : help;
}
