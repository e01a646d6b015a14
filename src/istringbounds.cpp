// Bounds of 8-bit strings: estimates by the share of texts that lie below a key by weights or bytes, and keys clipped
// to the length of index keys.

#include <algorithm>
#include <iterator>
#include <limits>

#include "istringkeys.h"
#include "keybuffer.h"
#include "textrange.h"
#include "wildcard.h"

namespace {

using vq::ByteHeader;
using vq::KeyBuffer;

struct ByteKey {
    const unsigned char* text;
    unsigned long length;  // of the text; where there is a wildcard, in front of it
    unsigned char flags;
    unsigned char order;
    bool hasWildcard;

    bool IsRaw() const { return flags & VqIStringFlag_Raw; }
};

// The record starts at `record`, of whose bytes `length` may be read.
ByteKey ReadByteKey(const void* record, unsigned long length, unsigned char order) {
    const auto* const at = static_cast<const unsigned char*>(record);
    const ByteHeader header(at, order);
    const unsigned long there = std::min<unsigned long>(header.length, length - ByteHeader::Size);
    return {at + ByteHeader::Size, there, header.flags, order, false};
}

ByteKey ReadByteKey(const void* record, unsigned char order) {
    return ReadByteKey(record, std::numeric_limits<unsigned long>::max(), order);
}

bool CutAtWildcard(ByteKey& key) {
    const std::size_t wildcard = vq::FindWildcardByte(key.text, key.length);
    key.hasWildcard = wildcard != vq::NoWildcard;
    if (key.hasWildcard) key.length = static_cast<unsigned long>(wildcard);
    return key.hasWildcard;
}

// True for an array of which `key` has become the first element that holds a wildcard.
bool FindPattern(const void* array, unsigned long count, ByteKey& key) {
    for (const auto* at = static_cast<const unsigned char*>(array); count != 0; --count) {
        key = ReadByteKey(at, key.order);
        at = key.text + key.length;
        if (CutAtWildcard(key)) return true;
    }
    return false;
}

void AddHead(KeyBuffer& buffer, const ByteKey& key, unsigned long length) {
    const auto stored = static_cast<std::uint16_t>(length);
    unsigned char head[ByteHeader::Size] = {key.flags};
    ShortStore(head + 1, &stored, key.order, 1);
    buffer.AddClipped(head, sizeof head);
}

// The byte that is last in the order of the key's own flags.
unsigned char LastByte(const ByteKey& key, const vq::WeightTable& table) {
    if (key.IsRaw()) return 0xFF;
    const auto* const heaviest = std::max_element(std::begin(table.weight), std::end(table.weight));
    return static_cast<unsigned char>(heaviest - std::begin(table.weight));
}

// The elements in front of the pattern stay as they are. The last byte of the order fills the high end: 0xFF among raw
// bytes, else the one that weighs most. It can occur in texts, so the key counts as clipped: what goes on like it is
// equal.
void RecordPattern(VqIdxBounds* scanBounds, unsigned short operators, const void* array, const ByteKey& key,
                   const vq::WeightTable& table) {
    if (scanBounds == nullptr) return;
    const unsigned char* const head = key.text - ByteHeader::Size;
    const auto before = static_cast<unsigned long>(head - static_cast<const unsigned char*>(array));
    KeyBuffer low(key.order), high(key.order);
    low.AddClipped(array, before);
    AddHead(low, key, key.length);
    low.AddClipped(key.text, key.length);
    high.AddClipped(array, before);
    AddHead(high, key, VqINDEX_MAX_KEYLEN);
    high.AddClipped(key.text, key.length);
    high.FillWith(LastByte(key, table), high.Room());
    low.RecordLow(scanBounds, operators);
    high.RecordHigh(scanBounds, operators);
}

void RecordLiteral(VqIdxBounds* scanBounds, unsigned short operators, const void* key, unsigned long size) {
    vq::RecordKey(scanBounds, operators, key, std::min(size, VqINDEX_MAX_KEYLEN));
}

double EstimateByteKey(unsigned short operators, const ByteKey& key, const ByteKey& low, const ByteKey& high,
                       const vq::WeightTable& table) {
    const std::size_t charWildPos = key.hasWildcard ? key.length : 0;
    if (key.IsRaw()) {
        const auto bytes = [](const ByteKey& k) {
            return vq::Text<vq::ByteSymbols>{{vq::ByteSymbols(k.text, k.length), k.hasWildcard}};
        };
        vq::RangeReader<vq::ByteSymbols, vq::ByteAlphabet> reader = {
            {}, vq::NoLetterBefore, bytes(key), bytes(low), bytes(high)};
        return vq::EstimateText(operators, charWildPos, reader.Read());
    }
    const auto weights = [&table](const ByteKey& k) {
        return vq::Text<vq::WeightSymbols>{{vq::WeightSymbols(table, k.text, k.length), k.hasWildcard}};
    };
    vq::RangeReader<vq::WeightSymbols, vq::WeightAlphabet> reader = {
        {&table}, vq::NoLetterBefore, weights(key), weights(low), weights(high)};
    return vq::EstimateText(operators, charWildPos, reader.Read());
}

// False without statistics, as for strings.
bool ReadEnd(const void* key, std::uint32_t length, unsigned char order, ByteKey& end) {
    if (key == nullptr || length < ByteHeader::Size) return false;
    end = ReadByteKey(key, length, order);
    return true;
}

template <class Value>
double BoundByteStrings(const VqIdxBounds* indexBounds, unsigned short& operators, const void* key,
                        unsigned char format, unsigned long count, VqIdxBounds* scanBounds,
                        decltype(VqIStringSizeGet)* sizeGet) {
    operators &= vq::TextOperators;
    if (key == nullptr || count == 0) return 0;
    const unsigned char order = vq::ByteOrderOf(format);
    const auto tableOf = [](const ByteKey& k) -> const vq::WeightTable& {
        return vq::WeightsOf(static_cast<const Value*>(nullptr), k.flags);
    };
    ByteKey own = ReadByteKey(key, order), pattern = own;
    CutAtWildcard(own);
    if (FindPattern(key, count, pattern)) {
        operators |= VqOperator_Wildcard;
        RecordPattern(scanBounds, operators, key, pattern, tableOf(pattern));
    } else if (scanBounds != nullptr) {
        RecordLiteral(scanBounds, operators, key, sizeGet(key, order, order, count));
    }
    ByteKey low, high;
    if (indexBounds == nullptr || !ReadEnd(indexBounds->lowKey, indexBounds->lowKeyLength, order, low) ||
        !ReadEnd(indexBounds->highKey, indexBounds->highKeyLength, order, high)) {
        return 0;
    }
    return EstimateByteKey(operators, own, low, high, tableOf(own));
}

}  // namespace

VQ_BOUNDS_FUNCTION(VqIStringEvalAndBound, BoundByteStrings<VqIString>(indexBounds, operators, key, format, count,
                                                                      scanBounds, VqIStringSizeGet))
VQ_BOUNDS_FUNCTION(VqCaseIStringEvalAndBound, BoundByteStrings<VqCaseIString>(indexBounds, operators, key, format,
                                                                              count, scanBounds, VqCaseIStringSizeGet))
