/// \file
/// Why two texts sort as they do: their collation orders side by side, and the level that decides.
#ifndef VQTYPE_COLLATION_H
#define VQTYPE_COLLATION_H

#include <cstdint>
#include <vector>

#include "vqstring.h"

/// One collation order of a text and the characters that give it. A character can give two orders (ß as ss), and
/// several characters one (Czech ch).
struct CollationStep {
    std::size_t first = 0;     ///< the first of the characters, counted from 0
    std::size_t count = 0;     ///< how many there are
    int part = 1;              ///< which of their orders this is, from 1
    int parts = 1;             ///< how many orders they give
    unsigned short order = 0;  ///< the byte in texts of the native set
    std::int32_t key = 0;      ///< the comparison key
};

/// The orders of a text one after the other, without its end. Texts in code set 0 give their bytes.
std::vector<CollationStep> CollationSteps(const VqString& text);

/// The levels of a comparison, from the first that counts to the last.
enum class CollationLevel { None, Primary, Accent, Case };

/// What stands at one position of two texts. The '*' of a pattern stands beside all that it takes.
struct CollationRow {
    std::vector<CollationStep> steps1;  ///< of the first text: one; none or several beside '*'; none at its end
    std::vector<CollationStep> steps2;  ///< of the second: one; none at its end
    bool isWildcard = false;            ///< the second text has '*' or '?' of a pattern here

    std::int32_t Key1() const { return steps1.empty() ? 0 : steps1.back().key; }
    std::int32_t Key2() const { return steps2.empty() ? 0 : steps2.back().key; }
    /// True when both have keys that differ at that level.
    bool DiffersAt(CollationLevel level) const;
};

/// Two texts next to each other.
struct Collation {
    std::vector<CollationRow> rows;               ///< up to the difference that ends the comparison
    CollationLevel level = CollationLevel::None;  ///< that decides
    std::size_t position = 0;                     ///< the row that decides, from 0
    int sign = 0;      ///< -1 when the first text sorts first, 1 when the second does, 0 when they are equal
    bool fits = true;  ///< false when what follows a '*' of the pattern stands nowhere in the text
};

/// Compares two texts of one code set and language, as VqStrCmp does with VqCmp_Exact, under the VqCmp_IgnoreCase and
/// VqCmp_IgnoreAccents bits of `op`.
Collation Collate(const VqString& text1, const VqString& text2, unsigned short op);

/// Lays a pattern with '*' and '?' along a text, as VqStrCmp does without VqCmp_Exact. When it matches, the level is
/// None and the sign 0. Else a level decides as in Collate; but behind a '*' none does: the rows show the last attempt,
/// `fits` is false, `position` is the row that does not fit, and the sign is -1.
Collation CollatePattern(const VqString& text, const VqString& pattern, unsigned short op);

#endif
