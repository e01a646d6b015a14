// Texts that a store takes from outside: schemas, the header in its file, queries, CSV rows. Each is understood or
// refused with a reason; what is understood is written as a text that means the same.

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "error.h"
#include "store/csvreader.h"
#include "store/header.h"
#include "store/predicate.h"
#include "store/querytext.h"
#include "store/schema.h"
#include "vqtm.h"

namespace {

void Require(bool holds) {
    if (!holds) std::abort();
}

// Calls what may refuse the text, but never without a reason.
template <class Call>
bool IsUnderstood(Call call) {
    try {
        call();
        return true;
    } catch (const CommandError& error) {
        Require(*error.what() != 0);
        return false;
    }
}

void ReadSchema(std::string_view text) {
    store::Schema schema;
    if (!IsUnderstood([&] { schema = store::Schema::Parse(text, "schema"); })) return;
    const std::string written = schema.Format();
    Require(store::Schema::Parse(written, "schema").Format() == written);
}

// What a header sets is set back for the next input.
void ReadHeader(std::string_view text) {
    static const store::Header plain =
        store::Header::Make(store::Schema::Parse("a:short", "schema"), VqFormat_LittleEndian, VqCmp_Exact);
    store::Header header;
    if (!IsUnderstood([&] { header = store::Header::Parse(text, "header"); })) return;
    const std::string written = header.Format();
    if (header.schema.Count() != 0) Require(store::Header::Parse(written, "header").Format() == written);
    store::Adopt(header);
    store::Adopt(plain);
}

// --- Queries, on a column of each row that texts can be scanned for

store::Header EveryType(unsigned char format) {
    std::string text;
    char name = 'a';
    for (const char* const type : {"short",       "int",           "VqDWord",       "VqInt64",
                                   "float",       "double",        "char",          "VqString(language=de)",
                                   "VqString",    "VqIString",     "VqCaseIString", "VqBlob",
                                   "VqBoolean",   "VqDate",        "VqTime",        "VqDateTime",
                                   "d_Date",      "d_Time",        "d_Timestamp",   "d_Interval",
                                   "VqNull_long", "VqNull_double", "VqObjId",       "VqClassId",
                                   "VqRef",       "VqSeal"}) {
        text += (text.empty() ? "" : ", ") + std::string(1, name++) + ":" + type;
    }
    return store::Header::Make(store::Schema::Parse(text, "schema"), format, VqCmp_Exact);
}

// A condition put to its own literal; all comparisons but those of patterns follow from that.
void AskForItself(const store::Condition& condition, const store::Header& header) {
    store::Predicate predicate(condition, header);
    if (condition.literal.empty()) return;
    const bool isSelected = predicate.Selects(condition.literal);
    if (condition.test == store::Test::Less || condition.test == store::Test::Greater) Require(!isSelected);
}

void ReadQuery(std::string_view text) {
    static const store::Header headers[] = {EveryType(VqFormat_LittleEndian), EveryType(VqFormat_BigEndian)};
    bool isUnderstood[2];
    for (std::size_t i = 0; i < 2; ++i) {
        store::Query query;
        isUnderstood[i] = IsUnderstood([&] { query = store::ParseQuery(text, headers[i].schema, headers[i].format); });
        for (const store::Condition& condition : query.conditions) AskForItself(condition, headers[i]);
    }
    Require(isUnderstood[0] == isUnderstood[1]);
}

// --- Rows

struct Row {
    std::vector<std::string> fields;
    std::string fault, raw;
    std::size_t line, lastLine;
    bool operator==(const Row&) const = default;
};

// The source gives `portion` bytes at a time.
std::vector<Row> ReadRows(std::string_view text, std::size_t portion, bool usesShortcut) {
    store::CsvReader reader(
        [&text, portion](char* to, std::size_t size) {
            const std::size_t count = std::min({size, portion, text.size()});
            std::memcpy(to, text.data(), count);
            text.remove_prefix(count);
            return count;
        },
        usesShortcut);
    std::vector<Row> rows;
    while (reader.Next()) {
        Row row{{}, reader.Fault().text, std::string(reader.Raw()), reader.Line(), reader.LastLine()};
        if (reader.IsGood()) {
            for (const store::CsvField& field : reader.Fields()) {
                row.fields.push_back((field.isAbsent ? "-" : "+") + std::string(field.text));
            }
        }
        rows.push_back(std::move(row));
    }
    return rows;
}

void ReadCsv(std::string_view text) {
    const std::vector<Row> rows = ReadRows(text, text.size() + 1, true);
    Require(rows == ReadRows(text, 1, true));
    Require(rows == ReadRows(text, text.size() + 1, false));
    std::size_t size = 0;
    for (const Row& row : rows) size += row.raw.size();
    Require(size <= text.size());
}

}  // namespace

// The first byte says what the rest is.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    if (size == 0 || size > 4096) return 0;
    VqSetAssertHandler([](const char*, const char*, int) {});
    const std::string_view text(reinterpret_cast<const char*>(data) + 1, size - 1);
    switch (data[0]) {
        case 's':
            ReadSchema(text);
            break;
        case 'h':
            ReadHeader(text);
            break;
        case 'q':
            ReadQuery(text);
            break;
        case 'c':
            ReadCsv(text);
            break;
        default:
            break;
    }
    return 0;
}
