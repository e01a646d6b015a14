// The standard date types as keys: comparison and hashing, in memory and stored.

#include "dateelements.h"
#include "stddate.h"
#include "vqtypcmp.h"
#include "vqtyphash.h"

namespace {

using vq::ByOperator;
using vq::LoadValue;
using vq::ReadDate;

// --- Dates

// Days have several dates: February 30 is one of March, and in October 1582 ten days are numbered twice. Equal dates
// count as the one that the day's number gives. From year 1 on that is the date itself where it is a day.
std::uint32_t HashDay(d_Date date) {
    date.setAbsDate(date.getAbsDate() + 1);
    return vq::HashDate(date);
}

template <bool Swapped>
struct DateElement {
    static constexpr unsigned long Size = sizeof(d_Date);
    static long Load(const unsigned char* at) { return ReadDate<d_Date, Swapped>(at).getAbsDate(); }
    static std::uint32_t HashWord(const unsigned char* at) { return HashDay(ReadDate<d_Date, Swapped>(at)); }
};

// --- Times

// The clock of the time's own zone.
int ZoneHour(const d_Time& time) { return time.hour - time.tz_hour; }
int ZoneMinute(const d_Time& time) { return time.minute - time.tz_minute; }

// Hours, minutes and hundredths as one number. The first two lie between -255 and 255, hundredths between -12928 and
// 12827: each is given a power of two that holds its range.
constexpr std::int64_t Minutes = 512, Hundredths = 32768, ClockRange = 512 * Minutes * Hundredths;

std::int64_t ClockNumber(const d_Time& time) {
    return (ZoneHour(time) * Minutes + ZoneMinute(time)) * Hundredths + time.second * 100 + time.hundredths;
}

// Seconds do not count: in memory times less than a second apart are equal, and a chain of such pairs joins all seconds
// of a minute.
std::uint32_t HashClock(const d_Time& time) { return vq::HashFields(ZoneHour(time), ZoneMinute(time), 0); }

struct TimeElement {
    static constexpr unsigned long Size = sizeof(d_Time);
    static std::uint32_t HashWord(const unsigned char* at) { return HashClock(LoadValue<d_Time>(at, 0)); }
};

// The operator finds less than a second equal. That is no order to keep keys in, so stored keys have a finer one, which
// agrees with it wherever it tells times apart.
struct TimeInMemory : TimeElement {
    static auto Load(const unsigned char* at) { return ByOperator<d_Time>{LoadValue<d_Time>(at, 0)}; }
};
struct StoredTime : TimeElement {
    static std::int64_t Load(const unsigned char* at) { return ClockNumber(LoadValue<d_Time>(at, 0)); }
};

struct TimeForms : vq::SameInEveryForm<StoredTime> {
    using InMemory = TimeInMemory;
};

// --- Timestamps

template <bool Swapped>
struct TimestampElement {
    static constexpr unsigned long Size = sizeof(d_Timestamp);
    static std::int64_t Load(const unsigned char* at) {
        return Date(at).getAbsDate() * ClockRange + ClockNumber(Time(at));
    }
    static std::uint32_t HashWord(const unsigned char* at) { return HashDay(Date(at)) ^ HashClock(Time(at)); }

  protected:
    static d_Date Date(const unsigned char* at) { return ReadDate<d_Date, Swapped>(at); }
    static d_Time Time(const unsigned char* at) { return LoadValue<d_Time>(at + sizeof(d_Date), 0); }
};

// Read in its two parts: the copy of the whole would wait for the copies of the halves.
struct Timestamp {
    d_Date date;
    d_Time time;
};

int Order(const Timestamp& a, const Timestamp& b) {
    const int days = a.date != b.date;
    return vq::Order(days != 0 ? days : a.time != b.time, 0);
}

struct TimestampInMemory : TimestampElement<false> {
    static Timestamp Load(const unsigned char* at) { return {Date(at), Time(at)}; }
};

struct TimestampForms : vq::StoredAsInMemory<TimestampElement> {
    using InMemory = TimestampInMemory;
};

}  // namespace

VQ_COMPARE_FUNCTION(d_DateCompare, vq::CompareForms<vq::StoredAsInMemory<DateElement>>(format, VQ_OPERANDS, error))
VQ_COMPARE_FUNCTION(d_TimeCompare, vq::CompareForms<TimeForms>(format, VQ_OPERANDS, error))
VQ_COMPARE_FUNCTION(d_TimestampCompare, vq::CompareForms<TimestampForms>(format, VQ_OPERANDS, error))

VQ_HASH_FUNCTION(d_DateHash, vq::HashForms<vq::StoredAsInMemory<DateElement>>(format, length, values, count, error))
VQ_HASH_FUNCTION(d_TimeHash, vq::HashElements<TimeElement>(length, values, count, error))
VQ_HASH_FUNCTION(d_TimestampHash, vq::HashForms<TimestampForms>(format, length, values, count, error))
