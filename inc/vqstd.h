/// \file
/// Value classes in the standard library's company: ordering by <=>, std::hash, output to streams.
///
///     std::map<VqDate, int> perDay;                             the class's own order
///     std::ranges::sort(seals);                                 the same
///     std::unordered_set<VqInt64> seen;
///     std::cout << VqDate(2005, 3, 7);                          2005-03-07
///
/// Nothing here changes what the classes do: their operators win wherever both fit, and `operator!=` stays the
/// three-way result where a class has it so. All of it takes arguments of exactly these classes, without conversions.
///
/// May be used from several threads at once, on different values.
#ifndef VQSTD_H
#define VQSTD_H

#include <compare>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string_view>
#include <type_traits>

#include "_vqnulty.h"
#include "blob.h"
#include "boolean.h"
#include "date.h"
#include "datetime.h"
#include "multibyte.h"
#include "objid.h"
#include "ref.h"
#include "seal.h"
#include "stddate.h"
#include "vqint64.h"
#include "vqistring.h"
#include "vqnull.h"
#include "vqstring.h"

// --- Three-way comparison

namespace vq {

/// How a class is ordered: `Of(a, b)` gives its standard category. Absent for classes without.
///
///     strong     equal values are the same        VqInt64, VqTime, VqSeal, VqBlob, VqClassId, nullable integers
///     weak       they may differ                  VqString, VqBoolean, d_Date, d_Interval, VqObjId, VqDBOId, VqRef,
///                                                 VqLocalRef
///     partial    not all values can be ordered    VqDate, VqDateTime, d_Time, d_Timestamp, nullable floating numbers
///
/// Dates and times of a partial order are ordered among themselves as long as none has a field of -1, which stands for
/// any value, and no two different ones are less than a second apart, which makes them equal. Otherwise what equals one
/// value may differ from another that equals it too: such values are no keys of ordered containers. Neither is a
/// VqBoolean of another byte than 0, 1 and 255.
///
/// Null comes first. VqIString and VqCaseIString are absent: their equality is not transitive.
template <class Value>
struct StandardOrder;

/// By the class's three-way `operator!=`.
template <class Category>
struct OrderByDifference {
    /// The order of the two values.
    template <class Value>
    static Category Of(const Value& a, const Value& b) {
        return (a != b) <=> 0;
    }
};

/// By the class's `==` and `<`; where neither decides, the other way round.
template <class Category>
struct OrderByLess {
    /// The order of the two values.
    template <class Value>
    static Category Of(const Value& a, const Value& b) {
        if (a == b) return Category::equivalent;
        if (a < b) return Category::less;
        if constexpr (std::same_as<Category, std::partial_ordering>) {
            return b < a ? Category::greater : Category::unordered;
        } else {
            return Category::greater;
        }
    }
};

/// By VqString::Compare under the default operation.
template <>
struct StandardOrder<VqString> {
    /// The order of the two texts.
    static std::weak_ordering Of(const VqString& a, const VqString& b) { return a.Compare(b) <=> 0; }
};
template <>
struct StandardOrder<VqBoolean> : OrderByLess<std::weak_ordering> {};
template <>
struct StandardOrder<VqInt64> : OrderByLess<std::strong_ordering> {};
template <>
struct StandardOrder<VqDate> : OrderByDifference<std::partial_ordering> {};
template <>
struct StandardOrder<VqTime> : OrderByDifference<std::strong_ordering> {};
template <>
struct StandardOrder<VqDateTime> : OrderByDifference<std::partial_ordering> {};
template <>
struct StandardOrder<d_Date> : OrderByDifference<std::weak_ordering> {};
template <>
struct StandardOrder<d_Time> : OrderByDifference<std::partial_ordering> {};
template <>
struct StandardOrder<d_Timestamp> : OrderByDifference<std::partial_ordering> {};
template <>
struct StandardOrder<d_Interval> : OrderByDifference<std::weak_ordering> {};
template <>
struct StandardOrder<VqBlob> : OrderByDifference<std::strong_ordering> {};
template <>
struct StandardOrder<VqSeal> : OrderByDifference<std::strong_ordering> {};
template <>
struct StandardOrder<VqObjId> : OrderByDifference<std::weak_ordering> {};
template <>
struct StandardOrder<VqDBOId> : OrderByDifference<std::weak_ordering> {};
template <>
struct StandardOrder<VqClassId> : OrderByDifference<std::strong_ordering> {};
template <>
struct StandardOrder<VqRef> : OrderByDifference<std::weak_ordering> {};
template <>
struct StandardOrder<VqLocalRef> : OrderByDifference<std::weak_ordering> {};
template <class T, VqTypeId Id>
struct StandardOrder<VqNullable<T, Id>>
    : OrderByLess<std::conditional_t<std::floating_point<T>, std::partial_ordering, std::strong_ordering>> {};

/// The classes that have a standard order.
template <class Value>
concept Ordered = requires(const Value& value) {
    StandardOrder<Value>::Of(value, value);
};

}  // namespace vq

