// What part of all texts begins in a certain way: texts as places on a line from 0 to 1, by how frequent letters are.
//
// A text is read symbol by symbol. Each symbol narrows the interval down to its slice of what can follow there, as an
// arithmetic coder does. Slices lie in the order of the symbols, so that places lie in the order of the texts; their
// widths follow from which letter stands before.
#ifndef VQ_TEXTSHARE_H
#define VQ_TEXTSHARE_H

#include <cstdint>

#include "istringweights.h"
#include "keyreader.h"
#include "vqcollation.h"

namespace vq {

struct Slice {
    double begin = 0, width = 1;

    constexpr double End() const { return begin + width; }
    // The part of this one that `inner` is of the whole.
    constexpr Slice Narrowed(const Slice& inner) const { return {begin + width * inner.begin, width * inner.width}; }
};

// What is known where a symbol follows: nothing, the letter before it, or a digit.
using TextContext = unsigned;
constexpr TextContext NoLetterBefore = 0;

constexpr TextContext ContextCount = 36;

// The context at the start of a text in a language.
TextContext StartOfText(unsigned char language);

// --- Alphabets: the slice of a symbol, 0 for the end of the text, and the context behind it

struct Following {
    Slice slice;
    TextContext behind;
};

// The slices of the 26 letters where they have no marks, from 1 on: most of all symbols, ready because an estimate asks
// for a dozen of them.
struct PlainLetters {
    Slice of[ContextCount][32];  // a power of 2, for the sake of addresses
};
extern const PlainLetters plainLetters;

// The orders of letters in their classes: the letter's index above two bits that extend it. Letters of other scripts
// have classes in which they precede A, or no index.
constexpr unsigned FirstLetter = 0x4000, IndexOfA = 3, IndexOfZ = 28;
constexpr unsigned FirstScriptClass = 13, LastScriptClass = 14;

constexpr bool HasLatinPlaces(std::uint32_t symbol) {
    const unsigned collationClass = symbol >> 16;
    return collationClass != VqIdeographicClass &&
           (collationClass < FirstScriptClass || collationClass > LastScriptClass);
}

// Collation orders, with the collation class in the bits above 16.
struct OrderAlphabet {
    Following At(TextContext context, std::uint32_t symbol) const {
        if (const unsigned letter = PlainLetter(symbol)) return {plainLetters.of[context][letter], letter};
        return {OfOther(context, symbol), BehindOther(symbol)};
    }
    TextContext Behind(std::uint32_t symbol) const {
        const unsigned letter = PlainLetter(symbol);
        return letter != 0 ? letter : BehindOther(symbol);
    }

  private:
    // The place of a plain letter in `plainLetters`, 0 for all else.
    static unsigned PlainLetter(std::uint32_t symbol) {
        const unsigned place = (symbol & 0xFFFF) - (FirstLetter + 4 * IndexOfA);
        const bool isPlain = place % 4 == 0 && place <= 4 * (IndexOfZ - IndexOfA) && HasLatinPlaces(symbol);
        return isPlain ? place / 4 + 1 : 0;
    }
    static Slice OfOther(TextContext context, std::uint32_t symbol);
    static TextContext BehindOther(std::uint32_t symbol);
};

// Bytes by their code.
struct ByteAlphabet {
    Following At(TextContext context, std::uint32_t symbol) const { return {Of(context, symbol), Behind(symbol)}; }
    Slice Of(TextContext context, std::uint32_t symbol) const;
    TextContext Behind(std::uint32_t symbol) const;
};

// Weights of 8-bit strings.
struct WeightAlphabet {
    const WeightTable* table;

    Following At(TextContext context, std::uint32_t symbol) const { return {Of(context, symbol), Behind(symbol)}; }
    Slice Of(TextContext context, std::uint32_t symbol) const;
    TextContext Behind(std::uint32_t symbol) const;
};

// --- Texts as sequences of symbols; behind the last one 0

class OrderSymbols {
  public:
    OrderSymbols(const KeySource& source, const char* text, std::size_t characters) : keys_(source, text, characters) {}

    std::uint32_t Symbol() const { return static_cast<std::uint32_t>(keys_.Key()) >> 8; }
    void Step() { keys_.Step(); }

  private:
    KeyReader keys_;
};

// The same where all characters that are read have keys in the table of a set of 1-byte characters, which is so for
// most texts: AllReady tells it then.
class ReadyOrderSymbols {
  public:
    ReadyOrderSymbols(const std::int32_t* table, const void* text, std::size_t length)
        : table_(table), at_(static_cast<const unsigned char*>(text)), end_(at_ + length) {
        Load();
    }

    std::uint32_t Symbol() const { return static_cast<std::uint32_t>(key_) >> 8; }
    void Step() {
        ++at_;
        Load();
    }
    bool AllReady() const { return seen_ >= 0; }

  private:
    void Load() {
        key_ = at_ != end_ ? table_[*at_] : 0;
        seen_ |= key_;
    }

    const std::int32_t* table_;
    const unsigned char *at_, *end_;
    std::int32_t key_ = 0;
    std::int32_t seen_ = 0;  // negative as soon as a key was
};

class ByteSymbols {
  public:
    ByteSymbols(const void* text, std::size_t length) : at_(static_cast<const unsigned char*>(text)), left_(length) {}

    std::uint32_t Symbol() const { return left_ != 0 ? *at_ : 0; }
    void Step() {
        if (Symbol() == 0) return;
        ++at_;
        --left_;
    }

  private:
    const unsigned char* at_;
    std::size_t left_;
};

class WeightSymbols {
  public:
    WeightSymbols(const WeightTable& table, const void* text, std::size_t length)
        : table_(&table), bytes_(text, length) {}

    std::uint32_t Symbol() const {
        return inSecond_ ? table_->second[bytes_.Symbol()] : table_->weight[bytes_.Symbol()];
    }
    void Step() {
        inSecond_ = !inSecond_ && table_->second[bytes_.Symbol()] != 0;
        if (!inSecond_) bytes_.Step();
    }

  private:
    const WeightTable* table_;
    ByteSymbols bytes_;
    bool inSecond_ = false;
};

// --- Places

// A place is told no more precisely than a float tells the part of an index.
constexpr double LeastWidth = 1e-7;

// The place of a text, or with `isBeginning` of all texts that begin with it, as far as it is read.
template <class Symbols>
struct TextPlace {
    Symbols symbols;
    bool isBeginning;
    bool isRead = false;
    TextContext context = NoLetterBefore;
    Slice place = {};

    // Reads on until the place is no wider, or the text ends.
    template <class Alphabet>
    void NarrowTo(double width, const Alphabet& alphabet) {
        while (place.width > width && !isRead) {
            const std::uint32_t symbol = symbols.Symbol();
            isRead = symbol == 0;
            if (isRead && isBeginning) break;
            const Following next = alphabet.At(context, symbol);
            place = place.Narrowed(next.slice);
            if (isRead) break;
            context = next.behind;
            symbols.Step();
        }
    }
};

}  // namespace vq

#endif
