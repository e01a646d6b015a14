// Comparison of texts step by step through iterators: slow, with a list of candidate alignments for patterns, and
// sharing nothing with the library's own walk but the iterator. Tests hold the library equal to it.
//
// A candidate begins with the differences that stood at its '*': behind a '*' the main alignment has no others on a
// level that counts. A pattern's next '*' settles what stands before it: candidates end there, and those that are alive
// when the main alignment passes it go, since taking one over would lose what is matched already.
#ifndef VQ_STRCOMPAREREFERENCE_H
#define VQ_STRCOMPAREREFERENCE_H

#include <cstring>
#include <list>

#include "vqtm.h"

namespace vqtest {

struct ReferenceText {
    unsigned char codeSet;
    unsigned char language;
    const char* text;
};

// The orders that patterns read in a special way.
struct ReferenceWildcards {
    unsigned short asterisk = 159;
    unsigned short question = 122;
    unsigned short escape = 0;
};

class StrCmpReference {
  public:
    StrCmpReference(const ReferenceText& text1, const ReferenceText& text2, unsigned short op, short n,
                    unsigned char order, int* out, const ReferenceWildcards& wildcards = {})
        : text1_(text1), text2_(text2), op_(op), n_(n), order_(order), out_(out), wildcards_(wildcards) {}

    int Run() const {
        const bool null1 = IsNull(text1_), null2 = IsNull(text2_);
        if (null1 && null2) return 0;
        if (null2) return 1;
        if (null1 && (op_ & 0x110)) return -1;
        if (n_ == 0) return 0;
        if (text1_.codeSet == 0 && text2_.codeSet == 0) return op_ & 0x110 ? Bytes() : BytePattern();
        if (op_ & 0x100) return Keys();
        return ByLevels();
    }

  private:
    // A walk through one text.
    struct Side {
        VqStringIterator iterator;
        unsigned long limit;

        unsigned short Order() { return iterator.GetNextOrder(0); }
        void Next() { iterator.GetNextOrder(1); }
        bool InLimit() const { return iterator.GetPosition() < limit; }
        int Key() {
            const int order = Order(), collationClass = iterator.GetCollationClass();
            if (order == 0) return 0;
            if ((order & 0xC000) != 0x4000 || collationClass == 20) return collationClass << 24 | order << 8;
            return collationClass << 24 | (order & 0x407F) << 8 | (order & 0x3000) >> 7 | (order & 0xF80) >> 7;
        }
    };

    struct Differences {
        int primary = 0, accent = 0, reversedCase = 0, end = 0;
    };

    // A pattern's place and what led there.
    struct Alignment {
        Side pattern;
        Differences differences;
    };

    static bool IsNull(const ReferenceText& text) {
        return text.language == 254 || (text.codeSet == 254 && text.language == 0);
    }

    unsigned long Limit() const { return n_ == -1 ? ~0UL : static_cast<unsigned short>(n_); }

    Side SideOf(const ReferenceText& text) const { return SideOf(text, Limit()); }
    Side SideOf(const ReferenceText& text, unsigned long limit) const {
        Side side = {VqStringIterator(text.codeSet, text.language, text.text, order_), limit};
        side.iterator.SetLimit(limit);
        return side;
    }

    // --- Bytes

    // The byte at a place of a text within the limit; -1 stands for a null pointer.
    int Bytes() const {
        const char *a = text1_.text, *b = text2_.text;
        if (a == nullptr || b == nullptr) return (a != nullptr && *a != 0) - (b != nullptr && *b != 0);
        for (unsigned long i = 0; i < Limit(); ++i) {
            if (a[i] != b[i]) return static_cast<unsigned char>(a[i]) - static_cast<unsigned char>(b[i]);
            if (a[i] == 0) break;
        }
        return 0;
    }

    int BytePattern() const {
        if (text1_.text == nullptr) return text2_.text == nullptr || *text2_.text == 0 ? 0 : -1;
        if (text2_.text == nullptr) return *text1_.text == 0 ? 0 : 1;
        return BytePattern(text1_.text, text2_.text, Limit(), nullptr, nullptr);
    }

    static int BytePattern(const char* text, const char* pattern, unsigned long left, const char* starPattern,
                           const char* starText) {
        unsigned long starLeft = 0;
        for (;;) {
            if (*pattern == '*') {
                while (*pattern == '*') ++pattern;
                if (*pattern == 0) return 0;
                starPattern = pattern;
                starText = text;
                starLeft = left;
            }
            if (left == 0) return 0;
            if (*pattern == '?' && *text == 0) return -1;
            if (*pattern == '?' || *pattern == *text) {
                if (*text == 0) return 0;
                ++text, ++pattern, --left;
                continue;
            }
            if (starPattern == nullptr || *text == 0) {
                return static_cast<unsigned char>(*text) - static_cast<unsigned char>(*pattern);
            }
            pattern = starPattern;
            text = ++starText;
            left = --starLeft;
        }
    }

    // --- Keys

    // n counts pairs here.
    int Keys() const {
        Side side1 = SideOf(text1_, ~0UL), side2 = SideOf(text2_, ~0UL);
        for (long pairs = n_ == -1 ? -1L : static_cast<unsigned short>(n_);;) {
            const int key1 = side1.Key(), key2 = side2.Key();
            if (key1 != key2 || key1 == 0 || --pairs == 0) return key1 - key2;
            side1.Next();
            side2.Next();
        }
    }

