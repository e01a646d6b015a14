// The languages by number: names and collation classes.
#ifndef VQ_LANGUAGES_H
#define VQ_LANGUAGES_H

#include <cstddef>

namespace vq {

// The place of the language's collation class in the tables of each set; an unknown language has the neutral one, 0.
std::size_t CollationPlace(unsigned char language);
unsigned char CollationClass(unsigned char language);

const char* LanguageName(unsigned char language);
int FindLanguageNamed(const char* name);

}  // namespace vq

#endif
