// Estimates of texts: what a predicate selects of the line from an index's low key to its high one.
#ifndef VQ_TEXTRANGE_H
#define VQ_TEXTRANGE_H

#include <algorithm>
#include <limits>

#include "keybounds.h"
#include "textshare.h"
#include "vqbase.h"

namespace vq {

template <class Symbols>
struct Text {
    TextPlace<Symbols> place;
    bool isNull = false;

    std::uint32_t Symbol() const { return place.symbols.Symbol(); }
};

// Null lies below all texts. How many keys are null is not known.
constexpr double NullShare = 1.0 / 64;

// A predicate's key between both ends of an index.
struct TextRange {
    Interval key, index;

    double Length() const { return index.high - index.low; }

    // What the operators select; nothing where the ends are out of order. Never more than the length: the parts are
    // differences of the same numbers.
    double SelectedArea(unsigned short operators) const {
        if (!(Length() > 0)) return 0;
        const bool equal = operators & VqOperator_Equal, less = operators & VqOperator_Less;
        const bool greater = operators & VqOperator_Greater;
        if (less && greater) return equal ? Length() : Length() - (key.high - key.low);
        if (less) return (equal ? key.high : key.low) - index.low;
        if (greater) return index.high - (equal ? key.low : key.high);
        return equal ? key.high - key.low : 0;
    }
};

enum class Relation { Inside, Below, Above, Everything };

// The three texts of an estimate. They are read once.
template <class Symbols, class Alphabet>
struct RangeReader {
    Alphabet alphabet;
    TextContext context;  // at the start of the texts
    Text<Symbols> key, low, high;
    Relation relation = Relation::Inside;
    unsigned leastClass = 0;

    TextRange Read() {
        if (key.place.isBeginning && key.Symbol() == 0) relation = Relation::Everything;
        if (!low.isNull && !high.isNull) SkipCommonBeginning();
        leastClass = std::min({ClassOf(key), ClassOf(low), ClassOf(high)});
        const Interval index = IndexInterval();
        return {KeyInterval(index), index};
    }

    // What both ends have in common all keys of the index have, and none lies apart by it.
    void SkipCommonBeginning() {
        if (key.isNull) relation = Relation::Below;
        for (std::uint32_t symbol; (symbol = low.Symbol()) != 0 && symbol == high.Symbol();) {
            if (relation == Relation::Inside) relation = Follow(symbol);
            context = alphabet.Behind(symbol);
            low.place.symbols.Step();
            high.place.symbols.Step();
        }
    }
    Relation Follow(std::uint32_t symbol) {
        const std::uint32_t own = key.Symbol();
        if (own == 0 && key.place.isBeginning) return Relation::Everything;
        if (own != symbol) return own < symbol ? Relation::Below : Relation::Above;
        key.place.symbols.Step();
        return Relation::Inside;
    }

    // Texts of another collation class lie apart, each class on a line of its own. The end of a text has no class.
    static unsigned ClassOf(const Text<Symbols>& text) {
        const std::uint32_t symbol = text.isNull ? 0 : text.Symbol();
        return symbol != 0 ? symbol >> 16 : std::numeric_limits<unsigned>::max();
    }
    void Start(Text<Symbols>& text) const {
        text.place.context = context;
        if (text.isNull) {
            text.place.place = {-NullShare, NullShare};
            text.place.isRead = true;
        } else if (text.Symbol() != 0) {
            text.place.place.begin = ClassOf(text) - leastClass;
        }
    }

    // Where the ends lie far apart, they are read no further than that does not count any more.
    Interval IndexInterval() {
        constexpr double Coarse = 1.0 / 2048, Far = 1.0 / 4;
        const auto between = [this](double width) {
            low.place.NarrowTo(width, alphabet);
            high.place.NarrowTo(width, alphabet);
            return Interval{low.place.place.begin, high.place.place.End()};
        };
        Start(low);
        Start(high);
        const Interval coarse = between(Coarse);
        return coarse.high - coarse.low > Far ? coarse : between(LeastWidth);
    }
    Interval KeyInterval(const Interval& index) {
        if (relation == Relation::Below) return {index.low, index.low};
        if (relation == Relation::Above) return {index.high, index.high};
        if (relation == Relation::Everything) return index;
        if (!(index.low < index.high)) return {index.low, index.low};
        Start(key);
        key.place.NarrowTo(LeastWidth, alphabet);
        const Slice& place = key.place.place;
        return {std::clamp(place.begin, index.low, index.high), std::clamp(place.End(), index.low, index.high)};
    }
};

// `charWildPos` is 0 for a key that holds no wildcard.
inline double EstimateText(unsigned short operators, std::size_t charWildPos, const TextRange& range) {
    const double valueRange = range.Length(), valueTotalArea = range.SelectedArea(operators);
    if (!(valueTotalArea > 0)) return 0;
    if (!(charWildPos != 0 || valueRange >= valueTotalArea)) {
        VIQA_assert("charWildPos != 0 || valueRange >= valueTotalArea", BoundsSource, __LINE__);
    }
    constexpr double Least = std::numeric_limits<float>::epsilon();
    return std::clamp(valueTotalArea / valueRange, Least, 1.0);
}

}  // namespace vq

#endif
