// Searching a text for a pattern by VqStrCmp.
#ifndef VQ_TEXTSEARCH_H
#define VQ_TEXTSEARCH_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "linearsearch.h"
#include "textunit.h"
#include "vqcodeset.h"
#include "vqstring.h"

namespace vq {

// The comparison keys of a text's characters.
class TextKeys {
  public:
    explicit TextKeys(const VqString& text);

    // The key of the character at `place`, 0 on the zero character; negative when it sorts as two or as one letter with
    // those behind it. `charSize` is that of the text.
    template <unsigned charSize>
    std::int32_t At(std::size_t place) const {
        const std::int32_t key = Ready<charSize>(place);
        return key >= 0 ? key : Resolve(place);
    }
    // The same without a closer look: also negative for a character that has no ready key, or that others of the set
    // could make one letter with.
    template <unsigned charSize>
    std::int32_t Ready(std::size_t place) const {
        const unsigned short code = LoadChar(text_ + place * charSize, charSize);
        return charSize == 1 || code < table_.count ? table_.keys[code] : -1;
    }
    // The first key of what starts at `place`; negative when that may be one letter with those behind it.
    std::int32_t FirstAt(std::size_t place) const;
    // The first key of a code by itself; negative when it can be one letter with others.
    std::int32_t FirstOf(unsigned short code) const;
    std::int32_t At(std::size_t place) const { return charSize_ == 1 ? At<1>(place) : At<2>(place); }

    unsigned char CollationClass() const { return collationClass_; }
    // All ready keys, by code.
    const VqKeyTable& Table() const { return table_; }

  private:
    std::int32_t Resolve(std::size_t place) const;
    bool Contracts(std::size_t place) const;

    const char* text_;
    unsigned charSize_;
    const VqCodeSet& set_;
    unsigned char language_;
    unsigned char collationClass_;
    VqKeyTable table_;
};

// One search, for all its matches. Both strings stay as they are while it lives. What each place's comparison says is
// found out for many places at once where keys or bytes tell.
class TextSearch {
  public:
    // `op` is VqString::Find's.
    TextSearch(const VqString& text, const VqString& pattern, unsigned short op);

    // The first match at or after `start`, or NotFound.
    std::size_t Find(std::size_t start);

  private:
    // What a character may be: the pattern's first letter, its second, or several letters.
    static constexpr unsigned First = 1, Second = 2, Several = 4, Anything = 7;
    enum Method { Nowhere, ByBytes, ByKeys, OneByOne };

    Method Choose();
    bool BytesTell() const;
    bool PrepareKeys();
    bool Wildcards() const { return !(op_ & (VqCmp_Exact | VqCmp_KeyOnly)); }

    void PrepareFilter();
    template <unsigned charSize>
    std::size_t FindByKeys(std::size_t place);
    template <unsigned charSize>
    std::size_t FindFiltered(std::size_t place);
    std::size_t FindByKeysLinear(std::size_t place);
    std::size_t FindOneByOne(std::size_t place);
    template <unsigned charSize>
    bool FitsAt(std::size_t place);
    bool Compare(std::size_t place);

    const VqString& text_;
    const VqString& pattern_;
    const unsigned charSize_;          // of the text
    std::optional<VqString> starred_;  // the pattern with '*' behind it, once it is asked for
    unsigned short op_;
    bool starsPattern_;
    Method method_ = Nowhere;
    std::size_t textLength_;
    std::size_t patternLength_;
    std::size_t end_ = 0;  // the first place with too little text behind it

    std::optional<TextKeys> textKeys_;       // where keys are looked at
    std::vector<std::int32_t> patternKeys_;  // masked, up to the first character that needs a closer look
    std::int32_t first_ = 0;                 // of what the pattern starts with, also when that sorts as two
    std::int32_t mask_ = 0;
    bool keysTell_ = false;             // fitting the pattern's keys is the whole answer
    std::vector<std::uint8_t> filter_;  // these bits for each code that has a ready key
    std::size_t budget_ = 0;  // characters that may be compared behind the first before the search turns linear
};

}  // namespace vq

#endif
