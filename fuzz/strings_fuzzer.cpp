// Stored strings from outside: where the memory file's size function accepts the bytes, loading them reads exactly that
// many, storing what was loaded gives a form that loads to the same strings, and comparing the strings is sane.

#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include "vqtm.h"

namespace {

constexpr unsigned long MaxStrings = 8;

void Require(bool holds) {
    if (!holds) std::abort();
}

bool SameText(const VqString& a, const VqString& b) {
    return a.GetSize() == b.GetSize() && a.GetCodeSet() == b.GetCodeSet() && a.GetLanguage() == b.GetLanguage() &&
           std::memcmp(a.StrGet(), b.StrGet(), a.GetSize()) == 0;
}

// The zero character ends the buffer, and no other stands before it.
bool IsWhole(const VqString& s) {
    const unsigned charSize = s.GetCodeSet() < VqFirstWideCodeSet ? 1 : 2;
    return s.GetSize() == 0 || s.GetSize() == (s.Len() + 1U) * charSize;
}

int Sign(int value) { return (value > 0) - (value < 0); }

}  // namespace

// First byte: count of strings; second: format byte; then the records.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    if (size < 2 || size > 4096) return 0;
    const unsigned long count = data[0] % (MaxStrings + 1);
    const unsigned char format = data[1] & VqFormat_OrderMask;
    const unsigned long n = static_cast<unsigned long>(size - 2);
    const std::unique_ptr<unsigned char[]> exact(new unsigned char[n]);
    std::memcpy(exact.get(), data + 2, n);

    MemFile file(exact.get(), n);
    const unsigned long guarded = StringSizeGetFromMemFile(&file, format, count);
    Require(StringsFitMemFile(&file, format, count) == (guarded <= n));
    if (guarded > n) return 0;
    std::vector<VqString> strings(count);
    Require(StringLoad(strings.data(), exact.get(), format, count) == guarded);

    std::vector<unsigned char> stored(StringSizeGet(strings.data(), VqFormat_Memory, format, count));
    Require(StringStore(stored.data(), strings.data(), format, count) == stored.size());
    std::vector<VqString> again(count);
    Require(StringLoad(again.data(), stored.data(), format, count) == stored.size());
    for (unsigned long i = 0; i < count; ++i) {
        Require(SameText(strings[i], again[i]));
        const VqString& next = strings[(i + 1) % count];
        Require(Sign(strings[i].Compare(next, -1, VqCmp_Exact)) == -Sign(next.Compare(strings[i], -1, VqCmp_Exact)));
        strings[i].Compare(next, -1, VqCmp_IgnoreCase);
        VqString mapped(strings[i]);
        for (const int codeSet : {253, 225, 226, 227, 228, 253, 1}) {
            mapped.MapToCodeSet(static_cast<unsigned char>(codeSet));
            Require(mapped.Len() == strings[i].Len());
        }
        VqString cased(strings[i]);
        Require(IsWhole(cased.ToUpper()));
        Require(IsWhole(cased.ToLower()));
    }
    return 0;
}
