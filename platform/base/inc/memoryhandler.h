/// \file
/// What happens when memory runs out.
#ifndef MEMORYHANDLER_H
#define MEMORYHANDLER_H

#include "vqbasedefs.h"

/// Is told the bytes that could not be had. Returns non-zero when it freed something, so that trying again makes sense.
using VqMemoryHandler = int (*)(unsigned long size);

/// Asks the handler for help after an allocation of `size` bytes has failed, and returns its answer. The default
/// handler has nothing to free and returns 0.
VQBASE_API int VqCallMemoryHandler(unsigned long size);

/// Installs `handler` for all threads; null restores the default. Returns the handler before, never null.
VQBASE_API VqMemoryHandler VqSetMemoryHandler(VqMemoryHandler handler);

#endif
