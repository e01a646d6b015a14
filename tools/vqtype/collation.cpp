#include "collation.h"

#include "stringiterator.h"
#include "vqcollation.h"

namespace {

constexpr std::int32_t CaseBits = 0x60;
constexpr std::int32_t AccentBits = 0x1F;

// The bits of a key that say whether two are equal down to a level.
constexpr std::int32_t MaskOf(CollationLevel level) {
    if (level == CollationLevel::Accent) return ~CaseBits;
    if (level == CollationLevel::Case) return ~AccentBits;
    return ~(CaseBits | AccentBits);
}

bool Counts(CollationLevel level, unsigned short op) {
    if (level == CollationLevel::Accent) return !(op & VqCmp_IgnoreAccents);
    return level != CollationLevel::Case || !(op & VqCmp_IgnoreCase);
}

constexpr CollationLevel Levels[] = {CollationLevel::Primary, CollationLevel::Accent, CollationLevel::Case};

// The first level that counts and at which the row differs.
CollationLevel LevelOf(const CollationRow& row, unsigned short op) {
    for (const CollationLevel level : Levels) {
        if (Counts(level, op) && row.DiffersAt(level)) return level;
    }
    return CollationLevel::None;
}

int SignAt(const CollationRow& row, CollationLevel level) {
    const std::int32_t key1 = row.Key1() & MaskOf(level), key2 = row.Key2() & MaskOf(level);
    return (key1 < key2 ? -1 : 1) * (level == CollationLevel::Case ? -1 : 1);
}

void Decide(Collation& collation, std::size_t row, CollationLevel level) {
    collation.level = level;
    collation.position = row;
    collation.sign = SignAt(collation.rows[row], level);
}

// Of texts with the same letters the last difference of accents decides, then the first of case.
void DecideTies(Collation& collation, unsigned short op) {
    const auto& rows = collation.rows;
    for (std::size_t i = rows.size(); Counts(CollationLevel::Accent, op) && i-- > 0;) {
        if (rows[i].DiffersAt(CollationLevel::Accent)) return Decide(collation, i, CollationLevel::Accent);
    }
    for (std::size_t i = 0; Counts(CollationLevel::Case, op) && i < rows.size(); ++i) {
        if (rows[i].DiffersAt(CollationLevel::Case)) return Decide(collation, i, CollationLevel::Case);
    }
}

std::vector<CollationStep> StepAt(const std::vector<CollationStep>& steps, std::size_t i) {
    return i < steps.size() ? std::vector{steps[i]} : std::vector<CollationStep>{};
}

std::vector<CollationStep> ByteSteps(const VqString& text) {
    std::vector<CollationStep> steps;
    for (const char* at = text.StrGet(); *at != 0; ++at) {
        const auto byte = static_cast<unsigned char>(*at);
        steps.push_back({steps.size(), 1, 1, 1, byte, byte << 8});
    }
    return steps;
}

// The orders of the characters at the iterator, which moves behind them.
std::vector<CollationStep> NextSteps(VqStringIterator& at) {
    const std::size_t first = at.GetPosition();
    std::vector<CollationStep> steps;
    while (at.GetPosition() == first) {
        const unsigned short order = at.GetNextOrder(1);
        steps.push_back({first, 0, 0, 0, order, VqCollationKey(order, at.GetCollationClass())});
    }
    for (std::size_t i = 0; i < steps.size(); ++i) {
        steps[i].count = at.GetPosition() - first;
        steps[i].part = static_cast<int>(i + 1);
        steps[i].parts = static_cast<int>(steps.size());
    }
    return steps;
}

// Tries a pattern at one place after the other. A difference behind a '*' gives it one step more to take.
class PatternWalk {
  public:
    PatternWalk(const VqString& text, const VqString& pattern, unsigned short op)
        : text_(CollationSteps(text)), pattern_(CollationSteps(pattern)), op_(op) {
        VqString wildcards(pattern.GetCodeSet(), pattern.GetLanguage());
        wildcards.AssignChars("*?", 1, 2);
        asterisk_ = CollationSteps(wildcards)[0].key;
        question_ = CollationSteps(wildcards)[1].key;
    }

