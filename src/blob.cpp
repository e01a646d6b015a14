#include "blob.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <new>
#include <utility>

#include "bytesearch.h"
#include "memoryhandler.h"
#include "numbertext.h"
#include "vqstring.h"

namespace {

using Record = VqBlob::Record;

// --- Memory

// What `allocate` gives, or gives after the memory handler has freed something for it.
template <class Allocate>
auto AllocateOrAsk(std::int64_t size, Allocate allocate) {
    auto* memory = allocate();
    while (memory == nullptr && VqCallMemoryHandler(static_cast<unsigned long>(size)) != 0) memory = allocate();
    return memory;
}

template <void* (*allocate)(std::size_t)>
unsigned char* AllocateBytes(std::int64_t n) {
    if (n > VqBlob::MaxLength) {
        VqCallMemoryHandler(static_cast<unsigned long>(n));
        return nullptr;
    }
    return AllocateOrAsk(n, [n] { return static_cast<unsigned char*>(allocate(static_cast<std::size_t>(n))); });
}

void* ZeroMemory(std::size_t n) { return std::calloc(n, 1); }
void* Memory(std::size_t n) { return std::malloc(n); }

void CopyBytes(unsigned char* to, const void* from, std::int64_t n) {
    if (n == 0) return;
    if (from != nullptr) {
        std::memmove(to, from, static_cast<std::size_t>(n));
    } else {
        std::memset(to, 0, static_cast<std::size_t>(n));
    }
}

// --- Records

// A record of n bytes from `bytes`, zero ones without it; null when memory cannot be had.
Record* MakeRecord(const void* bytes, std::int64_t n) {
    unsigned char* data = nullptr;
    if (n != 0) {
        data = bytes != nullptr ? AllocateBytes<Memory>(n) : AllocateBytes<ZeroMemory>(n);
        if (data == nullptr) return nullptr;
        if (bytes != nullptr) CopyBytes(data, bytes, n);
    }
    Record* const record = AllocateOrAsk(sizeof(Record), [] { return new (std::nothrow) Record; });
    if (record == nullptr) {
        std::free(data);
    } else {
        *record = {data, static_cast<std::int32_t>(n)};
    }
    return record;
}

// Gives the record new storage with the bytes of a head and a tail, which may lie in the old one. False, and the record
// stays, when memory cannot be had.
bool Rebuild(Record& record, const void* head, std::int64_t headLength, const void* tail, std::int64_t tailLength) {
    const std::int64_t n = headLength + tailLength;
    unsigned char* const data = n != 0 ? AllocateBytes<Memory>(n) : nullptr;
    if (n != 0 && data == nullptr) return false;
    CopyBytes(data, head, headLength);
    CopyBytes(data + headLength, tail, tailLength);
    std::free(record.data);
    record = {data, static_cast<std::int32_t>(n)};
    return true;
}

bool SetRecord(Record& record, const void* bytes, std::int64_t n) {
    constexpr std::int64_t Slack = 128;
    if (record.data == nullptr || n > record.length || record.length > n + Slack) {
        return Rebuild(record, bytes, n, nullptr, 0);
    }
    CopyBytes(record.data, bytes, n);
    record.length = static_cast<std::int32_t>(n);
    return true;
}

void ResizeRecord(Record& record, std::int64_t n) {
    if (n == 0 || n > record.length) {
        const std::int64_t kept = std::min<std::int64_t>(n, record.length);
        Rebuild(record, record.data, kept, nullptr, n - kept);
    } else {
        record.length = static_cast<std::int32_t>(n);
    }
}

// --- Numbers

Record* MakeText(const char* text, std::int64_t length) {
    Record* const record = VqBlob::AllocData(static_cast<long>(length));
    if (record != nullptr) CopyBytes(record->data, text, length);
    return record;
}

template <class T, class... Format>
Record* MakeNumber(T value, Format... format) {
    char text[400];  // the longest, the least double, has 317 characters
    return MakeText(text, std::to_chars(text, text + sizeof text, value, format...).ptr - text);
}

// A length as it was asked for. What is far beyond the longest keeps room for a sum.
constexpr std::int64_t LengthOf(long n) { return std::clamp<std::int64_t>(n, 0, std::int64_t{1} << 62); }

}  // namespace

// Not inline: Windows would import them from a library that has none.
const long VqBlob::MaxLength;
const long VqBlob::NotFound;

// --- Construction

VqBlob::VqBlob() : record_(MakeRecord(nullptr, 0)) {}
VqBlob::VqBlob(long n) : VqBlob(nullptr, n) {}
VqBlob::VqBlob(const void* bytes, long n) : record_(MakeRecord(bytes, LengthOf(n))) {}
VqBlob::VqBlob(const char* text)
    : record_(text != nullptr ? MakeRecord(text, static_cast<std::int64_t>(std::strlen(text)) + 1) : nullptr) {}
VqBlob::VqBlob(int value) : record_(MakeNumber(value)) {}
VqBlob::VqBlob(short value) : record_(MakeNumber(value)) {}
VqBlob::VqBlob(unsigned long value) : record_(MakeNumber(static_cast<std::uint32_t>(value))) {}
VqBlob::VqBlob(double value) : record_(MakeNumber(value, std::chars_format::fixed, 6)) {}
VqBlob::VqBlob(const VqString& text)
    : record_(text.IsNullValue() ? nullptr : MakeRecord(text.StrGet(), text.GetSize())) {}
