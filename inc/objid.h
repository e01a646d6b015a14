/// \file
/// VqObjId, VqDBOId, VqClassId: the names of objects and classes.
///
/// An object's number within its database is the 48 bits high:low, and this number is all of its identity: the block
/// that holds it is carried along, but neither compared nor hashed. Number 0 is the null identifier. A class is a
/// number and a version; both 65535 are the null identifier. New ones are 0.
///
///     high 1, low 42, block 7        prints (1-42#7)
///     class 12, version 3            prints (12v3)
///
/// `operator!=` is the order, not a truth value: -1, 0 or 1 where this sorts before, like or after the other. All
/// numbers are unsigned.
///
/// TEXT
///
/// A format is text with directives, each of which stands for one number in decimal:
///
///     %H %L %B    high, low, block of an object
///     %D          its database, in references (ref.h)
///     %C %V       number and version of a class
///     %h %l       the next number in the order high, low, block; class, version; or database, high, low, block, class:
///                 %h where that has 16 bits, %l where it has 32. The other letter passes over it.
///     %%          a per cent sign, as every other character after a '%' is itself
///
/// Printing *replaces* what the string holds, and keeps its code set and language; a null value makes it the null print
/// string, whatever the format. Only the texts of an array are appended, as those of all types are.
///
/// Scanning never fails. All numbers that the format names or not start as 0; a null string, and a text that begins
/// with the null print string, make the null value. Then format and text are walked together until the text ends: an
/// ordinary character passes over one of the text, which may be any, a directive reads a number as scanf does, white
/// space first and a sign allowed, or leaves it 0. Numbers above 32 bits are 4294967295; the low 16 bits count where
/// there is room for no more. Texts in 2-byte code sets are read in the default 8-bit one.
#ifndef OBJID_H
#define OBJID_H

#include <cstdint>

#include "_vqnulty.h"
#include "vqdefs.h"

class MemFile;
class VqDBOId;
class VqString;
struct VqIdxBounds;

/// Row functions of the types VqObjId, VqClassId and VqRef, which are their static members: on arrays of `count`
/// values, of which those in memory form are as far apart as values are long, and those in disk form follow one another
/// at any address. Disk form: see docs/formats.md.
template <class Id>
class VQTM_API VqIdentifierSlots {
  public:
    // --- Life

    /// A new array of values that are 0; below 2 it has one value. Delete frees it. Null when memory runs out and the
    /// memory handler could not help.
    static void* Create(unsigned long count);
    /// Frees an array that Create made with this `count`; null does nothing.
    static void Delete(void* values, unsigned long count);

    // --- Disk form

    /// Writes values to disk form. Returns the bytes written. The version of a reference's class is not stored.
    static unsigned long Store(void* dst, const void* src, unsigned char format, unsigned long count);
    /// Reads values from disk form; the version of a reference's class becomes 0. Returns the bytes consumed.
    static unsigned long Load(void* dst, const void* src, unsigned char format, unsigned long count);
    /// Disk bytes of `count` values: 10 for each VqObjId, 4 for a VqClassId, 14 for a VqRef. Nothing is looked at.
    static unsigned long SizeGet(const void* data, unsigned char dataFormat, unsigned char format, unsigned long count);
    /// The same as SizeGet.
    static unsigned long NullSizeGet(unsigned long count);
    /// The same as SizeGet; the file's position stays.
    static unsigned long SizeGetFromMemFile(MemFile* file, unsigned char format, unsigned long count);
    /// Converts between two forms, each memory (VqFormat_Memory in its format) or disk: stores, loads, or copies from
    /// memory to memory. From disk to disk the bytes are copied as they are: the shorter of the lengths, the rest of a
    /// longer destination zero. Returns the bytes set at `dst`.
    static unsigned long Translate(void* dst, unsigned char dstFormat, unsigned long dstLength, const void* src,
                                   unsigned char srcFormat, unsigned long srcLength, unsigned long count);

    // --- Keys. Only a format of exactly 8 is the memory form.

