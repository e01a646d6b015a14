// Keys in the making, as long as index keys get.
#ifndef VQ_KEYBUFFER_H
#define VQ_KEYBUFFER_H

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "keybounds.h"
#include "vqbase.h"

namespace vq {

class KeyBuffer {
  public:
    explicit KeyBuffer(unsigned char format) : format_(format) {}

    unsigned char Format() const { return format_; }
    // Bytes that there is room for.
    unsigned long Room() const { return VqINDEX_MAX_KEYLEN - actualLen_; }

    void Add(const void* bytes, unsigned long n) {
        const unsigned long actualLen = actualLen_ + n;
        if (!(actualLen <= VqINDEX_MAX_KEYLEN)) {
            VIQA_assert("actualLen <= VqINDEX_MAX_KEYLEN", BoundsSource, __LINE__);
            n = Room();
        }
        std::memcpy(bytes_ + actualLen_, bytes, n);
        actualLen_ += n;
    }
    // As many of the bytes as there is room for.
    void AddClipped(const void* bytes, unsigned long n) { Add(bytes, std::min(n, Room())); }
    void AddWord(unsigned long value) {
        const auto word = static_cast<std::uint16_t>(value);
        unsigned char stored[2];
        Add(stored, ShortStore(stored, &word, format_, 1));
    }
    void FillWith(unsigned char byte, unsigned long n) {
        while (n-- != 0) Add(&byte, 1);
    }

    void RecordLow(VqIdxBounds* scanBounds, unsigned short operators) const {
        Record(scanBounds, operators | VqOperator_Greater);
    }
    void RecordHigh(VqIdxBounds* scanBounds, unsigned short operators) const {
        Record(scanBounds, operators | VqOperator_Less);
    }
    void Record(VqIdxBounds* scanBounds, int operators) const {
        RecordKey(scanBounds, static_cast<unsigned short>(operators), bytes_, actualLen_);
    }

  private:
    unsigned char bytes_[VqINDEX_MAX_KEYLEN];
    unsigned long actualLen_ = 0;
    unsigned char format_;
};

// The bits of the operators that strings know; the others are the caller's.
constexpr unsigned short TextOperators = 0x800F;

// Keys are stored ones; the code of the memory form reads as this machine's byte order.
inline unsigned char ByteOrderOf(unsigned char format) {
    const unsigned char order = format & VqFormat_OrderMask;
    return order == VqFormat_Memory ? static_cast<unsigned char>(VqFormat_LittleEndian) : order;
}

}  // namespace vq

#endif
