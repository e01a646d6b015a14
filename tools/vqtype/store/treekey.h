/// \file
/// Keys of index trees. The order of a tree is the manager's comparison under VqCmp_Exact, then the raw bytes of the
/// keys, then the object identifier, so that keys that compare equal are still two.
///
///     byte 0      the key's class; CutKey is set where the stored key is only the beginning of the value
///     stored key  the value's disk form, at most VqINDEX_MAX_KEYLEN bytes; none of a null value
///     identifier  the object's, IdSize bytes
///
/// The class is compared first. It keeps out of the comparison what has no place in it: nulls, which are first of all,
/// and values that are not equal to themselves (not a number), which are last. 8-bit strings have no order that is
/// transitive where a text ends in a letter that sorts as two: their keys go by raw bytes alone.
#ifndef VQTYPE_STORE_TREEKEY_H
#define VQTYPE_STORE_TREEKEY_H

#include <lmdb.h>

#include "bytes.h"
#include "record.h"
#include "schema.h"

namespace store {

enum class KeyClass : unsigned char { Null, Value, NoNumber };

constexpr unsigned char CutKey = 0x80;

/// A tree's key taken apart.
struct TreeKey {
    KeyClass keyClass;
    bool isCut;
    ByteView stored;  ///< empty for null
    ByteView id;

    /// Takes a key apart. False for bytes that are too few, or of no class.
    static bool Read(ByteView key, TreeKey& parts);
};

/// The parts of a key that is known to be one, or to be the end of a scan.
/// @{
inline KeyClass ClassOf(ByteView key) { return static_cast<KeyClass>(key[0] & 0x03); }
inline ByteView StoredOf(ByteView key) { return key.subspan(1, key.size() - 1 - IdSize); }
inline ByteView IdOfKey(ByteView key) { return key.last(IdSize); }
/// @}

/// True for a row whose values can be keys: one with an order, and a disk form.
bool CanIndex(VqTypeId type);
/// True for the rows whose keys go by raw bytes alone: no range of theirs answers a comparison.
bool IsInByteOrder(VqTypeId type);

/// Makes a tree's keys from disk forms of one column. Not for two threads at once.
class KeyMaker {
  public:
    KeyMaker(const Column& column, unsigned char format);

    /// The class of the key of the value with that disk form.
    KeyClass ClassOf(ByteView form);

    /// Appends the whole key of the value with that disk form. Returns true where the stored key is cut: a string or a
    /// blob is shortened to a whole value, with a length of its own, that takes at most VqINDEX_MAX_KEYLEN bytes.
    bool Append(Bytes& key, ByteView form, ByteView id);
    /// The beginning of a value's disk form as a whole, shorter value of at most `most` bytes; the form itself where it
    /// is no longer.
    void AppendCut(Bytes& stored, ByteView form, std::size_t most);

  private:
    const Column& column_;
    unsigned char format_;
    ValueArray value_;  // in which forms are looked at and shortened
    Bytes null_;        // the form of the type's null; empty where it has none
};

/// Where a scan begins or ends in a tree.
enum class End : unsigned char {
    Below = 0x40,  ///< in front of all keys that are equal to it at the letter level
    Above = 0x20,  ///< behind them
};

/// A key that is in no tree, to seek with: it is compared with those that are under VqCmp_IgnoreCase and
/// VqCmp_IgnoreAccents, and is never equal to one. As that level is the first that an exact comparison looks at, the
/// keys of a tree stay in order beside it. Without stored bytes it lies in front of, or behind, all keys of the class.
Bytes ScanEnd(KeyClass keyClass, ByteView stored, End end);

/// The comparison function of an index on values of that type, in that byte order. It reads nothing but the keys and
/// the library's tables, as LMDB gives it nothing else.
MDB_cmp_func* IndexOrder(VqTypeId type, unsigned char format);
/// The comparison function of the records' tree: identifiers by the manager's comparison, then by raw bytes.
MDB_cmp_func* RecordOrder(unsigned char format);

/// The order of two whole tree keys of that type, as the index's comparison function gives it.
int CompareTreeKeys(VqTypeId type, unsigned char format, ByteView a, ByteView b);

}  // namespace store

#endif
