// A 64-bit time_t from i386 Linux too: its old one ends in 2038.
#if defined(__linux__) && !defined(_TIME_BITS)
#define _FILE_OFFSET_BITS 64
#define _TIME_BITS 64
#endif

#include "clock.h"

#include <time.h>

#include <atomic>
#include <chrono>
#include <cstdint>

namespace {

std::int64_t SecondsSinceEpoch() {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::floor<std::chrono::seconds>(now).count();
}

#ifdef _WIN32
bool BreakDown(std::int64_t now, tm* local, tm* utc) {
    const __time64_t seconds = now;
    return _localtime64_s(local, &seconds) == 0 && _gmtime64_s(utc, &seconds) == 0;
}
#else
bool BreakDown(std::int64_t now, tm* local, tm* utc) {
    const time_t seconds = static_cast<time_t>(now);
    tzset();  // unlike localtime, localtime_r need not notice that TZ has changed
    return localtime_r(&seconds, local) && gmtime_r(&seconds, utc);
}
#endif

void FillIn(const tm& from, btime* time, bdate* date) {
    date->year = static_cast<short>(from.tm_year + 1900);
    date->month = static_cast<signed char>(from.tm_mon + 1);
    date->day = static_cast<signed char>(from.tm_mday);
    time->hour = static_cast<signed char>(from.tm_hour);
    time->minute = static_cast<signed char>(from.tm_min);
    time->second = static_cast<signed char>(from.tm_sec);
    time->zoneSeconds = 0;
}

std::chrono::sys_seconds AsIfUtc(const tm& from) {
    using namespace std::chrono;
    const sys_days month = year(from.tm_year + 1900) / (from.tm_mon + 1) / 1;
    return month + days(from.tm_mday - 1) + hours(from.tm_hour) + minutes(from.tm_min) + seconds(from.tm_sec);
}

long LocalMinusUtc(const tm& local, const tm& utc) {
    return static_cast<long>((AsIfUtc(local) - AsIfUtc(utc)).count());
}

void SystemUtc(btime* time, bdate* date) {
    tm local{}, utc{};
    BreakDown(SecondsSinceEpoch(), &local, &utc);
    FillIn(utc, time, date);
}

void SystemLocal(btime* time, bdate* date) {
    tm local{}, utc{};
    const bool known = BreakDown(SecondsSinceEpoch(), &local, &utc);
    FillIn(local, time, date);
    if (known) time->zoneSeconds = LocalMinusUtc(local, utc);
}

int SystemZoneMinutes() {
    tm local{}, utc{};
    if (!BreakDown(SecondsSinceEpoch(), &local, &utc)) return VqTimeZoneUnknown;
    return static_cast<int>(LocalMinusUtc(local, utc) / 60);
}

constexpr VqClock SystemClock = {SystemLocal, SystemUtc, SystemZoneMinutes};
constinit std::atomic<const VqClock*> currentClock{&SystemClock};

void Read(void (*source)(btime*, bdate*), btime* time, bdate* date) {
    btime readTime{};
    bdate readDate{};
    source(&readTime, &readDate);
    if (time) *time = readTime;
    if (date) *date = readDate;
}

}  // namespace

void bksgetdate(bdate* date) { Read(currentClock.load()->local, nullptr, date); }
void bksgettime(btime* time) { Read(currentClock.load()->local, time, nullptr); }
void bksgetsystemtime(btime* time, bdate* date) { Read(currentClock.load()->utc, time, date); }
int bksgettimezone() { return currentClock.load()->zoneMinutes(); }

const VqClock* VqSetClock(const VqClock* clock) { return currentClock.exchange(clock ? clock : &SystemClock); }