    Collation Run() {
        while (at1_ < text_.size() || at2_ < pattern_.size()) {
            if (KeyOfPattern() == asterisk_) {
                TakeAsterisks();
                if (at2_ == pattern_.size()) return TakeRest();
                continue;
            }
            const CollationLevel level = TakePair();
            if (starRow_ == NoRow ? level == CollationLevel::Primary : level != CollationLevel::None) {
                if (starRow_ == NoRow || at1_ == text_.size()) return Fail();
                LayFurther();
            } else {
                ++at1_;
                ++at2_;
            }
        }
        return Tied();
    }

  private:
    static constexpr std::size_t NoRow = static_cast<std::size_t>(-1);

    std::int32_t KeyOfPattern() const { return at2_ < pattern_.size() ? pattern_[at2_].key : 0; }

    void TakeAsterisks() {
        collation_.rows.push_back({{}, StepAt(pattern_, at2_), true});
        while (KeyOfPattern() == asterisk_) ++at2_;
        starRow_ = collation_.rows.size() - 1;
        starText_ = at1_;
        afterStar_ = at2_;
    }

    // The first level at which the next two differ.
    CollationLevel TakePair() {
        const bool isQuestion = KeyOfPattern() == question_;
        collation_.rows.push_back({StepAt(text_, at1_), StepAt(pattern_, at2_), isQuestion});
        if (isQuestion) return at1_ < text_.size() ? CollationLevel::None : CollationLevel::Primary;
        return LevelOf(collation_.rows.back(), op_);
    }

    void LayFurther() {
        collation_.rows.resize(starRow_ + 1);
        collation_.rows[starRow_].steps1.push_back(text_[starText_]);
        at1_ = ++starText_;
        at2_ = afterStar_;
    }

    Collation TakeRest() {
        auto& taken = collation_.rows[starRow_].steps1;
        taken.insert(taken.end(), text_.begin() + static_cast<std::ptrdiff_t>(at1_), text_.end());
        return Tied();
    }

    // All letters fit. In front of the first '*' accents and case may differ nevertheless.
    Collation Tied() {
        DecideTies(collation_, op_);
        return collation_;
    }

    // Behind a '*' the text has ended before the pattern could be laid anywhere.
    Collation Fail() {
        Decide(collation_, collation_.rows.size() - 1, CollationLevel::Primary);
        if (starRow_ != NoRow) {
            collation_.level = CollationLevel::None;
            collation_.fits = false;
        }
        return collation_;
    }

    std::vector<CollationStep> text_, pattern_;
    unsigned short op_;
    std::int32_t asterisk_, question_;
    Collation collation_;
    std::size_t at1_ = 0, at2_ = 0;
    std::size_t starRow_ = NoRow, starText_ = 0, afterStar_ = 0;
};

}  // namespace

bool CollationRow::DiffersAt(CollationLevel level) const {
    if (isWildcard) return false;
    const std::int32_t difference = Key1() ^ Key2();
    if (level == CollationLevel::Case) return (difference & CaseBits) != 0;
    if (level == CollationLevel::Accent) return (difference & AccentBits) != 0;
    return (difference & MaskOf(level)) != 0;
}

std::vector<CollationStep> CollationSteps(const VqString& text) {
    if (text.GetCodeSet() == 0) return ByteSteps(text);
    std::vector<CollationStep> steps;
    for (VqStringIterator at(text); !at.IsEnd();) {
        const std::vector<CollationStep> next = NextSteps(at);
        steps.insert(steps.end(), next.begin(), next.end());
    }
    return steps;
}

Collation Collate(const VqString& text1, const VqString& text2, unsigned short op) {
    const std::vector<CollationStep> steps1 = CollationSteps(text1), steps2 = CollationSteps(text2);
    Collation collation;
    for (std::size_t i = 0; i < steps1.size() || i < steps2.size(); ++i) {
        collation.rows.push_back({StepAt(steps1, i), StepAt(steps2, i)});
        if (collation.rows[i].DiffersAt(CollationLevel::Primary)) {
            Decide(collation, i, CollationLevel::Primary);
            return collation;
        }
    }
    DecideTies(collation, op);
    return collation;
}

Collation CollatePattern(const VqString& text, const VqString& pattern, unsigned short op) {
    return PatternWalk(text, pattern, op).Run();
}
