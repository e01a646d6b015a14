/// \file
/// The type manager: every operation on arrays of values whose type is known only as a number.
///
/// A type is a row of a table, and a type identifier its index. The manager finds the row and calls the row's function;
/// it adds no checks of its own. What each function does, with null, 0 and counts, is said where its slot's type is
/// declared (vqslots.h).
///
///     VqTypeMgr manager(5);
///     void* keys = manager.Create(VqTypeId_long, 3);                       // 0, 0, 0
///     VqString text("1,2,3");
///     manager.ScanFromVqString(VqTypeId_long, keys, text, nullptr, 3);
///     manager.Store(VqTypeId_long, disk, keys, VqFormat_BigEndian, 3);     // 00 00 00 01  00 00 00 02  00 00 00 03
///     manager.Delete(VqTypeId_long, keys, 3);
///
/// An identifier without a row (41 to 99, 100 and above, a negative one) stands for the illegal row, whose functions do
/// nothing and give 0 or null; so does a type that a manager of the older table does not know.
///
/// A manager may be used from several threads at once. The rows are one for the process: the exchange operations and
/// DefaultTypeMgr write them without a lock, and belong to start-up, before other threads use any manager.
#ifndef VQTYPES_H
#define VQTYPES_H

#include <cstdint>
#include <limits>

#include "convert.h"
#include "vqdefs.h"
#include "vqslots.h"
#include "vqstring.h"

struct VqEvalData;

/// One row: the functions and facts of a type. A row is static and shared by all managers.
struct VqTypeDescriptor {
    const char* name;  ///< the type's name, that of its identifier behind "VqTypeId_"

    VqCreateFunc create;   ///< makes an array
    VqDeleteFunc destroy;  ///< frees one

    VqStoreFunc store;                            ///< memory to disk
    VqLoadFunc load;                              ///< disk to memory
    VqNullSizeGetFunc nullSizeGet;                ///< disk bytes of null values
    VqSizeGetFunc sizeGet;                        ///< disk bytes of values
    VqSizeGetFromMemFileFunc sizeGetFromMemFile;  ///< disk bytes of values in a memory file

    VqCompareFunc compare;            ///< the order of keys; exchangeable
    VqEvalAndBoundFunc evalAndBound;  ///< selectivity and range of a predicate
    VqHashFunc hash;                  ///< the hash code of keys

    VqConvertToFunc convertTo;      ///< values to exchange strings
    VqConvertFromFunc convertFrom;  ///< exchange strings to values

    VqConstructorFunc constructor;  ///< constructs in raw memory
    VqDestructorFunc destructor;    ///< destroys in place
    VqAssignmentFunc assignment;    ///< assigns to constructed values
    VqCopyFunc copy;                ///< copies into raw memory
    VqTranslateFunc translate;      ///< converts between memory and disk forms

    VqIsNullFunc isNull;    ///< tells whether a value is null
    VqSetNullFunc setNull;  ///< makes a value null; null where the type has no null of its own

    const char* format;  ///< the default text format; exchangeable
    VqPrintFunc print;   ///< values to text; exchangeable
    VqScanFunc scan;     ///< text to values; exchangeable

    std::uint16_t memoryLength;  ///< bytes of one value in memory
    std::uint16_t fixed;         ///< 1: every value takes the same bytes on disk; 0: it depends on the value

    VqDefaultValueFunc defaultValue;  ///< makes an array of default values
};

/// Handles values by type. Plain and small: a table and a level, no ownership.
class VQTM_API VqTypeMgr {
  public:
    // --- Construction and factory

    /// A manager for databases of factory version `version` (SetFactory).
    explicit VqTypeMgr(unsigned long version);

    /// Chooses the table for all later calls. Versions 4 to 10, and from 12 up, have the current table of 41 rows; 0 to
    /// 3, and 11, the older one: rows 0 to 27, with strings in their legacy disk layout and without a null. The level
    /// is the version itself, 3 for 11, and 4 from 12 up.
    void SetFactory(unsigned long version);

    /// 1 where the identifier is below 41, or 100 or above, else 0. One-sided: a negative identifier counts as valid.
    int IsValidType(char id) const;

    // --- Life of values

    /// A new array of `count` values, to be freed with Delete (VqCreateFunc).
    void* Create(char id, unsigned long count) const;
    /// Destroys and frees an array of `count` values that this type made; null does nothing (VqDeleteFunc).
    void Delete(char id, void* values, unsigned long count) const;
    /// A new array of default values, or of null values where `asNull` is not 0 and the type has a null, to be freed
    /// with Delete (VqDefaultValueFunc).
    void* DefaultValue(char id, unsigned long count, int asNull) const;

