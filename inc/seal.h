/// \file
/// VqSeal: a 48-bit unsigned number in three words, the highest first. A new seal is 0.
#ifndef SEAL_H
#define SEAL_H

#include <cstdint>

class VqSeal {
  public:
    std::uint16_t high = 0;    // bits 32 to 47
    std::uint16_t middle = 0;  // bits 16 to 31
    std::uint16_t low = 0;     // bits 0 to 15
};

#endif
