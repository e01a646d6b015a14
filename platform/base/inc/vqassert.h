/// \file
/// Reports of programming errors.
#ifndef VQASSERT_H
#define VQASSERT_H

#include "vqbasedefs.h"

/// Receives a report. It may return: callers then go on with a defined result.
using VqAssertHandler = void (*)(const char* expression, const char* file, int line);

/// Reports that `expression`, at `line` of `file`, does not hold. The default handler writes one line to the standard
/// error stream, `file(line): assertion failed: expression`, and returns; null texts show as `?`.
VQBASE_API void VIQA_assert(const char* expression, const char* file, int line);

/// Sends the reports of all threads to `handler`; null restores the default. Returns the handler before, never null.
VQBASE_API VqAssertHandler VqSetAssertHandler(VqAssertHandler handler);

#endif
