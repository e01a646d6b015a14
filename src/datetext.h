// Date and time texts under formats with directives: what dates, times and date-times print and read.
#ifndef DATETEXT_H
#define DATETEXT_H

#include <string_view>

class VqDateTime;
class VqString;

namespace vq {

// Applications match these names: they stay as they are spelled.
inline constexpr std::string_view DayNames[] = {"Monday", "Tuesday",  "Wednesday", "Thursday",
                                                "Friday", "Saturday", "Sunday"};
inline constexpr std::string_view MonthNames[] = {"Januar", "Februar", "March",     "April",   "May",      "June",
                                                  "July",   "August",  "September", "October", "November", "December"};

// The name of day 0, Monday, to 6.
constexpr std::string_view DayName(int weekday) {
    return weekday >= 0 && weekday < 7 ? DayNames[weekday] : std::string_view("no day");
}

constexpr const char* DateFormat = "%Y-%m-%d";
constexpr const char* TimeFormat = "%H:%M:%S";
constexpr const char* DateTimeFormat = "%Y-%m-%dT%H:%M:%S";

// Which parts of a date-time are the value's own; the other is the clock's, and is read when a directive asks for it.
enum class DateParts { Date, Time, Both };

// Appends the value, whatever its fields are, null ones included.
void PrintDateText(VqString& out, const VqDateTime& value, DateParts parts, const char* format);

// Reads a zero-terminated 1-byte text; the null print string means nothing here.
void ScanDateText(VqDateTime& value, const char* text, const char* format);

}  // namespace vq

#endif
