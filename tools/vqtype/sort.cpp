#include <fmt/format.h>

#include <algorithm>
#include <memory>

#include "command.h"
#include "error.h"
#include "files.h"
#include "textencoder.h"
#include "textorder.h"
#include "valueorder.h"

namespace {

struct SortOptions {
    std::string type;
    std::string file;
    std::string codeSet = "253";
    std::string language = "0";
    bool hasLanguage = false;
    bool ignoreCase = false;
    bool ignoreAccents = false;
    OrderRule rule;
};

TextOptions TextOf(const SortOptions& options) {
    return {ParseCodeSet(options.codeSet), ParseLanguage(options.language)};
}

unsigned short IgnoredLevels(const SortOptions& options) {
    return static_cast<unsigned short>((options.ignoreCase ? VqCmp_IgnoreCase : 0) |
                                       (options.ignoreAccents ? VqCmp_IgnoreAccents : 0));
}

// The place of a line in errors.
std::string PlaceOf(std::size_t line, const SortOptions& options) {
    return fmt::format("{}:{}", options.file == "-" ? "standard input" : Printable(options.file), line + 1);
}

// --- Lines

// A line's text is what is sorted; its end, LF or CRLF, stays with it.
struct Line {
    const char* start;
    std::uint32_t textSize, size;

