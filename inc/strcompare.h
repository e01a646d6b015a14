/// \file
/// VqStrCmp: the one comparison of two texts by which strings are ordered and matched.
///
/// In the native code set (both codes 0) texts compare by bytes. In every other set each text gives collation orders,
/// and the comparison goes by levels: letters first, then accents (the last difference decides), then case (lower
/// before upper where the tables order upper first: the sign is reversed). The results order texts of one collation
/// class.
#ifndef STRCOMPARE_H
#define STRCOMPARE_H

#include "vqdefs.h"

/// Compares two texts in their code sets and languages under the operation `op` (VqCmp bits). `n` limits the comparison
/// to n characters of each text; -1 is the whole texts. `order` is the byte order of 2-byte characters (2: high byte
/// first). A null pointer is an empty text; a null string (language 254, or code set 254 with language 0) sorts before
/// every other. `out` may be null; with VqCmp_Report it receives the primary difference while both positions are within
/// n. Without VqCmp_Exact and VqCmp_KeyOnly the second text is a pattern: '*' is any run of characters, '?' any one.
/// Returns a negative value, 0 or a positive value.
VQTM_API int VqStrCmp(unsigned char codeSet1, unsigned char language1, const char* text1, unsigned char codeSet2,
                      unsigned char language2, const char* text2, unsigned short op, short n, unsigned char order,
                      int* out);

#endif
