#include "datetext.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>

#include "_vqnulty.h"
#include "cformat.h"
#include "datetime.h"
#include "textform.h"
#include "vqstring.h"

namespace vq {
namespace {

using std::string_view_literals::operator""sv;

// --- Numbers in formats

enum Field : std::uint8_t { Year, Month, Day, Hour, Minute, Second, FieldCount };

// A directive that prints and reads one field, with so many digits. Other letters have none.
struct NumberDirective {
    Field field;
    std::uint8_t digits;
};

constexpr auto numberDirectives = [] {
    std::array<NumberDirective, 256> directives{};
    directives['Y'] = {Year, 4};
    directives['m'] = {Month, 2};
    directives['d'] = {Day, 2};
    directives['e'] = {Day, 2};
    directives['H'] = {Hour, 2};
    directives['M'] = {Minute, 2};
    directives['S'] = {Second, 2};
    return directives;
}();

constexpr NumberDirective NumberOf(char letter) { return numberDirectives[static_cast<unsigned char>(letter)]; }

// --- Printing

// No directive's text is longer: "Wednesday", "September".
constexpr std::size_t LongestText = 9;

char* PutText(char* out, std::string_view text) {
    std::memcpy(out, text.data(), text.size());
    return out + text.size();
}

char* PutName(char* out, std::string_view name, bool whole) {
    if (whole) return PutText(out, name);
    std::memcpy(out, name.data(), 3);
    return out + 3;
}

// At least `digits` digits, and a sign before them where the number is negative.
char* PutNumber(char* out, int value, int digits) {
    if (value < 0) *out++ = '-';
    char reversed[8];
    int length = 0;
    for (unsigned rest = static_cast<unsigned>(value < 0 ? -value : value); rest != 0 || length < digits; rest /= 10) {
        reversed[length++] = static_cast<char>('0' + rest % 10);
    }
    return std::reverse_copy(reversed, reversed + length, out);
}

// All six fields as digits, one behind the other, where each has as many as its directive prints: then printing is
// copying. The year has four of them, the other fields two each.
class FieldDigits {
  public:
    static constexpr unsigned YearOffset = 0;
    static constexpr unsigned OffsetOf(Field field) { return field == Year ? YearOffset : 2 + 2U * field; }

    // False where a number is negative or longer.
    bool Set(const VqDateTime& value) {
        const auto year = static_cast<std::uint16_t>(value.date.year);
        if (std::endian::native != std::endian::little || year > 9999) return false;
        const auto lane = [](std::int8_t field, int index) {
            return std::uint64_t{static_cast<std::uint8_t>(field)} << (16 * index);
        };
        const std::uint64_t date =
            year / 100U | std::uint64_t{year % 100U} << 16 | lane(value.date.month, 2) | lane(value.date.day, 3);
        const std::uint64_t time = lane(value.time.hour, 0) | lane(value.time.minute, 1) | lane(value.time.second, 2);
        // Above 99, adding 28 carries into the sign's bit.
        if (((date | time | (date + 28 * Ones) | (time + 28 * Ones)) & 128 * Ones) != 0) return false;
        Store(digits_, date);
        Store(digits_ + 8, time);
        return true;
    }

    // Two digits from one of the offsets.
    void Copy(char* out, unsigned offset) const { std::memcpy(out, digits_ + offset, 2); }

  private:
    static constexpr std::uint64_t Ones = 0x0001000100010001;

    // Four numbers up to 99, one in each 16 bits.
    static void Store(char* out, std::uint64_t numbers) {
        const std::uint64_t tens = numbers * 103 >> 10 & 15 * Ones;
        const std::uint64_t ones = numbers - 10 * tens;
        const std::uint64_t text = (tens | ones << 8) + 0x3030 * Ones;
        std::memcpy(out, &text, sizeof text);
    }

