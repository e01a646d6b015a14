// What several tests share: recorded assertions, a clock that stands, texts in readable form, exact blocks, seeded
// random numbers.
#ifndef VQ_TESTSUPPORT_H
#define VQ_TESTSUPPORT_H

#include <chrono>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "vqbase.h"
#include "vqstring.h"

namespace vqtest {

// Records assertions instead of printing them, while it lives.
class AssertRecorder {
  public:
    AssertRecorder() : before_(VqSetAssertHandler(&Record)) { Lines().clear(); }
    ~AssertRecorder() { VqSetAssertHandler(before_); }
    AssertRecorder(const AssertRecorder&) = delete;
    AssertRecorder& operator=(const AssertRecorder&) = delete;

    // "expression file:line" of each assertion since construction.
    static std::vector<std::string>& Lines() {
        static std::vector<std::string> lines;
        return lines;
    }

  private:
    static void Record(const char* expression, const char* file, int line) {
        Lines().push_back(std::string(expression) + " " + file + ":" + std::to_string(line));
    }
    VqAssertHandler before_;
};

// The library's clock stands at one local time while it lives. Universal time is `zoneMinutes` earlier; the same where
// the zone is unknown.
class FixedClock {
  public:
    FixedClock(const bdate& date, const btime& time, int zoneMinutes = 0) : before_(VqSetClock(&Clock())) {
        Set(date, time, zoneMinutes);
    }
    ~FixedClock() { VqSetClock(before_); }
    FixedClock(const FixedClock&) = delete;
    FixedClock& operator=(const FixedClock&) = delete;

    // Puts the clock to another time.
    void Set(const bdate& date, const btime& time, int zoneMinutes = 0) {
        const int minutes = zoneMinutes == VqTimeZoneUnknown ? 0 : zoneMinutes;
        State() = {date, time, zoneMinutes};
        State().time.zoneSeconds = 60L * minutes;
    }

  private:
    struct Reading {
        bdate date;
        btime time;
        int zoneMinutes;
    };
    static Reading& State() {
        static Reading state;
        return state;
    }
    static const VqClock& Clock() {
        static constexpr VqClock clock = {ReadLocal, ReadUtc, [] { return State().zoneMinutes; }};
        return clock;
    }
    static void ReadLocal(btime* time, bdate* date) { *time = State().time, *date = State().date; }
    static void ReadUtc(btime* time, bdate* date) {
        using namespace std::chrono;
        const btime& at = State().time;
        const sys_days day = year(State().date.year) / State().date.month / State().date.day;
        const sys_seconds utc =
            day + hours(at.hour) + minutes(at.minute) + seconds(at.second) - seconds(at.zoneSeconds);
        const year_month_day utcDay(floor<days>(utc));
        const hh_mm_ss clock(utc - floor<days>(utc));
        *date = {static_cast<short>(int(utcDay.year())), static_cast<signed char>(unsigned(utcDay.month())),
                 static_cast<signed char>(unsigned(utcDay.day()))};
        *time = {static_cast<signed char>(clock.hours().count()), static_cast<signed char>(clock.minutes().count()),
                 static_cast<signed char>(clock.seconds().count()), 0};
    }
    const VqClock* before_;
};

// The bytes of a 1-byte text.
inline std::string Bytes(const VqString& s) { return s.StrGet(); }

// The units of a 2-byte text, up to its zero unit.
inline std::u16string Units(const VqString& s) {
    std::u16string units;
    for (int i = 0; i < s.Len(); ++i) {
        units += static_cast<char16_t>(static_cast<unsigned char>(s.StrGet()[2 * i]) |
                                       static_cast<unsigned char>(s.StrGet()[2 * i + 1]) << 8);
    }
    return units;
}

// A Unicode text.
inline VqString Wide(const std::u16string& text) {
    std::vector<unsigned short> units(text.begin(), text.end());
    units.push_back(0);
    return VqString(units.data());
}

// Text in a 1-byte code set.
inline VqString In(unsigned char codeSet, const std::string& text, unsigned char language = 0) {
    VqString s(codeSet, language);
    s.AssignChars(text.c_str(), codeSet, static_cast<unsigned short>(text.size()));
    return s;
}

inline int Sign(long long value) { return (value > 0) - (value < 0); }

// A copy in a heap block of exactly its size, so that a sanitizer sees the first byte read behind it.
class Block {
  public:
    Block(const void* bytes, std::size_t size) : bytes_(new unsigned char[size]) {
        if (size != 0) std::memcpy(bytes_.get(), bytes, size);
    }
    const unsigned char* Get() const { return bytes_.get(); }

  private:
    std::unique_ptr<unsigned char[]> bytes_;
};

// "07 00 61": bytes as two hexadecimal digits each.
inline std::string Hex(const void* bytes, std::size_t n) {
    static const char digits[] = "0123456789abcdef";
    std::string hex;
    for (std::size_t i = 0; i < n; ++i) {
        const unsigned char byte = static_cast<const unsigned char*>(bytes)[i];
        if (i != 0) hex += ' ';
        hex += digits[byte >> 4];
        hex += digits[byte & 15];
    }
    return hex;
}

}  // namespace vqtest

#endif
