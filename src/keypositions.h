// Where the stored keys of each type lie on a line of numbers, in the order of the type: what estimates compute with.
#ifndef VQ_KEYPOSITIONS_H
#define VQ_KEYPOSITIONS_H

#include <algorithm>
#include <limits>

#include "blobdisk.h"
#include "date.h"
#include "keybounds.h"
#include "keyelements.h"
#include "stddate.h"

namespace vq {

// A key, and how many of its bytes may be read.
struct StoredKey {
    const unsigned char* bytes;
    unsigned long length;
    unsigned char format;

    template <class T>
    auto Load(unsigned long offset = 0) const {
        return IsBigEndian(format) ? Scalar<T, true>::Load(bytes + offset) : Scalar<T, false>::Load(bytes + offset);
    }
    int Byte(unsigned long offset) const { return Load<signed char>(offset); }
    StoredKey From(unsigned long offset) const { return {bytes + offset, length - offset, format}; }
};

// Where a key and the ends of an index lie.
struct Places {
    Interval key, index;
};

// Each class tells by At where a key's first value lies. Size is the bytes of a value; of a blob, those of the least
// one. Key, where a class has it, tells what a key with wildcards covers; Among, where one key's place depends on the
// others, tells all of them.

template <class T>
struct ScalarPosition {
    static constexpr unsigned long Size = sizeof(T);
    static constexpr bool IsFloating = std::is_floating_point_v<T>;
    static double At(const StoredKey& key) { return static_cast<double>(key.Load<T>()); }
};

template <class Null>
struct NullablePosition {
    using Plain = ScalarPosition<typename Null::ValueType>;
    static constexpr unsigned long Size = 1 + Plain::Size;
    static constexpr bool IsFloating = Plain::IsFloating;

    // Null lies a step below the least value of the index. An index that begins with null does not tell that value: it
    // is taken to be 0, or the high key where that is less, and lesser keys lie there too.
    static Places Among(const StoredKey& key, const StoredKey& low, const StoredKey& high) {
        const bool beginsWithNull = IsNull(low), endsWithNull = IsNull(high);
        const double least = !beginsWithNull ? At(low) : endsWithNull ? 0 : std::min(0.0, At(high));
        const double null = least - 1;
        const double at = IsNull(key) ? null : beginsWithNull ? std::max(least, At(key)) : At(key);
        return {{at, at}, {beginsWithNull ? null : least, endsWithNull ? null : At(high)}};
    }

  private:
    using ValueFirst = ValueFirstParts<Null>;
    using Stored = StoredParts<Null, false>;

    // The order of the two parts is that in which the family's functions load them.
    static bool IsValueFirst(const StoredKey& key) { return key.format & VqFormat_Memory; }
    static bool IsNull(const StoredKey& key) {
        return IsValueFirst(key) ? ValueFirst::IsNull(key.bytes) : Stored::IsNull(key.bytes);
    }
    static double At(const StoredKey& key) {
        return Plain::At(key.From(IsValueFirst(key) ? ValueFirst::ValueAt : Stored::ValueAt));
    }
};

// --- Dates and times. What is out of range lies at the nearest end of the unit that it is in, so that no fields lie
// otherwise than they are ordered.

constexpr double SecondsOfMinute = 60, SecondsOfHour = 3600, SecondsOfDay = 86400;

inline double Within(double position, double unit) { return std::clamp(position, 0.0, unit); }

inline double SecondOfDay(int hour, int minute, double second) {
    return hour * SecondsOfHour + Within(minute * SecondsOfMinute + Within(second, SecondsOfMinute), SecondsOfHour);
}

inline double DayOf(const VqDate& date) {
    const auto first = [&](int month) { return VqDate(date.year, month, 1).dayabs(); };
    if (date.month < 1) return static_cast<double>(first(1));
    if (date.month > 12) return static_cast<double>(first(13));
    return static_cast<double>(std::clamp(date.dayabs(), first(date.month), first(date.month + 1)));
}

struct DatePosition {
    static constexpr unsigned long Size = 4;
    static VqDate Load(const StoredKey& key) { return VqDate(key.Load<std::int16_t>(), key.Byte(2), key.Byte(3)); }
    static double At(const StoredKey& key) { return DayOf(Load(key)); }
    static bool HasTime(const StoredKey& key) { return Load(key).IsDate(); }

