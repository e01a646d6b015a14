#include "textrules.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <iterator>
#include <limits>

#include "text.h"
#include "utf8.h"
#include "values.h"

namespace {

// --- What a text must be

bool IsWhole(std::string_view text, std::int64_t least, std::int64_t most) {
    std::int64_t value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    return result.ec == std::errc() && result.ptr == text.data() + text.size() && value >= least && value <= most;
}

template <class Int>
bool IsInteger(std::string_view text) {
    return IsWhole(text, std::numeric_limits<Int>::min(), std::numeric_limits<Int>::max());
}

bool IsSealNumber(std::string_view text) { return IsWhole(text, 0, 0xFFFFFFFFFFFF); }

bool IsBlockNumber(std::string_view text) {
    return text.substr(0, 1) == "#" && IsInteger<std::uint32_t>(text.substr(1));
}

template <class Float>
bool IsFloating(std::string_view text) {
    Float value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    return result.ec == std::errc() && result.ptr == text.data() + text.size();
}

// The byte that a text like 0x1f stands for, or -1.
int EscapedByte(std::string_view text) {
    unsigned byte = 0;
    const bool isByte = text.size() == 4 && text.substr(0, 2) == "0x" &&
                        std::from_chars(text.data() + 2, text.data() + 4, byte, 16).ptr == text.data() + 4;
    return isByte ? static_cast<int>(byte) : -1;
}

// One character, or a byte as the row prints those that cannot be shown; of others the row reads the 0 alone.
bool IsCharacter(std::string_view text) {
    if (const int byte = EscapedByte(text); byte >= 0) return byte < 0x20 || byte > 0x7E;
    char32_t code = 0;
    return !text.empty() && DecodeUtf8(text, code) == text.size();
}

// The row takes every text, and all but a few for false. Bytes that are neither, nor null, stand by their number.
bool IsTruthValue(std::string_view text) {
    constexpr std::string_view Texts[] = {"T", "t", "TRUE", "true", "1", "F", "f", "FALSE", "false", "0"};
    if (const int byte = EscapedByte(text); byte >= 0) return byte > 1 && byte < 0xFF;
    return std::find(std::begin(Texts), std::end(Texts), text) != std::end(Texts);
}

bool ArePairs(std::string_view text) {
    return text.size() % 2 == 0 && text.find_first_not_of("0123456789abcdefABCDEF") == text.npos;
}

bool IsAnyText(std::string_view) { return true; }

// --- Rules

struct TypeRule {
    VqTypeId id;
    const char* format;
    bool (*accepts)(std::string_view text);
    const char* expected;
};

constexpr TypeRule TypeRules[] = {
    {VqTypeId_VqDate, nullptr, nullptr, "year, month and day: 2005-03-07"},
    {VqTypeId_VqTime, nullptr, nullptr, "hour, minute and second: 12:05:09"},
    {VqTypeId_VqDateTime, nullptr, nullptr, "a date and a time: 2005-03-07T12:05:09"},
    {VqTypeId_VqObjId, "(%H-%L#%B)", nullptr, "high and low part of the number and the block: (1-42#7)"},
    {VqTypeId_VqClassId, "(%Cv%V)", nullptr, "class and version: (12v3)"},
    {VqTypeId_VqRef, "(%D:%H-%L#%B, %C)", nullptr, "database, object and class: (3:1-42#7, 12)"},
    {VqTypeId_VqBlob, nullptr, ArePairs, "pairs of hexadecimal digits: 00ff2a"},
    {VqTypeId_d_Date, nullptr, nullptr, "year, month and day: 2005-03-07"},
    {VqTypeId_d_Time, nullptr, nullptr, "a time with hundredths and zone: 12:05:09.25+01:00"},
    {VqTypeId_d_Timestamp, nullptr, nullptr, "a date and a time with zone: 2005-03-07T12:05:09.25+01:00"},
    {VqTypeId_d_Interval, nullptr, IsFloating<float>,
     "seconds: a decimal number, 0 or from about 1.4e-45 to 3.4e38, inf or nan"},
    {VqTypeId_VqBoolean, nullptr, IsTruthValue,
     "TRUE (true, T, t, 1), FALSE (false, F, f, 0) or a byte from 0x02 to 0xfe"},
    {VqTypeId_VqSeal, "noop", IsSealNumber, "a whole number from 0 to 281474976710655"},
};

struct FormatRule {
    std::string_view format;
    bool (*accepts)(std::string_view text);
    const char* expected;
};

constexpr FormatRule FormatRules[] = {
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

}  // namespace

std::string RowFormat(VqTypeId id) { return Manager().ExchangeFormat(id, nullptr); }

TextRule TextRuleOf(VqTypeId id) {
    for (const TypeRule& rule : TypeRules) {
        if (rule.id == id) return {rule.format, rule.accepts, rule.expected};
    }
    const char* format = Manager().ExchangeFormat(id, nullptr);
    for (const FormatRule& rule : FormatRules) {
        if (rule.format == format) return {format, rule.accepts, rule.expected};
    }
    return {format, nullptr, "a text like " + Quoted(format)};
}

ChosenFormat::ChosenFormat(VqTypeId id, const std::optional<std::string>& format)
    : utf8_(format.value_or(RowFormat(id))),
      text_(MakeString(utf8_, {VqString::GetDefault8CodeSet(), 0, false}, "--format")) {}
