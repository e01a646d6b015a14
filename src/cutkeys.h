// Keys that an index has clipped: how much of two texts is compared, and what that says of the whole ones.
#ifndef VQ_CUTKEYS_H
#define VQ_CUTKEYS_H

#include <algorithm>

#include "wildcard.h"

namespace vq {

// Two texts, the second perhaps a pattern. Lengths in characters.
struct CutTexts {
    unsigned long length1;  // what is there
    unsigned long length2;
    bool cut1;  // there was more
    bool cut2;
    std::size_t wildcard;  // its place in the second text, or NoWildcard

    bool IsPattern() const { return wildcard != NoWildcard; }

    // The characters to compare: as far as both are known, and of a pattern only what stands for itself.
    unsigned long Limit() const {
        if (IsPattern()) return std::min(static_cast<unsigned long>(wildcard), length1);
        if (cut1 && cut2) return std::min(length1, length2);
        return cut1 ? length1 : length2;
    }
    // True where the characters that are missing cannot change the result: the whole text ends before the clipped one
    // does, or what is missing falls to a wildcard at the pattern's end.
    bool Decide() const {
        if (IsPattern()) return !cut2 && wildcard + 1 == length2 && wildcard <= length1;
        return cut1 != cut2 && (cut1 ? length2 < length1 : length1 < length2);
    }
    // The order of two texts that are equal as far as they were compared: the one that goes on is behind the one that
    // ends there.
    int OrderOfRest() const {
        if (cut1 == cut2) return 0;
        if (cut1) return Limit() == length2 ? 1 : 0;
        return Limit() == length1 ? -1 : 0;
    }
};

}  // namespace vq

#endif
