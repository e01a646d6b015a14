#include "datetime.h"

#include <cstring>

#include "vqbase.h"

VqDateTime VqDateTime::Now() {
    const VqTime time = VqTime::Now();
    return VqDateTime(VqDate::Today(), time);
}

VqDateTime VqDateTime::NowUTC() {
    btime time;
    bdate date;
    bksgetsystemtime(&time, &date);
    return VqDateTime(VqDate(date.year, date.month, date.day), VqTime(time.hour, time.minute, time.second));
}

const VqDateTime& VqDateTime::Null() {
    static const VqDateTime zero(VqDate(0, 0, 0), VqTime(0, 0, 0));
    return zero;
}

void VqDateTime::AddSeconds(long seconds) {
    constexpr std::int32_t Day = 86400;
    const auto s = static_cast<std::int32_t>(seconds);
    const std::int32_t rest = s % Day;
    const VqTime moved = rest < 0 ? time - -rest : time + rest;
    std::int32_t days = s / Day;
    if (rest < 0 && moved > time) --days;
    if (rest >= 0 && moved < time) ++days;
    date += days;
    time = moved;
}

// --- Time zone

namespace {

// Puts the clock of `at` to a minute of its day, or to one of the day before or behind.
void SetMinute(VqDateTime& at, std::int64_t minute) {
    constexpr std::int64_t Day = 1440;
    if (minute < 0) at.date -= 1;
    if (minute >= Day) at.date += 1;
    if (minute >= Day) minute -= Day;
    const std::int64_t hour = minute < 0 ? minute / 60 + (minute % 60 != 0 ? 23 : 24) : minute / 60;
    at.time.hour = static_cast<std::int8_t>(hour);
    at.time.minute = static_cast<std::int8_t>(minute % 60 + (minute % 60 < 0 ? 60 : 0));
}

int Shift(VqDateTime& at, int direction) {
    const std::int64_t zone = bksgettimezone();
    if (zone == VqTimeZoneUnknown) return VqStatus_UnknownTimeZone;
    SetMinute(at, at.time.hour * 60 + at.time.minute + direction * zone);
    return VqStatus_Ok;
}

}  // namespace

int VqDateTime::ToLocalTime() { return Shift(*this, 1); }
int VqDateTime::ToUTCTime() { return Shift(*this, -1); }

int GetSystemTimeInMSSinceTheEpoch(VqInt64&) { return VqStatus_NotSupported; }
