#include "wildcard.h"

#include <algorithm>

namespace vq {
namespace {

// How many characters at the start have ready keys, none of which a wildcard's.
std::size_t CountPlain(const KeySource& source, const WildcardKeys& wildcards, const char* text,
                       std::size_t characters) {
    if (source.table.count != 256) return 0;
    // Most characters are letters, which come behind the wildcards.
    const std::int32_t last = std::max({wildcards.asterisk, wildcards.question, wildcards.escape});
    for (std::size_t at = 0; at < characters; ++at) {
        const std::int32_t key = source.table.keys[static_cast<unsigned char>(text[at])];
        if (key <= last && (key <= 0 || wildcards.Has(key))) return at;
    }
    return characters;
}

}  // namespace

std::size_t FindWildcardByte(const void* text, std::size_t bytes) {
    const auto* const codes = static_cast<const unsigned char*>(text);
    for (std::size_t at = 0; at < bytes && codes[at] != 0; ++at) {
        if (codes[at] == '*' || codes[at] == '?') return at;
    }
    return NoWildcard;
}

std::size_t FindWildcard(const KeySource& source, const char* text, std::size_t characters) {
    const WildcardKeys wildcards(source.collationClass);
    const std::size_t plain = CountPlain(source, wildcards, text, characters);
    if (plain == characters) return NoWildcard;
    const std::size_t charSize = CharSizeOf(source.set->GetCode());
    for (KeyReader keys(source, text + plain * charSize, characters - plain); keys.Key() != 0;) {
        const std::int32_t key = keys.Key();
        const std::size_t at = characters - keys.Remaining();
        keys.Step();
        if (key == wildcards.asterisk || key == wildcards.question) return at;
        if (key == wildcards.escape && keys.Key() != 0) return at;
    }
    return NoWildcard;
}

std::size_t FindWildcard(unsigned char codeSet, unsigned char language, const char* text, std::size_t bytes,
                         unsigned char order) {
    if (codeSet == 0) return FindWildcardByte(text, bytes);
    return FindWildcard(KeySource(CodeSetOf(codeSet), language, order), text, bytes / CharSizeOf(codeSet));
}

}  // namespace vq
