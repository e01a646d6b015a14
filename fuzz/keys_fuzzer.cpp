// Stored keys of any row from outside, each in a block of exactly its length: comparison and hashing say how they ended
// and keep their laws; estimates are sane whatever an index says of itself; translation is what loading and storing
// are.

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include "vqtm.h"

namespace {

void Require(bool holds) {
    if (!holds) std::abort();
}

// A block of exactly its size, so that a sanitizer sees every byte read outside it.
class Key {
  public:
    Key(const unsigned char* data, std::size_t size)
        : size_(static_cast<unsigned long>(size)), bytes_(new unsigned char[size]) {
        if (size != 0) std::memcpy(bytes_.get(), data, size);
    }
    unsigned char* Get() const { return bytes_.get(); }
    unsigned long Size() const { return size_; }
    unsigned char operator[](unsigned long i) const { return i < size_ ? bytes_[i] : 0; }

  private:
    unsigned long size_;
    std::unique_ptr<unsigned char[]> bytes_;
};

struct Input {
    VqTypeMgr& manager;
    char id;
    unsigned char format;
    unsigned long count;
    unsigned short flags, operators;

    int Compare(const Key& a, const Key& b, unsigned short under, int& status) const {
        status = 77;
        const long order = manager.Cmp(id, a.Size(), a.Get(), b.Size(), b.Get(), under, count, format, status);
        Require(status == VqStatus_Ok || status == VqStatus_BufferEnd || status == VqStatus_NotSupported);
        return (order > 0) - (order < 0);
    }
    unsigned long Hash(const Key& key, int& status) const {
        status = 77;
        const unsigned long code = manager.Hash(id, key.Size(), key.Get(), count, format, status);
        Require(status == VqStatus_Ok || status == VqStatus_BufferEnd || status == VqStatus_NotSupported);
        Require(code <= 0xFFFFFFFF);
        return code;
    }
    // Whether the key is `count` whole values, and has no byte more.
    bool IsWhole(const Key& key) const {
        MemFile file(key.Get(), key.Size());
        return manager.DiskLenGetFromMemFile(id, &file, format, count) == key.Size();
    }
};

// --- Laws

// Numbers that are none have no order, and the zeros are equal.
bool IsFloating(char id) {
    return id == VqTypeId_float || id == VqTypeId_double || id == VqTypeId_d_Interval || id == VqTypeId_VqNull_float ||
           id == VqTypeId_VqNull_double;
}

// A string in its record, not in an area of texts only.
bool IsRecord(const Key& key) { return key.Size() >= 6 && key[key.Size() - 1] != 0; }

// Booleans of other bytes than there are values.
bool HasOddTruth(char id, const Key& key) {
    if (id != VqTypeId_VqBoolean) return false;
    for (unsigned long i = 0; i < key.Size(); ++i) {
        if (key[i] > 1 && key[i] < 255) return true;
    }
    return false;
}

// Of arrays of class identifiers that both begin with null, each is less than the other.
bool BeginWithNullClasses(const Input& in, const Key& a, const Key& b) {
    return in.id == VqTypeId_VqClassId && in.count > 1 && a.Size() >= 4 &&
           std::memcmp(a.Get(), "\xFF\xFF\xFF\xFF", 4) == 0 && b.Size() >= 4 &&
           std::memcmp(b.Get(), "\xFF\xFF\xFF\xFF", 4) == 0;
}

bool IsLawful(const Input& in, const Key& a, const Key& b) {
    return !BeginWithNullClasses(in, a, b) && !IsFloating(in.id) && !HasOddTruth(in.id, a) && !HasOddTruth(in.id, b);
}

// Swapped operands give the other sign, but for strings in which the first one's flags say whether accents decide.
bool IsAntisymmetric(const Input& in, const Key& a, const Key& b) {
    if (in.id == VqTypeId_VqCaseIString) return in.count == 1 && a[0] == b[0];
    return IsLawful(in, a, b);
}

// Equal keys have equal codes, but for texts of several sets.
bool HashesByValue(const Input& in, const Key& a, const Key& b) {
    if (in.id == VqTypeId_VqString) {
        return in.count == 1 && IsRecord(a) && IsRecord(b) && a[2] == b[2] && a[3] == b[3];
    }
    return IsLawful(in, a, b);
}

void CompareAndHash(const Input& in, const Key& a, const Key& b) {
    if (a.Size() == 0 || b.Size() == 0) return;
    int status, reversed, status1, status2;
    in.Compare(a, b, in.flags, status);
    const int order = in.Compare(a, b, VqCmp_Exact, status);
    const int swapped = in.Compare(b, a, VqCmp_Exact, reversed);
    const bool isOk = status == VqStatus_Ok && reversed == VqStatus_Ok;
    if (isOk && IsAntisymmetric(in, a, b)) Require(order == -swapped);
    const unsigned long code = in.Hash(a, status1), otherCode = in.Hash(b, status2);
    const bool areHashed = status1 == VqStatus_Ok && status2 == VqStatus_Ok;
    if (isOk && areHashed && order == 0 && HashesByValue(in, a, b)) Require(code == otherCode);
}

void Estimate(const Input& in, const Key& key, const Key& low, const Key& high) {
    if (!in.IsWhole(key)) return;
    VqIdxBounds index = {low.Size() != 0 ? low.Get() : nullptr, high.Size() != 0 ? high.Get() : nullptr,
                         static_cast<std::uint32_t>(low.Size()), static_cast<std::uint32_t>(high.Size())};
    for (VqIdxBounds* const bounds : {static_cast<VqIdxBounds*>(nullptr), &index}) {
        unsigned short operators = in.operators;
        VqIdxBounds scan;
        const float part =
            in.manager.EvalAndBound(in.id, bounds, operators, key.Get(), in.format, in.count, &scan, nullptr);
        Require(std::isfinite(part) && part >= 0);
        VqFreeBounds(scan);
    }
}

void Translate(const Input& in, const Key& key, unsigned long otherSize) {
    std::vector<unsigned char> copy(otherSize, 0xA5);
    Require(in.manager.Translate(in.id, copy.data(), in.format, otherSize, key.Get(), in.format, key.Size(),
                                 in.count) == otherSize);
    for (unsigned long i = 0; i < otherSize; ++i) Require(copy[i] == key[i]);

    if (!in.IsWhole(key)) return;
    void* const values = in.manager.Create(in.id, in.count);
    void* const loaded = in.manager.Create(in.id, in.count);
    if (values != nullptr) {
        in.manager.Translate(in.id, values, VqFormat_Memory, 0, key.Get(), in.format, key.Size(), in.count);
        in.manager.Load(in.id, loaded, key.Get(), in.format, in.count);
        const unsigned long size = in.manager.DiskLenGet(in.id, loaded, in.format, in.count, VqFormat_Memory);
        std::vector<unsigned char> stored(size), translated(size);
        in.manager.Store(in.id, stored.data(), loaded, in.format, in.count);
        Require(in.manager.Translate(in.id, translated.data(), in.format, size, values, VqFormat_Memory, 0, in.count) ==
                size);
        Require(stored == translated);
    }
    in.manager.Delete(in.id, values, in.count);
    in.manager.Delete(in.id, loaded, in.count);
}

}  // namespace

// First bytes: row, format, count, flags, operators, lengths of the first two of three keys; then the keys.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    constexpr std::size_t HeadSize = 8;
    if (size < HeadSize || size > 4096) return 0;
    VqSetAssertHandler([](const char*, const char*, int) {});
    const std::size_t all = size - HeadSize, first = all * data[6] / 255, second = (all - first) * data[7] / 255;
    const unsigned char* const bytes = data + HeadSize;
    const Key a(bytes, first), b(bytes + first, second), c(bytes + first + second, all - first - second);
    for (const unsigned long version : {1ul, 5ul}) {
        VqTypeMgr manager(version);
        const Input in = {manager,
                          static_cast<char>(data[0] % VqTypeCount),
                          data[1] % 2 == 0 ? VqFormat_BigEndian : VqFormat_LittleEndian,
                          data[2] % 4ul,
                          static_cast<unsigned short>(data[3] | data[4] << 8),
                          data[5]};
        if (in.id == VqTypeId_illegal || (version < 4 && in.id > VqTypeId_VqBoolean)) continue;
        CompareAndHash(in, a, b);
        Estimate(in, a, b, c);
        Translate(in, a, static_cast<unsigned long>(second));
    }
    return 0;
}