    /// The row's function of that name, for callers that call it often.
    /// @{
    VqConstructorFunc ConstructorPtrGet(char id) const;
    VqDestructorFunc DestructorPtrGet(char id) const;
    VqAssignmentFunc AssignmentPtrGet(char id) const;
    VqCopyFunc CopyPtrGet(char id) const;
    VqLoadFunc LoadPtrGet(char id) const;
    VqStoreFunc StorePtrGet(char id) const;
    VqIsNullFunc IsNullPtrGet(char id) const;
    /// @}

    /// The row's function that makes a value null, or null where the type has no null of its own.
    VqSetNullFunc SetNullPtrGet(char id) const;
    /// Always null; CmpFuncPtrGet gets the comparison.
    VqCompareFunc ComparePtrGet(char id) const;

    /// The address of element `index`. Null when `values` is, and when `count` is not 0 and the index is not below it;
    /// a count of 0 is no bound.
    void* GetArrayElement(char id, void* values, unsigned long index, unsigned long count) const;

    // --- Names and sizes

    /// The row's name. With a buffer (which has room for it and its terminator) the name is copied there and the buffer
    /// returned.
    char* NameGet(char id, char* buffer) const;
    /// Finds a row by its exact name, "illegal" included. Returns 0 with its identifier in `id` (the first, where the
    /// older table has "illegal" more than once), or 1 with 41 in `id` when there is none.
    int Name2VqTypeId(const char* name, char& id) const;
    /// Bytes of `count` values in memory.
    unsigned long MemLenGet(char id, unsigned long count) const;
    /// 1 where all values of the type take the same bytes on disk, else 0.
    unsigned short IsFixed(char id) const;
    /// Disk bytes in `format` of the values at `data`, which are in the form `dataFormat`.
    unsigned long DiskLenGet(char id, const void* data, unsigned char format, unsigned long count,
                             unsigned char dataFormat) const;
    /// Disk bytes of the `count` values that begin at the file's position, which stays (VqSizeGetFromMemFileFunc).
    unsigned long DiskLenGetFromMemFile(char id, MemFile* file, unsigned char format, unsigned long count) const;

    // --- Disk form

    /// Writes values at `src` in disk form to `dst`, which has room for DiskLenGet. Returns the bytes written
    /// (VqStoreFunc).
    unsigned long Store(char id, void* dst, const void* src, unsigned char format, unsigned long count) const;
    /// Reads values in disk form at `src` into constructed ones at `dst`. Returns the bytes consumed (VqLoadFunc).
    unsigned long Load(char id, void* dst, const void* src, unsigned char format, unsigned long count) const;
    /// Converts values between two forms, memory or disk. Returns the bytes set at `dst` (VqTranslateFunc).
    unsigned long Translate(char id, void* dst, unsigned char dstFormat, unsigned long dstLength, const void* src,
                            unsigned char srcFormat, unsigned long srcLength, unsigned long count) const;

    // --- Keys

    /// Compares `count` values at `a` and `b`, both in `format`: negative, 0 or positive (VqCompareFunc).
    long Cmp(char id, const void* a, const void* b, unsigned short flags, unsigned long count,
             unsigned char format) const;
    /// The same with bounds on the bytes that may be read.
    long Cmp(char id, unsigned long length1, const void* a, unsigned long length2, const void* b, unsigned short flags,
             unsigned long count, unsigned char format, int& status) const;
    /// The row's comparison.
    VqCompareFunc CmpFuncPtrGet(char id) const;
    /// Estimates what a predicate selects of an index, from 0 to 1, and narrows the range to scan (VqEvalAndBoundFunc).
    /// `evalData` is not used.
    float EvalAndBound(char id, VqIdxBounds* indexBounds, unsigned short& operators, const void* key,
                       unsigned char format, unsigned long count, VqIdxBounds* scanBounds, VqEvalData* evalData) const;
    /// The hash code of `count` values in `format`, below 2^32; `length` bytes may be read, 0 stands for all
    /// (VqHashFunc).
    unsigned long Hash(char id, unsigned long length, const void* values, unsigned long count, unsigned char format,
                       int& status) const;

    // --- Conversion

    /// The exchange form of the values, in a record that owns its strings through this manager, which must outlive it.
    /// The caller deletes the record. Null for the illegal row.
    VqTypeConvertData* ConvertTo(char id, void* values, unsigned long count);
    /// A new array of the type from a record, which then belongs to this manager: deleting it frees its strings. The
    /// caller deletes both. Null for the illegal row.
    void* ConvertFrom(char id, VqTypeConvertData* data, unsigned long count);