    std::string_view Text() const { return {start, textSize}; }
    std::string_view Whole() const { return {start, size}; }
};
using Lines = std::vector<Line>;
using LineNumbers = std::vector<std::uint32_t>;

// A last line without an end gets the one of the first, so that it can stand anywhere.
void EndLastLine(std::string& bytes) {
    if (bytes.empty() || bytes.back() == '\n') return;
    const std::size_t feed = bytes.find('\n');
    bytes += feed != bytes.npos && feed > 0 && bytes[feed - 1] == '\r' ? "\r\n" : "\n";
}

Lines SplitLines(std::string_view bytes) {
    Lines lines;
    lines.reserve(static_cast<std::size_t>(std::count(bytes.begin(), bytes.end(), '\n')));
    while (!bytes.empty()) {
        const std::size_t feed = bytes.find('\n');
        const std::size_t textSize = feed > 0 && bytes[feed - 1] == '\r' ? feed - 1 : feed;
        lines.push_back({bytes.data(), static_cast<std::uint32_t>(textSize), static_cast<std::uint32_t>(feed + 1)});
        bytes.remove_prefix(feed + 1);
    }
    return lines;
}

void WriteLines(std::string_view mark, const Lines& lines, const LineNumbers& numbers, std::size_t size) {
    std::string out(mark);
    out.reserve(mark.size() + size);
    for (const std::uint32_t number : numbers) out += lines[number].Whole();
    Write(out);
}

// --- Values of any type, by the manager's comparison

LineNumbers SortValues(VqTypeId id, const Lines& lines, const SortOptions& options) {
    const TextOptions text = TextOf(options);
    const ValueArray values(id, static_cast<unsigned long>(lines.size()));
    for (unsigned long i = 0; i < values.GetCount(); ++i) values.Scan(i, lines[i].Text(), text, PlaceOf(i, options));
    return SortedOrder(values, options.rule);
}

// --- Strings, by keys made of their texts

void AddText(TextOrder& order, TextEncoder& encoder, const Lines& lines, std::uint32_t i, const SortOptions& options) {
    try {
        const void* codes = encoder.Encode(lines[i].Text());
        order.Add(i, codes, encoder.GetLength());
    } catch (const TextFault& fault) {
        throw CommandError("{}: {}", PlaceOf(i, options), fault.text);
    }
}

LineNumbers InOrder(const std::vector<TextOrder::Place>& places, const OrderRule& rule) {
    LineNumbers numbers;
    numbers.reserve(places.size());
    for (const TextOrder::Place& place : places) {
        if (place.isFirst || !rule.unique) numbers.push_back(place.number);
    }
    return numbers;
}

// The last first, but those that compare equal in their sequence.
LineNumbers InReverse(const std::vector<TextOrder::Place>& places, const OrderRule& rule) {
    LineNumbers numbers;
    for (std::size_t first = places.size(), last; first > 0;) {
        last = first--;
        while (!places[first].isFirst) --first;
        if (rule.unique) last = first + 1;
        for (std::size_t i = first; i < last; ++i) numbers.push_back(places[i].number);
    }
    return numbers;
}

void PutNulls(LineNumbers& numbers, LineNumbers nulls, const OrderRule& rule) {
    if (rule.unique && !nulls.empty()) nulls.resize(1);
    numbers.insert(rule.nullLast || rule.reverse ? numbers.end() : numbers.begin(), nulls.begin(), nulls.end());
}

LineNumbers SortTexts(const Lines& lines, std::size_t size, const SortOptions& options) {
    const TextOptions text = TextOf(options);
    const std::string null = ToUtf8(Manager().GetNullPrintString());
    TextEncoder encoder(text);
    TextOrder order(text.codeSet, text.language, IgnoredLevels(options));
    order.Reserve(lines.size(), size);
    LineNumbers nulls;
    for (std::uint32_t i = 0; i < lines.size(); ++i) {
        if (lines[i].Text() == null) {
            nulls.push_back(i);
        } else {
            AddText(order, encoder, lines, i, options);
        }
    }
    LineNumbers numbers =
        options.rule.reverse ? InReverse(order.Sort(), options.rule) : InOrder(order.Sort(), options.rule);
    PutNulls(numbers, std::move(nulls), options.rule);
    return numbers;
}

// The option given that only texts can follow; null for none.
const char* TextOnlyOption(const SortOptions& options) {
    if (options.ignoreCase) return "--ignore-case";
    if (options.ignoreAccents) return "--ignore-accents";
    return options.hasLanguage ? "--language" : nullptr;
}

void CheckOptions(VqTypeId id, const SortOptions& options) {
    if (!CanSort(id)) {
        throw CommandError("TYPE {}: cannot be sorted (`vqtype types` shows which can: order and text)", TypeName(id));
    }
    if (const char* const option = TextOnlyOption(options); option != nullptr && id != VqTypeId_VqString) {
        throw CommandError("{}: only VqString sorts by language; {} does not", option, TypeName(id));
    }
}

void Sort(const SortOptions& options) {
    const VqTypeId id = ParseType(options.type);
    CheckOptions(id, options);
    std::string bytes = ReadFile(options.file);
    EndLastLine(bytes);
    const std::string_view mark = bytes.rfind("\xEF\xBB\xBF", 0) == 0 ? "\xEF\xBB\xBF" : "";
    const Lines lines = SplitLines(std::string_view(bytes).substr(mark.size()));
    const LineNumbers numbers =
        id == VqTypeId_VqString ? SortTexts(lines, bytes.size(), options) : SortValues(id, lines, options);
    WriteLines(mark, lines, numbers, bytes.size());
}

}  // namespace

void AddSortCommand(CLI::App& program) {
    const auto options = std::make_shared<SortOptions>();
    CLI::App* command = program.add_subcommand("sort", "Sort the lines of a file in a type's order");
    AddType(*command, options->type, "The type that every line is a value of");
    AddText(*command, "FILE", Takes::File, options->file, "A UTF-8 text file; - reads standard input")->required();
    command->add_flag("--reverse", options->rule.reverse,
                      "Last first; equal lines keep their sequence, nulls come last");
    command->add_flag("--unique", options->rule.unique, "Of equal lines only the first");
    command->add_flag("--null-last", options->rule.nullLast, "Nulls behind all values");
    AddTextOptions(*command, options->codeSet, options->language);
    AddLevelOptions(*command, options->ignoreCase, options->ignoreAccents);
    command->footer(
        "The sort is stable. A line is printed as it was read; a CR before its LF is part of the line's end, not of "
        "its value. A last line without an end is given one. A line {NULL} is the null value. A value that is not a "
        "number (nan) stands behind all that are.\n\n"
        "  $ vqtype sort VqString names.txt --language german");
    command->callback([options, command] {
        options->hasLanguage = command->count("--language") != 0;
        Sort(*options);
    });
}
