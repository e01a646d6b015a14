#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "datetext.h"
#include "numbertext.h"
#include "stddate.h"
#include "textform.h"
#include "vqstring.h"

namespace {

// --- Text without loss

// Two digits or four, and more where the number needs them.
void AppendField(std::string& out, int number, std::size_t digits) {
    if (number < 0) out += '-';
    const std::string text = std::to_string(std::abs(number));
    out.append(digits - std::min(digits, text.size()), '0');
    out += text;
}

void AppendDate(std::string& out, const d_Date& date) {
    AppendField(out, date.year, 4);
    out += '-';
    AppendField(out, date.month, 2);
    out += '-';
    AppendField(out, date.day, 2);
}

// Hundredths outside their range have a sign before them, and so has a minute of the zone that goes the other way.
void AppendTime(std::string& out, const d_Time& time) {
    AppendField(out, time.hour, 2);
    out += ':';
    AppendField(out, time.minute, 2);
    out += ':';
    AppendField(out, time.second, 2);
    out += time.hundredths > 99 ? ".+" : ".";
    AppendField(out, time.hundredths, 2);
    const bool west = time.tz_hour < 0 || (time.tz_hour == 0 && time.tz_minute < 0);
    out += west ? '-' : '+';
    AppendField(out, std::abs(time.tz_hour), 2);
    out += ':';
    if (west && time.tz_minute > 0) out += '+';
    AppendField(out, west && time.tz_minute < 0 ? -time.tz_minute : time.tz_minute, 2);
}

d_Date NoDate() { return d_Date(0, 1, 1); }
d_Time NoTime() { return d_Time(0, 0, 0, 0, 0); }

// Reads fields from the beginning of a text.
class FieldReader {
  public:
    explicit FieldReader(const char* text) : at_(text), end_(text + std::strlen(text)) {}

    bool AtEnd() const { return at_ == end_; }
    bool IsAtSign() const { return !AtEnd() && (*at_ == '+' || *at_ == '-'); }
    bool IsAtDigit() const { return !AtEnd() && *at_ >= '0' && *at_ <= '9'; }
    // Takes the character if it is the next one.
    bool Skip(char c) {
        if (AtEnd() || *at_ != c) return false;
        ++at_;
        return true;
    }
    // The next digit, or 0 where there is none.
    int Digit() { return IsAtDigit() ? *at_++ - '0' : 0; }

    // A number as its type has it, with or without a sign.
    template <class Value>
    bool Parse(Value& number) {
        Skip('+');
        const auto [end, error] = std::from_chars(at_, end_, number);
        at_ = end;
        return error == std::errc();
    }
    // A whole number that fits the field, with or without a sign.
    template <class Field>
    bool Number(Field& field) {
        int number = 0;
        return Parse(number) && Fits(number, field);
    }
    // A whole number with the sign given, unless it has one of its own.
    bool Zone(std::int8_t& field, bool west) {
        const bool signedItself = IsAtSign();
        int number = 0;
        return Parse(number) && Fits(west && !signedItself ? -number : number, field);
    }

  private:
    template <class Field>
    static bool Fits(int number, Field& field) {
        field = static_cast<Field>(number);
        return field == number;
    }