VqBlob::VqBlob(const VqBlob& other)
    : record_(other.IsNullValue() ? nullptr : MakeRecord(other.Data(), other.Length())) {}

// --- Assignment

VqBlob& VqBlob::operator=(const char* lengthAndBytes) {
    std::int32_t length = -1;
    if (lengthAndBytes != nullptr) std::memcpy(&length, lengthAndBytes, sizeof length);
    if (length < 0) {
        SetNullValue();
    } else if (Record* const record = MakeRecord(lengthAndBytes + sizeof length, length)) {
        FreeData(record_);
        record_ = record;
    }
    return *this;
}

VqBlob& VqBlob::operator=(const VqBlob& other) {
    if (this == &other) return *this;
    if (other.IsNullValue()) {
        SetNullValue();
    } else {
        SetTo(other.Data(), other.Length());
    }
    return *this;
}

VqBlob& VqBlob::operator=(VqBlob&& other) noexcept {
    if (this == &other) return *this;
    FreeData(record_);
    record_ = other.record_;
    other.record_ = nullptr;
    return *this;
}

void VqBlob::SetTo(const void* bytes, long n) { TrySetTo(bytes, n); }

bool VqBlob::TrySetTo(const void* bytes, long n) {
    if (record_ != nullptr) return SetRecord(*record_, bytes, LengthOf(n));
    record_ = MakeRecord(bytes, LengthOf(n));
    return record_ != nullptr;
}

void VqBlob::Destroy(VqBlob& other) {
    if (this == &other) return;
    Record* const empty = other.IsNullValue() ? nullptr : MakeRecord(nullptr, 0);
    if (empty == nullptr && !other.IsNullValue()) return;
    *this = std::move(other);
    other.record_ = empty;
}

int VqBlob::SetNullValue() {
    FreeData(record_);
    record_ = nullptr;
    return 0;
}

// --- Access

const unsigned char* VqBlob::Seek(long pos, long n) const {
    const bool within = pos >= 0 && n > 0 && pos <= Length() && n <= Length() - pos;
    return within ? Data() + pos : nullptr;
}

unsigned char* VqBlob::Seek(long pos, long n) { return const_cast<unsigned char*>(std::as_const(*this).Seek(pos, n)); }

long VqBlob::Search(const VqBlob& pattern) const {
    if (IsNullValue()) return NotFound;
    const std::size_t place =
        vq::FindBytes(reinterpret_cast<const char*>(Data()), static_cast<std::size_t>(Length()), 0,
                      reinterpret_cast<const char*>(pattern.Data()), static_cast<std::size_t>(pattern.Length()));
    return place != vq::NotFound ? static_cast<long>(place) : NotFound;
}

// --- Change of length

void VqBlob::Expand(long n) {
    const std::int64_t length = LengthOf(n);
    if (record_ == nullptr) {
        record_ = MakeRecord(nullptr, length);
    } else {
        const std::int64_t kept = std::min<std::int64_t>(length, record_->length);
        Rebuild(*record_, Data(), kept, nullptr, length - kept);
    }
}

void VqBlob::Resize(unsigned long n) {
    const std::int64_t length = LengthOf(static_cast<long>(n));
    if (record_ == nullptr) {
        record_ = MakeRecord(nullptr, length);
    } else {
        ResizeRecord(*record_, length);
    }
}

void VqBlob::Append(const void* bytes, long n) {
    if (n < 1) return;
    if (record_ == nullptr) {
        record_ = MakeRecord(bytes, LengthOf(n));
    } else {
        Rebuild(*record_, Data(), Length(), bytes, LengthOf(n));
    }
}

void VqBlob::Append(const VqBlob& other) { Append(other.Data(), other.Length()); }

VqBlob& VqBlob::operator+=(const VqBlob& other) {
    Append(other);
    return *this;
}

void VqBlob::Cut(long pos, long n) {
    if (pos < 0 || pos >= Length() || n < 1) return;
    const long behind = pos + std::min(n, Length() - pos);
    Rebuild(*record_, Data(), pos, Data() + behind, Length() - behind);
}

// --- Parts

VqBlob VqBlob::CopyFrom(long pos, long n) const {
    if (IsNullValue() || pos < 0 || pos > Length() || n < 1) return VqBlob(nullptr, 1);
    return VqBlob(Data() + pos, std::min(n, Length() - pos));
}

void VqBlob::CopyTo(const VqBlob& source, long pos, long n) {
    if (pos < 0 || pos >= Length() || n < 1) return;
    CopyBytes(Data() + pos, source.Data(), std::min({n, Length() - pos, source.Length()}));
}

// --- Numbers

VqBlob::operator long() const {
    if (Length() == 0) return 0;
    const char* const text = reinterpret_cast<const char*>(Data());
    return vq::ParseLong(text, 1, 10, text + Length());
}
VqBlob::operator int() const { return static_cast<int>(operator long()); }
VqBlob::operator short() const { return static_cast<short>(operator long()); }
VqBlob::operator double() const {
    if (Length() == 0) return 0;
    const char* const text = reinterpret_cast<const char*>(Data());
    return vq::ParseDouble(text, 1, text + Length());
}

// --- Records

VqBlob::Record* VqBlob::AllocData(long n) { return MakeRecord(nullptr, LengthOf(n) + 1); }

void VqBlob::FreeData(Record* record) {
    if (record == nullptr) return;
    std::free(record->data);
    delete record;
}
