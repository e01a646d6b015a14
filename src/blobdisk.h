// The walk over blobs that their disk form takes, whatever the largest total is.
#ifndef BLOBDISK_H
#define BLOBDISK_H

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "blob.h"
#include "vqbase.h"

namespace vq {

constexpr std::uint32_t BlobFieldSize = 4;  // of the total, and of each length
constexpr std::int32_t NullBlobLength = -1;

inline void StoreBlobField(void* at, std::uint32_t value, unsigned char format) {
    IntStore(at, &value, format & VqFormat_OrderMask, 1);
}

inline std::uint32_t LoadBlobField(const void* at, unsigned char format) {
    std::uint32_t value;
    IntLoad(&value, at, format & VqFormat_OrderMask, 1);
    return value;
}

// What is left of an array's total while its blobs are gone through.
class BlobRoom {
  public:
    explicit BlobRoom(std::uint32_t total) : left_(total) {}

    // Room for one more length; from the first refusal on there is none for anything.
    bool TakeField() {
        const bool fits = left_ >= BlobFieldSize;
        left_ = fits ? left_ - BlobFieldSize : 0;
        return fits;
    }
    // How many of a blob's bytes there is room for.
    std::uint32_t TakeBytes(std::int32_t wanted) {
        const std::uint32_t taken = std::min(left_, static_cast<std::uint32_t>(std::max(wanted, 0)));
        left_ -= taken;
        return taken;
    }

  private:
    std::uint32_t left_;
};

// The bytes behind the total of an array; `most` is the largest that a total may be.
inline std::uint32_t TotalOfBlobs(const VqBlob* blobs, unsigned long count, std::uint32_t most) {
    BlobRoom room(most);
    std::uint32_t total = 0;
    for (; count != 0 && room.TakeField(); --count, ++blobs) {
        total += BlobFieldSize + room.TakeBytes(static_cast<std::int32_t>(blobs->Length()));
    }
    return total;
}

// Writes the total, and what it counts. Returns the bytes written.
inline unsigned long StoreBlobs(void* dst, const VqBlob* blobs, unsigned char format, unsigned long count,
                                std::uint32_t most) {
    const std::uint32_t total = TotalOfBlobs(blobs, count, most);
    unsigned char* out = static_cast<unsigned char*>(dst);
    StoreBlobField(out, total, format);
    out += BlobFieldSize;
    BlobRoom room(total);
    for (; count != 0 && room.TakeField(); --count, ++blobs) {
        const std::uint32_t bytes = room.TakeBytes(static_cast<std::int32_t>(blobs->Length()));
        StoreBlobField(out, blobs->IsNullValue() ? static_cast<std::uint32_t>(NullBlobLength) : bytes, format);
        out += BlobFieldSize;
        if (bytes != 0) std::memcpy(out, blobs->Data(), bytes);
        out += bytes;
    }
    return total + BlobFieldSize;
}

}  // namespace vq

#endif
