#include "wildcard.h"

#include "keyreader.h"

namespace vq {
namespace {

std::size_t FindWildcardByte(const char* text, std::size_t bytes) {
    for (std::size_t at = 0; at < bytes && text[at] != 0; ++at) {
        if (text[at] == '*' || text[at] == '?') return at;
    }
    return NoWildcard;
}

}  // namespace

std::size_t FindWildcard(unsigned char codeSet, unsigned char language, const char* text, std::size_t bytes,
                         unsigned char order) {
    if (codeSet == 0) return FindWildcardByte(text, bytes);
    const KeySource source(CodeSetOf(codeSet), language, order);
    const WildcardKeys wildcards(source.collationClass);
    const std::size_t characters = bytes / CharSizeOf(codeSet);
    for (KeyReader keys(source, text, characters); keys.Key() != 0;) {
        const std::int32_t key = keys.Key();
        const std::size_t at = characters - keys.Remaining();
        keys.Step();
        if (key == wildcards.asterisk || key == wildcards.question) return at;
        if (key == wildcards.escape && keys.Key() != 0) return at;
    }
    return NoWildcard;
}

}  // namespace vq