    const char* at_;
    const char* end_;
};

bool ReadFields(FieldReader& in, d_Date& date) {
    return in.Number(date.year) && in.Skip('-') && in.Number(date.month) && in.Skip('-') && in.Number(date.day);
}

// The Julian day number that is the whole text.
bool ReadDayNumber(FieldReader in, d_Date& date) {
    std::int32_t number = 0;
    if (!in.Parse(number) || !in.AtEnd()) return false;
    date.setAbsDate(number);
    return true;
}

bool ReadDate(FieldReader& in, d_Date& date) { return ReadDayNumber(in, date) || ReadFields(in, date); }

bool ReadHundredths(FieldReader& in, std::int8_t& hundredths) {
    if (in.IsAtSign()) return in.Number(hundredths);
    if (!in.IsAtDigit()) return false;
    const int tenths = in.Digit();
    hundredths = static_cast<std::int8_t>(10 * tenths + in.Digit());
    while (in.IsAtDigit()) in.Digit();
    return true;
}

bool ReadZone(FieldReader& in, d_Time& time) {
    if (in.Skip('Z')) {
        time.tz_hour = 0;
        return true;
    }
    if (!in.IsAtSign()) return true;
    const bool west = in.Skip('-');
    if (!west) in.Skip('+');
    return in.IsAtDigit() && in.Zone(time.tz_hour, west) && (!in.Skip(':') || in.Zone(time.tz_minute, west));
}

bool ReadSeconds(FieldReader& in, d_Time& time) {
    return in.Number(time.second) && (!in.Skip('.') || ReadHundredths(in, time.hundredths));
}

bool ReadMinutes(FieldReader& in, d_Time& time) {
    return in.Number(time.minute) && (!in.Skip(':') || ReadSeconds(in, time));
}

bool ReadClock(FieldReader& in, d_Time& time, bool hourMayBeAlone) {
    time = VqTime(0, 0, 0);
    return in.Number(time.hour) && (in.Skip(':') ? ReadMinutes(in, time) : hourMayBeAlone) && ReadZone(in, time);
}

// The whole hundredths of a decimal number, whose nearest double may be below it.
double WholeHundredths(double magnitude) {
    const double whole = std::floor(magnitude * 100);
    return (whole + 1) / 100 <= magnitude ? whole + 1 : whole;
}

// The seconds since midnight that are the whole text, where a time of the library's own can be made of them.
bool ReadSecondsOfDay(FieldReader in, d_Time& time) {
    constexpr double Limit = 2147483648;
    double number = 0;
    if (!in.Parse(number) || !in.AtEnd() || !(std::fabs(number) < Limit)) return false;
    time = VqTime(static_cast<long>(number));
    const double hundredths = std::fmod(WholeHundredths(std::fabs(number)), 100);
    time.hundredths = static_cast<std::int8_t>(number < 0 ? -hundredths : hundredths);
    return true;
}

// The time that may follow a date.
bool ReadTimeBehindDate(FieldReader& in, d_Time& time) {
    time = VqTime(0, 0, 0);
    return !(in.Skip('T') || in.Skip(' ')) || ReadClock(in, time, true);
}

bool ReadTime(FieldReader& in, d_Time& time) {
    FieldReader behind = in;
    d_Date passed = NoDate();
    if (ReadFields(behind, passed)) return ReadTimeBehindDate(behind, time);
    return ReadSecondsOfDay(in, time) || ReadClock(in, time, false);
}

}  // namespace

// --- Dates, times, timestamps

void d_Date::PrintToVqString(VqString& out, const char* format) const {
    if (format != nullptr) {
        const VqDateTime value(VqDate(year, month, day), VqTime(0, 0, 0));
        return vq::PrintDateText(out, value, vq::DateParts::Date, format);
    }
    std::string text;
    AppendDate(text, *this);
    out << text.c_str();
}

void d_Time::PrintToVqString(VqString& out, const char* format) const {
    if (format != nullptr) {
        const VqDateTime value(VqDate(0, 0, 0), VqTime(hour, minute, second));
        return vq::PrintDateText(out, value, vq::DateParts::Time, format);
    }
    std::string text;
    AppendTime(text, *this);
    out << text.c_str();
}

void d_Timestamp::PrintToVqString(VqString& out, const char* format) const {
    if (format != nullptr) {
        const VqDateTime value(VqDate(date.year, date.month, date.day), VqTime(time.hour, time.minute, time.second));
        return vq::PrintDateText(out, value, vq::DateParts::Both, format);
    }
    std::string text;
    AppendDate(text, date);
    text += 'T';
    AppendTime(text, time);
    out << text.c_str();
}

namespace {

VqDateTime ScanUnderFormat(const VqString& text, const char* format) {
    VqDateTime value(VqDate(0, 1, 1), VqTime(0, 0, 0));
    vq::ScanDateText(value, vq::SingleByteText(text).Get(), format);
    return value;
}

// Without a format `read(fields, value)` reads the text without loss; what it cannot read is `none`.
template <class Value, class Read>
void ScanInto(Value& value, const VqString& text, const char* format, const Value& none, Read read) {
    if (format != nullptr) {
        value = ScanUnderFormat(text, format);
        return;
    }
    const vq::SingleByteText single(text);
    FieldReader in(single.Get());
    if (!read(in, value)) value = none;
}

}  // namespace

void d_Date::ScanFromVqString(const VqString& text, const char* format) {
    ScanInto(*this, text, format, NoDate(), ReadDate);
}

void d_Time::ScanFromVqString(const VqString& text, const char* format) {
    ScanInto(*this, text, format, NoTime(), ReadTime);
}

void d_Timestamp::ScanFromVqString(const VqString& text, const char* format) {
    ScanInto(*this, text, format, d_Timestamp(NoDate(), NoTime()), [](FieldReader& in, d_Timestamp& value) {
        return ReadDate(in, value.date) && ReadTimeBehindDate(in, value.time);
    });
}

// --- Intervals

namespace {

char* WriteFixed(char* begin, char* end, double number, int decimals) {
    return std::to_chars(begin, end, number, std::chars_format::fixed, decimals).ptr;
}

// The decimal number at the beginning of the text, which moves behind it; false where there is none.
bool TakeNumber(const char*& text, double& number) {
    const char* at = text;
    while (*at == ' ') ++at;
    if (*at == '+') ++at;
    const auto [end, error] = std::from_chars(at, at + std::strlen(at), number, std::chars_format::fixed);
    if (error == std::errc::invalid_argument) return false;
    if (error == std::errc::result_out_of_range) number = vq::ParseDouble(text, 1);
    text = end;
    return true;
}

// An interval in days, hours, minutes and seconds.
struct IntervalParts {
    double days = 0, hours = 0, minutes = 0, seconds = 0;

