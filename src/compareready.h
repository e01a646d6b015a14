// Comparison of two texts of one code set and language through its table of ready keys.
#ifndef VQ_COMPAREREADY_H
#define VQ_COMPAREREADY_H

#include <cstddef>

#include "vqcodeset.h"

namespace vq {

// The usual case: whole texts that are not null, literal, in the machine's byte order, and nothing but levels to ignore
// in `op`. `readable` bytes of both may be read, zero characters included; 0: none behind the zero characters. The
// first is for sets of 1-byte characters, the third for the others. The second takes what the first does, but never 0:
// it costs less where texts are rarely equal, as on the way through an index. All arguments travel in registers.
int CompareUsualBytes(const char* text1, const char* text2, std::size_t readable, unsigned char codeSet,
                      unsigned char language, unsigned short op);
int CompareUsualRecords(const char* text1, const char* text2, std::size_t readable, unsigned char codeSet,
                        unsigned char language, unsigned short op);
int CompareUsualUnits(const char* text1, const char* text2, std::size_t readable, unsigned char codeSet,
                      unsigned char language, unsigned short op);

// The same for the first `limit` characters, or for whole texts with VqCmp_KeyOnly: what CompareLevels and CompareKeys
// give.
int CompareReady(const char* text1, const char* text2, std::size_t limit, const VqCodeSet& set, unsigned char language,
                 unsigned short op);

}  // namespace vq

#endif
