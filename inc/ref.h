/// \file
/// VqRef and VqLocalRef: references to objects. New ones are 0; a reference to object number 0 is null.
#ifndef REF_H
#define REF_H

#include "objid.h"

/// An object in any database.
class VqRef {
  public:
    VqObjId id;
    std::uint16_t database = 0;  // 65535: not resolved yet
    VqClassId classId;           // the object's class
};

/// An object in the database of the one that refers to it.
class VqLocalRef {
  public:
    VqObjId id;
    VqClassId classId;
};

#endif
