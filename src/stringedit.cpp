// Editing members of strings: checks, then one call of the engine.

#include <algorithm>

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
    const unsigned length = Len();
    const unsigned rest = pos < length ? length - pos : 0;
    const unsigned count = n == -1 ? rest : std::min(rest, static_cast<unsigned>(std::max<short>(n, 0)));
    if (count != 0) SpliceChars({TruncateAndWrite, buffer_, codeSet_, pos, pos + count, length - pos - count, 1, 1});
    return *this;
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
