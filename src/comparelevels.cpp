#include "comparelevels.h"

#include "wildcard.h"

namespace vq {
namespace {

// Writes the primary difference of a pair where the caller asked for it.
class Reporter {
  public:
    Reporter(unsigned short op, int* out) : out_(op & VqCmp_Report ? out : nullptr) {}

    bool Wanted() const { return out_ != nullptr; }
    void Note(const KeyReader& text1, const KeyReader& text2, std::int32_t primary) const {
        if (out_ != nullptr && text1.InLimit() && text2.InLimit()) *out_ = primary;
    }

  private:
    int* out_;
};

// Lets the end of one text decide after the other levels, where the operation says so.
void SettleEnd(Levels& levels, const Levels& before, std::int32_t key1, std::int32_t key2, unsigned short op) {
    if (!(op & VqCmp_EndLast) || (key1 != 0 && key2 != 0)) return;
    const std::int32_t end = levels.primary;
    levels = before;
    levels.primary = 0;
    levels.end = end;
}

// --- Patterns

// A pattern as a sequence of keys and wildcards.
class PatternReader {
  public:
    PatternReader(const KeyReader& keys, const WildcardKeys& wildcards) : keys_(keys), wildcards_(&wildcards) {
        Classify();
    }

    bool AtAsterisk() const { return kind_ == Asterisk; }
    bool AtQuestion() const { return kind_ == Question; }
    std::int32_t Key() const { return keys_.Key(); }
    const KeyReader& Keys() const { return keys_; }

    void Step() {
        keys_.Step();
        Classify();
    }

  private:
    enum Kind : unsigned char { Literal, Asterisk, Question };

    void Classify() {
        const std::int32_t key = keys_.Key();
        kind_ = key == wildcards_->asterisk ? Asterisk : key == wildcards_->question ? Question : Literal;
        if (kind_ == Literal && key != 0 && key == wildcards_->escape) TakeNextLiterally();
    }

    // An escape character at the very end stands for itself.
    void TakeNextLiterally() {
        KeyReader next = keys_;
        next.Step();
        if (next.Key() != 0) keys_ = next;
    }

    KeyReader keys_;
    const WildcardKeys* wildcards_;
    Kind kind_ = Literal;
};

// Walks text and pattern together. A difference behind a '*' lays the part behind it one order further along the text.
// What stood before the last '*' is settled: the earliest place where a part fits leaves most to the parts that follow.
class PatternMatch {
  public:
    PatternMatch(const KeyReader& text, const PatternReader& pattern, unsigned short op, int* out)
        : text_(text),
          pattern_(pattern),
          starText_(text),
          afterStar_(pattern),
          op_(op),
          mask_(KeyMask(op)),
          report_(op, out) {}

    int Run() {
        for (;;) {
            if (TakeAsterisks() && pattern_.Key() == 0) return levels_.Result(op_);
            const std::int32_t key = text_.Key();
            if (key == 0 && pattern_.AtQuestion()) return -1;
            const bool fits = Pair(key);
            if (key == 0 || (!starSeen_ && (levels_.primary | levels_.end) != 0)) return levels_.Result(op_);
            if (starSeen_ && !fits) {
                LayFurther();
            } else {
                text_.Step();
                pattern_.Step();
            }
        }
    }

  private:
    bool TakeAsterisks() {
        if (!pattern_.AtAsterisk()) return false;
        while (pattern_.AtAsterisk()) pattern_.Step();
        afterStar_ = pattern_;
        starText_ = text_;
        starLevels_ = levels_;
        starSeen_ = true;
        return true;
    }

    bool Differs(std::int32_t key) const { return !pattern_.AtQuestion() && ((key ^ pattern_.Key()) & mask_) != 0; }

    // True when this key of the text fits under the levels that the operation counts.
    bool Pair(std::int32_t key) {
        const Levels before = levels_;
        if (pattern_.AtQuestion())
            levels_.primary = 0;
        else
            levels_.Note(key, pattern_.Key());
        report_.Note(text_, pattern_.Keys(), levels_.primary);
        if (levels_.primary != 0 && !starSeen_) SettleEnd(levels_, before, key, pattern_.Key(), op_);
        return !Differs(key);
    }

    void LayFurther() {
        pattern_ = afterStar_;
        levels_ = starLevels_;
        do {
            starText_.Step();
        } while (!report_.Wanted() && starText_.Key() != 0 && Differs(starText_.Key()));
        text_ = starText_;
    }

    KeyReader text_;
    PatternReader pattern_;
    Levels levels_;
    KeyReader starText_;       // where in the text the part behind the last '*' was laid last
    PatternReader afterStar_;  // that part
    Levels starLevels_;        // as they stood at the '*'
    unsigned short op_;
    std::int32_t mask_;
    bool starSeen_ = false;
    Reporter report_;
};

}  // namespace

int CompareLevels(KeyReader text1, KeyReader text2, Levels before, unsigned short op, int* out) {
    const Reporter report(op, out);
    for (Levels levels = before;; before = levels) {
        const std::int32_t key1 = text1.Key(), key2 = text2.Key();
        levels.Note(key1, key2);
        report.Note(text1, text2, levels.primary);
        if (levels.primary != 0) SettleEnd(levels, before, key1, key2, op);
        if (levels.primary != 0 || key1 == 0 || key2 == 0) return levels.Result(op);
        text1.Step();
        text2.Step();
    }
}

int MatchLevels(const KeyReader& text, const KeyReader& pattern, unsigned char patternClass, unsigned short op,
                int* out) {
    const WildcardKeys wildcards(patternClass);
    return PatternMatch(text, PatternReader(pattern, wildcards), op, out).Run();
}

int CompareKeys(KeyReader text1, KeyReader text2, std::size_t pairs) {
    for (; text1.Key() == text2.Key() && text1.Key() != 0 && --pairs != 0; text1.Step()) text2.Step();
    return text1.Key() - text2.Key();
}

}  // namespace vq
