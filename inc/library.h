/// \file
/// The library's entry points, under plain names for those who load it at run time.
#ifndef LIBRARY_H
#define LIBRARY_H

#include "vqdefs.h"

extern "C" {

/// Attaches (`attach` not 0) or detaches (0) the library for this process, first its internationalisation library with
/// the same argument. Attaching makes a new manager of the current table the default one (DefaultTypeMgr); the one
/// before is not deleted, so attach once. Detaching deletes the default manager and leaves none.
///
/// A loaded library attaches itself, and detaches when it is unloaded. So both calls are for hosts that want a fresh
/// start and a defined end; nobody has to make them. A host that attaches again deletes the manager before, or keeps
/// it.
VQTM_API void ___VqTypemgrContext(int attach);

/// The library's option block, 0 at start. Its lowest bit, when set, makes numbers in strings decimal only (`atol`);
/// otherwise 0x stands for hexadecimal and a leading 0 for octal (`strtol` with base 0). The library never writes it.
VQTM_API std::uint32_t* ___VqTypeMgrOptions();
}

#endif
