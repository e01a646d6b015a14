#include "values.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>

#include "error.h"
#include "operations.h"
#include "utf8.h"

namespace {

// --- What a text must be, by the format of its row

bool IsWhole(std::string_view text, std::int64_t least, std::int64_t most) {
    std::int64_t value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    return result.ec == std::errc() && result.ptr == text.data() + text.size() && value >= least && value <= most;
}

template <class Int>
bool IsInteger(std::string_view text) {
    return IsWhole(text, std::numeric_limits<Int>::min(), std::numeric_limits<Int>::max());
}

bool IsBlockNumber(std::string_view text) {
    return text.substr(0, 1) == "#" && IsInteger<std::uint32_t>(text.substr(1));
}

template <class Float>
bool IsFloating(std::string_view text) {
    Float value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    return result.ec == std::errc() && result.ptr == text.data() + text.size();
}

// One character, or a byte as the row prints those that cannot be shown; of others the row reads the 0 alone.
bool IsCharacter(std::string_view text) {
    unsigned byte = 0;
    if (text.size() == 4 && text.substr(0, 2) == "0x" &&
        std::from_chars(text.data() + 2, text.data() + 4, byte, 16).ptr == text.data() + 4) {
        return byte < 0x20 || byte > 0x7E;
    }
    char32_t code = 0;
    return !text.empty() && DecodeUtf8(text, code) == text.size();
}

bool IsAnyText(std::string_view) { return true; }

struct TextRule {
    std::string_view format;
    bool (*accepts)(std::string_view text);
    const char* expected;
};

constexpr TextRule TextRules[] = {
    {"%c", IsCharacter, "one character, or a byte from 0x00 to 0x1f or 0x7f to 0xff"},
    {"%hd", IsInteger<std::int16_t>, "a whole number from -32768 to 32767"},
    {"%hu", IsInteger<std::uint16_t>, "a whole number from 0 to 65535"},
    {"%d", IsInteger<std::int32_t>, "a whole number from -2147483648 to 2147483647"},
    {"%ld", IsInteger<std::int32_t>, "a whole number from -2147483648 to 2147483647"},
    {"%u", IsInteger<std::uint32_t>, "a whole number from 0 to 4294967295"},
    {"%lu", IsInteger<std::uint32_t>, "a whole number from 0 to 4294967295"},
    {"%S", IsInteger<std::int64_t>, "a whole number of 64 bits"},
    {"#%lu", IsBlockNumber, "# and a whole number from 0 to 4294967295"},
    {"%f", IsFloating<float>, "a decimal number, 0 or from about 1.4e-45 to 3.4e38, inf or nan"},
    {"%lf", IsFloating<double>, "a decimal number, 0 or from about 4.9e-324 to 1.8e308, inf or nan"},
    {"%s", IsAnyText, "a text"},
};

std::string RowFormat(VqTypeId id) { return Manager().ExchangeFormat(id, nullptr); }

const TextRule* FindTextRule(VqTypeId id) {
    const std::string format = RowFormat(id);
    const auto* found = std::find_if(std::begin(TextRules), std::end(TextRules),
                                     [&](const TextRule& rule) { return rule.format == format; });
    return found == std::end(TextRules) ? nullptr : found;
}

// --- Names

// Levenshtein distance.
std::size_t EditDistance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> row(b.size() + 1);
    for (std::size_t j = 0; j < row.size(); ++j) row[j] = j;
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = row[0]++;
        for (std::size_t j = 0; j < b.size(); ++j) {
            const std::size_t replaced = diagonal + (a[i] != b[j]);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, diagonal + 1, row[j] + 1});
        }
    }
    return row.back();
}

std::string NearestType(const std::string& name) {
    std::string nearest;
    std::size_t best = 3;  // further apart, no slip of the hand
    for (int i = 0; i < VqTypeCount; ++i) {
        const std::string candidate = TypeName(static_cast<VqTypeId>(i));
        for (const std::string& form : {candidate, candidate.substr(candidate.rfind("Vq", 0) == 0 ? 2 : 0)}) {
            const std::size_t distance = EqualIgnoringCase(form, name) ? 0 : EditDistance(form, name);
            if (distance < best) best = distance, nearest = candidate;
        }
    }
    return nearest;
}

}  // namespace

VqTypeMgr& Manager() { return *DefaultTypeMgr(nullptr); }

