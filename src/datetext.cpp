#include "datetext.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>

#include "_vqnulty.h"
#include "cformat.h"
#include "datetime.h"
#include "textform.h"
#include "vqstring.h"

namespace vq {
namespace {

// --- Printing

// No directive's text is longer: "Wednesday", "September".
constexpr std::size_t LongestText = 9;

// Longer texts are cut by every string.
constexpr std::size_t MostText = VqString::MaxSize;

constexpr std::string_view Abbreviated(std::string_view name) { return name.substr(0, 3); }

char* PutText(char* out, std::string_view text) {
    std::memcpy(out, text.data(), text.size());
    return out + text.size();
}

char Digit(unsigned value) { return static_cast<char>('0' + value); }

// At least `digits` digits, and a sign before them where the number is negative.
char* PutNumber(char* out, int value, int digits) {
    if (value < 0) *out++ = '-';
    char reversed[8];
    int length = 0;
    for (unsigned rest = static_cast<unsigned>(value < 0 ? -value : value); rest != 0 || length < digits; rest /= 10) {
        reversed[length++] = Digit(rest % 10);
    }
    return std::reverse_copy(reversed, reversed + length, out);
}

// The same with two digits, which nearly every number has.
char* PutTwo(char* out, int value) {
    if (value < 0 || value > 99) return PutNumber(out, value, 2);
    out[0] = Digit(static_cast<unsigned>(value) / 10);
    out[1] = Digit(static_cast<unsigned>(value) % 10);
    return out + 2;
}

char* PutFour(char* out, int value) {
    if (value < 0 || value > 9999) return PutNumber(out, value, 4);
    return PutTwo(PutTwo(out, value / 100), value % 100);
}

// True when a directive of the format asks for the half of the day.
bool AsksForHalf(const char* format) {
    for (; *format != 0; ++format) {
        if (*format != '%') continue;
        ++format;
        if (*format == 'p' || *format == 'P') return true;
        if (*format == 0) return false;
    }
    return false;
}

class DatePrinter {
  public:
    DatePrinter(const VqDateTime& value, DateParts parts, const char* format)
        : value_(value), format_(format), hasDate_(parts != DateParts::Time), hasTime_(parts != DateParts::Date) {}

    // Writes up to about MostText characters, and returns where they end.
    char* Print(char* out) {
        const char* const enough = out + MostText;
        for (const char* at = format_; *at != 0 && out < enough; ++at) {
            if (*at != '%') {
                *out++ = *at;
            } else if (*++at != 0) {
                out = Directive(out, *at);
            } else {
                break;
            }
        }
        return out;
    }

  private:
    char* Directive(char* out, char letter) {
        switch (letter) {
            case 'Y':
                return PutFour(out, Date().year);
            case 'y':
                return PutTwo(out, Date().year % 100);
            case 'm':
                return PutTwo(out, Date().month);
            case 'd':
            case 'e':
                return PutTwo(out, Date().day);
            case 'H':
                return PutTwo(out, Time().hour);
            case 'I':
                return PutTwo(out, TwelveHour());
            case 'M':
                return PutTwo(out, Time().minute);
            case 'S':
                return PutTwo(out, Time().second);
            case 'p':
                return PutText(out, Time().hour >= 12 ? "pm" : "am");
            case 'P':
                return PutText(out, Time().hour >= 12 ? "PM" : "AM");
            case 'A':
                return PutText(out, DayName(Date().DayOfTheDate()));
            case 'a':
                return PutText(out, Abbreviated(DayName(Date().DayOfTheDate())));
            case 'B':
                return Month(out, false);
            case 'b':
                return Month(out, true);
            default:
                *out = letter;
                return out + 1;
        }
    }

    char* Month(char* out, bool abbreviated) {
        const int month = Date().month;
        if (month < 1 || month > 12) return PutNumber(out, month, 3);
        const std::string_view name = MonthNames[month - 1];
        return PutText(out, abbreviated ? Abbreviated(name) : name);
    }

    // Only where the text says which half of the day it is, midnight is twelve.
    int TwelveHour() {
        const int hour = Time().hour;
        if (hour > 12) return hour - 12;
        return hour == 0 && AsksForHalf(format_) ? 12 : hour;
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
    bool hasDate_;
    bool hasTime_;
};

// --- Scanning

// The day-half markers that a text had.
struct Halves {
    bool first = false;
    bool second = false;
};

bool ReadDigit(char c, int& digit) {
    digit = c - '0';
    return digit >= 0 && digit <= 9;
}

class DateScanner {
  public:
    explicit DateScanner(const char* text) : text_(text) {}

