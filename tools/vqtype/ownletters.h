/// \file
/// The letters of a language's alphabet that are no variants of others.
#ifndef VQTYPE_OWNLETTERS_H
#define VQTYPE_OWNLETTERS_H

#include <iterator>
#include <string>
#include <string_view>
#include <vector>

/// By language number the lower-case letters of the alphabet, and groups of letters that sort as one, which are none of
/// a to z with an accent: in alphabetical order, each with a space behind it.
inline constexpr std::u16string_view OwnLetterLists[] = {
    u"",                                                                  // neutral
    u"",                                                                  // English
    u"",                                                                  // German
    u"",                                                                  // French
    u"ñ ",                                                                // Spanish
    u"",                                                                  // Italian
    u"",                                                                  // Portuguese
    u"",                                                                  // Dutch
    u"å ä ö ",                                                            // Swedish
    u"å ä ö ",                                                            // Finnish
    u"æ ø å ",                                                            // Danish
    u"æ ø å ",                                                            // Norwegian
    u"á ð é í ó ú ý þ æ ö ",                                              // Icelandic
    u"ą ć ę ł ń ó ś ź ż ",                                                // Polish
    u"č ch ř š ž ",                                                       // Czech
    u"ä č ch ô š ž ",                                                     // Slovak
    u"cs dz dzs gy ly ny ö sz ty ü zs ",                                  // Hungarian
    u"ç ğ ı ö ş ü ",                                                      // Turkish
    u"а б в г д е ж з и й к л м н о п р с т у ф х ц ч ш щ ъ ы ь э ю я ",  // Russian
    u"α β γ δ ε ζ η θ ι κ λ μ ν ξ ο π ρ σ τ υ φ χ ψ ω ",                  // Greek
};

/// Calls `use(std::u16string_view)` with one letter after the other. Other languages have none.
template <class Use>
void ForEachOwnLetter(unsigned char language, Use use) {
    std::u16string_view rest = language < std::size(OwnLetterLists) ? OwnLetterLists[language] : u"";
    for (std::size_t end; (end = rest.find(u' ')) != rest.npos; rest.remove_prefix(end + 1)) use(rest.substr(0, end));
}

/// The letters that have a place of their own in the language's alphabet beyond a to z: å, ä and ö in Swedish, ch in
/// Czech. In UTF-8 and in alphabetical order.
std::vector<std::string> OwnLetters(unsigned char language);

#endif
