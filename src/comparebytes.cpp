#include "comparebytes.h"

namespace vq {

int CompareBytes(const char* text1, const char* text2, std::size_t limit) {
    if (text1 == nullptr || text2 == nullptr) {
        const bool some1 = text1 != nullptr && *text1 != 0, some2 = text2 != nullptr && *text2 != 0;
        return static_cast<int>(some1) - static_cast<int>(some2);
    }
    for (std::size_t i = 0; i < limit; ++i) {
        const int difference = static_cast<unsigned char>(text1[i]) - static_cast<unsigned char>(text2[i]);
        if (difference != 0 || text1[i] == 0) return difference;
    }
    return 0;
}

int MatchBytes(const char* text, const char* pattern, std::size_t limit) {
    if (text == nullptr) return pattern == nullptr || *pattern == 0 ? 0 : -1;
    if (pattern == nullptr) return *text == 0 ? 0 : 1;
    const char* afterStar = nullptr;
    std::size_t starAt = 0;
    for (std::size_t at = 0;;) {
        if (*pattern == '*') {
            while (*pattern == '*') ++pattern;
            if (*pattern == 0) return 0;
            afterStar = pattern;
            starAt = at;
        }
        if (at == limit) return 0;
        if (text[at] == 0 && *pattern == '?') return -1;
        if (text[at] == *pattern || *pattern == '?') {
            if (text[at] == 0) return 0;
            ++at;
            ++pattern;
        } else if (afterStar == nullptr || text[at] == 0) {
            return static_cast<unsigned char>(text[at]) - static_cast<unsigned char>(*pattern);
        } else {
            at = ++starAt;
            pattern = afterStar;
        }
    }
}

}  // namespace vq
