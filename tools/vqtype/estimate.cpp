#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <memory>

#include "command.h"
#include "diskform.h"
#include "error.h"
#include "files.h"
#include "keys.h"
#include "table.h"
#include "vqtypevl.h"

namespace {

struct EstimateOptions {
    std::string type;
    std::optional<std::string> low, high;
    std::string op;
    std::string key;
    std::string order = "little";
    std::string codeSet = "1";
    std::string language = "0";
    bool json = false;
};

struct OperatorName {
    std::string_view name;
    unsigned short bits;
};

constexpr OperatorName OperatorNames[] = {
    {"<", VqOperator_Less},    {"<=", VqOperator_Less | VqOperator_Equal},
    {"=", VqOperator_Equal},   {">=", VqOperator_Greater | VqOperator_Equal},
    {">", VqOperator_Greater},
};

unsigned short ParseOperator(const std::string& text) {
    for (const OperatorName& op : OperatorNames) {
        if (op.name == text) return op.bits;
    }
    throw CommandError("--op {}: expected one of <, <=, =, >=, > (in quotes, or the shell takes it)", Echo(text));
}

// Bounds that belong to this command, freed when it ends.
struct ScanBounds : VqIdxBounds {
    ScanBounds() = default;
    ScanBounds(const ScanBounds&) = delete;
    ScanBounds& operator=(const ScanBounds&) = delete;
    ~ScanBounds() { VqFreeBounds(*this); }
};

// --- The question

// A key of the index: its value, and its bytes in the chosen order.
struct IndexKey {
    IndexKey(VqTypeId id, const std::string& text, const EstimateOptions& options, const char* place) : value(id, 1) {
        ScanKey(value, 0, text, {ParseCodeSet(options.codeSet), ParseLanguage(options.language)}, place);
        bytes = value.Store(ByteOrderOf(options.order));
    }
    ValueArray value;
    Bytes bytes;
};

struct Statistics {
    std::unique_ptr<IndexKey> low, high;

    bool AreThere() const { return low != nullptr; }
    VqIdxBounds Bounds() const {
        return {low->bytes.data(), high->bytes.data(), static_cast<std::uint32_t>(low->bytes.size()),
                static_cast<std::uint32_t>(high->bytes.size())};
    }
};

// With the low byte first, the one form in which identifiers compare as they are estimated.
void CheckAscending(VqTypeId id, const IndexKey& low, const IndexKey& high) {
    const Key key1(low.value, VqFormat_LittleEndian), key2(high.value, VqFormat_LittleEndian);
    if (CompareKeys(key1, key2, VqCmp_Exact).number <= 0) return;
    throw CommandError("--low {}: sorts after --high {} among values of {}", low.value.Describe(0),
                       high.value.Describe(0), TypeName(id));
}

Statistics StatisticsOf(VqTypeId id, const EstimateOptions& options) {
    if (options.low.has_value() != options.high.has_value()) {
        throw CommandError("{} is missing: an index has a smallest and a largest key, or none that are known",
                           options.low ? "--high" : "--low");
    }
    if (!options.low) return {};
    Statistics statistics{std::make_unique<IndexKey>(id, *options.low, options, "--low"),
                          std::make_unique<IndexKey>(id, *options.high, options, "--high")};
    CheckAscending(id, *statistics.low, *statistics.high);
    return statistics;
}

struct Estimate {
    const EstimateOptions& options;
    VqTypeId id;
    std::string low, high, key;  // as values are told
    std::string keyText;
    Bytes keyBytes;
    bool isFinite = true;  // key and index, where that is known
    float fraction = 0;
    unsigned short operators;
    ScanBounds scan = {};