/// The order of the class itself.
template <vq::Ordered Value>
auto operator<=>(const Value& a, const Value& b) -> decltype(vq::StandardOrder<Value>::Of(a, b)) {
    return vq::StandardOrder<Value>::Of(a, b);
}

/// VqDateTime has the three-way `operator!=` alone; this is equality of both parts, fields of -1 included.
template <std::same_as<VqDateTime> DateTime>
bool operator==(const DateTime& a, const DateTime& b) {
    return a.date == b.date && a.time == b.time;
}

// --- Hash codes for tables in memory; those of indexes are VqTypeMgr::Hash

namespace vq {

/// What the hash code of a value is made of: equal for equal values.
/// @{
inline std::uint64_t HashKey(const VqInt64& value) {
    return std::uint64_t{static_cast<std::uint32_t>(value.high)} << 32 | value.low;
}
inline std::uint64_t HashKey(const VqDate& value) {
    return static_cast<std::uint64_t>(static_cast<std::uint16_t>(value.year)) << 16 |
           static_cast<unsigned>(static_cast<std::uint8_t>(value.month)) << 8 | static_cast<std::uint8_t>(value.day);
}
inline std::uint64_t HashKey(const VqTime& value) {
    return static_cast<std::uint64_t>(static_cast<std::uint8_t>(value.hour)) << 16 |
           static_cast<unsigned>(static_cast<std::uint8_t>(value.minute)) << 8 |
           static_cast<std::uint8_t>(value.second);
}
inline std::uint64_t HashKey(const VqDateTime& value) { return HashKey(value.date) << 32 | HashKey(value.time); }
inline std::uint64_t HashKey(const d_Date& value) { return static_cast<std::uint64_t>(value.getAbsDate()); }
inline std::uint64_t HashKey(const VqBoolean& value) { return value.IsNullValue() ? 2 : value.value != 0; }
inline std::uint64_t HashKey(const VqSeal& value) {
    return std::uint64_t{value.high} << 32 | std::uint64_t{value.middle} << 16 | value.low;
}
inline std::uint64_t HashKey(const VqObjId& value) { return std::uint64_t{value.high} << 32 | value.low; }
inline std::uint64_t HashKey(const VqDBOId& value) { return std::uint64_t{value.database} << 48 | HashKey(value.id); }
inline std::uint64_t HashKey(const VqClassId& value) { return std::uint64_t{value.classNumber} << 16 | value.version; }
inline std::uint64_t HashKey(const VqRef& value) { return std::uint64_t{value.database} << 48 | HashKey(value.id); }
inline std::uint64_t HashKey(const VqLocalRef& value) { return HashKey(value.id); }
inline std::uint64_t HashKey(const VqBlob& value) {
    const std::string_view bytes(reinterpret_cast<const char*>(value.Data()), static_cast<std::size_t>(value.Length()));
    return std::hash<std::string_view>()(bytes) + value.IsNullValue();
}
template <class T, VqTypeId Id>
requires(!std::floating_point<T>) std::uint64_t HashKey(const VqNullable<T, Id>& value) {
    if (value.IsNullValue()) return std::uint64_t{1} << 63;
    if constexpr (std::integral<T>) {
        return static_cast<std::uint64_t>(value.value);
    } else {
        return HashKey(value.value);
    }
}
/// @}

/// Spreads the key over all bits, by the finalizer of SplitMix64 (Steele, Lea, Flood, "Fast splittable pseudorandom
/// number generators", 2014).
constexpr std::uint64_t MixBits(std::uint64_t bits) {
    bits = (bits ^ bits >> 30) * 0xBF58476D1CE4E5B9u;
    bits = (bits ^ bits >> 27) * 0x94D049BB133111EBu;
    return bits ^ bits >> 31;
}

/// What std::hash of a class is: HashKey, spread over all bits. For tables in memory; the codes of indexes are
/// VqTypeMgr::Hash.
///
/// There is a std::hash only for classes whose equality makes classes of values. It does not for texts (VqString's goes
/// by the process's comparison operation, VqIString's and VqCaseIString's is not transitive), for d_Time and
/// d_Timestamp (equal is whatever is less than a second apart) and for floating numbers (+0 equals -0, and what is not
/// a number nothing).
template <class Value>
struct StandardHash {
    /// The hash code.
    std::size_t operator()(const Value& value) const noexcept {
        return static_cast<std::size_t>(MixBits(HashKey(value)));
    }
};

}  // namespace vq

