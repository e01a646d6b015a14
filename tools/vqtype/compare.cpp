#include <fmt/format.h>

#include <charconv>
#include <memory>

#include "command.h"
#include "error.h"
#include "files.h"
#include "keys.h"
#include "table.h"

namespace {

struct CompareOptions {
    std::string type;
    std::string texts[2];
    std::string order;
    std::string flags = "exact";
    std::string codeSet = "1";
    std::string language = "0";
    std::optional<std::string> lengths[2];  // whole keys without them
    bool json = false;
};

// --- Flags

struct FlagName {
    std::string_view name;
    unsigned short bits;
    const char* meaning;
};

constexpr FlagName FlagNames[] = {
    {"exact", VqCmp_Exact, "B is a text as it stands"},
    {"ignore-case", VqCmp_IgnoreCase, "differences of case do not count"},
    {"ignore-accents", VqCmp_IgnoreAccents, "differences of accents do not count"},
    {"report", VqCmp_Report, "tell the caller the first difference"},
    {"key-only", VqCmp_KeyOnly, "compare order by order, without levels and patterns"},
    {"end-last", VqCmp_EndLast, "of texts that begin alike, accents and case decide before the length"},
    {"default", VqCmp_Default, "the operation that the process has chosen"},
    {"pattern", 0, "none of these: B is a pattern"},
};

unsigned short ParseFlag(std::string_view text) {
    for (const FlagName& flag : FlagNames) {
        if (flag.name == text) return flag.bits;
    }
    unsigned short bits = 0;
    const bool isHex = text.substr(0, 2) == "0x";
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data() + (isHex ? 2 : 0), end, bits, isHex ? 16 : 10);
    if (!text.empty() && result.ec == std::errc() && result.ptr == end) return bits;
    std::string names;
    for (const FlagName& flag : FlagNames) names += fmt::format("{}, ", flag.name);
    throw CommandError("--flags {}: expected {}or a number up to 65535 (0x10), several with commas between", Echo(text),
                       names);
}

unsigned short ParseFlags(std::string_view text) {
    unsigned short flags = 0;
    for (;;) {
        const std::size_t comma = text.find(',');
        flags = static_cast<unsigned short>(flags | ParseFlag(text.substr(0, comma)));
        if (comma == text.npos) return flags;
        text.remove_prefix(comma + 1);
    }
}

std::string FlagLines() {
    std::string lines;
    for (const FlagName& flag : FlagNames) lines += fmt::format("  {:<14}  {}\n", flag.name, flag.meaning);
    return lines;
}

// Other types take the second value for what it is.
bool KnowsPatterns(VqTypeId id) {
    return id == VqTypeId_VqString || id == VqTypeId_VqIString || id == VqTypeId_VqCaseIString || id == VqTypeId_VqDate;
}

std::string DescribeFlags(VqTypeId id, unsigned short flags) {
    if (flags == VqCmp_Default) return "the default operation";
    std::vector<std::string> names;
    if (KnowsPatterns(id) && (flags & (VqCmp_Exact | VqCmp_KeyOnly)) == 0) names.emplace_back("pattern");
    unsigned rest = flags;
    for (const FlagName& flag : FlagNames) {
        if (flag.bits == VqCmp_Default || !(flags & flag.bits)) continue;
        names.emplace_back(flag.name);
        rest &= ~static_cast<unsigned>(flag.bits);
    }
    if (rest != 0) names.push_back(fmt::format("0x{:02x} without a meaning", rest));
    return names.empty() ? "none" : fmt::format("{}", fmt::join(names, ", "));
}

// --- Values

std::unique_ptr<ValueArray> Operand(VqTypeId id, const std::string& text, const TextOptions& options,
                                    const char* place) {
    auto value = std::make_unique<ValueArray>(id, 1);
    ScanKey(*value, 0, text, options, place);
    return value;
}

// --- Results

struct FormResult {
    KeyForm form;
    Bytes keys[2];
    Answer<long> answer;
};

struct Comparison {
    const CompareOptions& options;
    VqTypeId id;
    unsigned short flags;
    std::string texts[2];  // as values are told
    std::string plainTexts[2];
    std::vector<FormResult> results;
};

unsigned ParseLength(const std::optional<std::string>& text, const char* option) {
    if (!text) return 0;
    unsigned length = 0;
    const char* end = text->data() + text->size();
    const auto result = std::from_chars(text->data(), end, length);
    if (result.ec == std::errc() && result.ptr == end && length >= 1 && length <= 0x7FFFFFFF) return length;
    throw CommandError("{} {}: expected a number of bytes from 1 to 2147483647", option, Echo(*text));
}

// The bytes that the comparison may read of a key; in memory there are none to be shown.
Bytes CutKey(const Key& key, unsigned length, const char* option) {
    Bytes bytes = key.Stored();
    if (length == 0 || !key.IsStored()) return bytes;
    if (length > bytes.size()) {
        throw CommandError("{} {}: the key takes {} bytes", option, length, bytes.size());
    }
    bytes.resize(length);
    return bytes;
}

bool IsCut(const CompareOptions& options) { return options.lengths[0] || options.lengths[1]; }

