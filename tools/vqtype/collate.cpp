#include <fmt/format.h>

#include <memory>

#include "collation.h"
#include "command.h"
#include "error.h"
#include "files.h"
#include "order.h"
#include "strcompare.h"
#include "stringiterator.h"
#include "table.h"
#include "text.h"
#include "utf8.h"
#include "vqcollation.h"

namespace {

struct CollateOptions {
    std::string texts[2];
    std::string codeSet = "253";
    std::string language = "0";
    bool ignoreCase = false;
    bool ignoreAccents = false;
    bool isExact = false;
    bool isPattern = false;
    bool json = false;
};

unsigned short OperationOf(const CollateOptions& options) {
    return static_cast<unsigned short>((options.isPattern ? 0 : VqCmp_Exact) |
                                       (options.ignoreCase ? VqCmp_IgnoreCase : 0) |
                                       (options.ignoreAccents ? VqCmp_IgnoreAccents : 0));
}

// All that is told of two texts.
struct Explanation {
    const CollateOptions& options;
    VqString strings[2];
    unsigned short op;
    unsigned char collationClass;
    Collation collation;
    int result;
};

Explanation Explain(const CollateOptions& options) {
    if (options.isExact && options.isPattern) throw CommandError("--exact and --pattern exclude each other");
    const TextOptions text{ParseCodeSet(options.codeSet), ParseLanguage(options.language)};
    Explanation all{options,
                    {MakeString(options.texts[0], text, "A"), MakeString(options.texts[1], text, "B")},
                    OperationOf(options),
                    0,
                    {},
                    0};
    const VqString &a = all.strings[0], &b = all.strings[1];
    all.collationClass = VqStringIterator(a).GetCollationClass();
    all.collation = options.isPattern ? CollatePattern(a, b, all.op) : Collate(a, b, all.op);
    // A string without characters may have no buffer, which is less than any text; here it stands for an empty one.
    all.result = VqStrCmp(a.GetCodeSet(), a.GetLanguage(), a.StrGet(), b.GetCodeSet(), b.GetLanguage(), b.StrGet(),
                          all.op, -1, 1, nullptr);
    return all;
}

// --- Words

constexpr unsigned char Russian = 18, Greek = 19;

std::string CharactersOf(const CollationStep& step, const VqString& string) {
    const VqCodeSet& set = RequireCodeSet(string.GetCodeSet());
    std::string out;
    for (std::size_t i = 0; i < step.count; ++i) {
        const unsigned short unit = set.ToUnicode(string[static_cast<int>(step.first + i)].GetCode());
        const bool isHalf = unit >= 0xD800 && unit < 0xE000;
        const auto character = static_cast<char16_t>(unit);
        out += isHalf ? fmt::format("U+{:04X}", unit) : Utf16ToUtf8({&character, 1});
    }
    return out;
}

// Names of orders call a letter by its place, which tells the letter only among those from A to Z of Latin alphabets.
bool NamesLetter(unsigned short order, unsigned char collationClass) {
    constexpr unsigned PlaceOfA = 3, PlaceOfZ = 28;
    const VqCodeSet& unicode = RequireCodeSet(253);
    const unsigned place = order >> 2 & 31;
    return place >= PlaceOfA && place <= PlaceOfZ && collationClass != unicode.GetCollationClass(Russian) &&
           collationClass != unicode.GetCollationClass(Greek);
}

void PutCharacters(std::string& name, const std::string& characters) {
    constexpr std::string_view Extension = " with extension";
    name.replace(std::string_view("lower letter ").size(), 1, characters);
    if (const std::size_t at = name.find(Extension); at != name.npos) name.erase(at, Extension.size());
}

bool IsLetter(unsigned short order, unsigned char collationClass) {
    return (order & 0xC000) == 0x4000 && collationClass != VqIdeographicClass;
}

std::string NameOfOrder(const CollationStep& step, const VqString& string, const Explanation& all) {
    if (string.GetCodeSet() == 0) return "byte";
    VqString text;
    VqConvertOrderToString(step.order, all.collationClass, text);
    std::string name = ToUtf8(text);
    // An accent without a name leaves its place empty.
    if (const std::size_t gap = name.find(" with "); gap != name.npos) {
        const std::size_t place = gap + 6;
        if (place == name.size() || name[place] == ' ') name.insert(place, "another accent");
    }
    name.erase(name.find_last_not_of(" \n") + 1);
    if (IsLetter(step.order, all.collationClass) && !NamesLetter(step.order, all.collationClass)) {
        PutCharacters(name, CharactersOf(step, string));
    }
    return name;
}

const char* NameOfLevel(CollationLevel level) {
    constexpr const char* Names[] = {"none", "primary", "accent", "case"};
    return Names[static_cast<int>(level)];
}

// The levels at which a row differs; below a difference of the letters nothing else is looked at.
std::vector<CollationLevel> DifferencesOf(const CollationRow& row) {
    if (row.DiffersAt(CollationLevel::Primary)) return {CollationLevel::Primary};
    std::vector<CollationLevel> levels;
    for (const CollationLevel level : {CollationLevel::Accent, CollationLevel::Case}) {
        if (row.DiffersAt(level)) levels.push_back(level);
    }
    return levels;
}

const char* Sign(int result) { return result < 0 ? "negative" : result > 0 ? "positive" : "zero"; }

const char* Reason(const Collation& collation) {
    if (collation.level == CollationLevel::None) return "no difference counts";
    if (collation.level == CollationLevel::Accent) return "the last difference of accents decides";
    if (collation.level == CollationLevel::Case) return "the first difference of case decides";
    const CollationRow& row = collation.rows[collation.position];
    return row.steps1.empty() || row.steps2.empty() ? "the text that ends first sorts first"
                                                    : "the first difference decides";
}

std::string Verdict(const Explanation& all) {
    const std::string a = Quoted(all.options.texts[0]), b = Quoted(all.options.texts[1]);
    const bool isEqual = all.result == 0;
    const std::string place = isEqual ? "" : fmt::format(" (position {})", all.collation.position + 1);
    if (all.options.isPattern && isEqual) return fmt::format("{} matches {}", a, b);
    if (all.options.isPattern) {
        return fmt::format("{} does not match {}: {}{}", a, b,
                           all.collation.fits ? Reason(all.collation) : "the pattern does not fit here", place);
    }
    const char* relation = all.result < 0 ? "sorts before" : all.result > 0 ? "sorts after" : "sorts the same as";
    return fmt::format("{} {} {}: {}{}", a, relation, b, Reason(all.collation), place);
}

std::string OperationText(const CollateOptions& options) {
    return fmt::format("{}{}{}", options.isPattern ? "pattern" : "exact", options.ignoreCase ? ", ignoring case" : "",
                       options.ignoreAccents ? ", ignoring accents" : "");
}

// --- The table

std::string CellOf(const std::vector<CollationStep>& steps, const VqString& string) {
    std::string cell;
    for (const CollationStep& step : steps) {
        if (step.part == 1 || steps.size() == 1) cell += Printable(CharactersOf(step, string));
    }
    if (steps.size() == 1 && steps[0].parts > 1) cell += fmt::format(" ({} of {})", steps[0].part, steps[0].parts);
    return cell;
}

void AddCells(std::vector<std::string>& cells, const std::vector<CollationStep>& steps, const VqString& string,
              bool isRun, const Explanation& all) {
    cells.push_back(CellOf(steps, string));
    if (isRun) {
        cells.insert(cells.end(), {"", fmt::format("{} in all", steps.size())});
    } else if (steps.empty()) {
        cells.insert(cells.end(), {"", "end of the text"});
    } else {
        cells.insert(cells.end(), {fmt::format("0x{:04x}", steps[0].order), NameOfOrder(steps[0], string, all)});
    }
}

bool IsRun(const CollationRow& row, const Explanation& all) {
    return row.isWildcard && CharactersOf(row.steps2[0], all.strings[1]) == "*";
}

std::string DifferenceCell(const Explanation& all, std::size_t i) {
    const CollationRow& row = all.collation.rows[i];
    const bool decides = all.collation.level != CollationLevel::None && all.collation.position == i;
    std::string cell = !row.isWildcard ? "" : IsRun(row, all) ? "any characters" : "any one";
    for (const CollationLevel level : DifferencesOf(row))
        cell += (cell.empty() ? "" : ", ") + std::string(NameOfLevel(level));
    const bool isMisfit = !all.collation.fits && all.collation.position == i;
    return cell + (decides ? " <- decides" : isMisfit ? " <- does not fit" : "");
}

std::string TableOf(const Explanation& all) {
    Table table{{"", true}, {"A"}, {"order"}, {"name"}, {"B"}, {"order"}, {"name"}, {"class", true}, {"differs"}};
    for (std::size_t i = 0; i < all.collation.rows.size(); ++i) {
        const CollationRow& row = all.collation.rows[i];
        std::vector<std::string> cells{fmt::to_string(i + 1)};
        AddCells(cells, row.steps1, all.strings[0], IsRun(row, all), all);
        AddCells(cells, row.steps2, all.strings[1], false, all);
        cells.push_back(fmt::to_string(all.collationClass));
        cells.push_back(DifferenceCell(all, i));
        table.AddRow(std::move(cells));
    }
    return table.Format();
}

void PrintText(const Explanation& all) {
    if (!all.collation.rows.empty()) Write(TableOf(all) + '\n');
    Write(fmt::format("code set {}, language {}, collation class {}; operation 0x{:02x}: {}\n",
                      DescribeCodeSet(all.strings[0].GetCodeSet()), DescribeLanguage(all.strings[0].GetLanguage()),
                      all.collationClass, all.op, OperationText(all.options)));
    Write(fmt::format("{}\nVqStrCmp gives {} ({})\n", Verdict(all), all.result, Sign(all.result)));
}

// --- JSON

std::string JsonSteps(const std::vector<CollationStep>& steps, const VqString& string, const Explanation& all) {
    std::string list;
    for (const CollationStep& step : steps) {
        list += fmt::format("{}{{\"characters\": {}, \"part\": {}, \"parts\": {}, \"order\": {}, \"name\": {}}}",
                            list.empty() ? "" : ", ", Quoted(CharactersOf(step, string)), step.part, step.parts,
                            step.order, Quoted(NameOfOrder(step, string, all)));
    }
    return '[' + list + ']';
}

std::string JsonRow(const CollationRow& row, const Explanation& all) {
    std::string levels;
    for (const CollationLevel level : DifferencesOf(row)) {
        levels += (levels.empty() ? "" : ", ") + Quoted(NameOfLevel(level));
    }
    return fmt::format("{{\"a\": {}, \"b\": {}, \"wildcard\": {}, \"differs\": [{}]}}",
                       JsonSteps(row.steps1, all.strings[0], all), JsonSteps(row.steps2, all.strings[1], all),
                       row.isWildcard, levels);
}

void PrintJson(const Explanation& all) {
    const bool isEqual = all.result == 0;
    Write(fmt::format("{{\"a\": {}, \"b\": {}, \"codeSet\": {}, \"language\": {}, \"class\": {}, \"operation\": {},\n",
                      Quoted(all.options.texts[0]), Quoted(all.options.texts[1]), all.strings[0].GetCodeSet(),
                      all.strings[0].GetLanguage(), all.collationClass, all.op));
    Write(fmt::format(" \"result\": {}, \"level\": {}, \"position\": {}, \"positions\": [", all.result,
                      Quoted(NameOfLevel(all.collation.level)),
                      isEqual ? "null" : fmt::to_string(all.collation.position + 1)));
    const char* separator = "\n  ";
    for (const CollationRow& row : all.collation.rows) {
        Write(separator + JsonRow(row, all));
        separator = ",\n  ";
    }
    Write("\n]}\n");
}

}  // namespace

void AddCollateCommand(CLI::App& program) {
    const auto options = std::make_shared<CollateOptions>();
    CLI::App* command = program.add_subcommand("collate", "Show why two texts sort as they do");
    AddText(*command, "A", Takes::Text, options->texts[0], "A text")->required();
    AddText(*command, "B", Takes::Text, options->texts[1],
            "The text, or with --pattern the pattern, to compare it with")
        ->required();
    AddTextOptions(*command, options->codeSet, options->language);
    AddLevelOptions(*command, options->ignoreCase, options->ignoreAccents);
    command->add_flag("--exact", options->isExact, "B is a text as it stands (default)");
    command->add_flag("--pattern", options->isPattern, "In B '*' is any run of characters and '?' any one");
    command->add_flag("--json", options->json, "As JSON");
    command->footer(
        "Each row is one position: the characters, their collation order and its name. A character that sorts as two "
        "stands in two rows (1 of 2, 2 of 2), letters that sort as one stand together. The first difference of letters "
        "(primary) decides, then the last of accents, then the first of case.\n\n"
        "  $ vqtype collate Muller Müller --language german");
    command->callback([options] {
        const Explanation all = Explain(*options);
        options->json ? PrintJson(all) : PrintText(all);
    });
}
