/// \file
/// VqInt64: a signed 64-bit integer in two halves.
///
/// The value is high * 2^32 + low. The halves never change places: in memory and on disk the low one comes first.
///
///     1     low 1             high 0
///     -1    low 4294967295    high -1
#ifndef VQINT64_H
#define VQINT64_H

#include <cstdint>

#include "vqdefs.h"

class MemFile;

class VqInt64 {
  public:
    std::uint32_t low = 0;  // bits 0 to 31
    std::int32_t high = 0;  // bits 32 to 63; its top bit is the sign
};

// --- Rows of the descriptor table: disk form (see docs/formats.md)
//
// 8 bytes: the low half, then the high half, each as a long in the format's byte order. Addresses need no alignment.

/// Writes `count` values to disk form. Returns the bytes written.
VQTM_API unsigned long Int64Store(void* dst, const void* src, unsigned char format, unsigned long count);
/// Reads `count` values from disk form. Returns the bytes consumed.
VQTM_API unsigned long Int64Load(void* dst, const void* src, unsigned char format, unsigned long count);
/// Disk bytes of `count` values, here and below: 8 each. Nothing is looked at.
VQTM_API unsigned long Int64NullSizeGet(unsigned long count);
VQTM_API unsigned long Int64SizeGet(const void* data, unsigned char dataFormat, unsigned char format,
                                    unsigned long count);
VQTM_API unsigned long Int64SizeGetFromMemFile(MemFile* file, unsigned char format, unsigned long count);

#endif
