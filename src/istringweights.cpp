#include "istringweights.h"

#include <algorithm>

#include "equalrun.h"

namespace vq {
namespace {

struct WeightSource {
    std::uint8_t ascii[64];   // bytes 64 to 127
    std::uint8_t latin1[64];  // bytes 192 to 255
};

// clang-format off
constexpr WeightSource cased = {
    { 64,  84,  91,  94,  97, 105, 111, 113, 115, 121, 127, 129, 131, 133, 135, 144,
     151, 153, 155, 157, 159, 165, 171, 173, 175, 179, 183,  66,  67,  68,  69,  70,
      65,  78,  90,  92,  96, 100, 110, 112, 114, 116, 126, 128, 130, 132, 134, 138,
     150, 152, 154, 156, 158, 160, 170, 172, 174, 176, 182,  71,  72,  73,  74,  75},
    { 84,  84,  84,  84,  84, 189, 185,  94, 105, 105, 105, 105, 121, 121, 121, 121,
      99, 137, 144, 144, 144, 144, 144,  76, 187, 165, 165, 165, 165, 179, 191, 156,
      78,  78,  78,  78,  78, 188, 184,  92, 100, 100, 100, 100, 116, 116, 116, 116,
      98, 136, 138, 138, 138, 138, 138,  77, 186, 160, 160, 160, 160, 176, 190, 176}};

constexpr WeightSource caseless = {
    { 64,  84,  91,  94,  97, 105, 111, 113, 115, 121, 127, 129, 131, 133, 135, 144,
     151, 153, 155, 157, 159, 165, 171, 173, 175, 179, 183,  66,  67,  68,  69,  70,
      65,  84,  91,  94,  97, 105, 111, 113, 115, 121, 127, 129, 131, 133, 135, 144,
     151, 153, 155, 157, 159, 165, 171, 173, 175, 179, 183,  71,  72,  73,  74,  75},
    { 84,  84,  84,  84,  84, 189, 185,  94, 105, 105, 105, 105, 121, 121, 121, 121,
      99, 137, 144, 144, 144, 144, 144,  76, 187, 165, 165, 165, 165, 179, 191, 157,
      84,  84,  84,  84,  84, 189, 185,  94, 105, 105, 105, 105, 121, 121, 121, 121,
      99, 137, 144, 144, 144, 144, 144,  77, 187, 165, 165, 165, 165, 179, 191, 179}};

// What the accent of a byte from 192 on adds to its weight where accents decide.
constexpr std::uint8_t accents[64] = {
    3, 2, 4, 5, 1, 0, 0, 1, 3, 2, 4, 1, 3, 2, 4, 1,   0, 0, 3, 2, 4, 5, 1, 0, 0, 3, 2, 4, 1, 2, 0, 0,
    3, 2, 4, 5, 1, 0, 0, 1, 3, 2, 4, 1, 3, 2, 4, 1,   0, 0, 3, 2, 4, 5, 1, 0, 0, 3, 2, 4, 1, 2, 0, 1};
// clang-format on

constexpr unsigned UpperOE = 0x8C, LowerOE = 0x9C, UpperYDiaeresis = 0x9F, SharpS = 0xDF;

constexpr unsigned WeightOf(const WeightSource& source, unsigned byte) {
    if (byte == UpperOE) return WeightOf(source, 'O');
    if (byte == LowerOE) return WeightOf(source, 'o');
    if (byte == UpperYDiaeresis) return WeightOf(source, 'Y');
    if (byte < 64) return byte;
    if (byte < 128) return source.ascii[byte - 64];
    if (byte < 160) return byte + 96;
    if (byte < 192) return byte + 16;
    return source.latin1[byte - 192];
}

// The weight of the second letter, 0 where the byte is one letter.
constexpr unsigned SecondOf(const WeightSource& source, unsigned byte) {
    if (byte == UpperOE) return WeightOf(source, 'E');
    if (byte == LowerOE) return WeightOf(source, 'e');
    return byte == SharpS ? WeightOf(source, 's') : 0;
}

constexpr unsigned AccentOf(unsigned byte) {
    return byte == UpperYDiaeresis ? 1 : byte < 192 ? 0 : accents[byte - 192];
}

constexpr WeightTable MakeTable(const WeightSource& source, bool accentsDecide) {
    WeightTable table = {};
    for (unsigned byte = 0; byte < 256; ++byte) {
        unsigned weight = WeightOf(source, byte), second = SecondOf(source, byte);
        if (accentsDecide) {
            weight = second != 0 ? weight - 1 : weight + AccentOf(byte);
            second = 0;
        }
        table.weight[byte] = static_cast<std::uint8_t>(weight);
        table.second[byte] = static_cast<std::uint8_t>(second);
        table.ready[byte] = second != 0 ? WeightTable::Expands : static_cast<std::uint8_t>(weight);
    }
    return table;
}

// A walk through one text that gives weight after weight.
class WeightReader {
  public:
    explicit WeightReader(const ByteText& text) : text_(text) {}

    bool AtEnd() const { return text_.First() == 0; }
    bool IsDone() const { return AtEnd() && pending_ == 0; }
    unsigned char Byte() const { return text_.First(); }
    // Between two characters, where a wildcard can stand.
    bool IsBetween() const { return pending_ == 0; }