    // --- Levels

    int Mask() const {
        const int masks[] = {-1, static_cast<int>(0xFFFFFF9F), static_cast<int>(0xFFFFFFE0),
                             static_cast<int>(0xFFFFFF80)};
        return masks[op_ >> 5 & 3];
    }

    bool Wild() const { return !(op_ & 0x10); }
    bool AtAsterisk(Side& pattern) const { return Wild() && pattern.Order() == wildcards_.asterisk; }
    bool AtQuestion(Side& pattern) const { return Wild() && pattern.Order() == wildcards_.question; }
    bool AtEscape(Side& pattern) const {
        if (!Wild() || wildcards_.escape == 0 || pattern.Order() != wildcards_.escape) return false;
        if (AtAsterisk(pattern) || AtQuestion(pattern)) return false;
        Side behind = pattern;
        behind.Next();
        return behind.Order() != 0;
    }

    // The pattern's place as a literal, a wildcard, or a literal behind an escape character.
    struct Symbol {
        bool asterisk, question;
        int key;
        Side behind;
    };
    Symbol SymbolAt(Side pattern) const {
        const bool asterisk = AtAsterisk(pattern), question = AtQuestion(pattern);
        if (AtEscape(pattern)) pattern.Next();
        const int key = pattern.Key();
        pattern.Next();
        return {asterisk, question, key, pattern};
    }

    bool Fits(const Symbol& symbol, int key) const {
        return symbol.question ? key != 0 : !symbol.asterisk && (symbol.key & Mask()) == (key & Mask());
    }

    static void Note(Differences& differences, int key1, int key2) {
        const int primary = static_cast<int>(0xFFFFFF80), noAccent = static_cast<int>(0xFFFFFFE0),
                  noCase = static_cast<int>(0xFFFFFF9F);
        differences.primary = (key1 & primary) - (key2 & primary);
        if (differences.reversedCase == 0) differences.reversedCase = (key2 & noAccent) - (key1 & noAccent);
        if ((key1 & noCase) != (key2 & noCase)) differences.accent = (key1 & noCase) - (key2 & noCase);
    }

    void Take(Alignment& alignment, const Symbol& symbol, int key) const {
        if (symbol.question)
            alignment.differences.primary = 0;
        else
            Note(alignment.differences, key, symbol.key);
        alignment.pattern = symbol.behind;
    }

    int Result(const Differences& differences) const {
        if (differences.primary != 0) return differences.primary;
        if (differences.accent != 0 && !(op_ & 0x40)) return differences.accent;
        if (differences.reversedCase != 0 && !(op_ & 0x20)) return differences.reversedCase;
        return differences.end;
    }

    // Follows each candidate over one order of the text, and lets a new one begin there.
    void StepCandidates(std::list<Alignment>& candidates, const Alignment& afterStar, int key) const {
        for (auto it = candidates.begin(); it != candidates.end();) {
            const Symbol symbol = SymbolAt(it->pattern);
            if (Fits(symbol, key)) {
                Take(*it, symbol, key);
                ++it;
            } else {
                it = candidates.erase(it);
            }
        }
        const Symbol first = SymbolAt(afterStar.pattern);
        if (!Fits(first, key)) return;
        candidates.push_back(afterStar);
        Take(candidates.back(), first, key);
    }

    int ByLevels() const {
        Side text = SideOf(text1_);
        Alignment main = {SideOf(text2_), {}};
        Alignment afterStar = main;
        bool starSeen = false;
        std::list<Alignment> candidates;
        for (;;) {
            if (AtAsterisk(main.pattern)) {
                while (AtAsterisk(main.pattern)) main.pattern.Next();
                starSeen = true;
                afterStar = main;
                candidates.clear();
                if (main.pattern.Order() == 0) return main.differences.primary = 0, Result(main.differences);
            }
            const int key = text.Key();
            const Symbol symbol = SymbolAt(main.pattern);
            if (key == 0) {
                for (Alignment& candidate : candidates) {
                    if (candidate.pattern.Order() == 0) return Result(candidate.differences);
                }
                if (symbol.question) return -1;
            }
            const bool inLimit = text.InLimit() && main.pattern.InLimit();
            Alignment next = main;
            Take(next, symbol, key);
            if (out_ != nullptr && (op_ & 0x80) && inLimit) *out_ = next.differences.primary;
            if (!starSeen && next.differences.primary != 0)
                return Ended(main.differences, next.differences, key, symbol.key);
            if (key == 0) return Result(next.differences);
            if (starSeen) StepCandidates(candidates, afterStar, key);
            if (!starSeen || Fits(symbol, key)) {
                main = next;
            } else if (!candidates.empty()) {
                main = candidates.front();
                candidates.pop_front();
            } else {
                main = afterStar;
            }
            text.Next();
        }
    }

    // Both texts part here, or one ends: then 0x200 lets the levels so far decide first.
    int Ended(Differences before, const Differences& now, int key1, int key2) const {
        if (!(op_ & 0x200) || (key1 != 0 && key2 != 0)) return Result(now);
        before.end = now.primary;
        return Result(before);
    }

    ReferenceText text1_;
    ReferenceText text2_;
    unsigned short op_;
    short n_;
    unsigned char order_;
    int* out_;
    ReferenceWildcards wildcards_;
};

}  // namespace vqtest

#endif