    char digits_[16];
};

// For the letter of each directive that prints a field with a fixed number of digits, where these are.
constexpr auto digitOffsets = [] {
    std::array<std::uint8_t, 256> offsets;
    offsets.fill(255);
    for (std::size_t letter = 0; letter < offsets.size(); ++letter) {
        const NumberDirective number = numberDirectives[letter];
        if (number.digits != 0) offsets[letter] = static_cast<std::uint8_t>(FieldDigits::OffsetOf(number.field));
    }
    offsets['y'] = FieldDigits::YearOffset + 2;
    return offsets;
}();

// True when a directive of the format asks for the half of the day.
bool AsksForHalf(const char* format) {
    while (*format != 0) {
        if (*format++ != '%') continue;
        if (*format == 'p' || *format == 'P') return true;
        if (*format != 0) ++format;
    }
    return false;
}

class DatePrinter {
  public:
    DatePrinter(const VqDateTime& value, DateParts parts, const char* format)
        : value_(value), format_(format), hasDate_(parts != DateParts::Time), hasTime_(parts != DateParts::Date) {}

    char* Print(char* out, const char* end) {
        FieldDigits digits;
        const bool plain = digits.Set(value_);
        const unsigned first = hasDate_ ? 0 : FieldDigits::OffsetOf(Hour);
        const unsigned behind = !plain ? first : FieldDigits::OffsetOf(hasTime_ ? FieldCount : Hour);
        for (const char* at = format_; at != end; ++at) {
            if (*at != '%') {
                *out++ = *at;
                continue;
            }
            if (++at == end) break;
            const unsigned offset = digitOffsets[static_cast<unsigned char>(*at)];
            if (offset - first >= behind - first) {
                out = Directive(out, *at);
                continue;
            }
            digits.Copy(out, offset);
            out += 2;
            if (offset == FieldDigits::YearOffset) {
                digits.Copy(out, FieldDigits::YearOffset + 2);
                out += 2;
            }
        }
        return out;
    }

  private:
    [[gnu::noinline]] char* Directive(char* out, char letter) {
        if (const NumberDirective number = NumberOf(letter); number.digits != 0) {
            return PutNumber(out, Get(number.field), number.digits);
        }
        switch (letter) {
            case 'y':
                return PutNumber(out, Get(Year) % 100, 2);
            case 'I':
                return PutNumber(out, TwelveHour(), 2);
            case 'p':
                return PutText(out, Get(Hour) >= 12 ? "pm"sv : "am"sv);
            case 'P':
                return PutText(out, Get(Hour) >= 12 ? "PM"sv : "AM"sv);
            case 'A':
            case 'a':
                return PutName(out, DayName(Date().DayOfTheDate()), letter == 'A');
            case 'B':
            case 'b':
                if (const int month = Get(Month); month < 1 || month > 12) return PutNumber(out, month, 3);
                return PutName(out, MonthNames[Get(Month) - 1], letter == 'B');
            default:
                *out = letter;
                return out + 1;
        }
    }

    // Only where the text says which half of the day it is, midnight is twelve.
    int TwelveHour() {
        const int hour = Get(Hour);
        if (hour != 0) return hour > 12 ? hour - 12 : hour;
        if (!midnight_) midnight_ = AsksForHalf(format_) ? 12 : 0;
        return *midnight_;
    }

    int Get(Field field) {
        switch (field) {
            case Year:
                return Date().year;
            case Month:
                return Date().month;
            case Day:
                return Date().day;
            case Hour:
                return Time().hour;
            case Minute:
                return Time().minute;
            default:
                return Time().second;
        }
    }

    const VqDate& Date() {
        if (!hasDate_) value_.date = VqDate::Today();
        hasDate_ = true;
        return value_.date;
    }
    const VqTime& Time() {
        if (!hasTime_) value_.time = VqTime::Now();
        hasTime_ = true;
        return value_.time;
    }

