// How many blocks are allocated by `new` now, in this program and in the libraries that it loads.
#ifndef VQ_COUNTED_NEW_H
#define VQ_COUNTED_NEW_H

#include <atomic>

namespace vqtest {

extern std::atomic<long> liveBlocks;

// On Windows each module has a `new` of its own, and only the program's blocks are counted.
#if defined(_WIN32)
inline constexpr bool CountsLibraries = false;
#else
inline constexpr bool CountsLibraries = true;
#endif

}  // namespace vqtest

#endif
