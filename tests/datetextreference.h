// Date and time texts the slow way: each directive through the C library's printf and scanf, step by step.
#ifndef VQ_DATETEXTREFERENCE_H
#define VQ_DATETEXTREFERENCE_H

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>
#include <tuple>

#include "datetime.h"

namespace vqtest {

constexpr const char* MonthNameTable[] = {"Januar", "Februar", "March",     "April",   "May",      "June",
                                          "July",   "August",  "September", "October", "November", "December"};
constexpr const char* DayNameTable[] = {"Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday", "Sunday"};

// `cFormat` is no literal, because compilers know that a precision makes its zero flag useless.
inline std::string Printf(const char* cFormat, int number) {
    char text[32];
    std::snprintf(text, sizeof text, cFormat, number);
    return text;
}

inline std::string ReferenceDirective(char letter, const VqDateTime& value, bool twelveHours) {
    const int year = value.date.year, month = value.date.month, day = value.date.day;
    const int hour = value.time.hour, minute = value.time.minute, second = value.time.second;
    const int hour12 = twelveHours && hour == 0 ? 12 : hour >= 13 ? hour - 12 : hour;
    const std::tuple<char, const char*, int> numbers[] = {
        {'Y', "%04.4d", year},   {'y', "%02.2d", year % 100}, {'m', "%02.2d", month},
        {'d', "%02.2d", day},    {'e', "%2.2d", day},         {'H', "%02.2d", hour},
        {'I', "%02.2d", hour12}, {'M', "%02.2d", minute},     {'S', "%02.2d", second},
    };
    for (const auto& [own, cFormat, number] : numbers) {
        if (own == letter) return Printf(cFormat, number);
    }
    std::string name(1, letter);
    if (letter == 'p') return hour >= 12 ? "pm" : "am";
    if (letter == 'P') return hour >= 12 ? "PM" : "AM";
    if (letter == 'A' || letter == 'a') name = DayNameTable[value.date.DayOfTheDate()];
    if (letter == 'B' || letter == 'b') {
        if (month < 1 || month > 12) return Printf("%03.3d", month);
        name = MonthNameTable[month - 1];
    }
    return letter == 'a' || letter == 'b' ? name.substr(0, 3) : name;
}

inline std::string ReferenceDatePrint(const VqDateTime& value, const std::string& format) {
    bool twelveHours = false;
    for (std::size_t i = 0; i + 1 < format.size(); ++i) {
        if (format[i] == '%' && std::strchr("pP", format[++i]) != nullptr) twelveHours = true;
    }
    std::string out;
    for (std::size_t i = 0; i < format.size(); ++i) {
        if (format[i] != '%')
            out += format[i];
        else if (++i < format.size())
            out += ReferenceDirective(format[i], value, twelveHours);
    }
    return out;
}

// The index of the name whose first three letters begin the text, or -1; `agreeing` counts the letters that agree.
template <std::size_t count>
int MatchName(const char* text, const char* const (&names)[count], std::size_t& agreeing) {
    for (std::size_t i = 0; i < count; ++i) {
        if (std::strncmp(text, names[i], 3) != 0) continue;
        for (agreeing = 3; names[i][agreeing] != 0 && text[agreeing] == names[i][agreeing];) ++agreeing;
        return static_cast<int>(i);
    }
    return -1;
}

// The fields and flags of a scan in progress.
struct ReferenceScan {
    int year = 0, month = 1, day = 1, hour = 0, minute = 0, second = 0;
    bool firstHalf = false, secondHalf = false;

    // Reads at `at`; returns by how much the text advances.
    std::size_t Directive(char letter, const char* at) {
        const std::tuple<const char*, const char*, int&> numbers[] = {
            {"Y", "%04d", year}, {"y", "%02d", year},  {"m", "%02d", month},  {"d", "%02d", day},
            {"e", "%2d", day},   {"HI", "%02d", hour}, {"M", "%02d", minute}, {"S", "%02d", second},
        };
        for (const auto& [letters, cFormat, field] : numbers) {
            if (std::strchr(letters, letter) == nullptr) continue;
            std::sscanf(at, cFormat, &field);
            if (letter == 'y') year += 1900;
            return letter == 'Y' ? 4 : 2;
        }
        std::size_t agreeing = 0;
        if (letter == 'p' || letter == 'P') {
            if (*at == 'p' || *at == 'P') secondHalf = true;
            if (*at == 'a' || *at == 'A') firstHalf = true;
            return 2;
        }
        if (letter == 'B' || letter == 'b') {
            const int index = MatchName(at, MonthNameTable, agreeing);
            if (index >= 0) return month = index + 1, agreeing;
            std::sscanf(at, "%03d", &month);
            return 3;
        }
        if (letter != 'A' && letter != 'a') return 1;
        MatchName(at, DayNameTable, agreeing);
        return agreeing;
    }
};

// Without the null print string. Positions behind the end of the text read as its end.
inline VqDateTime ReferenceDateScan(const std::string& text, const std::string& format) {
    ReferenceScan scan;
    std::size_t position = 0;
    for (std::size_t i = 0; i < format.size(); ++i) {
        if (format[i] != '%') {
            position += 1;
        } else if (++i < format.size()) {
            position += scan.Directive(format[i], text.c_str() + std::min(position, text.size()));
        }
    }
    if (scan.secondHalf && scan.hour < 12)
        scan.hour += 12;
    else if (scan.firstHalf && scan.hour == 12)
        scan.hour = 0;
    const VqDateTime result(VqDate(scan.year, scan.month, scan.day), VqTime(scan.hour, scan.minute, scan.second));
    const bool allZero = result.date == VqDate(0, 0, 0) && result.time == VqTime(0, 0, 0);
    return result.IsDaTime() || allZero ? result : VqDateTime(VqDate(0, 1, 1), VqTime(0, 0, 0));
}

}  // namespace vqtest

#endif
