/// \file
/// VqBlob: a sequence of bytes of any length.
///
/// A blob is a handle to a record that it alone owns: the bytes, and how many there are. Without a record it is null,
/// which is something else than empty:
///
///     VqBlob a;            a.Length() == 0    a.IsNullValue() == false
///     a.SetNullValue();    a.Length() == 0    a.IsNullValue() == true
///
/// Copying copies the bytes. Nothing is kept in reserve for growth: a blob built piece by piece is better made in its
/// final length and written through Data().
///
/// Positions and lengths are in bytes; a length is at most 2147483647 on every target. A negative length counts as 0. A
/// null pointer stands for zero bytes, as many as the length says. Bytes that nobody has given a value are zero. Every
/// argument may be this blob, or point into it.
///
/// When memory cannot be had, the memory handler is told the size and may help (VqSetMemoryHandler); about a length
/// above the largest one it is told once, for none helps. Otherwise every blob stays valid: a constructor, and a part
/// that is copied out, give the null value, and every other member leaves all as it was. None throws an exception, but
/// for the memory of strings, which follows the rule of `new`: PrintToVqString makes text, and ScanFromVqString maps a
/// 2-byte one.
///
/// A blob belongs to one thread at a time. Pointers into it (Data, Seek) are valid until its next change.
#ifndef BLOB_H
#define BLOB_H

#include <cstdint>
#include <cstring>

#include "vqdefs.h"

class MemFile;
class VqString;

/// The handle to a record of bytes. What holds for lengths, null and lack of memory is said in blob.h.
class VQTM_API VqBlob {
  public:
    /// What a blob owns.
    struct Record {
        unsigned char* data;  ///< from std::malloc; may be null when the length is 0
        std::int32_t length;  ///< bytes at `data`
    };

    static const long MaxLength = 2147483647;  ///< the greatest length in bytes
    static const long NotFound = 65535;        ///< Search's answer when nothing is found

    // --- Construction

    /// Empty, not null.
    VqBlob();
    /// `n` zero bytes. A length is a long: VqBlob(12L) has 12 bytes, VqBlob(12) is the text "12".
    VqBlob(long n);
    /// A copy of the `n` bytes at `bytes`.
    VqBlob(const void* bytes, long n);
    /// The text and its zero character; null for a null pointer.
    VqBlob(const char* text);
    /// The number as decimal text, and a zero character: VqBlob(-31) has 4 bytes.
    /// @{
    VqBlob(int value);
    VqBlob(short value);
    /// @}

    /// The number's low 32 bits likewise, so that the text is the same on every target.
    VqBlob(unsigned long value);
    /// The number with six digits behind the point, as "%lf" prints it.
    VqBlob(double value);
    /// The text's bytes as they are kept, zero character included (VqString::GetSize of them); null for the null
    /// string.
    VqBlob(const VqString& text);
    /// A copy; null for null.
    VqBlob(const VqBlob& other);
    /// Takes over the other's record, and leaves the other null.
    VqBlob(VqBlob&& other) noexcept : record_(other.record_) { other.record_ = nullptr; }
    /// Releases the record.
    ~VqBlob() { SetNullValue(); }

    // --- Assignment

    /// Copies from a buffer that begins with its length: a signed 32-bit number in the machine's byte order, then so
    /// many bytes. A negative length, and a null pointer, make the blob null; `blob = 0` is that null pointer.
    VqBlob& operator=(const char* lengthAndBytes);
    /// Copies; where neither is null, as SetTo does.
    VqBlob& operator=(const VqBlob& other);
    /// Takes over the other's record, and leaves the other null.
    VqBlob& operator=(VqBlob&& other) noexcept;
    /// Becomes the `n` bytes at `bytes`. The storage stays where the old length is `n` or up to 128 more.
    void SetTo(const void* bytes, long n);
    /// Takes over the other's record; the other, unless it was null, becomes empty. Nothing happens with itself.
    void Destroy(VqBlob& other);

