/// \file
/// How the keys of each type order, hash and estimate, in a line each.
#ifndef VQTYPE_KEYNOTES_H
#define VQTYPE_KEYNOTES_H

#include "vqdefs.h"

struct KeyNotes {
    VqTypeId id;
    const char* order;
    const char* hash;
    const char* estimate;  ///< where a key lies between the smallest and the largest one of an index
};

/// The notes of a row, but not of the illegal one.
const KeyNotes& KeyNotesOf(VqTypeId id);

#endif
