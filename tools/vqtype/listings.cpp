#include <fmt/format.h>

#include <memory>

#include "command.h"
#include "files.h"
#include "ownletters.h"
#include "table.h"
#include "text.h"

namespace {

// --- Code sets

struct CodeSetRow {
    NamedCode code;
    const VqCodeSet& set;
    unsigned characters;
};

// Of the 16-bit Unicode characters.
unsigned CountCharacters(const VqCodeSet& set) {
    unsigned count = 0;
    for (unsigned unit = 0; unit < 0x10000; ++unit) count += set.HasUnicode(static_cast<unsigned short>(unit));
    return count;
}

std::vector<CodeSetRow> CodeSetRows() {
    std::vector<CodeSetRow> rows;
    for (const NamedCode& code : CodeSets()) {
        const VqCodeSet& set = RequireCodeSet(code.number);
        rows.push_back({code, set, CountCharacters(set)});
    }
    return rows;
}

std::string TitleOf(const CodeSetRow& row) {
    return row.code.number ? row.code.name : fmt::format("{} (stands for {})", row.code.name, row.set.GetCode());
}

void ListCodeSets() {
    Table table{{"number", true}, {"name"}, {"bytes", true}, {"characters", true}};
    for (const CodeSetRow& row : CodeSetRows()) {
        table.AddRow({fmt::to_string(row.code.number), TitleOf(row), fmt::to_string(row.set.GetCharSize()),
                      fmt::to_string(row.characters)});
    }
    Write(table.Format());
}

void ListCodeSetsAsJson() {
    const char* separator = "[\n  ";
    for (const CodeSetRow& row : CodeSetRows()) {
        Write(fmt::format("{}{{\"number\": {}, \"name\": {}, \"bytes\": {}, \"characters\": {}}}", separator,
                          row.code.number, Quoted(row.code.name), row.set.GetCharSize(), row.characters));
        separator = ",\n  ";
    }
    Write("\n]\n");
}

// --- Languages

struct LanguageRow {
    NamedCode code;
    unsigned char collationClass;
    std::vector<std::string> letters;
};

std::vector<LanguageRow> LanguageRows() {
    const VqCodeSet& unicode = RequireCodeSet(253);
    std::vector<LanguageRow> rows;
    for (const NamedCode& code : Languages()) {
        rows.push_back({code, unicode.GetCollationClass(code.number), OwnLetters(code.number)});
    }
    return rows;
}

void ListLanguages() {
    Table table{{"number", true}, {"name"}, {"class", true}, {"letters"}};
    for (const LanguageRow& row : LanguageRows()) {
        table.AddRow({fmt::to_string(row.code.number), row.code.name, fmt::to_string(row.collationClass),
                      fmt::format("{}", fmt::join(row.letters, " "))});
    }
    Write(table.Format());
}

void ListLanguagesAsJson() {
    const char* separator = "[\n  ";
    for (const LanguageRow& row : LanguageRows()) {
        std::string letters;
        for (const std::string& letter : row.letters) letters += (letters.empty() ? "" : ", ") + Quoted(letter);
        Write(fmt::format("{}{{\"number\": {}, \"name\": {}, \"class\": {}, \"letters\": [{}]}}", separator,
                          row.code.number, Quoted(row.code.name), row.collationClass, letters));
        separator = ",\n  ";
    }
    Write("\n]\n");
}

void AddListing(CLI::App& program, const char* name, const char* description, const char* footer, void (*list)(),
                void (*listAsJson)()) {
    const auto json = std::make_shared<bool>(false);
    CLI::App* command = program.add_subcommand(name, description);
    command->add_flag("--json", *json, "As JSON");
    command->footer(footer);
    command->callback([json, list, listAsJson] { *json ? listAsJson() : list(); });
}

}  // namespace

void AddCodeSetsCommand(CLI::App& program) {
    AddListing(program, "codesets", "List the code sets",
               "The columns of the table:\n\n"
               "  bytes       the size of one character\n"
               "  characters  of the 65536 16-bit ones of Unicode, how many the set has",
               ListCodeSets, ListCodeSetsAsJson);
}

void AddLanguagesCommand(CLI::App& program) {
    AddListing(program, "languages", "List the languages and how they sort",
               "The columns of the table:\n\n"
               "  class    languages of one class sort alike\n"
               "  letters  beyond a to z that have a place of their own in the alphabet",
               ListLanguages, ListLanguagesAsJson);
}
