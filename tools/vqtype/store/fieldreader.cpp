#include "fieldreader.h"

#include <algorithm>
#include <charconv>
#include <cstring>

#include "../error.h"
#include "../textrules.h"
#include "boolean.h"
#include "date.h"
#include "datetime.h"
#include "stddate.h"
#include "vqint64.h"
#include "vqnull.h"

namespace store {

// --- The short way

namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

template <class Number>
bool ReadNumber(std::string_view text, Number& number) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size();
}

// Decimal digits alone: a 0 in front may stand for another base.
bool ReadWhole(std::string_view text, auto& number) {
    const std::size_t first = text.starts_with('-');
    if (text.size() > first + 1 && text[first] == '0') return false;
    return ReadNumber(text, number);
}

bool ReadPlain(std::string_view text, VqInt64& number) {
    std::int64_t whole = 0;
    if (!ReadWhole(text, whole)) return false;
    number.low = static_cast<std::uint32_t>(whole);
    number.high = static_cast<std::int32_t>(whole >> 32);
    return true;
}

template <class Number>
bool ReadPlain(std::string_view text, Number& number) {
    if constexpr (std::is_integral_v<Number>) {
        return ReadWhole(text, number);
    } else {
        const bool isPlain =
            std::all_of(text.begin(), text.end(), [](char c) { return IsDigit(c) || c == '.' || c == '-'; });
        return isPlain && ReadNumber(text, number);
    }
}

template <class T>
bool PutPlain(std::string_view text, void* value) {
    T number{};
    if (!ReadPlain(text, number)) return false;
    *static_cast<T*>(value) = number;
    return true;
}

template <class Null>
bool PutNullable(std::string_view text, void* value) {
    typename Null::ValueType number{};
    if (!ReadPlain(text, number)) return false;
    *static_cast<Null*>(value) = number;
    return true;
}

// The number of those digits, or -1.
int Digits(std::string_view text, std::size_t at, std::size_t count) {
    int number = 0;
    for (const char c : text.substr(at, count)) {
        if (!IsDigit(c)) return -1;
        number = number * 10 + (c - '0');
    }
    return number;
}

// 2005-03-07, a day of the calendar.
bool ReadDay(std::string_view text, VqDate& date) {
    if (text.size() != 10 || text[4] != '-' || text[7] != '-') return false;
    const int year = Digits(text, 0, 4), month = Digits(text, 5, 2), day = Digits(text, 8, 2);
    if (year < 1 || month < 1 || day < 1) return false;
    date = VqDate(year, month, day);
    return date.IsDate() != 0;
}

// 12:05:09
bool ReadClock(std::string_view text, VqTime& time) {
    if (text.size() != 8 || text[2] != ':' || text[5] != ':') return false;
    const int hour = Digits(text, 0, 2), minute = Digits(text, 3, 2), second = Digits(text, 6, 2);
    if (hour < 0 || hour > 23 || minute < 0 || minute > 59 || second < 0 || second > 59) return false;
    time = VqTime(hour, minute, second);
    return true;
}

bool PutDate(std::string_view text, void* value) { return ReadDay(text, *static_cast<VqDate*>(value)); }

bool PutTime(std::string_view text, void* value) { return ReadClock(text, *static_cast<VqTime*>(value)); }

bool PutStdDate(std::string_view text, void* value) {
    VqDate date(0, 0, 0);
    if (!ReadDay(text, date)) return false;
    d_Date& to = *static_cast<d_Date*>(value);
    to.year = date.year;
    to.month = date.month;
    to.day = date.day;
    return true;
}

bool PutDateTime(std::string_view text, void* value) {
    VqDateTime& to = *static_cast<VqDateTime*>(value);
    return text.size() == 19 && text[10] == 'T' && ReadDay(text.substr(0, 10), to.date) &&
           ReadClock(text.substr(11), to.time);
}

bool PutTruth(std::string_view text, void* value) {
    const bool isTrue = text == "TRUE" || text == "true" || text == "1";
    if (!isTrue && text != "FALSE" && text != "false" && text != "0") return false;
    static_cast<VqBoolean*>(value)->value = isTrue;
    return true;
}

}  // namespace

template <bool (*put)(std::string_view text, void* value)>
bool FieldReader::ScanBy(FieldReader&, std::string_view text, void* value) {
    return put(text, value);
}