/// \cond
template <>
struct std::hash<VqInt64> : vq::StandardHash<VqInt64> {};
template <>
struct std::hash<VqDate> : vq::StandardHash<VqDate> {};
template <>
struct std::hash<VqTime> : vq::StandardHash<VqTime> {};
template <>
struct std::hash<VqDateTime> : vq::StandardHash<VqDateTime> {};
template <>
struct std::hash<d_Date> : vq::StandardHash<d_Date> {};
template <>
struct std::hash<VqBoolean> : vq::StandardHash<VqBoolean> {};
template <>
struct std::hash<VqSeal> : vq::StandardHash<VqSeal> {};
template <>
struct std::hash<VqObjId> : vq::StandardHash<VqObjId> {};
template <>
struct std::hash<VqDBOId> : vq::StandardHash<VqDBOId> {};
template <>
struct std::hash<VqClassId> : vq::StandardHash<VqClassId> {};
template <>
struct std::hash<VqRef> : vq::StandardHash<VqRef> {};
template <>
struct std::hash<VqLocalRef> : vq::StandardHash<VqLocalRef> {};
template <>
struct std::hash<VqBlob> : vq::StandardHash<VqBlob> {};
template <class T, VqTypeId Id>
requires(!std::floating_point<T>) struct std::hash<VqNullable<T, Id>> : vq::StandardHash<VqNullable<T, Id>> {
};
/// \endcond

// --- Output to streams: a value's text under its class's default format, null as the null print string, in UTF-8

namespace vq {

/// Appends the value's text under its class's default format, null as the null print string. One overload for each kind
/// of class, without conversions; a plain 8-bit text counts as one in the native code set.
/// @{
template <std::same_as<VqString> Value>
void AppendDefaultText(VqString& out, const Value& value) {
    out += value.IsNullValue() ? VqNullPrintString() : value;
}
template <std::derived_from<IStringText> Value>
void AppendDefaultText(VqString& out, const Value& value) {
    constexpr unsigned char Native = 0;
    VqString text(Native, 0);
    text.AssignChars(value.StrGet(), Native, value.Len());
    out += text;
}
template <class T, VqTypeId Id>
void AppendDefaultText(VqString& out, const VqNullable<T, Id>& value) {
    const char* const format = sizeof(T) == 1 ? "%c" : std::unsigned_integral<T> ? "%u" : nullptr;
    VqNullable<T, Id> copy(value);
    VqNullSlots<VqNullable<T, Id>>::Print(out, &copy, format, 1);
}
template <class Value>
auto AppendDefaultText(VqString& out, const Value& value) -> decltype(value.PrintToVqString(out, nullptr)) {
    return value.PrintToVqString(out, nullptr);
}
/// @}

/// The classes that can be written to a stream.
template <class Value>
concept Streamed = requires(const Value& value, VqString& out) {
    AppendDefaultText(out, value);
};

/// A text as UTF-8.
class Utf8Text {
  public:
    /// Converts `text`, which is not referred to any more.
    explicit Utf8Text(const VqString& text) { VqString2MultiByteString(text, bytes_, length_); }
    ~Utf8Text() { VqFreeMultiByteString(bytes_); }
    Utf8Text(const Utf8Text&) = delete;
    Utf8Text& operator=(const Utf8Text&) = delete;

    /// Zero-terminated; empty where there was no memory.
    const char* Get() const { return bytes_ != nullptr ? bytes_ : ""; }

  private:
    char* bytes_ = nullptr;
    long length_ = 0;
};

}  // namespace vq

/// Writes the value's text as the stream writes any text: width, fill and adjustment count bytes of UTF-8.
template <class Traits, vq::Streamed Value>
std::basic_ostream<char, Traits>& operator<<(std::basic_ostream<char, Traits>& out, const Value& value) {
    constexpr unsigned char Unicode = 253;
    VqString text(Unicode, 0);
    vq::AppendDefaultText(text, value);
    return out << vq::Utf8Text(text).Get();
}

#endif