    // 0 from the end on.
    unsigned char Next(const WeightTable& table) {
        const bool raw = (text_.flags & VqIStringFlag_Raw) != 0;
        if (pending_ != 0 && !raw) return Held();
        const unsigned char byte = Byte();
        Skip();
        if (raw) return byte;
        pending_ = table.second[byte];
        return table.weight[byte];
    }
    // Passes over one character, or over what is left of it.
    void SkipCharacter() {
        if (pending_ == 0) Skip();
        pending_ = 0;
    }

  private:
    unsigned char Held() {
        const unsigned char weight = pending_;
        pending_ = 0;
        return weight;
    }
    void Skip() {
        if (AtEnd()) return;
        ++text_.at;
        --text_.length;
    }

    ByteText text_;
    unsigned char pending_ = 0;
};

// Step by step, with bytes that sort as two letters and with raw sides.
[[gnu::noinline]] int CompareSteps(const WeightTable& table, WeightReader a, WeightReader b, unsigned long n) {
    int difference = 0;
    for (bool ended = false; difference == 0 && !ended && n != 0; --n) {
        ended = a.AtEnd() || b.AtEnd();
        difference = a.Next(table) - b.Next(table);
    }
    return difference;
}

// A place from `i` on up to which both texts have the same characters, all ASCII ones: none of them ends the texts or
// sorts as two.
inline unsigned long SkipEqual(const unsigned char* a, const unsigned char* b, unsigned long i, unsigned long most) {
    while (i != most && a[i] == b[i] && static_cast<unsigned char>(a[i] - 1) < 127) ++i;
    return i;
}

ByteText From(const ByteText& text, unsigned long offset) {
    return {text.at + offset, text.length - offset, text.flags};
}

// Texts of so many weights end before a comparison of MaxWeights does.
constexpr unsigned long ShortText = MaxWeights / 4;

// Compares bytes in step, or goes back to a byte that sorts as two just before a difference. False, with nothing told,
// in texts so long that the number of weights may end the comparison.
bool CompareInStep(const WeightTable& table, const ByteText& a, const ByteText& b, int& result) {
    TextPair<unsigned char> pair = {a.at, b.at};
    const auto expands = [&table](unsigned char byte) { return table.ready[byte] == WeightTable::Expands; };
    result = 0;
    for (ByteRun run(0); run.Skip(pair); pair.Move(1), run.Took()) {
        const unsigned long i = static_cast<unsigned long>(pair.text1 - a.at);
        if (i >= ShortText) return false;
        const unsigned char x = *pair.text1, y = *pair.text2;
        const bool expandsBefore = i != 0 && expands(pair.text1[-1]);
        if (expandsBefore || expands(x) || expands(y)) {
            const unsigned long from = expandsBefore ? i - 1 : i;
            result = CompareSteps(table, WeightReader(From(a, from)), WeightReader(From(b, from)), ShortText);
            return result != 0;
        }
        result = table.ready[x] - table.ready[y];
        if (result != 0) break;
    }
    return true;
}

}  // namespace

constexpr WeightTable istringWeights = MakeTable(cased, false);
constexpr WeightTable caseIStringWeights = MakeTable(caseless, false);
constexpr WeightTable accentIStringWeights = MakeTable(caseless, true);

int CompareWeights(const WeightTable& table, const ByteText& a, const ByteText& b, unsigned long n) {
    if (a.First() == 0 || b.First() == 0) return a.First() - b.First();
    const bool raw = ((a.flags | b.flags) & VqIStringFlag_Raw) != 0;
    const bool terminated = a.length == Terminated && b.length == Terminated;
    int result = 0;
    if (!raw && terminated && n == MaxWeights && CompareInStep(table, a, b, result)) return result;
    const unsigned long most = std::min({n, a.length, b.length});
    unsigned long i = 0;
    // As long as no byte sorts as two, the texts go in step.
    for (; !raw; ++i) {
        i = SkipEqual(a.at, b.at, i, most);
        if (i == n) return 0;
        const unsigned x = i < a.length ? table.ready[a.at[i]] : 0, y = i < b.length ? table.ready[b.at[i]] : 0;
        if (x == WeightTable::Expands || y == WeightTable::Expands) break;
        if (x != y || x == 0) return static_cast<int>(x) - static_cast<int>(y);
    }
    return CompareSteps(table, WeightReader(From(a, i)), WeightReader(From(b, i)), n - i);
}

int MatchWeights(const WeightTable& table, const ByteText& text, const ByteText& pattern) {
    WeightReader at(text), wanted(pattern);
    WeightReader restartText = at, restartPattern = wanted;  // where the last '*' may take one character more
    bool restarts = false;
    for (;;) {
        const unsigned char wildcard = wanted.IsBetween() ? wanted.Byte() : static_cast<unsigned char>(0);
        int difference = 0;
        if (wildcard == '*') {
            while (wanted.Byte() == '*') wanted.SkipCharacter();
            if (wanted.AtEnd()) return 0;
            restartText = at;
            restartPattern = wanted;
            restarts = true;
        } else if (wildcard == '?') {
            difference = at.IsDone() ? -1 : 0;
            wanted.SkipCharacter();
            at.SkipCharacter();
        } else if (at.IsDone() && wanted.IsDone()) {
            return 0;
        } else {
            difference = at.Next(table) - wanted.Next(table);
        }
        if (difference == 0) continue;
        if (!restarts || restartText.IsDone()) return difference;
        restartText.SkipCharacter();
        at = restartText;
        wanted = restartPattern;
    }
}

}  // namespace vq
