/// \file
/// Character operations: what VqString::Transform applies to each character of a text, and the library's own, upper
/// and lower case.
#ifndef CHAROPERATION_H
#define CHAROPERATION_H

#include "vqdefs.h"

class VqStringIterator;

/// One operation on the characters of a text. An operation may keep state from character to character; whoever applies
/// it to several texts at once serialises that.
class VQTM_TYPE VqCharOperation {
  public:
    /// The most characters that one can become.
    static constexpr int MaxResult = 3;

    /// What the character at `place` becomes: writes up to MaxResult codes in the text's code set to `result` and
    /// returns how many; 0 removes the character. A zero code is left out. Called once for each character of a text,
    /// from the first to the last, never for the zero character at its end. The text is still as it was: a copy of
    /// `place` can be moved to look at the character's neighbours.
    virtual int Apply(const VqStringIterator& place, unsigned short result[MaxResult]) = 0;

  protected:
    ~VqCharOperation() = default;
};

/// Upper case, by the full mappings of the Unicode Character Database: one character can become several (U+00DF: SS).
/// In a language with a dotless i (Turkish) i becomes U+0130. A character whose upper case the code set lacks stays.
class VQTM_API VqUpperCaseOperation final : public VqCharOperation {
  public:
    int Apply(const VqStringIterator& place, unsigned short result[MaxResult]) override;
};

/// Lower case, likewise. A capital sigma at the end of a word becomes the final sigma. In Turkish I becomes U+0131, and
/// I with U+0307 behind it becomes i, as U+0130 does.
class VQTM_API VqLowerCaseOperation final : public VqCharOperation {
  public:
    int Apply(const VqStringIterator& place, unsigned short result[MaxResult]) override;
};

#endif
