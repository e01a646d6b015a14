/// \file
/// Between the workbench's UTF-8 and the library's strings, and the code sets and languages that users name.
#ifndef VQTYPE_TEXT_H
#define VQTYPE_TEXT_H

#include <string>
#include <string_view>
#include <vector>

#include "vqcodeset.h"
#include "vqstring.h"

/// The code set and the language that new strings get.
struct TextOptions {
    unsigned char codeSet = 1;
    unsigned char language = 0;
    bool isChosen = true;  ///< the code set is the user's choice, and could be another
};

/// Throws CommandError, its text starting with `place`, where the text is not UTF-8.
void CheckUtf8(std::string_view text, const std::string& place);

/// The UTF-8 text as a string. Throws CommandError, its text starting with `place`, where the text is not UTF-8, has a
/// character that the code set lacks or a zero character, or is longer than a string can be.
VqString MakeString(std::string_view text, const TextOptions& options, const std::string& place);

/// The string's characters in UTF-8; a code without a character is U+FFFD.
std::string ToUtf8(const VqString& string);

/// The UTF-8 text in double quotes, with control characters, quotes and backslashes escaped as JSON does; a byte that
/// is not UTF-8 is \xNN.
std::string Quoted(std::string_view text);
/// The same without quotes around, for names of files: quotes and backslashes stay as they are.
std::string Printable(std::string_view text);
/// The first `most` bytes of a longer UTF-8 text, less the part of a character, and an ellipsis.
std::string Shortened(std::string_view text, std::size_t most);
/// What the user gave, for an error about it: quoted, and shortened to 60 bytes.
std::string Echo(std::string_view text);

/// The text with small ASCII letters.
std::string Lowered(std::string_view text);
/// True for texts that are the same when ASCII letters have no case.
bool EqualIgnoringCase(std::string_view a, std::string_view b);

/// A code set or a language by its number, and its usual name.
struct NamedCode {
    unsigned char number;
    const char* name;
};

/// All code sets, by number.
std::vector<NamedCode> CodeSets();
/// All languages, by number.
std::vector<NamedCode> Languages();

/// True for the number of a code set; 0 is the native one.
bool IsCodeSet(unsigned char codeSet);
/// The usual name of a code set that there is; "native" for 0.
const char* CodeSetName(unsigned char codeSet);
/// "1 (Windows-1252)"; only the number for a code that stands for no set.
std::string DescribeCodeSet(unsigned char codeSet);
/// "2 (german)"; only the number for a code that stands for no language.
std::string DescribeLanguage(unsigned char language);

/// The code set of that number. Throws CommandError when there is none.
const VqCodeSet& RequireCodeSet(unsigned char codeSet);

/// The code set of the number or name `text` ("windows-1252", in any case). Throws CommandError, its text starting with
/// `place`, when there is none.
unsigned char ParseCodeSet(const std::string& text, const char* place = "--code-set");
/// The language of the number, English name or ISO 639 code `text`. Throws CommandError, its text starting with
/// `place`, when there is none.
unsigned char ParseLanguage(const std::string& text, const char* place = "--language");

#endif
