/// \file
/// Full case mapping of Unicode characters: one character can become up to three.
///
/// The mappings are those of the Unicode Character Database, SpecialCasing.txt included, for units of 16 bits; a
/// surrogate has no case. VqCodeSet::ToUpper and ToLower are the simple mappings of one code to one code. Where a
/// mapping depends on what stands beside the character (the final sigma, the dot of the Turkish i), the caller looks
/// there, with VqGetCaseContext.
#ifndef VQCASE_H
#define VQCASE_H

#include "vqi18ndefs.h"

/// The most units that one character becomes in the other case.
constexpr int VqMaxCaseLength = 3;

/// True for languages with a dotless and a dotted i (Turkish): there i and U+0130, U+0131 and I are the pairs.
VQI18N_API bool VqHasDotlessI(unsigned char language);

/// The upper case of Unicode unit `unit` in `language`. Writes 1 to VqMaxCaseLength units and returns how many; a
/// character without upper case gives itself. U+00DF gives "SS", U+FB03 "FFI".
VQI18N_API int VqFullUpperCase(unsigned short unit, unsigned char language, unsigned short units[VqMaxCaseLength]);
/// The lower case, likewise. Only U+0130 gives more than one unit, i and U+0307, and not in Turkish, where it gives i.
VQI18N_API int VqFullLowerCase(unsigned short unit, unsigned char language, unsigned short units[VqMaxCaseLength]);

/// What a character is to the case of its neighbours; bits, by the properties of these names.
enum VqCaseContext : unsigned char {
    VqCaseContext_Cased = 0x01,      ///< Cased: a letter with case, also of title case and modifiers
    VqCaseContext_Ignorable = 0x02,  ///< Case_Ignorable: does not part words, as an apostrophe or a mark
    VqCaseContext_Mark = 0x04,       ///< a mark that does not stand above (combining class neither 0 nor 230)
};

/// The bits of Unicode unit `unit`.
VQI18N_API unsigned VqGetCaseContext(unsigned short unit);

#endif
