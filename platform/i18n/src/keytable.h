// Tables of ready keys, made when the library is compiled.
#ifndef VQ_KEYTABLE_H
#define VQ_KEYTABLE_H

#include <array>
#include <utility>

#include "codetables.h"
#include "vqcollation.h"

namespace vq {

// What a character has that no single key tells.
constexpr std::int32_t LookCloser = -1;

constexpr std::int32_t ReadyKey(unsigned short firstOrder, unsigned char collationClass) {
    return IsMark(firstOrder) ? LookCloser : VqCollationKey(firstOrder, collationClass);
}

}  // namespace vq

#endif