    VqDateTime value_;
    const char* format_;
    std::optional<int> midnight_;  // as %I prints it
    bool hasDate_;
    bool hasTime_;
};

// --- Scanning

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

bool ReadTwo(const char* text, int& number) {
    const auto tens = static_cast<unsigned>(text[0] - '0');
    if (tens > 9) return false;
    const auto ones = static_cast<unsigned>(text[1] - '0');
    number = static_cast<int>(10 * tens + ones);
    return ones <= 9;
}

// Nothing is behind the end of the text.
const char* Skip(const char* text, int width) {
    for (; width != 0 && *text != 0; --width) ++text;
    return text;
}

// The first name whose first three letters begin the text, or -1. Moves behind what agrees with the whole name.
template <std::size_t count>
int MatchName(const char*& text, const std::string_view (&names)[count]) {
    for (std::size_t i = 0; i < count; ++i) {
        const char* const end = std::mismatch(names[i].begin(), names[i].end(), text).second;
        if (end - text < 3) continue;
        text = end;
        return static_cast<int>(i);
    }
    return -1;
}

class DateScanner {
  public:
    void Scan(const char* text, const char* format) {
        for (; *format != 0; ++format) {
            if (*format != '%') {
                if (*text == 0) [[unlikely]]
                    continue;
                ++text;
                continue;
            }
            if (*++format == 0) break;
            const NumberDirective number = NumberOf(*format);
            text = number.digits != 0 ? ReadNumber(text, number.field, number.digits) : Directive(text, *format);
        }
    }

    // What the text says where that is a date-time or all zeros.
    void Store(VqDateTime& value) const {
        value.date.year = static_cast<std::int16_t>(fields_[Year]);
        value.date.month = static_cast<std::int8_t>(fields_[Month]);
        value.date.day = static_cast<std::int8_t>(fields_[Day]);
        value.time.hour = static_cast<std::int8_t>(Hours());
        value.time.minute = static_cast<std::int8_t>(fields_[Minute]);
        value.time.second = static_cast<std::int8_t>(fields_[Second]);
        if (!value.IsDaTime() && !IsZero(value)) value = VqDateTime(VqDate(0, 1, 1), VqTime(0, 0, 0));
    }

  private:
    static bool IsZero(const VqDateTime& value) {
        return value.date == VqDate(0, 0, 0) && value.time == VqTime(0, 0, 0);
    }

    int Hours() const {
        const int hour = fields_[Hour];
        if (secondHalf_ && hour < 12) return hour + 12;
        return firstHalf_ && hour == 12 ? 0 : hour;
    }

    [[gnu::noinline]] const char* Directive(const char* text, char letter) {
        switch (letter) {
            case 'y':
                text = ReadNumber(text, Year, 2);
                fields_[Year] = static_cast<std::int16_t>(fields_[Year] + 1900);
                return text;
            case 'I':
                return ReadNumber(text, Hour, 2);
            case 'p':
            case 'P':
                secondHalf_ |= *text == 'p' || *text == 'P';
                firstHalf_ |= *text == 'a' || *text == 'A';
                return Skip(text, 2);
            case 'B':
            case 'b':
                if (const int index = MatchName(text, MonthNames); index >= 0) {
                    fields_[Month] = index + 1;
                    return text;
                }
                return ReadAnyNumber(text, Month, 3);
            case 'A':
            case 'a':
                MatchName(text, DayNames);
                return text;
            default:
                return Skip(text, 1);
        }
    }

    // Two or four digits. Nearly every text has as many as the directive.
    const char* ReadNumber(const char* text, Field field, int width) {
        int number;
        if (!ReadTwo(text, number)) return ReadAnyNumber(text, field, width);
        if (width == 4) {
            int rest;
            if (!ReadTwo(text + 2, rest)) return ReadAnyNumber(text, field, width);
            number = 100 * number + rest;
        }
        fields_[field] = number;
        return text + width;
    }

