/// \file
/// The end of a program that LMDB has led astray on damaged pages.
#ifndef VQTYPE_STORE_FAULT_H
#define VQTYPE_STORE_FAULT_H

#include <lmdb.h>

#include <string>

namespace store {

/// From now on a fault of the program (memory that is not there, a division by zero), or a broken assertion of LMDB, is
/// told as what it is where a store is read: damage of that store. The program ends with status 2, at once. There is
/// one handler in a process: the store that was opened last is named. Where it is not `isLocked`, that another program
/// has written while it was read is the likelier reason.
void WatchFaults(MDB_env* environment, const std::string& name, bool isLocked);

}  // namespace store

#endif
