#include "ownletters.h"

#include "utf8.h"

std::vector<std::string> OwnLetters(unsigned char language) {
    std::vector<std::string> letters;
    ForEachOwnLetter(language, [&](std::u16string_view letter) { letters.push_back(Utf16ToUtf8(letter)); });
    return letters;
}
