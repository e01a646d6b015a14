// The languages by number: names and collation classes.
#ifndef VQ_LANGUAGES_H
#define VQ_LANGUAGES_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>

namespace vq {

struct Language {
    const char* name;
    std::uint8_t place;
};

#include "../data/generated/languages.inc"

constexpr std::size_t ClassCount = std::size(collationClasses);

// The place of each language's collation class in the tables of a set; an unknown language has the neutral one, 0.
// Asked for every character, so a table that is read without a call or a test of the number.
extern const std::array<std::uint8_t, 256> placeOfLanguage;

inline std::size_t CollationPlace(unsigned char language) { return placeOfLanguage[language]; }
unsigned char CollationClass(unsigned char language);

const char* LanguageName(unsigned char language);
int FindLanguageNamed(const char* name);

}  // namespace vq

#endif
