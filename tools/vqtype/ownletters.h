/// \file
/// The letters of a language's alphabet that are no variants of others.
#ifndef VQTYPE_OWNLETTERS_H
#define VQTYPE_OWNLETTERS_H

#include <string>
#include <vector>

/// The lower-case letters, and groups of letters that sort as one, which have a place of their own in the language's
/// alphabet but not in the neutral one: å, ä and ö in Swedish, ch in Czech. In UTF-8 and in alphabetical order.
std::vector<std::string> OwnLetters(unsigned char language);

#endif