    // Of a magnitude. One that is infinite or not a number has such days.
    static IntervalParts Of(double magnitude) {
        if (!std::isfinite(magnitude)) return {.days = magnitude};
        const double day = std::fmod(magnitude, 86400), hour = std::fmod(day, 3600), minute = std::fmod(hour, 60);
        return {.days = (magnitude - day) / 86400,
                .hours = (day - hour) / 3600,
                .minutes = (hour - minute) / 60,
                .seconds = minute};
    }

    float Total() const {
        const double sum =
            std::fabs(days) * 86400 + std::fabs(hours) * 3600 + std::fabs(minutes) * 60 + std::fabs(seconds);
        return static_cast<float>(days < 0 || hours < 0 || minutes < 0 || seconds < 0 ? -sum : sum);
    }
};

class IntervalPrinter {
  public:
    explicit IntervalPrinter(float seconds)
        : sign_(seconds < 0),
          magnitude_(std::fabs(seconds)),
          parts_(IntervalParts::Of(static_cast<double>(magnitude_))) {}

    void Directive(std::string& out, char letter) const {
        switch (letter) {
            case 'e':
                return Append(out, parts_.days, 0);
            case 'H':
            case 'I':
                return Append(out, parts_.hours, 0);
            case 'M':
                return Append(out, parts_.minutes, 0);
            case 'S':
                return Append(out, parts_.seconds, Decimals());
            default:
                out += letter;
        }
    }

  private:
    // All digits of the longest part, and all that a float has behind its point.
    static constexpr int MostDigits = 40, MostDecimals = 149;

    // As many as make the parts the same interval again.
    int Decimals() const {
        IntervalParts read = parts_;
        int decimals = 0;
        for (;; ++decimals) {
            char text[MostDigits + MostDecimals];
            char* const end = WriteFixed(text, std::end(text), parts_.seconds, decimals);
            std::from_chars(text, end, read.seconds);
            if (decimals == MostDecimals || !(read.Total() < magnitude_ || read.Total() > magnitude_)) return decimals;
        }
    }

    void Append(std::string& out, double number, int decimals) const {
        char text[MostDigits + MostDecimals];
        if (sign_ && number != 0) out += '-';
        out.append(text, WriteFixed(text, std::end(text), number, decimals));
    }

    bool sign_;
    float magnitude_;
    IntervalParts parts_;
};

// The part that a directive stands for; null where it stands for none.
double* PartOf(IntervalParts& parts, char letter) {
    switch (letter) {
        case 'e':
            return &parts.days;
        case 'H':
        case 'I':
            return &parts.hours;
        case 'M':
            return &parts.minutes;
        case 'S':
            return &parts.seconds;
        default:
            return nullptr;
    }
}

float ScanParts(const char* text, const char* format) {
    IntervalParts parts;
    for (; *format != 0; ++format) {
        double* part = nullptr;
        if (*format == '%') {
            if (*++format == 0) break;
            part = PartOf(parts, *format);
        }
        if (part != nullptr) {
            TakeNumber(text, *part);
        } else if (*text != 0) {
            ++text;
        }
    }
    return parts.Total();
}

// The shortest text of a float, read as such: by way of a double it could be rounded twice. Where fields of a date or
// a time begin, their first number is no length of time.
float ScanSeconds(const char* text) {
    while (*text == ' ') ++text;
    const char* const number = *text == '+' ? text + 1 : text;
    float seconds = 0;
    const auto [end, error] = std::from_chars(number, number + std::strlen(number), seconds);
    if (end != number && *end == ':') return ScanParts(text, "%H:%M:%S");
    if (end != number && *end == '-') return 0;
    return error == std::errc::result_out_of_range ? static_cast<float>(vq::ParseDouble(text, 1)) : seconds;
}

}  // namespace

void d_Interval::PrintToVqString(VqString& out, const char* format) const {
    std::string text;
    if (format == nullptr) {
        char digits[32];
        text.assign(digits, std::to_chars(digits, std::end(digits), seconds).ptr);
    } else {
        const IntervalPrinter printer(seconds);
        for (const char* at = format; *at != 0; ++at) {
            if (*at != '%') {
                text += *at;
            } else if (*++at != 0) {
                printer.Directive(text, *at);
            } else {
                break;
            }
        }
    }
    out << text.c_str();
}

void d_Interval::ScanFromVqString(const VqString& text, const char* format) {
    const vq::SingleByteText single(text);
    seconds = format != nullptr ? ScanParts(single.Get(), format) : ScanSeconds(single.Get());
}
