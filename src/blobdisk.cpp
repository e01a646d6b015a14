// The disk form of blobs.

#include "blobdisk.h"

namespace {

constexpr std::uint32_t PastEnd = 0xFFFFFFFF;  // the size of no array
constexpr std::uint32_t MaxTotal = PastEnd - 1 - vq::BlobFieldSize;

std::uint32_t StoredSize(const void* total, unsigned char format) {
    const std::uint32_t bytes = vq::LoadBlobField(total, format);
    return bytes <= MaxTotal ? bytes + vq::BlobFieldSize : PastEnd;
}

}  // namespace

unsigned long BlobStore(void* dst, const void* src, unsigned char format, unsigned long count) {
    if (count == 0) return 0;
    return vq::StoreBlobs(dst, static_cast<const VqBlob*>(src), format, count, MaxTotal);
}

unsigned long BlobLoad(void* dst, const void* src, unsigned char format, unsigned long count) {
    if (count == 0) return 0;
    const unsigned char* in = static_cast<const unsigned char*>(src);
    vq::BlobRoom room(vq::LoadBlobField(in, format));
    in += vq::BlobFieldSize;
    VqBlob* const end = static_cast<VqBlob*>(dst) + count;
    for (VqBlob* blob = static_cast<VqBlob*>(dst); blob != end; ++blob) {
        std::int32_t length = vq::NullBlobLength;
        if (room.TakeField()) {
            length = static_cast<std::int32_t>(vq::LoadBlobField(in, format));
            in += vq::BlobFieldSize;
        }
        const std::uint32_t bytes = room.TakeBytes(length);
        if (length < 0 || !blob->TrySetTo(in, static_cast<long>(bytes))) blob->SetNullValue();
        in += bytes;
    }
    return StoredSize(src, format);
}

unsigned long BlobNullSizeGet(unsigned long count) {
    return count != 0 ? vq::BlobFieldSize + vq::BlobFieldSize * count : 0;
}

unsigned long BlobSizeGet(const void* data, unsigned char dataFormat, unsigned char format, unsigned long count) {
    if (count == 0) return 0;
    if (!(dataFormat & VqFormat_Memory)) return StoredSize(data, format);
    return vq::TotalOfBlobs(static_cast<const VqBlob*>(data), count, MaxTotal) + vq::BlobFieldSize;
}

unsigned long BlobSizeGetFromMemFile(MemFile* file, unsigned char format, unsigned long count) {
    if (count == 0) return 0;
    const unsigned long start = file->Position();
    const unsigned char* const total = file->Seek(start, vq::BlobFieldSize);
    const std::uint32_t size = total != nullptr ? StoredSize(total, format) : PastEnd;
    const bool fits = size != PastEnd && file->Seek(start, size) != nullptr;
    file->Seek(start, 0);
    return fits ? size : PastEnd;
}