VqTypeId ParseType(const std::string& name) {
    char id = 0;
    if (Manager().Name2VqTypeId(name.c_str(), id) == 0) return static_cast<VqTypeId>(id);
    const std::string nearest = NearestType(name);
    throw CommandError("TYPE {}: there is no type of this name{} (`vqtype types` lists all)", Echo(name),
                       nearest.empty() ? "" : fmt::format("; did you mean {}?", nearest));
}

std::string TypeName(VqTypeId id) { return Manager().NameGet(id, nullptr); }

bool CanEncode(VqTypeId id) {
    return Does(id, "create") && Does(id, "store") && Does(id, "load") && Does(id, "size") && Does(id, "print") &&
           Does(id, "scan");
}

bool CanSort(VqTypeId id) { return Does(id, "create") && Does(id, "compare") && Does(id, "scan"); }

ValueArray::ValueArray(VqTypeId id, unsigned long count)
    : id_(id), count_(count), values_(Manager().Create(id, count)) {}

ValueArray::~ValueArray() { Manager().Delete(id_, values_, count_); }

unsigned long ValueArray::CountNulls() const {
    unsigned long nulls = 0;
    for (unsigned long i = 0; i < count_; ++i) nulls += IsNull(i);
    return nulls;
}

void ValueArray::Scan(unsigned long index, std::string_view text, const TextOptions& options,
                      const std::string& place) const {
    if (text == ToUtf8(Manager().GetNullPrintString())) {
        if (!Manager().SupportsNullValue(id_)) throw CommandError("{}: {} has no null value", place, TypeName(id_));
        SetNull(index);
        return;
    }
    CheckUtf8(text, place);
    const TextRule* rule = FindTextRule(id_);
    if (rule && !rule->accepts(text)) {
        throw CommandError("{}: {} is no {}: expected {}", place, Echo(text), TypeName(id_), rule->expected);
    }
    // Only strings have a code set of their own; every other type is scanned from 1-byte characters.
    const TextOptions singleByte{VqString::GetDefault8CodeSet(), 0, false};
    VqString string = MakeString(text, id_ == VqTypeId_VqString ? options : singleByte, place);
    Manager().ScanFromVqString(id_, At(index), string, nullptr, 1);
    if (!rule && !EqualIgnoringCase(Print(index), text)) {
        throw CommandError("{}: {} is no {}: it reads as {}; expected a text like {}", place, Echo(text), TypeName(id_),
                           Echo(Print(index)), Quoted(RowFormat(id_)));
    }
}

std::string ValueArray::Print(unsigned long index, const char* format) const {
    if (id_ == VqTypeId_VqString && !IsNull(index)) {
        // In the string's own code set, so that no character is lost on the way.
        const auto& string = *static_cast<const VqString*>(At(index));
        VqString out(string.GetCodeSet(), string.GetLanguage());
        return ToUtf8(Manager().PrintToVqString(id_, out, At(index), format, 1));
    }
    VqString out;
    return ToUtf8(Manager().PrintToVqString(id_, out, At(index), format, 1));
}

std::string ValueArray::PrintExact(unsigned long index) const {
    const std::string format = RowFormat(id_);
    if (IsNull(index) || (format != "%f" && format != "%lf")) return Print(index);
    const bool isDouble = format == "%lf";
    const std::string shorter = Print(index, isDouble ? "%.15g" : "%.6g");
    const ValueArray copy(id_, 1);
    VqString text(shorter.c_str());
    Manager().ScanFromVqString(id_, copy.Data(), text, nullptr, 1);
    const bool same = copy.Store(VqFormat_LittleEndian) == Store(VqFormat_LittleEndian, index, 1);
    return same ? shorter : Print(index, isDouble ? "%.17g" : "%.9g");
}

long ValueArray::Compare(unsigned long a, unsigned long b) const {
    return Manager().Cmp(id_, At(a), At(b), VqCmp_Exact, 1, VqFormat_Memory);
}

Bytes ValueArray::Store(unsigned char format, unsigned long first, unsigned long count) const {
    if (count == 0) return {};
    Bytes bytes(Manager().DiskLenGet(id_, At(first), format, count, VqFormat_Memory));
    bytes.resize(Manager().Store(id_, bytes.data(), At(first), format, count));
    return bytes;
}

unsigned long ValueArray::Load(const Bytes& bytes, unsigned char format) const {
    return Manager().Load(id_, values_, bytes.data(), format, count_);
}
