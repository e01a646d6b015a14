#include "textshare.h"

#include <algorithm>
#include <iterator>

namespace vq {
namespace {

#include "data/letterfrequency.inc"

// --- Letters: 1 to 26, those behind Z 27

constexpr unsigned BehindZ = 27;
constexpr unsigned LetterEnd = 28;
constexpr TextContext DigitBefore = 28;
constexpr TextContext FirstLanguage = 29;
constexpr double Whole = 65536;

static_assert(std::size(letterRows) == ContextCount && FirstLanguage + std::size(startLanguages) == ContextCount);

constexpr double ShareBefore(TextContext context, unsigned column) {
    return column < LetterEnd ? letterRows[context][column] / Whole : 1;
}

constexpr Slice ColumnOf(TextContext context, unsigned column) {
    const double begin = ShareBefore(context, column);
    return {begin, ShareBefore(context, column + 1) - begin};
}

// --- What else can follow. Word lists do not tell it; columns of names, titles, codes and numbers have some of each.

enum Kind { Space, Symbol, Digit, OtherSymbol, Ideograph, KindCount };

// The shares of the kinds, and of those before each; the end and the letters have the rest. A digit is mostly followed
// by more.
struct KindShares {
    double of[KindCount];
    double before[KindCount + 1] = {};

