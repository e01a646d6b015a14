/// \file
/// Runs of bytes that belong to somebody else.
#ifndef VQTYPE_STORE_BYTES_H
#define VQTYPE_STORE_BYTES_H

#include <span>

#include "../values.h"

namespace store {

/// Bytes in a page of the file, or in a buffer: valid as long as those stay as they are.
using ByteView = std::span<const unsigned char>;

inline void Append(Bytes& bytes, ByteView more) { bytes.insert(bytes.end(), more.begin(), more.end()); }

}  // namespace store

#endif
