/// \file
/// The base library: what the type library asks of its platform.
///
///     byteorder.h      scalars between memory and disk, sizes      start here
///     memfile.h        bytes that are read like a file
///     clock.h          wall clock and time zone
///     vqassert.h       reports of programming errors
///     memoryhandler.h  what happens when memory runs out
///     vqconfig.h       configuration
///     vqversion.h      which versions go together
#ifndef VQBASE_H
#define VQBASE_H

#include "byteorder.h"
#include "clock.h"
#include "memfile.h"
#include "memoryhandler.h"
#include "vqassert.h"
#include "vqbasedefs.h"
#include "vqconfig.h"
#include "vqversion.h"

#endif
