#include "options.h"

namespace vq {

std::uint32_t optionBlock = 0;

}  // namespace vq
