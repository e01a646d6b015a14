#include "date.h"

#include <cstring>

#include "datetext.h"
#include "storedyear.h"
#include "vqbase.h"
#include "vqstring.h"

namespace {

// A sum or product of 32 bits that wraps, read as a signed number.
std::int32_t Wrapped(std::uint32_t bits) { return static_cast<std::int32_t>(bits); }
std::uint32_t Bits(std::int32_t value) { return static_cast<std::uint32_t>(value); }
std::int32_t Times(std::int32_t a, std::int32_t b) { return Wrapped(Bits(a) * Bits(b)); }
std::int32_t Plus(std::int32_t a, std::int32_t b) { return Wrapped(Bits(a) + Bits(b)); }
std::int32_t Minus(std::int32_t a, std::int32_t b) { return Wrapped(Bits(a) - Bits(b)); }

std::uint32_t Magnitude(std::int32_t value) { return value < 0 ? 0 - Bits(value) : Bits(value); }

// A magnitude with the sign that the quotient of two numbers has.
long Signed(std::uint32_t magnitude, std::int32_t a, std::int32_t b) {
    return Wrapped((a < 0) != (b < 0) ? 0 - magnitude : magnitude);
}

}  // namespace

// --- VqDate

VqDate::VqDate() : VqDate(0, 0, 0) {
    bdate today;
    bksgetdate(&today);
    *this = VqDate(today.year, today.month, today.day);
}

long VqDate::divide(long a, long b) const {
    const auto dividend = static_cast<std::int32_t>(a), divisor = static_cast<std::int32_t>(b);
    return Signed(Magnitude(dividend) / Magnitude(divisor), dividend, divisor);
}

long VqDate::modulo(long a, long b) const {
    const auto dividend = static_cast<std::int32_t>(a), divisor = static_cast<std::int32_t>(b);
    return Signed(Magnitude(dividend) % Magnitude(divisor), dividend, divisor);
}

long VqDate::AnyDayNumber() const {
    const int a = (month - 14) / 12;
    const int y = year + 4800 + a;
    return 1461 * y / 4 + day - 32075 + 367 * (month - 2 - 12 * a) / 12 - 3 * ((y + 100) / 100) / 4;
}

void VqDate::SetAnyDayNumber(std::uint32_t dayNumber) {
    std::int32_t l = Wrapped(dayNumber + 68569);
    const std::int32_t n = Times(4, l) / 146097;
    l = Minus(l, Plus(Times(146097, n), 3) / 4);
    const std::int32_t i = Times(4000, Plus(l, 1)) / 1461001;
    l = Plus(Minus(l, Times(1461, i) / 4), 31);
    const std::int32_t j = Times(80, l) / 2447;
    const std::int32_t d = Minus(l, Times(2447, j) / 80);
    l = j / 11;
    *this = VqDate(Plus(Plus(Times(100, n - 49), i), l), Minus(j + 2, Times(12, l)), d);
}

int VqDate::AnyWeekday() const {
    const int y = year + (month - 14) / 12;
    const int m = month + 10 - 12 * ((month + 10) / 13);
    const int c = y / 100;
    const int k = y - 100 * c;
    const int sum = day + (13 * m - 1) / 5 + 5 * k / 4 + y / 400 + 77 - 2 * c;
    return sum < 0 ? 6 : (sum + 6) % 7;
}

VqString VqDate::PrintDayOfTheDate() const { return VqString(vq::DayName(DayOfTheDate()).data()); }

// --- VqTime

namespace {

// What assigning to an 8-bit field keeps.
std::int8_t Cut(std::int32_t value) { return static_cast<std::int8_t>(value); }

void Borrow(VqTime& time) {
    if (time.second < 0) {
        time.second = Cut(time.second + 60);
        time.minute = Cut(time.minute - 1);
    }
    if (time.minute < 0) {
        time.minute = Cut(time.minute + 60);
        time.hour = Cut(time.hour - 1);
    }
    if (time.hour < 0) time.hour = Cut(time.hour + 24);
}

}  // namespace

VqTime::VqTime() : VqTime(0, 0, 0) {
    btime now;
    bksgettime(&now);
    *this = VqTime(now.hour, now.minute, now.second);
}

VqTime::VqTime(long seconds) : VqTime(0, 0, 0) {
    const auto s = static_cast<std::int32_t>(seconds);
    *this = VqTime(s / 3600, s % 3600 / 60, s % 60);
}

VqTime VqTime::operator+(long seconds) const {
    const auto s = static_cast<std::int32_t>(seconds);
    VqTime sum(hour + s / 3600, minute + s / 60 % 60, second + s % 60);
    if (sum.second >= 60) {
        sum.second = Cut(sum.second - 60);
        sum.minute = Cut(sum.minute + 1);
    }
    if (sum.minute >= 60) {
        sum.minute = Cut(sum.minute - 60);
        sum.hour = Cut(sum.hour + 1);
    }
    if (sum.hour >= 24) sum.hour = Cut(sum.hour % 24);
    return sum;
}

VqTime VqTime::operator-(long seconds) const {
    const auto s = static_cast<std::int32_t>(seconds);
    VqTime rest(hour - s / 3600, minute - s / 60 % 60, second - s % 60);
    Borrow(rest);
    return rest;
}

VqTime VqTime::operator-(const VqTime& other) const {
    VqTime rest(hour - other.hour, minute - other.minute, second - other.second);
    Borrow(rest);
    return rest;
}

// --- Disk form

namespace {

unsigned long CopyBytes(void* dst, const void* src, unsigned long size) {
    if (size != 0) std::memmove(dst, src, size);
    return size;
}

}  // namespace

unsigned long DateStore(void* dst, const void* src, unsigned char format, unsigned long count) {
    const bool foreign = vq::IsForeignOrder(format);
    auto* const to = static_cast<unsigned char*>(dst);
    const auto* const from = static_cast<const unsigned char*>(src);
    if (count == 1) {
        vq::MoveDate(to, from, foreign);
    } else if (foreign) {
        for (unsigned long i = 0; i < count; ++i) vq::MoveDate(to + i * 4, from + i * 4, true);
    } else {
        CopyBytes(dst, src, count * 4);
    }
    return count * 4;
}
unsigned long DateLoad(void* dst, const void* src, unsigned char format, unsigned long count) {
    return DateStore(dst, src, format, count);
}
unsigned long DateNullSizeGet(unsigned long count) { return count * 4; }
unsigned long DateSizeGet(const void*, unsigned char, unsigned char, unsigned long count) { return count * 4; }
unsigned long DateSizeGetFromMemFile(MemFile*, unsigned char, unsigned long count) { return count * 4; }

unsigned long TimeStore(void* dst, const void* src, unsigned char, unsigned long count) {
    return CopyBytes(dst, src, count * 3);
}
unsigned long TimeLoad(void* dst, const void* src, unsigned char, unsigned long count) {
    return CopyBytes(dst, src, count * 3);
}
unsigned long TimeNullSizeGet(unsigned long count) { return count * 3; }
unsigned long TimeSizeGet(const void*, unsigned char, unsigned char, unsigned long count) { return count * 3; }
unsigned long TimeSizeGetFromMemFile(MemFile*, unsigned char, unsigned long count) { return count * 3; }
