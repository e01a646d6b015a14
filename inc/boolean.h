/// \file
/// VqBoolean: false, true or null in one byte.
#ifndef BOOLEAN_H
#define BOOLEAN_H

#include <cstdint>

class VqBoolean {
  public:
    std::uint8_t value = 0;  // 0 false, 1 true, 255 null
};

#endif