    bool IsPattern() const { return (operators & VqOperator_Wildcard) != 0; }
};

constexpr VqTypeId FloatingRows[] = {VqTypeId_float, VqTypeId_double, VqTypeId_d_Interval, VqTypeId_VqNull_float,
                                     VqTypeId_VqNull_double};

// Of the texts of floating numbers these have an n: inf, -inf, nan and -nan.
bool IsFinite(const ValueArray& value) {
    const auto* const end = std::end(FloatingRows);
    if (value.IsNull(0) || std::find(FloatingRows, end, value.GetType()) == end) return true;
    return value.PrintExact(0).find('n') == std::string::npos;
}

void Ask(Estimate& estimate, const IndexKey& key, const Statistics& statistics) {
    const unsigned char format = ByteOrderOf(estimate.options.order);
    VqIdxBounds bounds;
    if (statistics.AreThere()) {
        bounds = statistics.Bounds();
        estimate.low = DescribeKey(statistics.low->value, *estimate.options.low);
        estimate.high = DescribeKey(statistics.high->value, *estimate.options.high);
        estimate.isFinite = IsFinite(statistics.low->value) && IsFinite(statistics.high->value) && IsFinite(key.value);
    }
    estimate.keyBytes = key.bytes;
    estimate.key = DescribeKey(key.value, estimate.options.key);
    estimate.keyText = KeyText(key.value, estimate.options.key);
    estimate.fraction =
        Manager().EvalAndBound(estimate.id, statistics.AreThere() ? &bounds : nullptr, estimate.operators,
                               key.bytes.data(), format, 1, &estimate.scan, nullptr);
}

// --- The answer

constexpr std::size_t TextShown = 40;

Bytes BytesOf(const void* key, std::uint32_t length) {
    const auto* bytes = static_cast<const unsigned char*>(key);
    return key != nullptr ? Bytes(bytes, bytes + length) : Bytes();
}

// The value of an end of the scan, which is the key or, of a pattern, begins with what stands in front of its wildcard.
// A clipped text is the first bytes of a record that tells more.
std::string ValueOf(const Bytes& bytes, const Estimate& estimate) {
    const std::string key = Shortened(estimate.key, TextShown);
    if (bytes == estimate.keyBytes) return key;
    const unsigned char format = ByteOrderOf(estimate.options.order);
    if (Manager().DiskLenGet(estimate.id, bytes.data(), format, 1, format) > bytes.size()) return key + " (clipped)";
    return Shortened(ReadDiskForm(estimate.id, bytes, format).values->Describe(0), TextShown);
}

std::string HighValueOf(const Bytes& bytes, const Estimate& estimate) {
    const bool isFilledUp = estimate.IsPattern() && bytes.size() == VqINDEX_MAX_KEYLEN;
    return isFilledUp ? "as long as keys get" : ValueOf(bytes, estimate);
}

std::string Percent(float fraction) { return fmt::format("{:.4g} %", 100.0 * static_cast<double>(fraction)); }

std::string IndexText(const Estimate& estimate) {
    if (estimate.low.empty()) return "an index without statistics";
    return fmt::format("an index from {} to {}", Shortened(estimate.low, TextShown),
                       Shortened(estimate.high, TextShown));
}

void PrintText(const Estimate& estimate) {
    Table table{{"scan"}, {"key"}, {"bytes"}};
    const Bytes low = BytesOf(estimate.scan.lowKey, estimate.scan.lowKeyLength);
    const Bytes high = BytesOf(estimate.scan.highKey, estimate.scan.highKeyLength);
    table.AddRow({"from", low.empty() ? "the first" : ValueOf(low, estimate), FormatKey(low)});
    table.AddRow({"to", high.empty() ? "the last" : HighValueOf(high, estimate), FormatKey(high)});
    Write(fmt::format("{} {} {} selects {} of {}: {:.6g}\n\n{}", TypeName(estimate.id), estimate.options.op,
                      Shortened(estimate.key, TextShown), Percent(estimate.fraction), IndexText(estimate),
                      estimate.fraction, table.Format()));
    if (estimate.IsPattern()) Write("\nnote: the key is a pattern; its wildcard bounds the scan\n");
    if (!estimate.isFinite) {
        Write("\nnote: what is infinite or no number has no place among numbers: the estimate means nothing\n");
    } else if (estimate.fraction > 1) {
        Write("\nnote: more than all: a key outside the index adds a step of its own\n");
    }
}

std::string JsonKey(const void* key, std::uint32_t length) {
    return key != nullptr ? Quoted(FormatHex(BytesOf(key, length))) : "null";
}

void PrintJson(const Estimate& estimate) {
    Write(
        fmt::format("{{\"type\": {}, \"operator\": {}, \"key\": {}, \"estimate\": {:.9g},\n"
                    " \"scan\": {{\"low\": {}, \"high\": {}}}, \"wildcard\": {}}}\n",
                    Quoted(TypeName(estimate.id)), Quoted(estimate.options.op), Quoted(estimate.keyText),
                    estimate.fraction, JsonKey(estimate.scan.lowKey, estimate.scan.lowKeyLength),
                    JsonKey(estimate.scan.highKey, estimate.scan.highKeyLength), estimate.IsPattern()));
}

void RunEstimate(const EstimateOptions& options) {
    const VqTypeId id = ParseKeyType(options.type, "bounds", "estimated", "bounds");
    Estimate estimate{options, id, {}, {}, {}, {}, {}, true, 0, ParseOperator(options.op)};
    const IndexKey key(id, options.key, options, "KEY");
    Ask(estimate, key, StatisticsOf(id, options));
    options.json ? PrintJson(estimate) : PrintText(estimate);
}

}  // namespace

std::vector<std::string> ComparisonOperators() {
    std::vector<std::string> names;
    for (const OperatorName& op : OperatorNames) names.emplace_back(op.name);
    return names;
}

void AddEstimateCommand(CLI::App& program) {
    const auto options = std::make_shared<EstimateOptions>();
    CLI::App* command = program.add_subcommand("estimate", "Estimate how much of an index a predicate selects");
    AddType(*command, options->type, "The type of the index's keys");
    AddText(*command, "KEY", Takes::Value, options->key,
            "The value that keys are compared with; of strings also a pattern")
        ->required();
    AddText(*command, "--op", Takes::Operator, options->op, "How keys compare with it: <, <=, =, >= or >")->required();
    AddText(*command, "--low", Takes::Value, options->low, "The smallest key of the index");
    AddText(*command, "--high", Takes::Value, options->high, "The largest key of the index");
    AddOrderOption(*command, options->order);
    AddTextOptions(*command, options->codeSet, options->language);
    command->add_flag("--json", options->json, "As JSON");
    command->footer(
        "The estimate is the part of the index's keys that the predicate selects, from 0 to 1; a key outside the index "
        "can add a step. Where the key or the index is infinite or no number, it means nothing. The scan is the range "
        "of keys to be looked through. Without --low and --high nothing is known of the index.\n\n"
        "A string that holds * or ? is a pattern: the scan goes over the keys that begin with what stands in front. In "
        "a date a * is any year, month or day.\n\n"
        "  $ vqtype estimate VqDate --low 2000-01-01 --high 2009-12-31 --op '<' 2005-03-07");
    command->callback([options] { RunEstimate(*options); });
}
