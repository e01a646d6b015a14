#include "boolean.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "_vqnulty.h"
#include "textform.h"
#include "vqbase.h"
#include "vqstring.h"

// --- Text

void VqBoolean::PrintToVqString(VqString& out, const char*) const {
    if (IsNullValue()) {
        out += VqNullPrintString();
    } else {
        out << (value == 1 ? "TRUE" : "FALSE");
    }
}

void VqBoolean::ScanFromVqString(const VqString& text, const char*) {
    static constexpr const char* truths[] = {"T", "t", "TRUE", "true", "1"};
    const vq::SingleByteText single(text);
    if (vq::SkipNullPrintString(single.Get()) != nullptr) {
        SetNullValue();
    } else {
        value = std::any_of(std::begin(truths), std::end(truths),
                            [&](const char* truth) { return std::strcmp(single.Get(), truth) == 0; });
    }
}

// --- Disk form

unsigned long BooleanStore(void* dst, const void* src, unsigned char format, unsigned long count) {
    return CharStore(dst, src, format, count);
}
unsigned long BooleanLoad(void* dst, const void* src, unsigned char format, unsigned long count) {
    return CharStore(dst, src, format, count);
}
unsigned long BooleanNullSizeGet(unsigned long count) { return CharNullSizeGet(count); }
unsigned long BooleanSizeGet(const void* data, unsigned char dataFormat, unsigned char format, unsigned long count) {
    return CharSizeGet(data, dataFormat, format, count);
}
unsigned long BooleanSizeGetFromMemFile(MemFile* file, unsigned char format, unsigned long count) {
    return CharSizeGetFromMemFile(file, format, count);
}