Comparison CompareValues(const CompareOptions& options) {
    if (options.order == "memory" && IsCut(options)) {
        throw CommandError("--length{} cuts stored keys: there are none with --order memory",
                           options.lengths[0] ? 1 : 2);
    }
    const VqTypeId id = ParseKeyType(options.type, "compare", "compared", "order");
    const TextOptions text{ParseCodeSet(options.codeSet), ParseLanguage(options.language)};
    Comparison all{options, id, ParseFlags(options.flags), {}, {}, {}};
    const unsigned length1 = ParseLength(options.lengths[0], "--length1");
    const unsigned length2 = ParseLength(options.lengths[1], "--length2");
    const auto a = Operand(id, options.texts[0], text, "A"), b = Operand(id, options.texts[1], text, "B");
    all.texts[0] = DescribeKey(*a, options.texts[0]);
    all.texts[1] = DescribeKey(*b, options.texts[1]);
    all.plainTexts[0] = KeyText(*a, options.texts[0]);
    all.plainTexts[1] = KeyText(*b, options.texts[1]);
    for (const KeyForm& form : KeyFormsOf(options.order)) {
        const Key key1(*a, form.format), key2(*b, form.format);
        all.results.push_back({form,
                               {CutKey(key1, length1, "--length1"), CutKey(key2, length2, "--length2")},
                               CompareKeys(key1, key2, all.flags, length1, length2)});
    }
    return all;
}

const char* Relation(long result) { return result < 0 ? "sorts before" : result > 0 ? "sorts after" : "sorts like"; }

int Sign(long result) { return (result > 0) - (result < 0); }

bool DoAgree(const Comparison& all) {
    for (const FormResult& result : all.results) {
        if (Sign(result.answer.number) != Sign(all.results[0].answer.number)) return false;
    }
    return true;
}

constexpr std::size_t TextShown = 60;

std::string Verdict(const Comparison& all, const FormResult& result) {
    return fmt::format("{} {} {}\n", Shortened(all.texts[0], TextShown), Relation(result.answer.number),
                       Shortened(all.texts[1], TextShown));
}

void PrintText(const Comparison& all) {
    Table table{{"form"}, {"A"}, {"B"}, {"result", true}, {"status"}};
    for (const FormResult& result : all.results) {
        table.AddRow({result.form.name, FormatKey(result.keys[0]), FormatKey(result.keys[1]),
                      fmt::to_string(result.answer.number), DescribeStatus(result.answer.status)});
    }
    Write(table.Format() +
          fmt::format("\n{}, flags 0x{:02x}: {}\n", TypeName(all.id), all.flags, DescribeFlags(all.id, all.flags)));
    if (DoAgree(all)) return Write(Verdict(all, all.results[0]));
    for (const FormResult& result : all.results) Write(fmt::format("{}: {}", result.form.name, Verdict(all, result)));
    if (IsCut(all.options)) return;  // in memory keys are whole
    Write(fmt::format("note: not all forms agree; `vqtype show {}` tells how each of them orders\n", TypeName(all.id)));
}

// The bytes that were compared; there are none of keys in memory.
std::string JsonLengths(const FormResult& result) {
    if (result.form.format == VqFormat_Memory) return "";
    return fmt::format("\"length1\": {}, \"length2\": {}, ", result.keys[0].size(), result.keys[1].size());
}

void PrintJson(const Comparison& all) {
    Write(fmt::format("{{\"type\": {}, \"a\": {}, \"b\": {}, \"flags\": {}, \"forms\": [", Quoted(TypeName(all.id)),
                      Quoted(all.plainTexts[0]), Quoted(all.plainTexts[1]), all.flags));
    const char* separator = "\n  ";
    for (const FormResult& result : all.results) {
        Write(fmt::format("{}{{\"form\": \"{}\", {}\"result\": {}, \"relation\": \"{}\", \"status\": {}}}", separator,
                          result.form.name, JsonLengths(result), result.answer.number, Relation(result.answer.number),
                          result.answer.status));
        separator = ",\n  ";
    }
    Write("\n]}\n");
}

}  // namespace

std::vector<std::string> ComparisonFlags() {
    std::vector<std::string> names;
    for (const FlagName& flag : FlagNames) names.emplace_back(flag.name);
    return names;
}

void AddCompareCommand(CLI::App& program) {
    const auto options = std::make_shared<CompareOptions>();
    CLI::App* command = program.add_subcommand("compare", "Compare two values as an index does");
    AddType(*command, options->type);
    AddText(*command, "A", Takes::Value, options->texts[0], "A value as text; {NULL} is the null value")->required();
    AddText(*command, "B", Takes::Value, options->texts[1], "The value, or the pattern, to compare it with")
        ->required();
    AddFormOption(*command, options->order);
    AddText(*command, "--flags", Takes::Flags, options->flags,
            "How to compare, names with commas between (default exact)");
    AddTextOptions(*command, options->codeSet, options->language);
    AddText(*command, "--length1", Takes::Bytes, options->lengths[0], "Cuts A's stored key to so many bytes");
    AddText(*command, "--length2", Takes::Bytes, options->lengths[1], "Cuts B's stored key to so many bytes");
    command->add_flag("--json", options->json, "As JSON");
    command->footer(
        "The values are compared in memory, and as keys on disk in either byte order: a negative result sorts A "
        "before B. Only the sign counts. The status tells of a key that ends before its value does.\n\n"
        "Flags are a number (0x10) or names with commas between:\n\n" +
        FlagLines() +
        "\n"
        "Without exact and key-only B is a pattern: of strings with * for any characters and ? for any one, of dates "
        "with -1 for any year, month or day, which a * stands for here: 2005-*-*.\n\n"
        "  $ vqtype compare VqString Göteborg 'g?te*' --flags pattern,ignore-case");
    command->callback([options] {
        const Comparison all = CompareValues(*options);
        options->json ? PrintJson(all) : PrintText(all);
    });
}
