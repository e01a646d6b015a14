/// \file
/// Text forms of numbers, characters and strings: printing and scanning under formats in the manner of C.
///
///     "%d"    -31        <->  -31
///     "%5.1f" 2.25        ->    2.2       (widths are a minimum in print, a maximum in scan)
///     "[%s]"  a text     <->  [a text]
///
/// A format is text with conversions `%[flags][width][.precision][length]letter`. The library reads it itself, so that
/// every target gives the same text and no format can do harm:
///
///     numbers and characters   d i u o x X c
///     floating numbers         f F e E g G a A      point and digits as in the C locale, rounded to nearest even
///     strings                  s
///     any type                 %%                   a per cent sign
///
/// A '%' that begins none of these for the value's type, or asks for a width from an argument ('*'), is ordinary text.
/// Each conversion of a format takes the same one value. The letter decides whether an integer's bits are read as
/// signed or unsigned, whatever the type; the length h leaves 16 of them, hh 8, every other length all.
///
/// Printing appends to `out`, whose code set the text is mapped into.
///
/// Scanning reads texts of 2-byte code sets in the default 8-bit one, strings aside. White space in a format matches
/// any run of white space, other characters only themselves. Conversions but `c` and `s` pass over white space first,
/// and `%*d` reads without storing; flags and precision mean nothing. The first mismatch ends the scan: what was stored
/// stays, and without a number the value keeps what it had. Integers saturate at the limits of 32 bits (signed for d
/// and i, else unsigned, where -1 is 4294967295), then the type and the length keep the low bits: "70000" under "%hd"
/// is 4464.
///
/// Arrays print with ',' between the elements, and scan with it skipped; an element that cannot be read keeps its
/// value, and the scan goes on behind the next comma. Where numbers are read, what an element leaves unread before that
/// comma counts as the next element: "1 2,3" holds three. Bytes have no separator.
///
/// A byte outside the printable ASCII characters prints as 0x and two hexadecimal digits, in place of the whole format
/// whatever that is, and so it is read back: the byte 7 under "[%d]" is 0x07, the byte 65 is [65].
///
/// May be called from several threads at once, on different strings.
#ifndef TEXTFORM_H
#define TEXTFORM_H

#include <cstdint>
#include <optional>

#include "vqcodeset.h"
#include "vqdefs.h"
#include "vqstring.h"

namespace vq {

/// Appends one number. T: signed char, which is a byte, std::int16_t, std::int32_t, float, double.
template <class T>
void PrintScalar(VqString& out, T value, const char* format);

/// Reads one number from the zero-terminated `text` and returns where it stopped. `found` tells whether `value` was
/// stored.
template <class T>
const char* ScanScalar(const char* text, const char* format, T& value, bool& found);

/// A text's characters in 1-byte form, zero-terminated. Refers to the string while that is in 1-byte form itself.
class SingleByteText {
  public:
    /// Maps a text of 2-byte characters to the default 8-bit code set. The string must outlive this object.
    explicit SingleByteText(const VqString& text) : text_(&text) {
        if (text.GetCodeSet() >= VqFirstWideCodeSet) Map();
    }
    SingleByteText(const SingleByteText&) = delete;
    SingleByteText& operator=(const SingleByteText&) = delete;

    /// The characters.
    const char* Get() const { return text_->StrGet(); }

  private:
    void Map();

    std::optional<VqString> mapped_;
    const VqString* text_;
};

/// Where a text goes on behind the null print string that it begins with; null when it does not. An empty null print
/// string stands only for an empty text.
const char* SkipNullPrintString(const char* text);

/// Scans `count` elements that are separated by commas: `scanElement(text, index, found)` reads one and returns where
/// it stopped. Behind every comma there is an element, which may be empty.
template <class ScanElement>
void ScanElements(const VqString& text, unsigned long count, ScanElement scanElement) {
    const SingleByteText single(text);
    const char* at = single.Get();
    bool more = true;
    for (unsigned long i = 0; i < count && more; ++i) {
        bool found = false;
        at = scanElement(at, i, found);
        while (!found && *at != 0 && *at != ',') ++at;
        more = *at != 0;
        if (*at == ',') ++at;
    }
}

/// Where an element of an array's text ends: at the comma behind as many as its format has, or behind the null print
/// string.
const char* EndOfElement(const char* text, const char* format);

/// Appends the comma between two elements. False where the string is full, so that nothing behind it would get in.
inline bool AppendComma(VqString& out) {
    const unsigned short length = out.Len();
    out << ',';
    return out.Len() != length;
}

/// Prints `count` elements with commas between them, as long as there is room: `printElement(index)` prints one.
template <class PrintElement>
void PrintElements(VqString& out, unsigned long count, PrintElement printElement) {
    for (unsigned long i = 0; i < count && (i == 0 || AppendComma(out)); ++i) printElement(i);
}

}  // namespace vq

// --- Rows of the descriptor table
//
// Rows of unsigned types share these functions and differ in their format.

/// Prints `count` bytes one after the other, without separator, under `format` ("%c" for null). Returns `out`.
/// Nothing is printed where `values` is null.
VQTM_API VqString& CharPrint(VqString& out, void* values, const char* format, unsigned long count);
/// Prints `count` numbers with commas between them, under `format` (null: "%d" for integers, "%f" for floating ones).
/// Returns `out`. Nothing is printed where `values` is null.
/// @{
VQTM_API VqString& ShortPrint(VqString& out, void* values, const char* format, unsigned long count);
VQTM_API VqString& LongPrint(VqString& out, void* values, const char* format, unsigned long count);
VQTM_API VqString& IntPrint(VqString& out, void* values, const char* format, unsigned long count);
VQTM_API VqString& FloatPrint(VqString& out, void* values, const char* format, unsigned long count);
VQTM_API VqString& DoublePrint(VqString& out, void* values, const char* format, unsigned long count);
/// @}

/// Prints `count` strings with commas between them, under `format` ("%s" for null). Widths and precisions count
/// characters. A null string prints the null print string. Returns `out`. Nothing is printed where `values` is null.
VQTM_API VqString& StringPrint(VqString& out, void* values, const char* format, unsigned long count);

/// Reads `count` numbers, or bytes without separator, under `format` (null: "%c" for bytes, "%d" for other integers,
/// "%f" for floating ones). What cannot be read keeps its value. Returns `values`. Nothing is read where that is null.
/// @{
VQTM_API void* CharScan(void* values, VqString& text, const char* format, unsigned long count);
VQTM_API void* ShortScan(void* values, VqString& text, const char* format, unsigned long count);
VQTM_API void* LongScan(void* values, VqString& text, const char* format, unsigned long count);
VQTM_API void* IntScan(void* values, VqString& text, const char* format, unsigned long count);
VQTM_API void* FloatScan(void* values, VqString& text, const char* format, unsigned long count);
VQTM_API void* DoubleScan(void* values, VqString& text, const char* format, unsigned long count);
/// @}

/// Reads `count` strings under `format` ("%s" for null), and returns `values`. Nothing is read where that is null.
///
/// A conversion takes the text, blanks included, up to the character that follows it in the format, or to the end of
/// the text; in an array each element but the last ends at its comma. The string takes the text's code set and
/// language. An element that is the null print string, or a null text, gives a null string.
VQTM_API void* StringScan(void* values, VqString& text, const char* format, unsigned long count);

#endif
