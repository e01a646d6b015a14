#include "vqtypevl.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "keybounds.h"
#include "keypositions.h"
#include "vqbase.h"
#include "vqnull.h"

// --- What all types share

namespace vq {

void* CopyKey(const void* key, unsigned long length, std::uint32_t& keyLength) {
    void* copy;
    do {
        copy = std::malloc(length != 0 ? length : 1);
    } while (copy == nullptr && VqCallMemoryHandler(length) != 0);
    if (copy != nullptr && length != 0) std::memcpy(copy, key, length);
    keyLength = copy != nullptr ? static_cast<std::uint32_t>(length) : 0;
    return copy;
}

void RecordKey(VqIdxBounds* scanBounds, unsigned short operators, const void* key, unsigned long length) {
    if (scanBounds == nullptr) return;
    if (scanBounds->lowKey == nullptr && !(operators & VqOperator_Less)) {
        scanBounds->lowKey = CopyKey(key, length, scanBounds->lowKeyLength);
    }
    if (scanBounds->highKey == nullptr && !(operators & VqOperator_Greater)) {
        scanBounds->highKey = CopyKey(key, length, scanBounds->highKeyLength);
    }
}

}  // namespace vq

void VqFreeBounds(VqIdxBounds& bounds) {
    std::free(bounds.lowKey);
    std::free(bounds.highKey);
    bounds = {};
}

// --- Types whose keys lie on a line of numbers

namespace {

using vq::Interval;
using vq::StoredKey;

// False for a key that is missing, or ends within its value.
template <class Position>
bool IsWhole(const void* bytes, std::uint32_t length) {
    return bytes != nullptr && length >= Position::Size;
}

StoredKey KeyOf(const void* bytes, unsigned long length, unsigned char format) {
    return {static_cast<const unsigned char*>(bytes), length, format};
}

template <class Position>
[[gnu::always_inline]] inline vq::Places PlacesOf(const StoredKey& key, const StoredKey& low, const StoredKey& high) {
    if constexpr (requires { Position::Among(key, low, high); }) {
        return Position::Among(key, low, high);
    } else if constexpr (requires { Position::Key(key); }) {
        return {Position::Key(key), {Position::At(low), Position::At(high)}};
    } else {
        const double position = Position::At(key);
        return {{position, position}, {Position::At(low), Position::At(high)}};
    }
}

// The part of the index's interval that a predicate on a key selects; 0 for an interval whose high end is below its low
// one.
template <bool IsFloating>
[[gnu::always_inline]] inline double SelectedPart(unsigned short operators, Interval key, Interval index) {
    constexpr double Step = 1, Least = std::numeric_limits<float>::epsilon();
    if (index.high < index.low) return 0;
    const double length = index.high - index.low + Step;
    const double area = vq::RangeArea<IsFloating>(operators, key, index, Step);
    if (!IsFloating) return area / length;
    const double part = area / (std::isfinite(length) ? length : vq::MostArea);
    return part > 0 ? std::max(part, Least) : part;
}

template <class Position>
constexpr bool IsFloating = requires {
    requires Position::IsFloating;
};

template <class Position>
[[gnu::always_inline]] inline double Estimate(const VqIdxBounds* bounds, unsigned short operators,
                                              const StoredKey& key) {
    if (bounds == nullptr || !IsWhole<Position>(bounds->lowKey, bounds->lowKeyLength) ||
        !IsWhole<Position>(bounds->highKey, bounds->highKeyLength)) {
        return 0;
    }
    const vq::Places places = PlacesOf<Position>(key, KeyOf(bounds->lowKey, bounds->lowKeyLength, key.format),
                                                 KeyOf(bounds->highKey, bounds->highKeyLength, key.format));
    return SelectedPart<IsFloating<Position>>(operators, places.key, places.index);
}

// Bytes of the key's values that may be read.
template <class Position>
unsigned long StoredSize([[maybe_unused]] const void* key, [[maybe_unused]] unsigned char format, unsigned long count) {
    if constexpr (requires { Position::StoredSize(key, format, count); }) {
        return Position::StoredSize(key, format, count);
    } else {
        return count * Position::Size;
    }
}

// Out of line, so that an estimate alone needs no stack.
template <class Position>
[[gnu::noinline]] double RecordAndEstimate(const VqIdxBounds* indexBounds, unsigned short operators, const void* key,
                                           unsigned char format, unsigned long size, VqIdxBounds* scanBounds) {
    vq::RecordKey(scanBounds, operators, key, size);
    return Estimate<Position>(indexBounds, operators, KeyOf(key, size, format));
}

template <class Position>
[[gnu::always_inline]] inline double Bound(const VqIdxBounds* indexBounds, unsigned short operators, const void* key,
                                           unsigned char format, unsigned long count, VqIdxBounds* scanBounds) {
    if (key == nullptr || count == 0) return 0;
    const unsigned long size = StoredSize<Position>(key, format, count);
    if (size < Position::Size) return 0;
    if (scanBounds != nullptr) {
        return RecordAndEstimate<Position>(indexBounds, operators, key, format, size, scanBounds);
    }
    return Estimate<Position>(indexBounds, operators, KeyOf(key, size, format));
}

}  // namespace

