#include "languages.h"

namespace vq {
namespace {

constexpr std::array<std::uint8_t, 256> Places() {
    std::array<std::uint8_t, 256> places{};
    for (std::size_t i = 0; i < std::size(languages); ++i) places[i] = languages[i].place;
    return places;
}

constexpr char ToLowerAscii(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; }

bool SameName(const char* lower, const char* name) {
    while (*lower != 0 && *lower == ToLowerAscii(*name)) ++lower, ++name;
    return *lower == 0 && *name == 0;
}

}  // namespace

constinit const std::array<std::uint8_t, 256> placeOfLanguage = Places();

unsigned char CollationClass(unsigned char language) { return collationClasses[placeOfLanguage[language]]; }

const char* LanguageName(unsigned char language) {
    return language < std::size(languages) ? languages[language].name : nullptr;
}

int FindLanguageNamed(const char* name) {
    if (name == nullptr) return -1;
    for (std::size_t i = 0; i < std::size(languages); ++i) {
        if (SameName(languages[i].name, name)) return static_cast<int>(i);
    }
    return -1;
}

}  // namespace vq