    // --- Null

    /// True without a record.
    bool IsNullValue() const { return record_ == nullptr; }
    /// Releases the record. Returns 0.
    int SetNullValue();

    // --- Comparison

    /// 1 when both are null, or neither is and the bytes are the same; else 0.
    int operator==(const VqBlob& other) const;
    /// A three-way result, 0 for equal blobs. Null sorts before every other blob, which gives -2, or 2 when the other
    /// is the null one. Otherwise the first different byte decides, and behind equal beginnings the length: -1 or 1.
    int operator!=(const VqBlob& other) const;

    // --- Access

    /// The number of bytes; 0 for null.
    long Length() const { return record_ != nullptr ? record_->length : 0; }
    /// The bytes, Length() of them. Null for the null value, and may be null when the length is 0.
    /// @{
    unsigned char* Data() { return record_ != nullptr ? record_->data : nullptr; }
    const unsigned char* Data() const { return record_ != nullptr ? record_->data : nullptr; }
    /// @}

    /// The address of the `n` bytes at `pos`; null for the null value, when `n` is below 1, and where they are not all
    /// within the blob.
    /// @{
    unsigned char* Seek(long pos, long n);
    const unsigned char* Seek(long pos, long n) const;
    /// @}

    /// The first position where the pattern's bytes lie, or NotFound; always that when this blob is null. A pattern
    /// that is empty or null lies at 0. A pattern found at 65535 looks like none; the bytes at Seek(65535, its length)
    /// tell. Takes time in proportion to the length, whatever the bytes are, and no memory.
    long Search(const VqBlob& pattern) const;

    // --- Change of length

    /// Gets a length of `n`: what there is up to there, then zero bytes. The storage is always a new one.
    void Expand(long n);
    /// Gets a length of `n`; a number above LONG_MAX is read as a negative one. Shrinking keeps the storage, but for a
    /// length of 0.
    void Resize(unsigned long n);
    /// Appends the `n` bytes at `bytes`; a null blob becomes them. Nothing happens when `n` is below 1. Copies what
    /// there is each time.
    void Append(const void* bytes, long n);
    /// Appends the other's bytes; nothing happens when it has none.
    void Append(const VqBlob& other);
    /// Append. Returns this blob.
    VqBlob& operator+=(const VqBlob& other);
    /// Removes the `n` bytes at `pos`, or as many as there are. Nothing happens when `n` is below 1 or `pos` lies
    /// outside. A blob without bytes left is empty, not null.
    void Cut(long pos, long n);

    // --- Parts

    /// The `n` bytes at `pos`, or as many as there are. One zero byte when this blob is null, `pos` lies outside
    /// (Length() is still inside) or `n` is below 1.
    VqBlob CopyFrom(long pos, long n) const;
    /// Overwrites the `n` bytes at `pos` with those at the start of `source`; where this blob ends, or `source` has no
    /// more, it stops. Never changes the length.
    void CopyTo(const VqBlob& source, long pos, long n);

    /// \name Numbers
    /// What VqBlob(int) and its kind made is read back. Null, and bytes without a number, give 0.
    /// @{

    /// Decimal, as `atol` reads it, saturated at the limits of 32 bits on every target. No zero character is needed.
    operator long() const;
    /// The same number.
    operator int() const;
    /// The low 16 bits.
    operator short() const;
    /// As `atof` reads it in the C locale.
    operator double() const;
    /// @}

    // --- Text

