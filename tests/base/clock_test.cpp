#include "clock.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <string>

#include "replaced.h"

namespace {

std::chrono::sys_seconds SecondsOf(const bdate& date, const btime& time) {
    using namespace std::chrono;
    const year_month_day day(year{date.year}, month{static_cast<unsigned>(date.month)},
                             std::chrono::day{static_cast<unsigned>(date.day)});
    EXPECT_TRUE(day.ok());
    return sys_days(day) + hours(time.hour) + minutes(time.minute) + seconds(time.second);
}

std::chrono::sys_seconds Now() { return std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now()); }

// Date and time come from two readings; a midnight between them is tried again.
std::chrono::sys_seconds LocalNow(btime* time) {
    bdate date, again;
    do {
        bksgetdate(&date);
        bksgettime(time);
        bksgetdate(&again);
    } while (date.day != again.day);
    return SecondsOf(date, *time);
}

void ExpectOneMomentInAllForms() {
    const auto before = Now();
    btime utcTime, localTime;
    bdate utcDate;
    bksgetsystemtime(&utcTime, &utcDate);
    const auto utc = SecondsOf(utcDate, utcTime);
    const auto local = LocalNow(&localTime);
    const auto after = Now();
    EXPECT_TRUE(before <= utc && utc <= after);
    EXPECT_TRUE(before <= local - std::chrono::seconds(localTime.zoneSeconds));
    EXPECT_TRUE(local - std::chrono::seconds(localTime.zoneSeconds) <= after);
    EXPECT_EQ(utcTime.zoneSeconds, 0);
    EXPECT_EQ(bksgettimezone(), localTime.zoneSeconds / 60);
}

TEST(Clock, ReadsOneMomentInAllForms) { ExpectOneMomentInAllForms(); }

#ifndef _WIN32
class ReplacedZone {
  public:
    ReplacedZone() : before_(std::getenv("TZ") ? std::getenv("TZ") : ""), had_(std::getenv("TZ")) {}
    ~ReplacedZone() { had_ ? setenv("TZ", before_.c_str(), 1) : unsetenv("TZ"); }

  private:
    std::string before_;
    bool had_;
};

TEST(Clock, CountsZonesEastward) {
    const ReplacedZone restore;
    const struct {
        const char* zone;
        int minutes;
    } cases[] = {{"UTC0", 0}, {"NPT-5:45", 345}, {"EST5", -300}, {"LIN-14", 840}, {"FAR12", -720}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.zone);
        setenv("TZ", c.zone, 1);
        EXPECT_EQ(bksgettimezone(), c.minutes);
        ExpectOneMomentInAllForms();
    }
}
#endif

TEST(Clock, AsksTheReplacement) {
    static constexpr VqClock Stopped = {
        [](btime* time, bdate* date) {
            *time = {23, 59, 58, 3600}, *date = {1999, 12, 31};
        },
        [](btime* time, bdate* date) {
            *time = {22, 59, 58, 0}, *date = {1999, 12, 31};
        },
        [] { return VqTimeZoneUnknown; },
    };
    const VqClock* system;
    {
        const Replaced clock(VqSetClock, &Stopped);
        system = clock.Before();
        bdate date{}, utcDate{};
        btime time{}, utcTime{};
        bksgetdate(&date);
        bksgettime(&time);
        bksgetsystemtime(&utcTime, &utcDate);
        EXPECT_EQ(SecondsOf(date, time) - SecondsOf(utcDate, utcTime), std::chrono::hours(1));
        EXPECT_EQ(time.zoneSeconds, 3600);
        EXPECT_EQ(bksgettimezone(), VqTimeZoneUnknown);
        bksgetdate(nullptr);
        bksgettime(nullptr);
        bksgetsystemtime(nullptr, nullptr);
    }
    ASSERT_NE(system, nullptr);
    VqSetClock(&Stopped);
    EXPECT_EQ(VqSetClock(nullptr), &Stopped);
    EXPECT_EQ(VqSetClock(nullptr), system);
}

}  // namespace
