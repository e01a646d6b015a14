// Dates and times computed step by step, with the operations in their plain order: the oracle of the fast forms.
#ifndef VQ_DATEREFERENCE_H
#define VQ_DATEREFERENCE_H

#include <cstdint>

#include "date.h"

namespace vqtest {

// What every intermediate result passes through.
struct Unbounded {
    static std::int64_t Of(std::int64_t value) { return value; }
};
struct Long32 {
    static std::int64_t Of(std::int64_t value) {
        return static_cast<std::int32_t>(static_cast<std::uint32_t>(static_cast<std::uint64_t>(value)));
    }
};

template <class Long>
struct DateReference {
    using Number = std::int64_t;

    static Number L(Number value) { return Long::Of(value); }
    static Number Absolute(Number value) { return value < 0 ? -value : value; }

    // Both take the sign of the quotient.
    static Number Signed(Number a, Number b, Number result) { return L((a < 0) != (b < 0) ? -result : result); }
    static Number Divide(Number a, Number b) { return Signed(a, b, Absolute(a) / Absolute(b)); }
    static Number Modulo(Number a, Number b) { return Signed(a, b, Absolute(a) % Absolute(b)); }

    static Number DayNumber(int year, int month, int day) {
        const Number a = Divide(month - 14, 12);
        const Number y = year + 4800 + a;
        return L(Divide(1461 * y, 4) + day - 32075 + Divide(367 * (month - 2 - 12 * a), 12) -
                 Divide(3 * Divide(y + 100, 100), 4));
    }

    static VqDate DateOf(Number jd) {
        Number l = L(jd + 68569);
        const Number n = Divide(L(4 * l), 146097);
        l = L(l - Divide(L(L(146097 * n) + 3), 4));
        const Number i = Divide(L(4000 * L(l + 1)), 1461001);
        l = L(L(l - Divide(L(1461 * i), 4)) + 31);
        const Number j = Divide(L(80 * l), 2447);
        const Number day = L(l - Divide(L(2447 * j), 80));
        l = Divide(j, 11);
        const Number month = L(L(j + 2) - L(12 * l));
        const Number year = L(L(L(100 * (n - 49)) + i) + l);
        VqDate date(0, 0, 0);
        date.year = static_cast<std::int16_t>(year);
        date.month = static_cast<std::int8_t>(month);
        date.day = static_cast<std::int8_t>(day);
        return date;
    }

    static int Weekday(int year, int month, int day) {
        const Number y = year + Divide(month - 14, 12);
        const Number m = (month + 10) - 12 * Divide(month + 10, 13);
        const Number c = Divide(y, 100), k = y - 100 * c;
        const Number w = Modulo(day + Divide(13 * m - 1, 5) + Divide(5 * k, 4) + Divide(y, 400) + 77 - 2 * c, 7);
        return w >= 1 && w <= 6 ? static_cast<int>(w) - 1 : 6;
    }
};

// Times with fields of 8 bits, to which each step assigns.
struct TimeReference {
    std::int8_t hour, minute, second;

    static std::int8_t Cut(long value) { return static_cast<std::int8_t>(value); }
    explicit TimeReference(const VqTime& time) : hour(time.hour), minute(time.minute), second(time.second) {}
    VqTime Get() const { return VqTime(hour, minute, second); }

    static VqTime Plus(const VqTime& time, long s) {
        TimeReference t(time);
        t.second = Cut(t.second + s % 60);
        t.minute = Cut(t.minute + s / 60 % 60);
        t.hour = Cut(t.hour + s / 3600);
        if (t.second >= 60) t.second = Cut(t.second - 60), t.minute = Cut(t.minute + 1);
        if (t.minute >= 60) t.minute = Cut(t.minute - 60), t.hour = Cut(t.hour + 1);
        if (t.hour >= 24) t.hour = Cut(t.hour % 24);
        return t.Get();
    }
    static VqTime Minus(const VqTime& time, long s) { return TimeReference(time).Less(s / 3600, s / 60 % 60, s % 60); }
    static VqTime Minus(const VqTime& time, const VqTime& other) {
        return TimeReference(time).Less(other.hour, other.minute, other.second);
    }

  private:
    VqTime Less(long hours, long minutes, long seconds) {
        second = Cut(second - seconds), minute = Cut(minute - minutes), hour = Cut(hour - hours);
        if (second < 0) second = Cut(second + 60), minute = Cut(minute - 1);
        if (minute < 0) minute = Cut(minute + 60), hour = Cut(hour - 1);
        if (hour < 0) hour = Cut(hour + 24);
        return Get();
    }
};

}  // namespace vqtest

#endif
