#include "strcompare.h"

#include "collationkey.h"
#include "stringiterator.h"
#include "textunit.h"
#include "vqcollation.h"

namespace {

constexpr std::int32_t CaseBits = 0x60;
constexpr std::int32_t AccentBits = 0x1F;
constexpr std::int32_t PrimaryMask = ~(CaseBits | AccentBits);

// The bits of a key that decide under an operation.
constexpr std::int32_t KeyMask(unsigned short op) {
    return ~((op & VqCmp_IgnoreCase ? CaseBits : 0) | (op & VqCmp_IgnoreAccents ? AccentBits : 0));
}

// --- Texts in the native code set: bytes

// The difference of the first differing bytes; a null pointer sorts before any text that is not empty.
int CompareBytes(const char* text1, const char* text2, short n) {
    if (text1 == nullptr || text2 == nullptr) {
        const bool some1 = text1 != nullptr && *text1 != 0, some2 = text2 != nullptr && *text2 != 0;
        return static_cast<int>(some1) - static_cast<int>(some2);
    }
    for (; n != 0; ++text1, ++text2, n = static_cast<short>(n > 0 ? n - 1 : n)) {
        const int difference = static_cast<unsigned char>(*text1) - static_cast<unsigned char>(*text2);
        if (difference != 0 || *text1 == 0) return difference;
    }
    return 0;
}

// Matches at most `n` bytes of `text` with `pattern`, where '*' is any run of bytes and '?' any one. A mismatch goes
// back to the last '*' alone, so that memory is constant and time at most the product of both lengths.
int MatchBytes(const char* text, const char* pattern, short n) {
    if (text == nullptr) return pattern == nullptr || *pattern == 0 ? 0 : -1;
    if (pattern == nullptr) return *text == 0 ? 0 : 1;
    const char* const end = n < 0 ? nullptr : text + n;
    const char* afterStar = nullptr;
    const char* starText = nullptr;
    for (;;) {
        if (*pattern == '*') {
            while (*pattern == '*') ++pattern;
            if (*pattern == 0) return 0;
            afterStar = pattern;
            starText = text;
        }
        if (text == end) return 0;
        if (*text == 0 && *pattern == '?') return -1;
        if (*text == *pattern || *pattern == '?') {
            if (*text == 0) return 0;
            ++text;
            ++pattern;
        } else if (afterStar == nullptr || *text == 0) {
            return static_cast<unsigned char>(*text) - static_cast<unsigned char>(*pattern);
        } else {
            text = ++starText;
            pattern = afterStar;
        }
    }
}

// --- Texts in any other code set: collation orders

// The first n characters of a text as comparison keys; then keys of 0.
class KeyReader {
  public:
    KeyReader(const VqStringIterator& text, short n)
        : text_(text), limit_(n < 0 ? ~0UL : static_cast<unsigned long>(n)) {}

    std::int32_t Peek() { return InLimit() ? VqCollationKey(text_.GetNextOrder(0), Class()) : 0; }
    std::int32_t Next() { return InLimit() ? VqCollationKey(text_.GetNextOrder(1), Class()) : 0; }
    unsigned short PeekOrder() { return InLimit() ? text_.GetNextOrder(0) : static_cast<unsigned short>(0); }
    bool InLimit() const { return text_.GetPosition() < limit_; }

  private:
    unsigned char Class() const { return text_.GetCollationClass(); }

    VqStringIterator text_;
    unsigned long limit_;
};

int CompareKeys(KeyReader text1, KeyReader text2) {
    for (;;) {
        const std::int32_t key1 = text1.Next(), key2 = text2.Next();
        if (key1 != key2 || key1 == 0) return key1 - key2;
    }
}

// What the pairs of keys so far say on each level.
struct Levels {
    std::int32_t primary = 0;
    std::int32_t accent = 0;        // the last difference
    std::int32_t caseReversed = 0;  // the first difference, with its sign reversed

