/// \file
/// A store looked over as a whole: pages, header, records, indexes.
#ifndef VQTYPE_STORE_CHECK_H
#define VQTYPE_STORE_CHECK_H

#include <cstdint>
#include <string>

#include "findings.h"

namespace store {

struct CheckResult {
    Findings findings;
    std::uint64_t records = 0;  ///< that were reached, damaged ones among them
    std::uint64_t indexes = 0;
    std::uint64_t obstacles = 0;  ///< findings that say what stands between a sound store and this library
    bool isMended = true;         ///< `vqtype store index --rebuild` mends all of these

    bool IsDamaged() const { return findings.Count() > obstacles; }
};

/// Looks at every page, record and key that can be reached, whatever else is damaged. All that LMDB does for it is to
/// hold the pages while others write. Makes the library's settings those of the store. Throws CommandError for a file
/// that is none, or cannot be read.
CheckResult CheckStore(const std::string& name);

}  // namespace store

#endif
