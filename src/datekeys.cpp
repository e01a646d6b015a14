// Dates, times and date-times as keys: comparison and hashing, in memory and stored.

#include "dateelements.h"
#include "datetime.h"
#include "vqtypcmp.h"
#include "vqtyphash.h"

namespace {

using vq::ByOperator;
using vq::ReadDate;

// Fields from the highest bits down, each with its sign bit inverted: as numbers they order as the fields do.
std::uint32_t OrderBits(const VqDate& date) {
    const auto year = static_cast<std::uint16_t>(date.year);
    const auto month = static_cast<std::uint8_t>(date.month), day = static_cast<std::uint8_t>(date.day);
    return (std::uint32_t{year} << 16 | std::uint32_t{month} << 8 | day) ^ 0x80008080;
}
std::uint32_t OrderBits(const VqTime& time) {
    const auto hour = static_cast<std::uint8_t>(time.hour), minute = static_cast<std::uint8_t>(time.minute);
    return (std::uint32_t{hour} << 16 | std::uint32_t{minute} << 8 | static_cast<std::uint8_t>(time.second)) ^ 0x808080;
}

// --- Dates

struct DateElement {
    static constexpr unsigned long Size = sizeof(VqDate);
};

struct DateInMemory : DateElement {
    static auto Load(const unsigned char* at) { return ByOperator<VqDate>{ReadDate<VqDate, false>(at)}; }
};

template <bool Swapped>
struct ExactDate : DateElement {
    static std::uint32_t Load(const unsigned char* at) { return OrderBits(ReadDate<VqDate, Swapped>(at)); }
};

// As the second operand, a date whose fields of -1 stand for any value.
struct SearchDate {
    VqDate date;
};

int Order(const SearchDate& a, const SearchDate& b) {
    std::uint32_t fields = 0;
    if (b.date.year != -1) fields |= 0xFFFF0000;
    if (b.date.month != -1) fields |= 0xFF00;
    if (b.date.day != -1) fields |= 0xFF;
    return vq::Order(OrderBits(a.date) & fields, OrderBits(b.date) & fields);
}

template <bool Swapped>
struct SearchedDate : DateElement {
    static SearchDate Load(const unsigned char* at) { return {ReadDate<VqDate, Swapped>(at)}; }
};

template <template <bool Swapped> class Stored>
struct DateForms : vq::StoredAsInMemory<Stored> {
    using InMemory = DateInMemory;
};

int CompareDates(unsigned char format, const vq::Operands& operands, unsigned short flags, int& error) {
    return flags & VqCmp_Exact ? vq::CompareForms<DateForms<ExactDate>>(format, operands, error)
                               : vq::CompareForms<DateForms<SearchedDate>>(format, operands, error);
}

template <bool Swapped>
struct HashedDate : DateElement {
    static std::uint32_t HashWord(const unsigned char* at) { return vq::HashDate(ReadDate<VqDate, Swapped>(at)); }
};

// --- Times

std::uint32_t HashTime(const VqTime& time) { return vq::HashFields(time.hour, time.minute, time.second); }

struct TimeElement {
    static constexpr unsigned long Size = sizeof(VqTime);
    static std::uint32_t Load(const unsigned char* at) { return OrderBits(vq::LoadValue<VqTime>(at, 0)); }
    static std::uint32_t HashWord(const unsigned char* at) { return HashTime(vq::LoadValue<VqTime>(at, 0)); }
};

// --- Date-times

std::uint32_t HashDateTime(const VqDate& date, const VqTime& time) { return vq::HashDate(date) ^ HashTime(time); }

struct DateTimeInMemory {
    static constexpr unsigned long Size = sizeof(VqDateTime);
    static auto Load(const unsigned char* at) { return ByOperator<VqDateTime>{vq::LoadValue<VqDateTime>(at, 0)}; }
    static std::uint32_t HashWord(const unsigned char* at) {
        const auto value = vq::LoadValue<VqDateTime>(at, 0);
        return HashDateTime(value.date, value.time);
    }
};

template <bool Swapped>
struct StoredDateTime {
    static constexpr unsigned long Size = sizeof(VqDate) + sizeof(VqTime);
    static std::uint64_t Load(const unsigned char* at) {
        return std::uint64_t{OrderBits(Date(at))} << 24 | OrderBits(Time(at));
    }
    static std::uint32_t HashWord(const unsigned char* at) { return HashDateTime(Date(at), Time(at)); }

  private:
    static VqDate Date(const unsigned char* at) { return ReadDate<VqDate, Swapped>(at); }
    static VqTime Time(const unsigned char* at) { return vq::LoadValue<VqTime>(at + sizeof(VqDate), 0); }
};

struct DateTimeForms : vq::StoredAsInMemory<StoredDateTime> {
    using InMemory = DateTimeInMemory;
};

}  // namespace

VQ_COMPARE_FUNCTION(DateCompare, CompareDates(format, VQ_OPERANDS, flags, error))
VQ_COMPARE_FUNCTION(TimeCompare, vq::CompareKeys<TimeElement>(VQ_OPERANDS, error))
VQ_COMPARE_FUNCTION(DaTimeCompare, vq::CompareForms<DateTimeForms>(format, VQ_OPERANDS, error))

VQ_HASH_FUNCTION(DateHash, vq::HashForms<vq::StoredAsInMemory<HashedDate>>(format, length, values, count, error))
VQ_HASH_FUNCTION(TimeHash, vq::HashElements<TimeElement>(length, values, count, error))
VQ_HASH_FUNCTION(DaTimeHash, vq::HashForms<DateTimeForms>(format, length, values, count, error))
