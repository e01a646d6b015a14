/// \file
/// What a row of the type table can do: which of its slots hold an operation, and which do nothing.
#ifndef VQTYPE_OPERATIONS_H
#define VQTYPE_OPERATIONS_H

#include "vqtypes.h"

/// One operation of the type table.
struct Operation {
    const char* name;          ///< as `vqtype types --json` lists it
    const char* column;        ///< the table's column, which says yes when the row does all that is listed under it
    bool (*isDone)(VqTypeId);  ///< true when the row does it
};

/// All operations in the order of the table's slots, one after the other those of one column.
const Operation* FirstOperation();
const Operation* EndOfOperations();

/// True when the row does what is called `name` in the list.
bool Does(VqTypeId id, const char* name);

#endif