    /// As all key comparisons (vqtypcmp.h). In memory the class's own `operator!=`, -1, 0 or 1. Stored keys compare
    /// byte by byte from the most significant end, read with the low byte first whatever the format says, and the
    /// result is the difference of the first two bytes that differ: for a VqObjId high, then low; for a VqRef database,
    /// then high, then low, where the class itself puts the database last; for a VqClassId class, then version, but -1
    /// where the array at `value1` begins with a null identifier, else 1 where the one at `value2` does. So keys that
    /// were stored with the high byte first have an order of their own.
    static int Compare(unsigned char format, unsigned long length1, const void* value1, unsigned long length2,
                       const void* value2, unsigned short flags, unsigned long count, int& error);
    /// As all hashes by type (vqtyphash.h): low ^ high, class ^ version, or database ^ high ^ low of each value. Stored
    /// keys are read with the low byte first whatever the format says.
    static unsigned long Hash(unsigned char format, unsigned long length, const void* values, unsigned long count,
                              int& error);
    /// As all estimates (vqtypevl.h), of the first of `count` keys.
    ///
    ///     VqObjId      the area between the index's keys, where a key is the number high * 65535 + low; without
    ///                  statistics, the index of the number 0 alone
    ///     VqClassId    always 1, and no range: no key selects
    ///     VqRef        the part of all references that number (database * 65535 + high) * 4294967295 + low splits off,
    ///                  whatever the index holds; `operators` keep the bits 0x800F
    ///
    /// The multipliers stay as they are: estimates decide between plans that were tuned with them. Those of references
    /// are only a little too small. That of objects is 1/65536 of what `low` counts to, so that objects of different
    /// `high` overlap: (1, 0) lies where (0, 65535) does. Within one `high` estimates are sound; an index that reaches
    /// over several can look backward, as from (0, 70000) to (1, 0), and is then estimated at 0.
    static double EvalAndBound(VqIdxBounds* indexBounds, unsigned short& operators, const void* key,
                               unsigned char format, unsigned long count, VqIdxBounds* scanBounds);

    // --- Text

    /// The text of one value replaces `text`; those of an array are appended, with commas between them. A null format
    /// is the row's: "(%H-%L#%B)", "(%Cv%V)" or "(%D:%H-%L#%B, %C)". Returns `text`.
    static VqString& PrintToString(VqString& text, void* values, const char* format, unsigned long count);
    /// Reads values with commas between them, beside those that the format has; a null format is the row's. Returns
    /// `values`.
    static void* ScanFromString(void* values, VqString& text, const char* format, unsigned long count);
};

/// An object within its database.
class VQTM_API VqObjId : public VqIdentifierSlots<VqObjId> {
  public:
    static constexpr unsigned long StoredSize = 10;  ///< bytes in disk form

    // --- Null

    /// True for the number 0, whatever the block.
    bool IsNullValue() const { return Number() == 0; }
    /// Sets all to 0. Returns 0.
    int SetNullValue() {
        block = low = high = 0;
        return 0;
    }

    // --- Counting, modulo 2^48. The block stays.

    /// Makes this the greatest number, the end of every range, in block 0.
    VqObjId& SetHighestValue() {
        block = 0;
        low = 0xFFFFFFFF;
        high = 0xFFFF;
        return *this;
    }
    /// Moves on to another number. Returns this identifier.
    /// @{
    VqObjId& operator++() { return *this += 1; }
    VqObjId& operator--() { return *this += -1; }
    VqObjId& operator+=(short n) {
        const std::uint64_t sum = Number() + static_cast<std::uint64_t>(n);
        low = static_cast<std::uint32_t>(sum);
        high = static_cast<std::uint16_t>(sum >> 32);
        return *this;
    }
    /// @}

    // --- Assignment and comparison; of a VqDBOId the object

    /// Takes number and block; the database is dropped.
    inline VqObjId& operator=(const VqDBOId& other);
    /// The same number.
    /// @{
    bool operator==(const VqObjId& other) const { return Number() == other.Number(); }
    inline bool operator==(const VqDBOId& other) const;
    /// @}

