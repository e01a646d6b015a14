// Text from outside as UTF-8: it becomes the string of the slow, obvious way in every kernel, and what was made of it
// is written and read back unchanged.

#include <cstdlib>
#include <cstring>
#include <memory>

#include "../src/utf8kernel.h"
#include "../tests/multibytereference.h"
#include "vqtm.h"

namespace {

void Require(bool holds) {
    if (!holds) std::abort();
}

bool SameText(const VqString& a, const VqString& b) {
    return a.GetSize() == b.GetSize() && a.GetCodeSet() == b.GetCodeSet() && a.GetLanguage() == b.GetLanguage() &&
           std::memcmp(a.StrGet(), b.StrGet(), a.GetSize()) == 0;
}

// Every kernel stops at the same place as the portable one, with the same units, within exactly the room given.
void CheckKernels(const unsigned char* text, std::size_t n, std::size_t room) {
    const std::unique_ptr<unsigned char[]> wanted(new unsigned char[room]), got(new unsigned char[room]);
    const vq::Utf8Cursor end = vq::DecodePortable({text, wanted.get()}, text + n, wanted.get() + room);
    const auto written = static_cast<std::size_t>(end.out - wanted.get());
    for (const vq::Utf8Kernel& kernel : vq::Utf8Kernels) {
        if (!kernel.supported()) continue;
        vq::Utf8Cursor at = kernel.decode({text, got.get()}, text + n, got.get() + room);
        at = vq::DecodePortable(at, text + n, got.get() + room);
        Require(at.in == end.in && at.out - got.get() == end.out - wanted.get());
        Require(written == 0 || std::memcmp(got.get(), wanted.get(), written) == 0);
    }
}

void CheckWriting(const VqString& s, long size) {
    const std::unique_ptr<char[]> got(new char[static_cast<std::size_t>(size)]),
        wanted(new char[static_cast<std::size_t>(size)]);
    const long result = vqtest::ReferenceFromString(s, wanted.get(), size);
    Require(VqString2VqMBS(s, got.get(), size) == result);
    const long written = result < 0 ? -result : result;
    Require(std::memcmp(got.get(), wanted.get(), static_cast<std::size_t>(written)) == 0);
}

}  // namespace

// First byte: code set that the string is mapped to; second: room for writing; then the text.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    if (size < 2 || size > 4096) return 0;
    const std::size_t n = size - 2;
    const std::unique_ptr<char[]> text(new char[n]);
    std::memcpy(text.get(), data + 2, n);
    CheckKernels(data + 2, n, 2 * n);
    CheckKernels(data + 2, n, data[1] & ~1u);

    VqString s, wanted;
    const long result = vqtest::ReferenceToString(text.get(), wanted, static_cast<long>(n));
    Require(VqMBS2VqString(text.get(), s, static_cast<long>(n)) == result);
    Require(SameText(s, wanted));

    char* bytes = nullptr;
    long length = 0;
    Require(VqString2MultiByteString(s, bytes, length) == length && length == VqMBSLength(s, VqString::All));
    VqString again;
    Require(VqMBS2VqString(bytes, again, length) == length && SameText(again, s));
    VqFreeMultiByteString(bytes);

    s.MapToCodeSet(data[0] % 16);
    CheckWriting(s, data[1]);
    CheckWriting(s, static_cast<long>(3 * n + 1));
    return 0;
}