    // Fields of -1 stand for any value.
    static Interval Key(const StoredKey& key) {
        const VqDate date = Load(key);
        if (date.year == -1) return {std::numeric_limits<double>::lowest(), std::numeric_limits<double>::max()};
        if (date.month == -1) return Days(VqDate(date.year, 1, 1), VqDate(date.year, 13, 1));
        if (date.day == -1) return Days(VqDate(date.year, date.month, 1), VqDate(date.year, date.month + 1, 1));
        return {DayOf(date), DayOf(date)};
    }

  private:
    static Interval Days(const VqDate& first, const VqDate& next) {
        return {DayOf(first), std::max(DayOf(first), DayOf(next) - 1)};
    }
};

struct TimePosition {
    static constexpr unsigned long Size = 3;
    static double At(const StoredKey& key) { return SecondOfDay(key.Byte(0), key.Byte(1), key.Byte(2)); }
};

struct StdDatePosition {
    static constexpr unsigned long Size = 4;
    static double At(const StoredKey& key) { return static_cast<double>(d_Date(DatePosition::Load(key)).getAbsDate()); }
    static bool HasTime(const StoredKey&) { return true; }
};

// Zone hour and minute, hour, minute, second, hundredths.
struct StdTimePosition {
    static constexpr unsigned long Size = 6;
    static double At(const StoredKey& key) {
        return SecondOfDay(key.Byte(2) - key.Byte(0), key.Byte(3) - key.Byte(1), key.Byte(4) + key.Byte(5) / 100.0);
    }
};

// Days that are not in the calendar share a place with others, and have no times there.
template <class Date, class Time>
struct PositionOfBoth {
    static constexpr unsigned long Size = Date::Size + Time::Size;
    static double At(const StoredKey& key) {
        const double midnight = Date::At(key) * SecondsOfDay;
        return Date::HasTime(key) ? midnight + Within(Time::At(key.From(Date::Size)), SecondsOfDay) : midnight;
    }
};

using DateTimePosition = PositionOfBoth<DatePosition, TimePosition>;
using StdTimestampPosition = PositionOfBoth<StdDatePosition, StdTimePosition>;

// --- Booleans, seals, blobs

struct BooleanPosition {
    static constexpr unsigned long Size = 1;
    static double At(const StoredKey& key) { return key.bytes[0] == 0xFF ? -1 : key.bytes[0] != 0; }
};

struct SealPosition {
    static constexpr unsigned long Size = 6;
    static double At(const StoredKey& key) {
        double number = 0;
        for (unsigned long i = 0; i < Size; ++i) number = number * 256 + key.bytes[i];
        return number;
    }
};

struct BlobPosition {
    static constexpr unsigned long Size = 2 * BlobFieldSize;
    static double At(const StoredKey& key) {
        constexpr unsigned long Digits = 6;  // of which a double loses nothing
        const auto length = key.Load<std::int32_t>(BlobFieldSize);
        if (length < 0) return -1;
        const unsigned long end = std::min<unsigned long>(key.length - Size, static_cast<unsigned long>(length));
        double number = 0;
        for (unsigned long i = 0; i < Digits; ++i) number = number * 257 + (i < end ? key.bytes[Size + i] + 1 : 0);
        return number;
    }
    // 0 for a total that no array has.
    static unsigned long StoredSize(const void* key, unsigned char format, unsigned long count) {
        constexpr unsigned long PastEnd = 0xFFFFFFFF;
        const unsigned long size = BlobSizeGet(key, 0, format, count);
        return size != PastEnd ? size : 0;
    }
};

}  // namespace vq

#endif