    /// The order of the numbers: -1, 0 or 1.
    /// @{
    int operator!=(const VqObjId& other) const { return (Number() > other.Number()) - (Number() < other.Number()); }
    inline int operator!=(const VqDBOId& other) const;
    /// @}

    // --- Text

    /// Makes `out` the text under `format` ("(%H-%L#%B)" for null), see objid.h.
    void PrintToVqString(VqString& out, const char* format = nullptr) const;
    /// Reads the value from `text`.
    void ScanFromVqString(const VqString& text, const char* format = nullptr);

    std::uint32_t block = 0;  ///< the storage block of the object; no part of its identity
    std::uint32_t low = 0;    ///< bits 0 to 31 of the object's number
    std::uint16_t high = 0;   ///< bits 32 to 47

  private:
    std::uint64_t Number() const { return std::uint64_t{high} << 32 | low; }
};

/// An object and its database.
class VQTM_API VqDBOId {
  public:
    /// True for object number 0, whatever the database.
    bool IsNullValue() const { return id.IsNullValue(); }
    /// Sets all to 0. Returns 0.
    int SetNullValue() {
        database = 0;
        return id.SetNullValue();
    }

    /// The object, in database 0.
    VqDBOId& operator=(const VqObjId& other) {
        id = other;
        database = 0;
        return *this;
    }

    /// Database and object.
    bool operator==(const VqDBOId& other) const { return database == other.database && id == other.id; }
    /// The object alone.
    bool operator==(const VqObjId& other) const { return id == other; }
    /// By database, then by object.
    int operator!=(const VqDBOId& other) const {
        if (database != other.database) return database < other.database ? -1 : 1;
        return id != other.id;
    }
    /// By the object alone.
    int operator!=(const VqObjId& other) const { return id != other; }

    /// The text of the object. The database is not printed, and stays when a text is read.
    /// @{
    void PrintToVqString(VqString& out, const char* format = nullptr) const { id.PrintToVqString(out, format); }
    void ScanFromVqString(const VqString& text, const char* format = nullptr) { id.ScanFromVqString(text, format); }
    /// @}

    VqObjId id;                  ///< the object within its database
    std::uint16_t database = 0;  ///< the database's number
};

inline VqObjId& VqObjId::operator=(const VqDBOId& other) { return *this = other.id; }
inline bool VqObjId::operator==(const VqDBOId& other) const { return *this == other.id; }
inline int VqObjId::operator!=(const VqDBOId& other) const { return *this != other.id; }

/// A class and its version. A class of 65535 with another version is not null, and sorts behind all other classes.
class VQTM_API VqClassId : public VqIdentifierSlots<VqClassId> {
  public:
    static constexpr unsigned long StoredSize = 4;  ///< bytes in disk form

    /// True when class and version are 65535.
    bool IsNullValue() const { return classNumber == 0xFFFF && version == 0xFFFF; }
    /// Sets both to 65535. Returns 0.
    int SetNullValue() {
        classNumber = version = 0xFFFF;
        return 0;
    }

    /// Class and version.
    bool operator==(const VqClassId& other) const {
        return classNumber == other.classNumber && version == other.version;
    }
    /// The order, -1, 0 or 1: null first, then by class, then by version.
    int operator!=(const VqClassId& other) const {
        const VqNullity nullity = VqNullityClass(IsNullValue(), other.IsNullValue());
        if (nullity != VqNullity_None) return VqNullityCompare(nullity);
        if (classNumber != other.classNumber) return classNumber < other.classNumber ? -1 : 1;
        return (version > other.version) - (version < other.version);
    }
    /// True where this sorts behind the other.
    bool operator>(const VqClassId& other) const { return (*this != other) > 0; }

    /// Makes `out` the text under `format` ("(%Cv%V)" for null), see objid.h.
    void PrintToVqString(VqString& out, const char* format = nullptr) const;
    /// Reads the value from `text`.
    void ScanFromVqString(const VqString& text, const char* format = nullptr);

    std::uint16_t classNumber = 0;  ///< the class's number
    std::uint16_t version = 0;      ///< the version of its description
};

#endif
