// Stored values of any row from outside: what the memory file's size function accepts, loading reads exactly; what was
// loaded stores to a form that loads and stores the same again, prints, and comes back from its exchange texts;
// comparing stored keys stays within the lengths given.

#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include "vqtm.h"

namespace {

using Bytes = std::unique_ptr<unsigned char[]>;

void Require(bool holds) {
    if (!holds) std::abort();
}

// A block of exactly that size, so that a sanitizer sees every byte read outside it.
Bytes Exact(const unsigned char* data, std::size_t size) {
    Bytes block(new unsigned char[size]);
    if (size != 0) std::memcpy(block.get(), data, size);
    return block;
}

// The values' disk form.
std::vector<unsigned char> Stored(const VqTypeMgr& manager, char id, void* values, unsigned char format,
                                  unsigned long count) {
    std::vector<unsigned char> bytes(manager.DiskLenGet(id, values, format, count, VqFormat_Memory));
    Require(manager.Store(id, bytes.data(), values, format, count) == bytes.size());
    return bytes;
}

// Rows whose exchange texts do not tell every stored value apart.
bool LosesInExchange(char id) {
    switch (id) {
        // 15 digits
        case VqTypeId_double:
        case VqTypeId_VqNull_double:
        // a day number or seconds: fields outside their range come back within it
        case VqTypeId_VqDate:
        case VqTypeId_VqTime:
        // no characters behind a zero, nor code sets that there are not
        case VqTypeId_VqString:
        // the text without its flags
        case VqTypeId_VqIString:
        case VqTypeId_VqCaseIString:
        // only whether there is a blob
        case VqTypeId_VqBlob:
        // bytes that are none of the three values
        case VqTypeId_VqBoolean:
            return true;
        default:
            return false;
    }
}

// Not-a-numbers of all bits have one text.
bool HasNotANumber(const VqTypeConvertData* texts) {
    if (texts == nullptr) return false;
    for (int i = 0; const VqString* const text = texts->GetString(i); ++i) {
        if (std::strstr(text->StrGet(), "nan") != nullptr) return true;
    }
    return false;
}

void Exchange(VqTypeMgr& manager, char id, void* values, unsigned char format, unsigned long count) {
    VqTypeConvertData* const texts = manager.ConvertTo(id, values, count);
    void* const back = manager.ConvertFrom(id, texts, count);
    Require(LosesInExchange(id) || HasNotANumber(texts) ||
            Stored(manager, id, back, format, count) == Stored(manager, id, values, format, count));
    delete texts;
    manager.Delete(id, back, count);
}

void LoadAndStore(VqTypeMgr& manager, char id, unsigned char format, unsigned long count, const unsigned char* data,
                  unsigned long size) {
    const Bytes exact = Exact(data, size);
    MemFile file(exact.get(), size);
    const unsigned long guarded = manager.DiskLenGetFromMemFile(id, &file, format, count);
    if (guarded > size) return;
    void* const values = manager.Create(id, count);
    Require(manager.Load(id, values, exact.get(), format, count) == guarded);
    const std::vector<unsigned char> once = Stored(manager, id, values, format, count);
    Require(manager.Load(id, values, once.data(), format, count) == once.size());
    Require(Stored(manager, id, values, format, count) == once);
    Exchange(manager, id, values, format, count);
    VqString text;
    manager.PrintToVqString(id, text, values, nullptr, count);
    manager.Delete(id, values, count);
}

void CompareKeys(const VqTypeMgr& manager, char id, unsigned char format, unsigned long count,
                 const unsigned char* data, unsigned long size) {
    const unsigned long half = size / 2;
    if (half == 0) return;
    const Bytes a = Exact(data, half), b = Exact(data + half, half);
    int status = 1;
    manager.Cmp(id, half, a.get(), half, b.get(), VqCmp_Exact, count, format, status);
    Require(status == VqStatus_Ok || status == VqStatus_BufferEnd || status == VqStatus_NotSupported);
    manager.Cmp(id, half, a.get(), half, b.get(), 0, count, format, status);
}

}  // namespace

// First bytes: row, format, count; then the values.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    if (size < 3 || size > 4096) return 0;
    const char id = static_cast<char>(data[0] % VqTypeCount);
    const unsigned char format = data[1] % 2 == 0 ? VqFormat_BigEndian : VqFormat_LittleEndian;
    const unsigned long count = data[2] % 8, n = static_cast<unsigned long>(size - 3);
    for (const unsigned long version : {1ul, 5ul}) {
        VqTypeMgr manager(version);
        LoadAndStore(manager, id, format, count, data + 3, n);
        CompareKeys(manager, id, format, count, data + 3, n);
    }
    return 0;
}
