// Comparison, hashing and bounds of identifiers and references as keys.

#include <bit>
#include <cstddef>

#include "keybounds.h"
#include "keyforms.h"
#include "ref.h"

namespace vq {
namespace {

// --- Words: a key as one number, which has the database, or nothing, in its first 16 bits, high or class in the next,
// low or version in the last 32. OrderOf puts those of the memory form in the order of the class.

template <class Id>
struct KeyWord;

template <>
struct KeyWord<VqObjId> {
    static std::uint64_t InMemory(const unsigned char* at) {
        return LoadWord<std::uint64_t>(at + offsetof(VqObjId, low)) & 0xFFFF'FFFF'FFFF;
    }
    static std::uint64_t Stored(const unsigned char* at) { return LoadWord<std::uint64_t>(at + 2) >> 16; }
    static std::uint64_t OrderOf(std::uint64_t word) { return word; }
};

template <>
struct KeyWord<VqRef> {
    static std::uint64_t InMemory(const unsigned char* at) {
        const std::uint64_t database = LoadWord<std::uint16_t>(at + offsetof(VqRef, database));
        return database << 48 | KeyWord<VqObjId>::InMemory(at);
    }
    static std::uint64_t Stored(const unsigned char* at) { return LoadWord<std::uint64_t>(at + 4); }
    static std::uint64_t OrderOf(std::uint64_t word) { return std::rotl(word, 16); }
};

template <>
struct KeyWord<VqClassId> {
    static std::uint64_t InMemory(const unsigned char* at) { return Stored(at); }
    static std::uint64_t Stored(const unsigned char* at) {
        const auto word = LoadWord<std::uint32_t>(at);
        return std::uint64_t{word & 0xFFFF} << 32 | word >> 16;
    }
    static std::uint64_t OrderOf(std::uint64_t word) { return word == 0xFFFF'0000'FFFF ? 0 : word + 1; }
};

std::uint32_t HashOf(std::uint64_t word) {
    return static_cast<std::uint32_t>(word) ^ (static_cast<std::uint32_t>(word >> 32) & 0xFFFF) ^
           static_cast<std::uint32_t>(word >> 48);
}

// --- Comparison and hash

template <class Id>
struct IdInMemory {
    static constexpr unsigned long Size = sizeof(Id);
    static std::uint64_t Load(const unsigned char* at) { return KeyWord<Id>::OrderOf(KeyWord<Id>::InMemory(at)); }
    static std::uint32_t HashWord(const unsigned char* at) { return HashOf(KeyWord<Id>::InMemory(at)); }
};

struct StoredKey {
    std::uint64_t word;
};

// The difference of the highest bytes that differ.
int Order(StoredKey a, StoredKey b) {
    const std::uint64_t differences = a.word ^ b.word;
    if (differences == 0) return 0;
    const int shift = (63 - std::countl_zero(differences)) & ~7;
    return static_cast<int>(a.word >> shift & 0xFF) - static_cast<int>(b.word >> shift & 0xFF);
}

template <class Id>
struct IdStored {
    static constexpr unsigned long Size = Id::StoredSize;
    static StoredKey Load(const unsigned char* at) { return {KeyWord<Id>::Stored(at)}; }
    static std::uint32_t HashWord(const unsigned char* at) { return HashOf(KeyWord<Id>::Stored(at)); }
};

bool BeginsWithNullClass(const void* keys) {
    return LoadWord<std::uint32_t>(static_cast<const unsigned char*>(keys)) == 0xFFFF'FFFF;
}

template <class Id>
int CompareIds(unsigned char format, const Operands& operands, int& error) {
    if (format == VqFormat_Memory) return CompareKeys<IdInMemory<Id>>(operands, error);
    const int result = CompareKeys<IdStored<Id>>(operands, error);
    if constexpr (std::is_same_v<Id, VqClassId>) {
        if (result != 0 && BeginsWithNullClass(operands.value1)) return -1;
        if (result != 0 && BeginsWithNullClass(operands.value2)) return 1;
    }
    return result;
}

template <class Id>
unsigned long HashIds(unsigned char format, unsigned long length, const void* values, unsigned long count, int& error) {
    return format == VqFormat_Memory ? HashElements<IdInMemory<Id>>(length, values, count, error)
                                     : HashElements<IdStored<Id>>(length, values, count, error);
}

// --- Bounds

template <class Word>
double NumberAt(const void* key, unsigned offset, unsigned char format) {
    const auto word = LoadWord<Word>(static_cast<const unsigned char*>(key) + offset);
    return IsBigEndian(format) ? ByteSwap(word) : word;
}
double LowOf(const void* key, unsigned char format) { return NumberAt<std::uint32_t>(key, 4, format); }
double HighOf(const void* key, unsigned char format) { return NumberAt<std::uint16_t>(key, 8, format); }
double DatabaseOf(const void* key, unsigned char format) { return NumberAt<std::uint16_t>(key, 10, format); }

template <class Id>
struct Estimate;

template <>
struct Estimate<VqObjId> {
    static double Of(const VqIdxBounds* bounds, unsigned short& operators, const void* key, unsigned char format) {
        Interval index = {0, 0};
        if (HasStatistics(bounds)) index = {Number(bounds->lowKey, format), Number(bounds->highKey, format)};
        const double range = index.high - index.low + 1;
        const double number = Number(key, format);
        return range > 0 ? RangeArea(operators, {number, number}, index, 1) / range : 0;
    }

