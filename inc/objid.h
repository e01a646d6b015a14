/// \file
/// VqObjId, VqDBOId, VqClassId: the names of objects and classes. New ones are 0.
#ifndef OBJID_H
#define OBJID_H

#include <cstdint>

/// An object within its database. Its number is the 48 bits high:low; 0 is the null identifier.
class VqObjId {
  public:
    std::uint32_t block = 0;  // the storage block of the object; no part of its identity
    std::uint32_t low = 0;    // bits 0 to 31 of the object's number
    std::uint16_t high = 0;   // bits 32 to 47
};

/// An object and its database.
class VqDBOId {
  public:
    VqObjId id;
    std::uint16_t database = 0;
};

/// A class and its version; both 65535 in the null identifier.
class VqClassId {
  public:
    std::uint16_t classNumber = 0;
    std::uint16_t version = 0;
};

#endif