    void Scan(const char* format) {
        for (; *format != 0; ++format) {
            if (*format != '%') {
                Skip(1);
            } else if (*++format != 0) {
                Directive(*format);
            } else {
                break;
            }
        }
    }

    void Store(VqDateTime& value) const {
        int hour = hour_;
        if (halves_.second && hour < 12) {
            hour += 12;
        } else if (halves_.first && hour == 12) {
            hour = 0;
        }
        const VqDateTime read(VqDate(year_, month_, day_), VqTime(hour, minute_, second_));
        value = read.IsDaTime() || IsZero(read) ? read : VqDateTime(VqDate(0, 1, 1), VqTime(0, 0, 0));
    }

  private:
    static bool IsZero(const VqDateTime& value) {
        return value.date == VqDate(0, 0, 0) && value.time == VqTime(0, 0, 0);
    }

    void Directive(char letter) {
        switch (letter) {
            case 'Y':
                return Number(year_, 4);
            case 'y':
                Two(year_);
                year_ = static_cast<std::int16_t>(year_ + 1900);
                return;
            case 'm':
                return Two(month_);
            case 'd':
            case 'e':
                return Two(day_);
            case 'H':
            case 'I':
                return Two(hour_);
            case 'M':
                return Two(minute_);
            case 'S':
                return Two(second_);
            case 'p':
            case 'P':
                return Half();
            case 'B':
            case 'b':
                if (const int index = Name(MonthNames); index >= 0) {
                    month_ = index + 1;
                } else {
                    Number(month_, 3);
                }
                return;
            case 'A':
            case 'a':
                Name(DayNames);
                return;
            default:
                Skip(1);
        }
    }

    // Nothing is behind the end of the text.
    void Skip(std::size_t width) {
        for (; width != 0 && *text_ != 0; --width) ++text_;
    }

    // Reads like scanf with a width: white space first, which does not count, then `width` characters of sign and
    // digits. Without a digit the field keeps its value. Then moves on by the width, whatever was read.
    void Number(int& field, int width) {
        const char* at = text_;
        while (IsBlank(static_cast<unsigned char>(*at))) ++at;
        int left = width;
        const bool negative = *at == '-';
        if (*at == '-' || *at == '+') ++at, --left;
        int number = 0, digit;
        const char* const digits = at;
        for (; left > 0 && ReadDigit(*at, digit); ++at, --left) number = number * 10 + digit;
        if (at != digits) field = negative ? -number : number;
        Skip(static_cast<std::size_t>(width));
    }

    // The same with a width of two, for which nearly every text has two digits.
    void Two(int& field) {
        int tens, ones;
        if (!ReadDigit(text_[0], tens) || !ReadDigit(text_[1], ones)) return Number(field, 2);
        field = 10 * tens + ones;
        text_ += 2;
    }

    void Half() {
        halves_.second |= *text_ == 'p' || *text_ == 'P';
        halves_.first |= *text_ == 'a' || *text_ == 'A';
        Skip(2);
    }

    // The first name whose first three letters stand here, or -1. Moves behind what agrees with the whole name.
    template <std::size_t count>
    int Name(const std::string_view (&names)[count]) {
        for (std::size_t i = 0; i < count; ++i) {
            if (std::strncmp(text_, names[i].data(), 3) != 0) continue;
            text_ = std::mismatch(names[i].begin(), names[i].end(), text_).second;
            return static_cast<int>(i);
        }
        return -1;
    }

    const char* text_;
    int year_ = 0, month_ = 1, day_ = 1, hour_ = 0, minute_ = 0, second_ = 0;
    Halves halves_;
};

}  // namespace

void PrintDateText(VqString& out, const VqDateTime& value, DateParts parts, const char* format) {
    constexpr std::size_t Room = 512;
    const std::size_t most = (std::min(std::strlen(format) / 2, MostText) + 1) * LongestText;
    char local[Room];
    std::unique_ptr<char[]> larger;
    if (most > Room) larger.reset(new char[std::min(most, MostText + LongestText)]);
    char* const text = most > Room ? larger.get() : local;
    const auto length = static_cast<std::size_t>(DatePrinter(value, parts, format).Print(text) - text);
    out.AppendChars(text, VqString::GetDefault8CodeSet(),
                    static_cast<unsigned short>(std::min(length, std::size_t{VqString::All} - 1)));
}

void ScanDateText(VqDateTime& value, const char* text, const char* format) {
    DateScanner scanner(text);
    scanner.Scan(format);
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
