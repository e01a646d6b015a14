// What patterns do not read as the characters that stand there.
#ifndef VQ_WILDCARD_H
#define VQ_WILDCARD_H

#include <cstddef>
#include <cstdint>

#include "collationkey.h"
#include "keyreader.h"
#include "vqcollation.h"

namespace vq {

// The keys of the wildcards and of the escape character (0: none) in a class.
struct WildcardKeys {
    explicit WildcardKeys(unsigned char collationClass)
        : asterisk(VqCollationKey(AsteriskOrder(), collationClass)),
          question(VqCollationKey(QuestionOrder(), collationClass)),
          escape(VqCollationKey(EscapeOrder(), collationClass)) {}

    bool Has(std::int32_t key) const { return key == asterisk || key == question || key == escape; }

    std::int32_t asterisk, question, escape;
};

constexpr std::size_t NoWildcard = ~std::size_t{0};

// The place in characters of the first wildcard in a text of so many bytes, which needs no zero character behind it but
// ends at one within it; or NoWildcard. An escape character counts as a wildcard: with it ends what a pattern says
// literally, character by character. At the very end of a text it stands for itself. `order` is that of 2-byte
// characters (see LoadChar). Code set 0 is searched for the bytes '*' and '?', as VqStrCmp reads a pattern when the
// other text is in that set too; against other sets it is the native set of the language context.
std::size_t FindWildcard(unsigned char codeSet, unsigned char language, const char* text, std::size_t bytes,
                         unsigned char order);

// The same for sets other than 0, and for code set 0.
std::size_t FindWildcard(const KeySource& source, const char* text, std::size_t characters);
std::size_t FindWildcardByte(const void* text, std::size_t bytes);

}  // namespace vq

#endif
