#include "seal.h"

#include "vqbase.h"
#include "vqstring.h"

// --- Text

void VqSeal::PrintToVqString(VqString& out, const char*) const {
    VqInt64 number;
    ConvertTo(number);
    number.PrintToVqString(out, "%S");
}

void VqSeal::ScanFromVqString(const VqString& text, const char*) {
    VqInt64 number;
    if (!text.IsEmpty()) number.ScanFromVqString(text, "%S");
    ConvertFrom(number);
}

// --- Disk form: seals are keys of files that every machine reads, so there is one byte order

namespace {
constexpr unsigned long Words = 3;
}

unsigned long SealStore(void* dst, const void* src, unsigned char, unsigned long count) {
    return ShortStore(dst, src, VqFormat_BigEndian, Words * count);
}
unsigned long SealLoad(void* dst, const void* src, unsigned char, unsigned long count) {
    return ShortStore(dst, src, VqFormat_BigEndian, Words * count);
}
unsigned long SealNullSizeGet(unsigned long count) { return ShortNullSizeGet(Words * count); }
unsigned long SealSizeGet(const void* data, unsigned char dataFormat, unsigned char format, unsigned long count) {
    return ShortSizeGet(data, dataFormat, format, Words * count);
}
unsigned long SealSizeGetFromMemFile(MemFile* file, unsigned char format, unsigned long count) {
    return ShortSizeGetFromMemFile(file, format, Words * count);
}
