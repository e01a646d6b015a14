#include "multibyte.h"

#include <algorithm>
#include <atomic>
#include <bit>
#include <cstdint>
#include <cstring>
#include <memory>
#include <type_traits>

#include "textunit.h"
#include "utf8kernel.h"
#include "vqstring.h"

using vq::Utf8Cursor;
using vq::Utf8Kernel;

namespace {

constexpr unsigned char UnicodeSet = 253;
// Code sets below are ASCII in their lower half.
constexpr unsigned char FirstOtherSet = 6;

// Up to so many bytes of UTF-8, or units, are converted on the stack and then copied, which takes less time than
// counting the room that they need.
constexpr std::size_t ShortText = 64, ShortUnits = 1024;

// --- Kernels

constinit std::atomic<const Utf8Kernel*> chosenKernel{nullptr};

[[gnu::noinline]] const Utf8Kernel& ChooseKernel() {
#ifdef VQ_UTF8_X86
    __builtin_cpu_init();
#endif
    const Utf8Kernel* kernel = vq::Utf8Kernels;
    while (!kernel->supported()) ++kernel;
    chosenKernel.store(kernel, std::memory_order_relaxed);
    return *kernel;
}

inline const Utf8Kernel& Kernel() {
    const Utf8Kernel* const kernel = chosenKernel.load(std::memory_order_relaxed);
    return kernel != nullptr ? *kernel : ChooseKernel();
}

Utf8Cursor Decode(Utf8Cursor at, const unsigned char* inEnd, unsigned char* outEnd) {
    at = Kernel().decode(at, inEnd, outEnd);
    return at.in == inEnd ? at : vq::DecodePortable(at, inEnd, outEnd);
}

Utf8Cursor Encode(Utf8Cursor at, const unsigned char* inEnd, unsigned char* outEnd) {
    at = Kernel().encode(at, inEnd, outEnd);
    return at.in == inEnd ? at : vq::EncodePortable(at, inEnd, outEnd);
}

const unsigned char* BytesOf(const char* text) { return reinterpret_cast<const unsigned char*>(text); }
unsigned char* BytesOf(char* text) { return reinterpret_cast<unsigned char*>(text); }

// --- One character of any length

// The largest value of each length.
constexpr std::uint32_t Largest[] = {0, 0x7F, 0x7FF, 0xFFFF, 0x1FFFFF, 0x3FFFFFF, 0x7FFFFFFF};

int DecodeOne(const unsigned char* in, std::size_t n, unsigned short& unit) {
    if (n == 0) return -1;
    const int ones = std::countl_one(in[0]), length = ones == 0 ? 1 : ones;
    if (ones == 1 || ones > 6 || n < static_cast<std::size_t>(length)) return -1;
    std::uint32_t value = in[0] & 0xFFu >> (ones == 0 ? 1 : ones + 1);
    for (int i = 1; i < length; ++i) {
        if (!vq::ContinuesUtf8(in[i])) return -1;
        value = value << 6 | (in[i] & 0x3Fu);
    }
    if (length > 1 && value <= Largest[length - 1]) return -1;
    unit = static_cast<unsigned short>(value);
    return length;
}

int EncodeOne(unsigned char* out, std::uint32_t value) {
    int length = 1;
    while (value > Largest[length]) ++length;
    constexpr unsigned char Leads[] = {0, 0, 0xC0, 0xE0, 0xF0, 0xF8, 0xFC};
    out[0] = static_cast<unsigned char>(Leads[length] | value >> 6 * (length - 1));
    for (int i = 1; i < length; ++i) {
        out[i] = static_cast<unsigned char>(0x80 | (value >> 6 * (length - 1 - i) & 0x3F));
    }
    return length;
}

// --- Texts

// Decodes up to a zero character, a fault, the limit or the end; the result is VqMBS2VqString's. There is room for a
// unit for each byte that begins a character below the limit.
long DecodeText(Utf8Cursor& at, std::size_t n, unsigned char* outEnd) {
    const unsigned char* const start = at.in;
    const std::size_t limit = VqMultiByteLimit;
    const unsigned char* const end = start + std::min(n, limit);
    for (;;) {
        if (at.in < end) at = Decode(at, end, outEnd);  // a character may have led past the limit
        const std::size_t used = static_cast<std::size_t>(at.in - start);
        if (used >= limit) return -2;
        if (used == n) return static_cast<long>(n);
        unsigned short unit = 0;
        const int length = DecodeOne(at.in, n - used, unit);
        if (length < 0) return -1;
        if (unit == 0) return static_cast<long>(used);
        vq::StoreUnit(at.out, unit);
        at = {at.in + length, at.out + 2};
    }
}

bool IsAscii(const char* text, std::size_t n) {
    unsigned char all = 0;
    for (std::size_t i = 0; i < n; ++i) all = static_cast<unsigned char>(all | text[i]);
    return all < 0x80;
}

bool IsPlain(const VqString& text, std::size_t n) {
    return text.GetCodeSet() < FirstOtherSet && IsAscii(text.StrGet(), n);
}

// The units of a text in code set 253, mapped there if they are in another.
class UnicodeText {
  public:
    explicit UnicodeText(const VqString& text) : mapped_(UnicodeSet, text.GetLanguage()), text_(&text) {
        if (text.GetCodeSet() == UnicodeSet) return;
        mapped_ += text;
        text_ = &mapped_;
    }