    // Reads like scanf with a width: white space first, which does not count, then `width` characters of sign and
    // digits. Without a digit the field keeps its value. Then moves on by the width, whatever was read.
    [[gnu::noinline]] const char* ReadAnyNumber(const char* text, Field field, int width) {
        const char* at = text;
        while (IsBlank(static_cast<unsigned char>(*at))) ++at;
        int left = width;
        const bool negative = *at == '-';
        if (*at == '-' || *at == '+') ++at, --left;
        int number = 0;
        const char* const digits = at;
        for (; left > 0 && IsDigit(*at); ++at, --left) number = number * 10 + (*at - '0');
        if (at != digits) fields_[field] = negative ? -number : number;
        return Skip(text, width);
    }

    int fields_[FieldCount] = {0, 1, 1, 0, 0, 0};
    bool firstHalf_ = false, secondHalf_ = false;
};

}  // namespace

void PrintDateText(VqString& out, const VqDateTime& value, DateParts parts, const char* format) {
    // No string holds more than this makes of half as many characters, the least that a format can give.
    const std::size_t length = std::min(std::strlen(format), std::size_t{2 * VqString::MaxSize});
    const std::size_t most = (length / 2 + 1) * LongestText;
    char local[512];
    std::unique_ptr<char[]> larger;
    if (most > sizeof local) larger.reset(new char[most]);
    char* const text = larger != nullptr ? larger.get() : local;
    const std::ptrdiff_t size = DatePrinter(value, parts, format).Print(text, format + length) - text;
    out.AppendChars(text, VqString::GetDefault8CodeSet(),
                    static_cast<unsigned short>(std::min<std::ptrdiff_t>(size, VqString::All - 1)));
}

void ScanDateText(VqDateTime& value, const char* text, const char* format) {
    DateScanner scanner;
    scanner.Scan(text, format);
    scanner.Store(value);
}

}  // namespace vq

// --- Members of the classes

namespace {

template <class T>
void PrintValue(VqString& out, const T& value, const VqDateTime& whole, vq::DateParts parts, const char* format) {
    if (value.IsNullValue()) {
        out = VqNullPrintString();
    } else {
        vq::PrintDateText(out, whole, parts, format);
    }
}

// False where the text begins with the null print string.
bool ScanValue(VqDateTime& value, const VqString& text, const char* format) {
    const vq::SingleByteText single(text);
    if (vq::SkipNullPrintString(single.Get()) != nullptr) return false;
    vq::ScanDateText(value, single.Get(), format);
    return true;
}

}  // namespace

void VqDate::PrintToVqString(VqString& out, const char* format) const {
    PrintValue(out, *this, VqDateTime(*this, VqTime(0, 0, 0)), vq::DateParts::Date,
               format != nullptr ? format : vq::DateFormat);
}

void VqTime::PrintToVqString(VqString& out, const char* format) const {
    PrintValue(out, *this, VqDateTime(VqDate(0, 1, 1), *this), vq::DateParts::Time,
               format != nullptr ? format : vq::TimeFormat);
}

void VqDateTime::PrintToVqString(VqString& out, const char* format) const {
    PrintValue(out, *this, *this, vq::DateParts::Both, format != nullptr ? format : vq::DateTimeFormat);
}

void VqDate::ScanFromVqString(const VqString& text, const char* format) {
    VqDateTime scanned(*this, VqTime(0, 0, 0));
    if (ScanValue(scanned, text, format != nullptr ? format : vq::DateFormat)) {
        *this = scanned.date;
    } else {
        SetNullValue();
    }
}

void VqTime::ScanFromVqString(const VqString& text, const char* format) {
    VqDateTime scanned(VqDate(0, 1, 1), *this);
    if (ScanValue(scanned, text, format != nullptr ? format : vq::TimeFormat)) {
        *this = scanned.time;
    } else {
        SetNullValue();
    }
}

void VqDateTime::ScanFromVqString(const VqString& text, const char* format) {
    if (!ScanValue(*this, text, format != nullptr ? format : vq::DateTimeFormat)) SetNullValue();
}