#define VQ_POSITION_BOUNDS(Name, Position) \
    VQ_BOUNDS_FUNCTION(Name, Bound<Position>(indexBounds, operators, key, format, count, scanBounds))

VQ_POSITION_BOUNDS(CharEvalAndBound, vq::ScalarPosition<char>)
VQ_POSITION_BOUNDS(ByteEvalAndBound, vq::ScalarPosition<std::uint8_t>)
VQ_POSITION_BOUNDS(ShortEvalAndBound, vq::ScalarPosition<std::int16_t>)
VQ_POSITION_BOUNDS(WordEvalAndBound, vq::ScalarPosition<std::uint16_t>)
VQ_POSITION_BOUNDS(IntEvalAndBound, vq::ScalarPosition<std::int32_t>)
VQ_POSITION_BOUNDS(UnsignedEvalAndBound, vq::ScalarPosition<std::uint32_t>)
VQ_POSITION_BOUNDS(LongEvalAndBound, vq::ScalarPosition<std::int32_t>)
VQ_POSITION_BOUNDS(DwordEvalAndBound, vq::ScalarPosition<std::uint32_t>)
VQ_POSITION_BOUNDS(Int64EvalAndBound, vq::ScalarPosition<VqInt64>)
VQ_POSITION_BOUNDS(FloatEvalAndBound, vq::ScalarPosition<float>)
VQ_POSITION_BOUNDS(DoubleEvalAndBound, vq::ScalarPosition<double>)
VQ_POSITION_BOUNDS(DateEvalAndBound, vq::DatePosition)
VQ_POSITION_BOUNDS(TimeEvalAndBound, vq::TimePosition)
VQ_POSITION_BOUNDS(DaTimeEvalAndBound, vq::DateTimePosition)
VQ_POSITION_BOUNDS(d_DateEvalAndBound, vq::StdDatePosition)
VQ_POSITION_BOUNDS(d_TimeEvalAndBound, vq::StdTimePosition)
VQ_POSITION_BOUNDS(d_TimestampEvalAndBound, vq::StdTimestampPosition)
VQ_POSITION_BOUNDS(BooleanEvalAndBound, vq::BooleanPosition)
VQ_POSITION_BOUNDS(SealEvalAndBound, vq::SealPosition)
VQ_POSITION_BOUNDS(BlobEvalAndBound, vq::BlobPosition)

template <class Null>
VQ_POSITION_BOUNDS(VqNullSlots<Null>::EvalAndBound, vq::NullablePosition<Null>)

#define VQ_NULLABLE_BOUNDS(Null)                                                                         \
    template VQTM_API double VqNullSlots<Null>::EvalAndBound(VqIdxBounds*, unsigned short&, const void*, \
                                                             unsigned char, unsigned long, VqIdxBounds*);

VQ_EACH_NULLABLE(VQ_NULLABLE_BOUNDS)
