#include <fmt/format.h>

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
        value.Scan(0, WithWildcards(id, text), {ParseCodeSet(options.codeSet), ParseLanguage(options.language)}, place);
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

void CheckAscending(VqTypeId id, const IndexKey& low, const IndexKey& high, unsigned char format) {
    const Key key1(low.value, format), key2(high.value, format);
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
    CheckAscending(id, *statistics.low, *statistics.high, ByteOrderOf(options.order));
    return statistics;
}

struct Estimate {
    const EstimateOptions& options;
    VqTypeId id;
    std::string low, high, key;  // as values are told
    std::string keyText;
    float fraction = 0;
    unsigned short operators;
    ScanBounds scan = {};
};

void Ask(Estimate& estimate, const IndexKey& key, const Statistics& statistics) {
    const unsigned char format = ByteOrderOf(estimate.options.order);
    VqIdxBounds bounds;
    if (statistics.AreThere()) {
        bounds = statistics.Bounds();
        estimate.low = DescribeKey(statistics.low->value, *estimate.options.low);
        estimate.high = DescribeKey(statistics.high->value, *estimate.options.high);
    }
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

// The value of a key that the library has made, of which the last ones of a pattern are long, and may be clipped.
std::string ValueOf(const Bytes& bytes, const Estimate& estimate) {
    if (bytes.size() >= VqINDEX_MAX_KEYLEN) return "as long as keys get";
    const DiskForm form = ReadDiskForm(estimate.id, bytes, ByteOrderOf(estimate.options.order));
    return Shortened(form.values->Describe(0), TextShown);
}

void AddEnd(Table& table, const char* end, const Bytes& bytes, const char* open, const Estimate& estimate) {
    table.AddRow({end, bytes.empty() ? open : ValueOf(bytes, estimate), FormatKey(bytes)});
}

std::string Percent(float fraction) { return fmt::format("{:.4g} %", 100.0 * static_cast<double>(fraction)); }

std::string IndexText(const Estimate& estimate) {
    if (estimate.low.empty()) return "an index without statistics";
    return fmt::format("an index from {} to {}", Shortened(estimate.low, TextShown),
                       Shortened(estimate.high, TextShown));
}

void PrintText(const Estimate& estimate) {
    Table table{{"scan"}, {"key"}, {"bytes"}};
    AddEnd(table, "from", BytesOf(estimate.scan.lowKey, estimate.scan.lowKeyLength), "the first", estimate);
    AddEnd(table, "to", BytesOf(estimate.scan.highKey, estimate.scan.highKeyLength), "the last", estimate);
    Write(fmt::format("{} {} {} selects {} of {}: {:.6g}\n\n{}", TypeName(estimate.id), estimate.options.op,
                      Shortened(estimate.key, TextShown), Percent(estimate.fraction), IndexText(estimate),
                      estimate.fraction, table.Format()));
    if (estimate.operators & VqOperator_Wildcard) Write("\nnote: the key is a pattern; its wildcard bounds the scan\n");
    if (estimate.fraction > 1) Write("\nnote: more than all: a key outside the index adds a step of its own\n");
}

std::string JsonKey(const void* key, std::uint32_t length) {
    return key != nullptr ? Quoted(FormatHex(BytesOf(key, length))) : "null";
}

void PrintJson(const Estimate& estimate) {
    Write(fmt::format(
        "{{\"type\": {}, \"operator\": {}, \"key\": {}, \"estimate\": {:.9g},\n"
        " \"scan\": {{\"low\": {}, \"high\": {}}}, \"wildcard\": {}}}\n",
        Quoted(TypeName(estimate.id)), Quoted(estimate.options.op), Quoted(estimate.keyText), estimate.fraction,
        JsonKey(estimate.scan.lowKey, estimate.scan.lowKeyLength),
        JsonKey(estimate.scan.highKey, estimate.scan.highKeyLength), (estimate.operators & VqOperator_Wildcard) != 0));
}

void RunEstimate(const EstimateOptions& options) {
    const VqTypeId id = ParseKeyType(options.type, "bounds", "estimated", "bounds");
    Estimate estimate{options, id, {}, {}, {}, {}, 0, ParseOperator(options.op)};
    const IndexKey key(id, options.key, options, "KEY");
    Ask(estimate, key, StatisticsOf(id, options));
    options.json ? PrintJson(estimate) : PrintText(estimate);
}

}  // namespace

void AddEstimateCommand(CLI::App& program) {
    const auto options = std::make_shared<EstimateOptions>();
    CLI::App* command = program.add_subcommand("estimate", "Estimate how much of an index a predicate selects");
    AddText(*command, "TYPE", options->type, "The type of the index's keys")->required();
    AddText(*command, "KEY", options->key, "The value that keys are compared with; of strings also a pattern")
        ->required();
    AddText(*command, "--op", options->op, "How keys compare with it: <, <=, =, >= or >")->required()->type_name("OP");
    AddText(*command, "--low", options->low, "The smallest key of the index")->type_name("VALUE");
    AddText(*command, "--high", options->high, "The largest key of the index")->type_name("VALUE");
    AddOrderOption(*command, options->order);
    AddTextOptions(*command, options->codeSet, options->language);
    command->add_flag("--json", options->json, "As JSON");
    command->footer(
        "The estimate is the part of the index's keys that the predicate selects, from 0 to 1. The scan is the range "
        "of\n"
        "keys to be looked through for them. Without --low and --high nothing is known of the index.\n"
        "A string that holds * or ? is a pattern: the scan goes over the keys that begin with what stands in front. In "
        "a\n"
        "date a * is any year, month or day.\n"
        "Example: vqtype estimate VqDate --low 2000-01-01 --high 2009-12-31 --op '<' 2005-03-07");
    command->callback([options] { RunEstimate(*options); });
}
