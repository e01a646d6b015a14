// The disk form of blobs.

#include <algorithm>
#include <cstring>

#include "blob.h"
#include "vqbase.h"

namespace {

constexpr std::uint32_t FieldSize = 4;         // of the total, and of each length
constexpr std::uint32_t PastEnd = 0xFFFFFFFF;  // the size of no array
constexpr std::uint32_t MaxTotal = PastEnd - 1 - FieldSize;
constexpr std::int32_t NullLength = -1;

void StoreField(void* at, std::uint32_t value, unsigned char format) {
    IntStore(at, &value, format & VqFormat_OrderMask, 1);
}

std::uint32_t LoadField(const void* at, unsigned char format) {
    std::uint32_t value;
    IntLoad(&value, at, format & VqFormat_OrderMask, 1);
    return value;
}

// What is left of an array's total while its blobs are gone through.
class Room {
  public:
    explicit Room(std::uint32_t total) : left_(total) {}

    // Room for one more length; from the first refusal on there is none for anything.
    bool TakeField() {
        const bool fits = left_ >= FieldSize;
        left_ = fits ? left_ - FieldSize : 0;
        return fits;
    }
    // How many of a blob's bytes there is room for.
    std::uint32_t TakeBytes(std::int32_t wanted) {
        const std::uint32_t taken = std::min(left_, static_cast<std::uint32_t>(std::max(wanted, 0)));
        left_ -= taken;
        return taken;
    }
    std::uint32_t Left() const { return left_; }

  private:
    std::uint32_t left_;
};

std::uint32_t TotalOf(const VqBlob* blobs, unsigned long count) {
    Room room(MaxTotal);
    for (unsigned long i = 0; i < count && room.TakeField(); ++i) {
        room.TakeBytes(static_cast<std::int32_t>(blobs[i].Length()));
    }
    return MaxTotal - room.Left();
}

std::uint32_t StoredSize(const void* total, unsigned char format) {
    const std::uint32_t bytes = LoadField(total, format);
    return bytes <= MaxTotal ? bytes + FieldSize : PastEnd;
}

}  // namespace

unsigned long BlobStore(void* dst, const void* src, unsigned char format, unsigned long count) {
    if (count == 0) return 0;
    const VqBlob* blob = static_cast<const VqBlob*>(src);
    const std::uint32_t total = TotalOf(blob, count);
    unsigned char* out = static_cast<unsigned char*>(dst);
    StoreField(out, total, format);
    out += FieldSize;
    Room room(total);
    for (; count != 0 && room.TakeField(); --count, ++blob) {
        const std::uint32_t bytes = room.TakeBytes(static_cast<std::int32_t>(blob->Length()));
        StoreField(out, blob->IsNullValue() ? static_cast<std::uint32_t>(NullLength) : bytes, format);
        out += FieldSize;
        if (bytes != 0) std::memcpy(out, blob->Data(), bytes);
        out += bytes;
    }
    return total + FieldSize;
}

unsigned long BlobLoad(void* dst, const void* src, unsigned char format, unsigned long count) {
    if (count == 0) return 0;
    const unsigned char* in = static_cast<const unsigned char*>(src);
    Room room(LoadField(in, format));
    in += FieldSize;
    VqBlob* const end = static_cast<VqBlob*>(dst) + count;
    for (VqBlob* blob = static_cast<VqBlob*>(dst); blob != end; ++blob) {
        std::int32_t length = NullLength;
        if (room.TakeField()) {
            length = static_cast<std::int32_t>(LoadField(in, format));
            in += FieldSize;
        }
        const std::uint32_t bytes = room.TakeBytes(length);
        if (length < 0 || !blob->TrySetTo(in, static_cast<long>(bytes))) blob->SetNullValue();
        in += bytes;
    }
    return StoredSize(src, format);
}

unsigned long BlobNullSizeGet(unsigned long count) { return count != 0 ? FieldSize + FieldSize * count : 0; }

unsigned long BlobSizeGet(const void* data, unsigned char dataFormat, unsigned char format, unsigned long count) {
    if (count == 0) return 0;
    if (!(dataFormat & VqFormat_Memory)) return StoredSize(data, format);
    return TotalOf(static_cast<const VqBlob*>(data), count) + FieldSize;
}

unsigned long BlobSizeGetFromMemFile(MemFile* file, unsigned char format, unsigned long count) {
    if (count == 0) return 0;
    const unsigned long start = file->Position();
    const unsigned char* const total = file->Seek(start, FieldSize);
    const std::uint32_t size = total != nullptr ? StoredSize(total, format) : PastEnd;
    const bool fits = size != PastEnd && file->Seek(start, size) != nullptr;
    file->Seek(start, 0);
    return fits ? size : PastEnd;
}
