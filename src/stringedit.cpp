// Editing members of strings: checks, then one call of the engine. Parts of strings.

#include <algorithm>

#include "stringiterator.h"
#include "textunit.h"
#include "vqchar.h"
#include "vqstring.h"

VqString& VqString::Insert(const VqString& text, unsigned short pos) {
    if (pos <= Len()) SpliceChars({InsertAt, text.buffer_, text.codeSet_, pos, 0, text.Len(), 1, 1});
    return *this;
}

VqString& VqString::Replace(const VqString& text, unsigned short pos) {
    const unsigned length = Len();
    const unsigned count = pos < length ? std::min<unsigned>(text.Len(), length - pos) : 0;
    if (count != 0) SpliceChars({Overwrite, text.buffer_, text.codeSet_, pos, 0, count, 1, 1});
    return *this;
}

VqString& VqString::Cut(unsigned short pos, short n) {
    CutChars(pos, n == -1 ? std::size_t{All} : static_cast<std::size_t>(std::max<short>(n, 0)));
    return *this;
}

// Removes at most `n` characters from `position` on, also more than a short can count.
void VqString::CutChars(std::size_t position, std::size_t n) {
    const std::size_t length = Len();
    const std::size_t count = position < length ? std::min(n, length - position) : 0;
    if (count == 0) return;
    const std::size_t behind = position + count;
    SpliceChars({TruncateAndWrite, buffer_, codeSet_, position, behind, length - behind, 1, 1});
}

VqString& VqString::Fill(unsigned short n, char c) { return FillFrom(0, n, VqString(c)); }

VqString& VqString::Fill(unsigned short n, unsigned short c) { return FillFrom(0, n, VqString(c)); }

VqString& VqString::Expand(unsigned short n, char c) {
    const unsigned short length = Len();
    return n > length ? FillFrom(length, static_cast<unsigned short>(n - length), VqString(c)) : *this;
}

VqString& VqString::Expand(unsigned short n, unsigned short c) {
    const unsigned short length = Len();
    return n > length ? FillFrom(length, static_cast<unsigned short>(n - length), VqString(c)) : *this;
}

// Replaces everything from `position` on by `n` times a string's one character.
VqString& VqString::FillFrom(unsigned short position, unsigned short n, const VqString& character) {
    SpliceChars({TruncateAndWrite, character.StrGet(), character.codeSet_, position, 0, 1, n, 1});
    return *this;
}

// --- Trimming

VqString& VqString::Trim() { return LeftTrim().RightTrim(); }

VqString& VqString::LeftTrim() {
    std::size_t count = 0;
    for (VqStringIterator it(*this); !it.IsEnd() && it.Get().IsSpace(); ++it) ++count;
    CutChars(0, count);
    return *this;
}

VqString& VqString::RightTrim() {
    const std::size_t length = Len();
    std::size_t kept = length;
    const auto at = [this](std::size_t i) {
        return VqChar(vq::LoadChar(buffer_ + i * CharSize(), CharSize()), codeSet_, language_);
    };
    while (kept > 1 && at(kept - 1).IsSpace()) --kept;
    CutChars(kept, length - kept);
    return *this;
}

// --- Parts

VqString VqString::Copy(unsigned short pos, short n) const {
    const unsigned length = Len();
    if (pos >= length) return VqString("");
    VqString part(codeSet_, language_);
    const unsigned count = std::min<unsigned>(static_cast<unsigned short>(n), length - pos);
    part.AssignChars(buffer_ + pos * CharSize(), codeSet_, static_cast<unsigned short>(count));
    return part;
}

VqString VqString::Left(unsigned short n) const { return Copy(0, static_cast<short>(std::min(Len(), n))); }

VqString VqString::Right(unsigned short n) const {
    const unsigned short length = Len(), count = std::min(length, n);
    return Copy(static_cast<unsigned short>(length - count), static_cast<short>(count));
}

const VqString& VqString::EmptyString() {
    constexpr unsigned char native = 0, neutral = 0;
    static const VqString empty(native, neutral);
    return empty;
}