    const unsigned char* Start() const { return BytesOf(text_->StrGet()); }
    // The text ends here at the latest: at the last place for a zero unit.
    const unsigned char* End() const { return Start() + (text_->GetSize() != 0 ? text_->GetSize() - 2 : 0); }

  private:
    VqString mapped_;
    const VqString* text_;
};

long EncodeText(const UnicodeText& text, char* out, long size) {
    unsigned char* const start = BytesOf(out);
    const Utf8Cursor at = Encode({text.Start(), start}, text.End(), start + size);
    const long written = static_cast<long>(at.out - start);
    if (at.in != text.End() && vq::LoadUnit(at.in) != 0) return -written;
    if (written < size) out[written] = 0;
    return written;
}

}  // namespace

// --- Single characters and plain buffers

int VqMultiByte2WChar(unsigned short* out, const char* text, unsigned int n) {
    if (text == nullptr) return 0;
    unsigned short unit = 0;
    const int length = static_cast<int>(n) < 0 ? -1 : DecodeOne(BytesOf(text), n, unit);
    if (length > 0 && out != nullptr) *out = unit;
    return length;
}

int VqMultiByteStr2WCharStr(unsigned short* out, int outSize, const char* text, unsigned int n) {
    if (text == nullptr || n == 0) return 0;
    if (static_cast<int>(n) < 0) return -1;
    unsigned char* const start = reinterpret_cast<unsigned char*>(out);
    unsigned char* const outEnd =
        start + (out != nullptr && outSize > 0 ? std::size_t{2} * static_cast<unsigned>(outSize) : 0);
    const unsigned char* const inEnd = BytesOf(text) + n;
    int left = 0;
    for (Utf8Cursor at{BytesOf(text), start};;) {
        at = Decode(at, inEnd, outEnd);
        if (at.in == inEnd) return static_cast<int>((at.out - start) / 2) + left;
        unsigned short unit = 0;
        const int length = DecodeOne(at.in, static_cast<std::size_t>(inEnd - at.in), unit);
        if (length < 0) return -1;
        at.in += length;
        if (at.out == outEnd) {
            ++left;
        } else {
            vq::StoreUnit(at.out, unit);
            at.out += 2;
        }
    }
}

int VqWChar2MultiByte(char* out, wchar_t c) {
    if (out == nullptr) return 0;
    const std::uint32_t value = std::make_unsigned_t<wchar_t>(c);
    return value > Largest[6] ? -1 : EncodeOne(BytesOf(out), value);
}

