// Blobs as keys: comparison and hashing, in memory and stored.

#include "blob.h"
#include "blobdisk.h"
#include "keyforms.h"
#include "vqtypcmp.h"
#include "vqtyphash.h"

namespace {

// --- In memory

struct BlobReference {
    const VqBlob* blob;
};

int Order(BlobReference a, BlobReference b) { return *a.blob != *b.blob; }

struct BlobInMemory {
    static constexpr unsigned long Size = sizeof(VqBlob);
    static BlobReference Load(const unsigned char* at) { return {reinterpret_cast<const VqBlob*>(at)}; }
    static std::uint32_t HashWord(const unsigned char* at) {
        return static_cast<std::uint32_t>(Load(at).blob->Length());
    }
};

// --- Stored

// A blob where it is stored; without a record it is null.
struct StoredBlob {
    VqBlob::Record record;

    bool IsNull() const { return record.length < 0; }
    const VqBlob::Record* Get() const { return IsNull() ? nullptr : &record; }
    std::uint32_t HashWord() const { return IsNull() ? 0 : static_cast<std::uint32_t>(record.length); }
};

// A walk over an array of stored blobs. It ends where the array's total says, or the bytes that may be read.
class StoredBlobs {
  public:
    StoredBlobs(unsigned char format, unsigned long length, const void* value)
        : at_(static_cast<const unsigned char*>(value)), format_(format) {
        if (length != 0 && length < vq::BlobFieldSize) return;
        left_ = TakeField();
        if (length != 0 && left_ > length - vq::BlobFieldSize) {
            left_ = static_cast<std::uint32_t>(length - vq::BlobFieldSize);
        }
    }

    bool Ended() const { return left_ == 0; }
    // The next blob; false where not all of it is there.
    bool Next(StoredBlob& blob) {
        if (left_ < vq::BlobFieldSize) return false;
        const auto length = static_cast<std::int32_t>(TakeField());
        left_ -= vq::BlobFieldSize;
        const auto bytes = static_cast<std::uint32_t>(std::max(length, 0));
        if (bytes > left_) return false;
        blob.record = {const_cast<unsigned char*>(at_), length};
        at_ += bytes;
        left_ -= bytes;
        return true;
    }

  private:
    std::uint32_t TakeField() {
        const std::uint32_t field = vq::LoadBlobField(at_, format_);
        at_ += vq::BlobFieldSize;
        return field;
    }

    const unsigned char* at_;
    std::uint32_t left_ = 0;
    unsigned char format_;
};

int CompareStored(StoredBlobs first, StoredBlobs second, unsigned long count, int& error) {
    error = VqStatus_BufferEnd;
    int result = 0;
    for (StoredBlob a, b; count != 0 && result == 0; --count) {
        if (!first.Next(a) || !second.Next(b)) return 0;
        result = VqBlob::Compare(a.Get(), b.Get());
        if (count > 1 && (first.Ended() || second.Ended())) return result;
    }
    error = VqStatus_Ok;
    return result;
}

std::uint32_t HashStored(StoredBlobs blobs, unsigned long count, int& error) {
    std::uint32_t hash = 0;
    error = VqStatus_Ok;
    for (StoredBlob blob; count != 0; --count) {
        if (!blobs.Next(blob)) {
            error = VqStatus_BufferEnd;
            break;
        }
        hash ^= blob.HashWord();
    }
    return hash * vq::HashMultiplier;
}

// --- Both

int CompareBlobs(unsigned char format, const vq::Operands& operands, int& error) {
    if (operands.count == 0 || vq::IsInMemory(format)) return vq::CompareKeys<BlobInMemory>(operands, error);
    return CompareStored(StoredBlobs(format, operands.length1, operands.value1),
                         StoredBlobs(format, operands.length2, operands.value2), operands.count, error);
}

unsigned long HashBlobs(unsigned char format, unsigned long length, const void* values, unsigned long count,
                        int& error) {
    if (count == 0 || vq::IsInMemory(format)) return vq::HashElements<BlobInMemory>(length, values, count, error);
    return HashStored(StoredBlobs(format, length, values), count, error);
}

}  // namespace

VQ_COMPARE_FUNCTION(BlobCompare, CompareBlobs(format, VQ_OPERANDS, error))
VQ_HASH_FUNCTION(BlobHash, HashBlobs(format, length, values, count, error))