bool FieldReader::ScanString(FieldReader& reader, std::string_view text, void* value) try {
    const void* codes = reader.encoder_.Encode(text);
    static_cast<VqString*>(value)->AssignChars(codes, reader.options_.codeSet,
                                               static_cast<unsigned short>(reader.encoder_.GetLength()));
    return true;
} catch (const TextFault&) {
    return false;
}

const FieldReader::QuickRow FieldReader::QuickRows[] = {
    {VqTypeId_short, ScanBy<PutPlain<std::int16_t>>},
    {VqTypeId_long, ScanBy<PutPlain<std::int32_t>>},
    {VqTypeId_double, ScanBy<PutPlain<double>>},
    {VqTypeId_float, ScanBy<PutPlain<float>>},
    {VqTypeId_VqWord, ScanBy<PutPlain<std::uint16_t>>},
    {VqTypeId_VqDWord, ScanBy<PutPlain<std::uint32_t>>},
    {VqTypeId_int, ScanBy<PutPlain<std::int32_t>>},
    {VqTypeId_unsigned, ScanBy<PutPlain<std::uint32_t>>},
    {VqTypeId_enum, ScanBy<PutPlain<std::int32_t>>},
    {VqTypeId_VqInt64, ScanBy<PutPlain<VqInt64>>},
    {VqTypeId_VqNull_short, ScanBy<PutNullable<VqNull_short>>},
    {VqTypeId_VqNull_ushort, ScanBy<PutNullable<VqNull_ushort>>},
    {VqTypeId_VqNull_int, ScanBy<PutNullable<VqNull_int>>},
    {VqTypeId_VqNull_unsigned, ScanBy<PutNullable<VqNull_unsigned>>},
    {VqTypeId_VqNull_long, ScanBy<PutNullable<VqNull_long>>},
    {VqTypeId_VqNull_ulong, ScanBy<PutNullable<VqNull_ulong>>},
    {VqTypeId_VqNull_float, ScanBy<PutNullable<VqNull_float>>},
    {VqTypeId_VqNull_double, ScanBy<PutNullable<VqNull_double>>},
    {VqTypeId_VqNull_VqInt64, ScanBy<PutNullable<VqNull_VqInt64>>},
    {VqTypeId_VqDate, ScanBy<PutDate>},
    {VqTypeId_VqTime, ScanBy<PutTime>},
    {VqTypeId_VqDateTime, ScanBy<PutDateTime>},
    {VqTypeId_d_Date, ScanBy<PutStdDate>},
    {VqTypeId_VqBoolean, ScanBy<PutTruth>},
    {VqTypeId_VqString, ScanString},
};

FieldReader::Quick FieldReader::QuickOf(VqTypeId id) {
    const auto row =
        std::find_if(std::begin(QuickRows), std::end(QuickRows), [id](const QuickRow& r) { return r.id == id; });
    return row != std::end(QuickRows) ? row->scan : nullptr;
}

bool FieldReader::ReadQuickly(std::string_view text, Bytes& record) {
    if (!quick_ || !quick_(*this, text, value_.Data())) return false;
    Append(value_, record);
    return true;
}

// --- The long way

namespace {

// Strings are values as they stand.
bool IsText(VqTypeId id) { return RowFormat(id) == "%s"; }

}  // namespace

FieldReader::FieldReader(const Column& column, unsigned char format, const std::optional<std::string>& null,
                         const std::optional<std::string>& scan)
    : column_(column),
      options_(column.text),
      format_(format),
      null_(null),
      scan_(scan),
      place_("column " + column.name),
      nullText_(ToUtf8(Manager().GetNullPrintString())),
      encoder_(options_),
      quick_(scan ? nullptr : QuickOf(column.type)),
      value_(column.type, 1),
      size_(Manager().IsFixed(column.type) ? value_.Store(format).size() : 0) {
    options_.isChosen = false;
    if (column.type == VqTypeId_VqString) {
        *static_cast<VqString*>(value_.Data()) = VqString(options_.codeSet, options_.language);
    }
    if (Manager().SupportsNullValue(column.type)) {
        const ValueArray nothing(column.type, 1);
        nothing.SetNull(0);
        nullForm_ = nothing.Store(format);
    }
    if (!scan) return;
    scanFormat_ = MakeString(*scan, {VqString::GetDefault8CodeSet(), 0, false}, "--scan " + column.name);
    CheckFormat();
}