    // Takes in one pair; returns the bits in which it differs.
    std::int32_t Note(std::int32_t key1, std::int32_t key2) {
        primary = (key1 & PrimaryMask) - (key2 & PrimaryMask);
        if (caseReversed == 0) caseReversed = (key2 & ~AccentBits) - (key1 & ~AccentBits);
        if (const std::int32_t difference = (key1 & ~CaseBits) - (key2 & ~CaseBits)) accent = difference;
        return key1 ^ key2;
    }
    int Result(unsigned short op) const {
        if (primary != 0) return primary;
        if (accent != 0 && !(op & VqCmp_IgnoreAccents)) return accent;
        return op & VqCmp_IgnoreCase ? 0 : caseReversed;
    }
};

// Walks both texts together. A difference after a '*' lays the part behind it one order further along the text; what
// stood before the last '*' is settled, so that memory is constant and time at most the product of both lengths.
class LevelComparison {
  public:
    LevelComparison(const KeyReader& text1, const KeyReader& text2, unsigned short op, int* out)
        : text_(text1),
          pattern_(text2),
          afterStar_(text2),
          starText_(text1),
          op_(op),
          mask_(KeyMask(op)),
          wildcards_(!(op & VqCmp_Exact)),
          out_(op & VqCmp_Report ? out : nullptr) {}

    int Run() {
        for (;;) {
            if (wildcards_ && TakeStars() && pattern_.Peek() == 0) return levels_.Result(op_);
            const std::int32_t key = text_.Peek();
            if (key == 0 && AtQuestion()) return -1;
            const bool fits = Step(key);
            Report();
            if (key == 0 || (levels_.primary != 0 && !starSeen_)) return levels_.Result(op_);
            if (starSeen_ && !fits)
                LayFurther();
            else
                text_.Next();
        }
    }

  private:
    bool AtStar() { return pattern_.PeekOrder() == vq::AsteriskOrder(); }
    bool AtQuestion() { return wildcards_ && pattern_.PeekOrder() == vq::QuestionOrder(); }

    bool TakeStars() {
        if (!AtStar()) return false;
        while (AtStar()) pattern_.Next();
        afterStar_ = pattern_;
        starText_ = text_;
        starLevels_ = levels_;
        starSeen_ = true;
        return true;
    }

    // True when this key of the text fits under the levels that the operation counts.
    bool Step(std::int32_t key) {
        if (AtQuestion()) {
            pattern_.Next();
            levels_.primary = 0;
            return true;
        }
        return (levels_.Note(key, pattern_.Next()) & mask_) == 0;
    }

    void LayFurther() {
        starText_.Next();
        text_ = starText_;
        pattern_ = afterStar_;
        levels_ = starLevels_;
    }

    void Report() const {
        if (out_ != nullptr && text_.InLimit() && pattern_.InLimit()) *out_ = levels_.primary;
    }

    KeyReader text_;
    KeyReader pattern_;
    Levels levels_;
    KeyReader afterStar_;  // the pattern behind its last '*'
    KeyReader starText_;   // where in the text that part was laid last
    Levels starLevels_;    // as they stood at the '*'
    unsigned short op_;
    std::int32_t mask_;
    bool wildcards_;
    bool starSeen_ = false;
    int* out_;
};

}  // namespace

int VqStrCmp(unsigned char codeSet1, unsigned char language1, const char* text1, unsigned char codeSet2,
             unsigned char language2, const char* text2, unsigned short op, short n, unsigned char order, int* out) {
    const bool literal = op & (VqCmp_Exact | VqCmp_KeyOnly);
    const bool null1 = vq::IsNullText(codeSet1, language1), null2 = vq::IsNullText(codeSet2, language2);
    if (null2) return null1 ? 0 : 1;
    if (null1 && literal) return -1;
    if (n == 0) return 0;
    if (codeSet1 == 0 && codeSet2 == 0) return literal ? CompareBytes(text1, text2, n) : MatchBytes(text1, text2, n);

    const KeyReader reader1(VqStringIterator(codeSet1, language1, text1, order), n);
    const KeyReader reader2(VqStringIterator(codeSet2, language2, text2, order), n);
    if (op & VqCmp_KeyOnly) return CompareKeys(reader1, reader2);
    return LevelComparison(reader1, reader2, op, out).Run();
}