    constexpr explicit KindShares(const double (&shares)[KindCount]) : of{} {
        for (int kind = 0; kind < KindCount; ++kind) {
            of[kind] = shares[kind];
            before[kind + 1] = before[kind] + shares[kind];
        }
    }
    constexpr double Rest() const { return 1 - before[KindCount]; }
};
constexpr KindShares kindsInWords({0.01, 0.005, 0.01, 0.005, 0.01});
constexpr KindShares kindsInNumbers({0.03, 0.07, 0.6, 0.03, 0.01});

constexpr const KindShares& KindsBehind(TextContext context) {
    return context == DigitBefore ? kindsInNumbers : kindsInWords;
}

constexpr Slice EndOf(TextContext context) {
    return Slice{0, KindsBehind(context).Rest()}.Narrowed(ColumnOf(context, 0));
}

// From the end to the letters, and from them to the end of the line, lie the other kinds.
constexpr Slice KindOf(TextContext context, Kind kind) {
    const KindShares& kinds = KindsBehind(context);
    const double begin = kind == Ideograph ? 1 - kinds.of[Ideograph] : EndOf(context).width + kinds.before[kind];
    return {begin, kinds.of[kind]};
}

constexpr Slice LetterOf(TextContext context, unsigned letter) {
    const KindShares& kinds = KindsBehind(context);
    return Slice{kinds.before[Ideograph], kinds.Rest()}.Narrowed(ColumnOf(context, letter));
}

constexpr Slice AllLetters(TextContext context) {
    const double begin = LetterOf(context, 1).begin;
    return {begin, LetterOf(context, BehindZ).End() - begin};
}

// The i-th of n equal parts.
constexpr Slice EqualPart(double i, double n) {
    const double width = 1 / n;
    return {std::min(i, n - 1) * width, width};
}

// Of a letter, most is the plain one's; `i` of the `n` others share the rest.
constexpr double PlainShare = 0.94;
constexpr Slice PlainPart() { return {0, PlainShare}; }
constexpr Slice OtherPart(double i, double n) { return Slice{PlainShare, 1 - PlainShare}.Narrowed(EqualPart(i, n)); }

// --- Collation orders

constexpr unsigned FirstSymbol = 80, FirstDigit = 0x3F00, FirstIdeograph = 0x8000;
constexpr unsigned LastIndex = 31;

unsigned ClassOf(std::uint32_t symbol) { return symbol >> 16; }
unsigned OrderOf(std::uint32_t symbol) { return symbol & 0xFFFF; }

unsigned LetterOfOrder(unsigned order) {
    const unsigned index = std::max(order >> 2 & LastIndex, IndexOfA);
    return index > IndexOfZ ? BehindZ : index - IndexOfA + 1;
}

Slice LatinLetter(TextContext context, unsigned order) {
    const unsigned index = order >> 2 & LastIndex, extension = order & 3, letter = LetterOfOrder(order);
    const Slice all = LetterOf(context, letter);
    const Slice place = letter == BehindZ ? all.Narrowed(EqualPart(index - IndexOfZ - 1, LastIndex - IndexOfZ)) : all;
    return place.Narrowed(extension == 0 ? PlainPart() : OtherPart(extension - 1, 3));
}

constexpr PlainLetters MakePlainLetters() {
    PlainLetters letters = {};
    for (TextContext context = 0; context < ContextCount; ++context) {
        for (unsigned letter = 1; letter < BehindZ; ++letter)
            letters.of[context][letter] = LetterOf(context, letter).Narrowed(PlainPart());
    }
    return letters;
}

// Digits are ten apart; between them lie fractions and behind them the numbers in circles, which are rare.
Slice DigitPart(unsigned place) {
    if (place >= 100) return OtherPart(place - 100, 156);
    return PlainPart()
        .Narrowed(EqualPart(place / 10, 10))
        .Narrowed(place % 10 == 0 ? PlainPart() : OtherPart(place % 10 - 1, 9));
}

// Letters whose frequency is not known. Class 20 numbers them through, which takes less than a quarter of the orders.
Slice UnknownLetter(TextContext context, std::uint32_t symbol) {
    const unsigned order = OrderOf(symbol) - FirstLetter;
    const bool numbered = ClassOf(symbol) == VqIdeographicClass;
    return AllLetters(context).Narrowed(numbered ? EqualPart(order, 4096) : EqualPart(order & 0x7F, 128));
}

// --- Bytes

// Texts begin with capitals as often as not; within words there are few.
double CapitalShare(TextContext context) { return context == NoLetterBefore || context >= FirstLanguage ? 0.5 : 0.05; }

constexpr double SymbolsBetweenCases = 0.01;  // [ \ ] ^ _ `

Slice ByteLetter(TextContext context, unsigned letter, bool capital) {
    const Slice all = AllLetters(context), column = LetterOf(context, letter);
    const double share = CapitalShare(context), smallBegin = share + SymbolsBetweenCases;
    const Slice within = {(column.begin - all.begin) / all.width, column.width / all.width};
    return all.Narrowed((capital ? Slice{0, share} : Slice{smallBegin, 1 - smallBegin}).Narrowed(within));
}

unsigned LetterOfByte(unsigned byte) {
    const unsigned small = byte | 0x20;
    return small >= 'a' && small <= 'z' ? small - 'a' + 1 : 0;
}

// What precedes the letters in ASCII, up to and without `end`.
Slice BeforeLetters(TextContext context, unsigned byte, unsigned end) {
    if (byte <= ' ') return KindOf(context, Space).Narrowed(EqualPart(byte - 1.0, ' '));
    if (byte < '0') return KindOf(context, Symbol).Narrowed(EqualPart(byte - '!', '0' - '!'));
    if (byte <= '9') return KindOf(context, Digit).Narrowed(EqualPart(byte - '0', 10));
    return KindOf(context, OtherSymbol).Narrowed(EqualPart(byte - ':', end - ':'));
}

// --- Weights

unsigned SmallWeight(const WeightTable& table, unsigned letter) { return table.weight['a' + letter - 1]; }
unsigned CapitalWeight(const WeightTable& table, unsigned letter) { return table.weight['A' + letter - 1]; }

// The last letter that weighs no more; 0 where all weigh more, BehindZ where all weigh less in both cases.
unsigned LetterOfWeight(const WeightTable& table, unsigned weight) {
    if (weight > CapitalWeight(table, 26)) return BehindZ;
    unsigned letter = 0;
    while (letter < 26 && SmallWeight(table, letter + 1) <= weight) ++letter;
    return letter;
}

// The part of a run of weights that one has, where the first is the plain letter.
Slice PartOfRun(unsigned weight, unsigned first, unsigned end) {
    if (weight == first) return PlainPart();
    return OtherPart(weight - first - 1.0, end - first - 1.0);
}

Slice WeightLetter(const WeightTable& table, TextContext context, unsigned letter, unsigned weight) {
    const Slice all = LetterOf(context, letter);
    const unsigned small = SmallWeight(table, letter), capital = CapitalWeight(table, letter);
    const unsigned end = letter < 26 ? SmallWeight(table, letter + 1) : capital + 1;
    if (small == capital) return all.Narrowed(PartOfRun(weight, small, end));
    const double smallShare = 1 - CapitalShare(context);
    if (weight < capital) return all.Narrowed({0, smallShare}).Narrowed(PartOfRun(weight, small, capital));
    return all.Narrowed({smallShare, 1 - smallShare}).Narrowed(PartOfRun(weight, capital, end));
}

}  // namespace

constinit const PlainLetters plainLetters = MakePlainLetters();

TextContext StartOfText(unsigned char language) {
    const auto* const found = std::find(std::begin(startLanguages), std::end(startLanguages), language);
    if (found == std::end(startLanguages)) return NoLetterBefore;
    return FirstLanguage + static_cast<TextContext>(found - startLanguages);
}

Slice OrderAlphabet::OfOther(TextContext context, std::uint32_t symbol) {
    const unsigned order = OrderOf(symbol);
    if (symbol == 0) return EndOf(context);
    if (order >= FirstIdeograph) {
        return KindOf(context, Ideograph).Narrowed(EqualPart(order - FirstIdeograph, 0x10000 - FirstIdeograph));
    }
    if (order >= FirstLetter)
        return HasLatinPlaces(symbol) ? LatinLetter(context, order) : UnknownLetter(context, symbol);
    if (order >= FirstDigit) return KindOf(context, Digit).Narrowed(DigitPart(order - FirstDigit));
    if (order >= FirstSymbol)
        return KindOf(context, Symbol).Narrowed(EqualPart(order - FirstSymbol, FirstDigit - FirstSymbol));
    return KindOf(context, Space).Narrowed(EqualPart(order, FirstSymbol));
}

TextContext OrderAlphabet::BehindOther(std::uint32_t symbol) {
    const unsigned order = OrderOf(symbol);
    if (order >= FirstLetter)
        return order < FirstIdeograph && HasLatinPlaces(symbol) ? LetterOfOrder(order) : NoLetterBefore;
    return order >= FirstDigit ? DigitBefore : NoLetterBefore;
}

Slice ByteAlphabet::Of(TextContext context, std::uint32_t symbol) const {
    if (symbol == 0) return EndOf(context);
    if (symbol < 'A') return BeforeLetters(context, symbol, 'A');
    if (const unsigned letter = symbol < 128 ? LetterOfByte(symbol) : 0)
        return ByteLetter(context, letter, symbol <= 'Z');
    if (symbol < 'a') {
        const Slice between = {CapitalShare(context), SymbolsBetweenCases};
        return AllLetters(context).Narrowed(between).Narrowed(EqualPart(symbol - 'Z' - 1, 'a' - 'Z' - 1));
    }
    return KindOf(context, Ideograph).Narrowed(EqualPart(symbol - 'z' - 1, 255 - 'z'));
}

TextContext ByteAlphabet::Behind(std::uint32_t symbol) const {
    if (symbol >= '0' && symbol <= '9') return DigitBefore;
    return symbol < 128 ? LetterOfByte(symbol) : NoLetterBefore;
}

Slice WeightAlphabet::Of(TextContext context, std::uint32_t symbol) const {
    if (symbol == 0) return EndOf(context);
    const unsigned letter = LetterOfWeight(*table, symbol);
    if (letter == 0) return BeforeLetters(context, symbol, SmallWeight(*table, 1));
    if (letter != BehindZ) return WeightLetter(*table, context, letter, symbol);
    const unsigned first = CapitalWeight(*table, 26) + 1;
    return LetterOf(context, BehindZ).Narrowed(EqualPart(symbol - first, 256 - first));
}

TextContext WeightAlphabet::Behind(std::uint32_t symbol) const {
    if (symbol >= '0' && symbol <= '9') return DigitBefore;
    return LetterOfWeight(*table, symbol);
}

}  // namespace vq
