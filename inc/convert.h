/// \file
/// The exchange form through which values of any two types are converted into each other: one string per value.
///
///     VqTypeConvertData* texts = manager.ConvertTo(VqTypeId_VqBoolean, booleans, n);   // "1", "0", a null string
///     void* shorts = manager.ConvertFrom(VqTypeId_short, texts, n);                    // 1, 0, 0
///     delete texts;                                                                    // and its strings
#ifndef CONVERT_H
#define CONVERT_H

#include "vqdefs.h"

class VqString;
class VqTypeMgr;

/// A conversion record. Plain data: it is passed by pointer and has one owner, who deletes it.
class VqTypeConvertData {
  public:
    /// The type that a released record holds: no row's, it stands for the illegal one.
    static constexpr unsigned char Released = 100;

    /// A new record of `count` values of type `type` at `data`. With a manager the record owns the values, without one
    /// (null) they stay the caller's. The caller deletes the record. Null when neither the heap nor the memory
    /// handler has room; `data` then is the caller's still.
    VQTM_API static VqTypeConvertData* Make(unsigned char type, unsigned long count, void* data, VqTypeMgr* manager);

    /// Frees the values through the manager, if both are there, and sets `data` to null. Then, always, sets `count` to
    /// 0 and `type` to Released, so that releasing a record again frees nothing.
    VQTM_API ~VqTypeConvertData();

    VqTypeConvertData(const VqTypeConvertData&) = delete;
    VqTypeConvertData& operator=(const VqTypeConvertData&) = delete;

    /// String `index` of the record. Null when the index is not within 0 to count - 1, when the values are no strings,
    /// or when there are none.
    VQTM_API VqString* GetString(int index) const;

    VqTypeMgr* manager;   ///< frees `data`; null: the record does not own it
    void* data;           ///< the values; strings in every record that the library makes
    unsigned long count;  ///< values
    unsigned char type;   ///< their type identifier

  private:
    VqTypeConvertData(unsigned char type, unsigned long count, void* data, VqTypeMgr* manager)
        : manager(manager), data(data), count(count), type(type) {}
};

#endif