    /// Appends the text under `format` to `out`, the null print string for null.
    ///
    ///     %L        the length in bytes                                        [BLOB,len=3]
    ///     %X %x     the bytes as hexadecimal pairs, in capitals or small       07FF61   07ff61
    ///     %%        a per cent sign
    ///
    /// Everything else in a format is ordinary text. A null format is "[BLOB,len=%L]". Pairs that a string has no room
    /// for are left out, so that what stands behind them in the format has its place: about 32000 bytes can be printed.
    void PrintToVqString(VqString& out, const char* format = nullptr) const;
    /// Reads a text under `format`. A text that begins with the null print string makes the blob null. "%X" and "%x"
    /// read as many pairs as there are, of digits in either case, and make them the content. "%L" passes over a number
    /// without changing anything, so that reading what a blob printed under its row's own format destroys no bytes.
    /// Where the text does not match the format the content stays, whatever was read before; so it does where pairs
    /// should be and another character is. Text behind the end of the format is ignored, as an odd last digit is under
    /// "%x".
    void ScanFromVqString(const VqString& text, const char* format = nullptr);

    // --- Records

    /// A new record of `n` + 1 zero bytes that belongs to the caller, to be freed by FreeData; null when memory cannot
    /// be had.
    static Record* AllocData(long n);
    /// Frees a record and its bytes; null does nothing.
    static void FreeData(Record* record);
    /// The order of blobs with these records, as operator!= gives it. A null pointer is the record of a null blob.
    static int Compare(const Record* a, const Record* b);

  private:
    friend VQTM_API unsigned long BlobLoad(void* dst, const void* src, unsigned char format, unsigned long count);

    bool TrySetTo(const void* bytes, long n);

    Record* record_ = nullptr;
};

// Comparisons are short beside what they compare: they are compiled where they are called.

inline int VqBlob::operator==(const VqBlob& other) const {
    if (record_ == nullptr || other.record_ == nullptr) return record_ == other.record_;
    const std::int32_t length = record_->length;
    return length == other.record_->length &&
           (length == 0 || std::memcmp(record_->data, other.record_->data, static_cast<std::size_t>(length)) == 0);
}

inline int VqBlob::Compare(const Record* a, const Record* b) {
    if (a == nullptr || b == nullptr) return 2 * ((a != nullptr) - (b != nullptr));
    const std::int32_t common = a->length < b->length ? a->length : b->length;
    const int order = common == 0 ? 0 : std::memcmp(a->data, b->data, static_cast<std::size_t>(common));
    if (order != 0) return order < 0 ? -1 : 1;
    return (a->length > b->length) - (a->length < b->length);
}

inline int VqBlob::operator!=(const VqBlob& other) const { return Compare(record_, other.record_); }

// --- Rows of the descriptor table: disk form (see docs/formats.md)

/// Writes `count` blobs to disk form: 32 bits, how many bytes follow for the whole array; then for each blob 32 bits,
/// its length or -1 for null, and its bytes. All numbers are in the format's byte order. An array without blobs takes
/// no bytes at all. What the 32-bit total cannot count is left out: bytes at the end of a blob, and blobs behind it,
/// which load as null. Returns the bytes written.
VQTM_API unsigned long BlobStore(void* dst, const void* src, unsigned char format, unsigned long count);
/// Reads `count` blobs from disk form, and returns the bytes consumed. Trusts the total alone: ask
/// BlobSizeGetFromMemFile about bytes from elsewhere. A negative length is a null blob, a blob ends where the total
/// does, and one that would begin there is null; so is one whose bytes find no memory.
VQTM_API unsigned long BlobLoad(void* dst, const void* src, unsigned char format, unsigned long count);
/// Disk bytes of `count` null blobs: 4 each, and 4.
VQTM_API unsigned long BlobNullSizeGet(unsigned long count);
/// Disk bytes of `count` blobs, in memory form when `dataFormat` has VqFormat_Memory, else in disk form.
VQTM_API unsigned long BlobSizeGet(const void* data, unsigned char dataFormat, unsigned char format,
                                   unsigned long count);
/// Disk bytes of the `count` blobs at the file's position, which stays. 4294967295, which is never the size of blobs,
/// where they would run past the file's end.
VQTM_API unsigned long BlobSizeGetFromMemFile(MemFile* file, unsigned char format, unsigned long count);

#endif
