/// \file
/// VqRef and VqLocalRef: references to objects, which tell the class of the object as well. New ones are 0; a reference
/// to object number 0 is null. What holds for identifiers (objid.h) holds for references: `operator!=` is their order,
/// and no truth value; their text has the same directives.
///
///     database 3, high 1, low 42, block 7, class 12    prints (3:1-42#7,12v0)
#ifndef REF_H
#define REF_H

#include "objid.h"

class VqLocalRef;

/// An object in any database.
///
/// Parts are assigned from what names them. Beware of `ref = {}`, which is `ref = (unsigned short)0`.
class VQTM_API VqRef : public VqIdentifierSlots<VqRef> {
  public:
    static constexpr unsigned long StoredSize = 14;  ///< bytes in disk form
    /// A reference whose database is not known yet.
    static constexpr std::uint16_t UnresolvedDatabase = 0xFFFF;

    // --- Null and validity

    /// True for object number 0, whatever database and class are.
    bool IsNullValue() const { return id.IsNullValue(); }
    /// Sets all to 0. Returns 0.
    int SetNullValue() {
        classId.classNumber = classId.version = database = 0;
        return id.SetNullValue();
    }
    /// Names an object of a known class in a known database.
    bool IsValid() const { return !IsInvalid(); }
    /// Not IsValid: null, of class 0, or in a database that is not resolved yet.
    bool IsInvalid() const { return IsNullValue() || classId.classNumber == 0 || database == UnresolvedDatabase; }
    /// Names an object whose origin is told: of a known class, or in a database that is not resolved yet.
    bool IsValidOriginId() const { return !IsInvalidOriginId(); }
    /// Not IsValidOriginId: null, or of class 0 in a database that is known.
    bool IsInvalidOriginId() const {
        return IsNullValue() || (database != UnresolvedDatabase && classId.classNumber == 0);
    }

    // --- Assignment

    /// Class and version alone.
    VqRef& operator=(const VqClassId& other) {
        classId = other;
        return *this;
    }
    /// The object alone.
    VqRef& operator=(const VqObjId& other) {
        id = other;
        return *this;
    }
    /// Object and database.
    VqRef& operator=(const VqDBOId& other) {
        id = other.id;
        database = other.database;
        return *this;
    }
    /// The database alone.
    VqRef& operator=(unsigned short newDatabase) {
        database = newDatabase;
        return *this;
    }
    /// Object and class, in database 0.
    inline VqRef& operator=(const VqLocalRef& other);

    // --- Comparison: the class is not looked at

    /// The same object in the same database, whatever its class.
    bool operator==(const VqRef& other) const { return id == other.id && database == other.database; }
    /// The order, -1, 0 or 1: by object, then by database, without the class. Stored keys have the database first
    /// (Compare).
    int operator!=(const VqRef& other) const {
        const int objects = id != other.id;
        return objects != 0 ? objects : (database > other.database) - (database < other.database);
    }
    /// The reverse of the local reference's comparison with this.
    /// @{
    inline bool operator==(const VqLocalRef& other) const;
    inline int operator!=(const VqLocalRef& other) const;
    /// @}

    // --- Text

    /// Makes `out` the text under `format` ("(%D:%H-%L#%B,%Cv%V)" for null; the row's own is "(%D:%H-%L#%B, %C)").
    void PrintToVqString(VqString& out, const char* format = nullptr) const;
    /// Reads the value from `text`.
    void ScanFromVqString(const VqString& text, const char* format = nullptr);

    VqObjId id;                  ///< the object within its database
    std::uint16_t database = 0;  ///< the database's number
    VqClassId classId;           ///< the object's class; its version is not stored
};

/// An object in the database of the one that refers to it.
class VQTM_API VqLocalRef {
  public:
    /// True for object number 0, whatever the class.
    bool IsNullValue() const { return id.IsNullValue(); }
    /// Sets all to 0. Returns 0.
    int SetNullValue() {
        classId.classNumber = classId.version = 0;
        return id.SetNullValue();
    }

    // --- Assignment

    /// Object and class; the database is dropped.
    VqLocalRef& operator=(const VqRef& other) {
        id = other.id;
        classId = other.classId;
        return *this;
    }
    /// Class and version alone.
    VqLocalRef& operator=(const VqClassId& other) {
        classId = other;
        return *this;
    }
    /// The object alone.
    VqLocalRef& operator=(const VqObjId& other) {
        id = other;
        return *this;
    }

    // --- Comparison: the object alone

    /// The same object.
    bool operator==(const VqLocalRef& other) const { return id == other.id; }
    /// The order of the objects: -1, 0 or 1.
    int operator!=(const VqLocalRef& other) const { return id != other.id; }
    /// The same object, in database 0.
    bool operator==(const VqRef& other) const { return id == other.id && other.database == 0; }
    /// The order, by object; the local reference comes before one into a numbered database.
    int operator!=(const VqRef& other) const {
        const int objects = id != other.id;
        return objects != 0 ? objects : other.database != 0 ? -1 : 0;
    }

    // --- Text: that of a VqRef in database 0

    /// Makes `out` the text under `format` ("(%H-%L#%B,%C)" for null).
    void PrintToVqString(VqString& out, const char* format = nullptr) const;
    /// Reads the value from `text`; a database in it is dropped.
    void ScanFromVqString(const VqString& text, const char* format = nullptr);

    VqObjId id;         ///< the object within its database
    VqClassId classId;  ///< the object's class
};

inline VqRef& VqRef::operator=(const VqLocalRef& other) {
    id = other.id;
    classId = other.classId;
    database = 0;
    return *this;
}
inline bool VqRef::operator==(const VqLocalRef& other) const { return other == *this; }
inline int VqRef::operator!=(const VqLocalRef& other) const { return -(other != *this); }

#endif