// A format that prints two values alike, but for one that rounds, shows none: a text like it would be one of them.
void FieldReader::CheckFormat() const {
    constexpr const char* pairs[][2] = {{"1", "0"},
                                        {"2001-01-01", "2002-02-02"},
                                        {"01:01:01", "02:02:02"},
                                        {"2001-01-01T01:01:01", "2002-02-02T02:02:02"}};
    const ValueArray one(column_.type, 1), other(column_.type, 1);
    const auto isRead = [&](const auto& pair) {
        try {
            Scan(one, pair[0]);
            Scan(other, pair[1]);
            return true;
        } catch (const CommandError&) {
            return false;
        }
    };
    if (std::none_of(std::begin(pairs), std::end(pairs), isRead)) return;
    const std::string option = fmt::format("--scan {}={}", column_.name, Printable(*scan_));
    const auto printed = [&](const ValueArray& value) {
        try {
            return value.Print(0, scanFormat_->StrGet());
        } catch (const CommandError& error) {
            throw CommandError("{}: {}", option, error.what());
        }
    };
    const std::string text = printed(one);
    if (text != printed(other)) return;
    throw CommandError("{}: the format shows no value: different ones print as {}", option, Echo(text));
}

void FieldReader::Append(const ValueArray& value, Bytes& record) const {
    const std::size_t start = record.size();
    const std::size_t size =
        size_ != 0 ? size_ : Manager().DiskLenGet(column_.type, value.Data(), format_, 1, VqFormat_Memory);
    record.resize(start + size);
    Manager().Store(column_.type, record.data() + start, value.Data(), format_, 1);
}

bool FieldReader::ReadNull(Bytes& record) {
    if (!nullForm_.empty()) {
        store::Append(record, nullForm_);
        return true;
    }
    fault_ = fmt::format("{}: {} has no null value", place_, TypeName(column_.type));
    return false;
}

bool FieldReader::ReadText(std::string_view text, Bytes& record) try {
    const ValueArray value(column_.type, 1);
    if (scanFormat_) {
        ScanUnder(scanFormat_->StrGet(), value, text);
    } else {
        Scan(value, text);
    }
    Append(value, record);
    return true;
} catch (const CommandError& error) {
    fault_ = error.what();
    if (!fault_.starts_with(place_)) fault_ = place_ + ": " + fault_;
    return false;
}

void FieldReader::Scan(const ValueArray& value, std::string_view text) const {
    if (column_.type == VqTypeId_VqString) {
        *static_cast<VqString*>(value.Data()) = MakeString(text, options_, place_);
    } else if (column_.type == VqTypeId_VqBoolean && text.starts_with("0x")) {
        throw CommandError(
            "{}: {} is no VqBoolean that has an order: expected TRUE (true, T, t, 1) or FALSE (false, F, f, 0)", place_,
            Echo(text));
    } else if (text != nullText_) {
        value.Scan(0, text, options_, place_);
    } else if (IsText(column_.type)) {
        VqString string = ScannedText(column_.type, text, options_, place_);
        Manager().ScanFromVqString(column_.type, value.Data(), string, nullptr, 1);
    } else {
        throw CommandError("{}: {} is no {}: expected {}, or --null '{}' on the command line", place_, Echo(text),
                           TypeName(column_.type), TextRuleOf(column_.type).expected, nullText_);
    }
}

void FieldReader::ScanUnder(const char* format, const ValueArray& value, std::string_view text) const {
    VqString string = ScannedText(column_.type, text, options_, place_);
    Manager().ScanFromVqString(column_.type, value.Data(), string, format, 1);
    const std::string printed = value.Print(0, format);
    if (IsReadBack(value, text, printed)) return;
    throw CommandError("{}: {} is no {} under the format {} (it reads as {})", place_, Echo(text),
                       TypeName(column_.type), Quoted(*scan_), Echo(printed));
}

bool FieldReader::IsReadBack(const ValueArray& value, std::string_view text, std::string_view printed) const {
    if (value.IsNull(0) && !IsText(column_.type)) return false;
    if (EqualIgnoringCase(printed, text)) return true;
    try {
        const ValueArray own(column_.type, 1);
        Scan(own, text);
        return own.Store(VqFormat_LittleEndian) == value.Store(VqFormat_LittleEndian);
    } catch (const CommandError&) {
        return false;
    }
}

}  // namespace store