  private:
    static double Number(const void* key, unsigned char format) {
        return HighOf(key, format) * 65535 + LowOf(key, format);
    }
    static bool HasStatistics(const VqIdxBounds* bounds) {
        return bounds != nullptr && bounds->lowKey != nullptr && bounds->highKey != nullptr &&
               bounds->lowKeyLength >= VqObjId::StoredSize && bounds->highKeyLength >= VqObjId::StoredSize;
    }
};

template <>
struct Estimate<VqRef> {
    static double Of(const VqIdxBounds*, unsigned short& operators, const void* key, unsigned char format) {
        constexpr double Lows = 4294967295.0, All = Lows * Lows;
        operators &= 0x800F;
        const double number = (DatabaseOf(key, format) * 65535 + HighOf(key, format)) * Lows + LowOf(key, format);
        double area = 0;
        if (operators & VqOperator_Less) area += number;
        if (operators & VqOperator_Greater) area += All - (number + 1);
        if (operators & VqOperator_Equal) area += 1;
        return area / All;
    }
};

}  // namespace
}  // namespace vq

template <class Id>
VQ_COMPARE_FUNCTION(VqIdentifierSlots<Id>::Compare, vq::CompareIds<Id>(format, VQ_OPERANDS, error))

template <class Id>
VQ_HASH_FUNCTION(VqIdentifierSlots<Id>::Hash, vq::HashIds<Id>(format, length, values, count, error))

template <class Id>
double VqIdentifierSlots<Id>::EvalAndBound([[maybe_unused]] VqIdxBounds* indexBounds,
                                           [[maybe_unused]] unsigned short& operators, [[maybe_unused]] const void* key,
                                           [[maybe_unused]] unsigned char format, [[maybe_unused]] unsigned long count,
                                           [[maybe_unused]] VqIdxBounds* scanBounds) {
    if constexpr (std::is_same_v<Id, VqClassId>) {
        return 1;
    } else {
        if (key == nullptr || count == 0) return 0;
        const double estimate = vq::Estimate<Id>::Of(indexBounds, operators, key, format);
        vq::RecordKey(scanBounds, operators, key, count * Id::StoredSize);
        return estimate;
    }
}

#define VQ_IDENTIFIER_KEYS(Id)                                                                                     \
    template VQTM_API int VqIdentifierSlots<Id>::Compare(unsigned char, unsigned long, const void*, unsigned long, \
                                                         const void*, unsigned short, unsigned long, int&);        \
    template VQTM_API unsigned long VqIdentifierSlots<Id>::Hash(unsigned char, unsigned long, const void*,         \
                                                                unsigned long, int&);                              \
    template VQTM_API double VqIdentifierSlots<Id>::EvalAndBound(VqIdxBounds*, unsigned short&, const void*,       \
                                                                 unsigned char, unsigned long, VqIdxBounds*);

VQ_IDENTIFIER_KEYS(VqObjId)
VQ_IDENTIFIER_KEYS(VqClassId)
VQ_IDENTIFIER_KEYS(VqRef)
