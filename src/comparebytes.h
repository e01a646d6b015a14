// Comparison of texts in the native code set: plain bytes.
#ifndef VQ_COMPAREBYTES_H
#define VQ_COMPAREBYTES_H

#include <cstddef>

namespace vq {

// The difference of the first differing of at most `limit` bytes. A null pointer sorts before any text that is not
// empty.
int CompareBytes(const char* text1, const char* text2, std::size_t limit);

// Matches at most `limit` bytes of `text` with `pattern`, where '*' is any run of bytes and '?' any one; 0 is a match.
// Time is at most the product of both lengths, memory constant.
int MatchBytes(const char* text, const char* pattern, std::size_t limit);

}  // namespace vq

#endif
