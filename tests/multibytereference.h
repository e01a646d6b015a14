// The conversions between UTF-8 and strings the slow, obvious way: character by character through one table, the string
// filled in batches. What the library does in blocks must come to the same.
#ifndef VQ_MULTIBYTEREFERENCE_H
#define VQ_MULTIBYTEREFERENCE_H

#include <cstdint>
#include <cstring>
#include <string>

#include "vqstring.h"

namespace vqtest {

struct Utf8Row {
    std::uint32_t leadMask, leadValue;
    int shift;
    std::uint32_t largest, smallest;
};
inline constexpr Utf8Row Utf8Rows[] = {
    {0x80, 0x00, 0, 0x7F, 0},
    {0xE0, 0xC0, 6, 0x7FF, 0x80},
    {0xF0, 0xE0, 12, 0xFFFF, 0x800},
    {0xF8, 0xF0, 18, 0x1FFFFF, 0x10000},
    {0xFC, 0xF8, 24, 0x3FFFFFF, 0x200000},
    {0xFE, 0xFC, 30, 0x7FFFFFFF, 0x4000000},
    {0, 0, 0, 0, 0},
};

inline int ReferenceDecode(unsigned short& out, const char* s, std::size_t n) {
    if (n == 0) return -1;
    const auto byte = [s](int i) { return std::uint32_t{static_cast<unsigned char>(s[i])}; };
    std::uint32_t value = byte(0);
    int used = 1;
    for (const Utf8Row* row = Utf8Rows; row->leadMask != 0; ++row) {
        if ((byte(0) & row->leadMask) == row->leadValue) {
            value &= row->largest;
            if (value < row->smallest) return -1;
            out = static_cast<unsigned short>(value);
            return used;
        }
        if (static_cast<std::size_t>(used) >= n) return -1;
        const std::uint32_t next = byte(used++) ^ 0x80;
        if (next & 0xC0) return -1;
        value = value << 6 | next;
    }
    return -1;
}

inline std::string ReferenceEncode(std::uint32_t c) {
    for (const Utf8Row* row = Utf8Rows; row->leadMask != 0; ++row) {
        if (c > row->largest) continue;
        int shift = row->shift;
        std::string bytes(1, static_cast<char>(row->leadValue | c >> shift));
        while (shift > 0) {
            shift -= 6;
            bytes += static_cast<char>(0x80 | (c >> shift & 0x3F));
        }
        return bytes;
    }
    return "";
}

inline long ReferenceToString(const char* s, VqString& out, long n) {
    const unsigned char language = out.GetLanguage();
    out = VqString(static_cast<unsigned char>(253), language);
    unsigned short batch[256];
    unsigned short gathered = 0;
    const auto flush = [&] {
        VqString part(static_cast<unsigned char>(253), language);
        part.AssignChars(batch, 253, gathered);
        out += part;
        gathered = 0;
    };
    long used = 0, result = n;
    while (used != n) {
        const int length =
            ReferenceDecode(batch[gathered], s + used, n > used ? static_cast<std::size_t>(n - used) : 0);
        if (length < 0 || batch[gathered] == 0) {
            result = length < 0 ? -1 : used;
            break;
        }
        used += length;
        if (++gathered == 256) flush();
        if (used >= 32768) {
            result = -2;
            break;
        }
    }
    flush();
    return result;
}

inline VqString ReferenceUnicode(const VqString& s) {
    VqString wide(static_cast<unsigned char>(253), s.GetLanguage());
    wide += s;
    return wide;
}

inline unsigned short UnitAt(const VqString& wide, int i) {
    unsigned short unit;
    std::memcpy(&unit, wide.StrGet() + 2 * i, sizeof unit);
    return unit;
}

// Bytes of `out` behind what was written and its zero byte stay as they are.
inline long ReferenceFromString(const VqString& s, char* out, long size) {
    if (s.GetCodeSet() < 6) {
        for (long i = 0;; ++i) {
            if (i == size) return size;
            const char c = s.StrGet()[i];
            if (c & 0x80) break;
            out[i] = c;
            if (c == 0) {
                std::memset(out + i, 0, static_cast<std::size_t>(size - i));
                return i;
            }
        }
    }
    const VqString wide = ReferenceUnicode(s);
    long written = 0;
    for (int i = 0; UnitAt(wide, i) != 0; ++i) {
        const std::string bytes = ReferenceEncode(UnitAt(wide, i));
        if (written + static_cast<long>(bytes.size()) > size) return -written;
        std::memcpy(out + written, bytes.data(), bytes.size());
        written += static_cast<long>(bytes.size());
    }
    if (written < size) out[written] = 0;
    return written;
}

inline long ReferenceLength(const VqString& s, unsigned short n) {
    bool ascii = s.GetCodeSet() < 6;
    for (const char* c = s.StrGet(); ascii && *c != 0; ++c) ascii = !(*c & 0x80);
    if (n == 0) return 0;
    if (ascii) return s.Len();
    const VqString wide = ReferenceUnicode(s);
    long length = 0;
    for (int i = 0; i < n && UnitAt(wide, i) != 0; ++i)
        length += static_cast<long>(ReferenceEncode(UnitAt(wide, i)).size());
    return length;
}

}  // namespace vqtest

#endif
