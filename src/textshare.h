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

namespace vq {

struct Slice {
    double begin = 0, width = 1;

    double End() const { return begin + width; }
    // The part of this one that `inner` is of the whole.
    Slice Narrowed(const Slice& inner) const { return {begin + width * inner.begin, width * inner.width}; }
};

// What is known where a symbol follows: nothing, the letter before it, or a digit.
using TextContext = unsigned;
constexpr TextContext NoLetterBefore = 0;

// The context at the start of a text in a language.
TextContext StartOfText(unsigned char language);

// --- Alphabets: the slice of a symbol, 0 for the end of the text, and the context behind it

// Collation orders, with the collation class in the bits above 16.
struct OrderAlphabet {
    Slice Of(TextContext context, std::uint32_t symbol) const;
    TextContext Behind(std::uint32_t symbol) const;
};

// Bytes by their code.
struct ByteAlphabet {
    Slice Of(TextContext context, std::uint32_t symbol) const;
    TextContext Behind(std::uint32_t symbol) const;
};

// Weights of 8-bit strings.
struct WeightAlphabet {
    const WeightTable* table;

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

// The place of what is left of a text, or with `isBeginning` of all texts that begin with it.
template <class Symbols, class Alphabet>
Slice PlaceOf(Symbols text, const Alphabet& alphabet, TextContext context, bool isBeginning) {
    Slice place;
    while (place.width > LeastWidth) {
        const std::uint32_t symbol = text.Symbol();
        if (symbol == 0 && isBeginning) break;
        place = place.Narrowed(alphabet.Of(context, symbol));
        if (symbol == 0) break;
        context = alphabet.Behind(symbol);
        text.Step();
    }
    return place;
}

}  // namespace vq

#endif
