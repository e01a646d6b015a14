#include "datetime.h"

#include <charconv>
#include <cstring>
#include <iterator>

#include "dateslots.h"
#include "datetext.h"
#include "storedyear.h"
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

VqDateTime& VqDateTime::Null() {
    static VqDateTime zero(VqDate(0, 0, 0), VqTime(0, 0, 0));
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

// --- Disk form: a date's, then a time's; in memory a byte that means nothing follows

namespace {

constexpr unsigned long Stored = 7, Held = sizeof(VqDateTime);

// Elements at a distance of `From` to elements at a distance of `To`. The time moves as a word where both areas have
// room behind it, which all elements but the last have; the byte too many is overwritten by the next element.
template <unsigned long To, unsigned long From, bool Foreign>
void MoveElements(unsigned char* dst, const unsigned char* src, unsigned long count) {
    for (; count > 1; --count, dst += To, src += From) {
        std::uint32_t time;
        std::memcpy(&time, src + 4, sizeof time);
        vq::MoveDate(dst, src, Foreign);
        std::memcpy(dst + 4, &time, sizeof time);
    }
    vq::MoveDate(dst, src, Foreign);
    std::memcpy(dst + 4, src + 4, 3);
}

template <unsigned long To, unsigned long From>
unsigned long Move(void* dst, const void* src, unsigned char format, unsigned long count) {
    if (count == 0) return 0;
    const auto move = vq::IsForeignOrder(format) ? MoveElements<To, From, true> : MoveElements<To, From, false>;
    move(static_cast<unsigned char*>(dst), static_cast<const unsigned char*>(src), count);
    return count * Stored;
}

}  // namespace

unsigned long DaTimeStore(void* dst, const void* src, unsigned char format, unsigned long count) {
    return Move<Stored, Held>(dst, src, format, count);
}
unsigned long DaTimeLoad(void* dst, const void* src, unsigned char format, unsigned long count) {
    return Move<Held, Stored>(dst, src, format, count);
}
unsigned long DaTimeNullSizeGet(unsigned long count) { return count * Stored; }
unsigned long DaTimeSizeGet(const void*, unsigned char, unsigned char, unsigned long count) { return count * Stored; }
unsigned long DaTimeSizeGetFromMemFile(MemFile*, unsigned char, unsigned long count) { return count * Stored; }

// --- Exchange form

void vq::DateTimeExchange::ToText(const VqDateTime& value, VqString& text) {
    PrintDateText(text, value, DateParts::Both, DateTimeFormat);
}

void vq::DateTimeExchange::FromText(VqDateTime& value, const VqString& text) {
    static constexpr char Before[] = {0, '-', '-', 'T', ':', ':'};
    const SingleByteText single(text);
    const char *at = single.Get(), *const end = at + std::strlen(at);
    int fields[std::size(Before)] = {}, found = 0;
    for (; found < static_cast<int>(std::size(Before)); ++found) {
        if (found != 0 && (at == end || *at++ != Before[found])) break;
        at = std::from_chars(at, end, fields[found]).ptr;
    }
    value.date = found == 1 ? VqDate(static_cast<long>(text)) : VqDate(fields[0], fields[1], fields[2]);
    value.time = VqTime(fields[3], fields[4], fields[5]);
}