// --- UTF-8 into a string

long VqMBS2VqString(const char* text, VqString& out, long n) {
    const std::size_t size = text == nullptr || n < 0 ? 0 : static_cast<std::size_t>(n);
    const unsigned char* const start = BytesOf(text);
    unsigned char few[2 * ShortText];
    std::unique_ptr<char[]> units;
    std::size_t most = size;
    if (size > ShortText) {
        // Right text has as many characters as bytes that begin one, so this becomes the string's own buffer.
        most = Kernel().countStarts(start, start + std::min<std::size_t>(size, VqMultiByteLimit));
        units.reset(new char[2 * (most + 1)]);
    }
    unsigned char* const room = units != nullptr ? BytesOf(units.get()) : few;
    Utf8Cursor at{start, room};
    const long result = text == nullptr ? 0 : n < 0 ? -1 : DecodeText(at, size, room + 2 * most);

    const std::size_t bytes = static_cast<std::size_t>(at.out - room);
    const unsigned char language = out.GetLanguage();
    out.Destroy();
    out.codeSet_ = UnicodeSet;
    out.language_ = language;
    if (units != nullptr && bytes != 0 && bytes == 2 * most && bytes + 2 <= VqString::MaxSize) {
        vq::StoreUnit(at.out, 0);
        out.buffer_ = units.release();
        out.size_ = static_cast<std::uint16_t>(bytes + 2);
    } else {
        out.AssignChars(room, UnicodeSet, static_cast<unsigned short>(bytes / 2));
    }
    return result;
}

long VqMultiByteString2VqString(const char* text, VqString& out, long n) { return VqMBS2VqString(text, out, n); }

long VqMultiByteString2VqString(const VqString& in, VqString& out) {
    return VqMBS2VqString(in.StrGet(), out, in.Len());
}

// --- A string into UTF-8

long VqString2VqMBS(const VqString& text, char* out, long size) {
    if (out == nullptr || size <= 0) return 0;
    if (text.GetCodeSet() < FirstOtherSet) {
        const std::size_t room = static_cast<std::size_t>(size), length = std::min<std::size_t>(text.Len(), room);
        if (IsAscii(text.StrGet(), length)) {
            std::memcpy(out, text.StrGet(), length);
            std::memset(out + length, 0, room - length);
            return static_cast<long>(length);
        }
    }
    return EncodeText(UnicodeText(text), out, size);
}

long VqMBSLength(const VqString& text, unsigned short n) {
    if (n == 0) return 0;
    const unsigned short length = text.GetCodeSet() < FirstOtherSet ? text.Len() : 0;
    if (IsPlain(text, length)) return length;
    const UnicodeText units(text);
    const std::ptrdiff_t most = std::min<std::ptrdiff_t>(units.End() - units.Start(), std::ptrdiff_t{2} * n);
    return static_cast<long>(Kernel().countBytes(units.Start(), units.Start() + most));
}

long VqString2MultiByteString(const VqString& text, char*& out, long& length) {
    const unsigned short plain = text.GetCodeSet() < FirstOtherSet ? text.Len() : 0;
    if (IsPlain(text, plain)) {
        out = new char[plain + 1u];
        std::memcpy(out, text.StrGet(), plain + 1u);
        return length = plain;
    }
    const UnicodeText units(text);
    if (units.End() - units.Start() <= std::ptrdiff_t{2 * ShortUnits}) {
        char few[3 * ShortUnits + 1];
        length = EncodeText(units, few, sizeof few);
        out = new char[static_cast<std::size_t>(length) + 1];
        std::memcpy(out, few, static_cast<std::size_t>(length) + 1);
        return length;
    }
    length = static_cast<long>(Kernel().countBytes(units.Start(), units.End()));
    out = new char[static_cast<std::size_t>(length) + 1];
    return EncodeText(units, out, length + 1);
}

void VqFreeMultiByteString(char* out) { delete[] out; }
