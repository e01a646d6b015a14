#include <fmt/format.h>

#include <algorithm>
#include <memory>

#include "command.h"
#include "error.h"
#include "files.h"
#include "order.h"

namespace {

struct SortOptions {
    std::string type;
    std::string file;
    std::string codeSet = "253";
    std::string language = "0";
    OrderRule rule;
};

// A line's text is what is sorted; its end, LF or CRLF, stays with it.
struct Line {
    std::string_view text;
    std::string_view end;
};

std::vector<Line> SplitLines(std::string_view bytes) {
    std::vector<Line> lines;
    while (!bytes.empty()) {
        const std::size_t feed = std::min(bytes.find('\n'), bytes.size());
        const std::size_t length = feed > 0 && feed < bytes.size() && bytes[feed - 1] == '\r' ? feed - 1 : feed;
        const std::size_t next = std::min(feed + 1, bytes.size());
        lines.push_back({bytes.substr(0, length), bytes.substr(length, next - length)});
        bytes.remove_prefix(next);
    }
    // A last line without an end gets the one of the first, so that it can stand anywhere.
    if (!lines.empty() && lines.back().end.empty()) {
        lines.back().end = lines.size() > 1 ? lines.front().end : std::string_view("\n");
    }
    return lines;
}

void ScanLines(const ValueArray& values, const std::vector<Line>& lines, const SortOptions& options) {
    const TextOptions text{ParseCodeSet(options.codeSet), ParseLanguage(options.language)};
    const std::string name = options.file == "-" ? "standard input" : Printable(options.file);
    for (unsigned long i = 0; i < values.GetCount(); ++i) {
        values.Scan(i, lines[i].text, text, fmt::format("{}:{}", name, i + 1));
    }
}

void Sort(const SortOptions& options) {
    const VqTypeId id = ParseType(options.type);
    if (!CanSort(id)) {
        throw CommandError("TYPE {}: cannot be sorted (`vqtype types` shows which can: order and text)", TypeName(id));
    }
    const std::string bytes = ReadFile(options.file);
    const std::string_view mark = bytes.rfind("\xEF\xBB\xBF", 0) == 0 ? "\xEF\xBB\xBF" : "";
    const std::vector<Line> lines = SplitLines(std::string_view(bytes).substr(mark.size()));
    const ValueArray values(id, static_cast<unsigned long>(lines.size()));
    ScanLines(values, lines, options);
    Write(mark);
    for (const unsigned long i : SortedOrder(values, options.rule)) {
        Write(lines[i].text);
        Write(lines[i].end);
    }
}

}  // namespace

void AddSortCommand(CLI::App& program) {
    const auto options = std::make_shared<SortOptions>();
    CLI::App* command = program.add_subcommand("sort", "Sort the lines of a file in a type's order");
    command->add_option("TYPE", options->type, "The type that every line is a value of")->required();
    command->add_option("FILE", options->file, "A UTF-8 text file; - reads standard input")->required();
    command->add_flag("--reverse", options->rule.reverse,
                      "Last first; equal lines keep their sequence, nulls come last");
    command->add_flag("--unique", options->rule.unique, "Of equal lines only the first");
    command->add_flag("--null-last", options->rule.nullLast, "Nulls behind all values");
    AddTextOptions(*command, options->codeSet, options->language);
    command->footer(
        "The sort is stable. A line is printed as it was read; a CR before its LF is part of the line's end, not of "
        "its\n"
        "value. A last line without an end is given one. A line {NULL} is the null value. A value that is not a "
        "number\n"
        "(nan) stands behind all that are.\n"
        "Example: vqtype sort VqString names.txt --language german");
    command->callback([options] { Sort(*options); });
}