    /// The values as one text: each value's exchange text and a separator behind it, the last included. The separator
    /// is the first character from 1 up to 254 that occurs in none of the texts, else ','. The caller frees the string
    /// with Delete(VqTypeId_VqString, text, 1). Null for the illegal row.
    VqString* ConvertToVqStringOld(void* values, char id, unsigned long count);
    /// A new array of `count` values from such a text, which stays as it is; its last character is the separator.
    /// Values for which it has no more texts are made from an empty one. The caller frees the array with Delete.
    void* ConvertFromVqStringOld(VqString& text, char id, unsigned long count);

    // --- Text

    /// Appends the values' text to `out`; null is the row's own format. Arrays print element by element with ','
    /// between, those of char and VqByte as one piece. Returns `out`.
    VqString& PrintToVqString(char id, VqString& out, void* values, const char* format, unsigned long count) const;
    /// Reads the values from `text`; null is the row's own format. Returns `values`.
    void* ScanFromVqString(char id, void* values, VqString& text, const char* format, unsigned long count) const;
    /// The text that null values print and scan as, "{NULL}" at start; one for the process.
    /// @{
    static VqString& GetNullPrintString();
    static void SetNullPrintString(const VqString& text);
    /// @}

    // --- Replacing row entries

    /// Returns the row's entry as it was and sets the new one, unless that is null. A row is shared by all managers;
    /// the tables have only their string rows apart. A new format must live as long as the row has it.
    /// @{
    const char* ExchangeFormat(char id, const char* format);
    VqCompareFunc ExchangeVqTypeCmpFunc(char id, VqCompareFunc compare);
    VqPrintFunc ExchangePrintToVqStringFunc(char id, VqPrintFunc print);
    VqScanFunc ExchangeScanFromVqStringFunc(char id, VqScanFunc scan);
    /// @}

    // --- Null values

    /// 1 where the type has a null of its own, else 0.
    unsigned short SupportsNullValue(char id) const;
    /// Not 0 when the value is null.
    int IsNullValue(char id, void* value) const;
    /// Makes the value null; where its type has no null, gives it the value that an empty text converts to, for which
    /// one is made. Returns 0, or the status of a row that refuses; 0, too, when neither the heap nor the memory
    /// handler has room for the one that is made: the value then keeps what it was.
    int SetNullValue(char id, void* value);
    /// Always VqStatus_NotSupported: stored values are not asked.
    int DiskIsNullValue(char id, const void* diskValue) const;

  private:
    VqTypeDescriptor& Row(char id) const;

    VqTypeDescriptor* const* table_;
    std::uint16_t factoryLevel_;
};

// --- What is called for every key: in line, so that the only call is that of the row's function

// Negative identifiers are large unsigned ones, so that one comparison covers all that have no row.
inline VqTypeDescriptor& VqTypeMgr::Row(char id) const {
    const auto row = static_cast<unsigned char>(id);
    return *table_[row < VqTypeCount ? row : static_cast<unsigned char>(VqTypeId_illegal)];
}

inline long VqTypeMgr::Cmp(char id, const void* a, const void* b, unsigned short flags, unsigned long count,
                           unsigned char format) const {
    int status = VqStatus_Ok;
    return Row(id).compare(format, 0, a, 0, b, flags, count, status);
}

inline long VqTypeMgr::Cmp(char id, unsigned long length1, const void* a, unsigned long length2, const void* b,
                           unsigned short flags, unsigned long count, unsigned char format, int& status) const {
    return Row(id).compare(format, length1, a, length2, b, flags, count, status);
}

inline float VqTypeMgr::EvalAndBound(char id, VqIdxBounds* indexBounds, unsigned short& operators, const void* key,
                                     unsigned char format, unsigned long count, VqIdxBounds* scanBounds,
                                     VqEvalData*) const {
    constexpr double most = std::numeric_limits<float>::max();
    const double estimate = Row(id).evalAndBound(indexBounds, operators, key, format, count, scanBounds);
    return static_cast<float>(estimate < most ? estimate : most);
}

inline unsigned long VqTypeMgr::Hash(char id, unsigned long length, const void* values, unsigned long count,
                                     unsigned char format, int& status) const {
    return Row(id).hash(format, length, values, count, status);
}

/// Returns the default manager for callers that have none of their own, and makes `manager` the new one unless it is
/// null. The manager that is replaced belongs to the caller.
///
/// Attaching the library (___VqTypemgrContext, library.h) makes the default one. In a library that nobody has attached
/// or detached, the first call makes one of the current table; when several threads call first, all get the same. Null
/// when neither the heap nor the memory handler (VqCallMemoryHandler) has room for it; the next call tries again.
/// Detaching the library deletes whatever is the default then and leaves none: null. So does the library's end, when it
/// is unloaded or the process ends. Install only what `new` made.
VQTM_API VqTypeMgr* DefaultTypeMgr(VqTypeMgr* manager = nullptr);

#endif
