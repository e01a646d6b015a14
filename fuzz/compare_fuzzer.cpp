// Comparison of two texts from outside: every order of the arguments is sane, both ways of asking agree, and short
// texts compare and match as the step by step reference has it.

#include <cstdlib>
#include <cstring>
#include <memory>

#include "../tests/strcomparereference.h"
#include "vqtm.h"

namespace {

constexpr std::size_t HeadSize = 7;
constexpr std::size_t ReferenceSize = 300;  // the reference follows many alignments at once

void Require(bool holds) {
    if (!holds) std::abort();
}

int Sign(int value) { return (value > 0) - (value < 0); }

// A zero-terminated text in an exact block, so that a read behind it is seen.
class ExactText {
  public:
    ExactText(const unsigned char* bytes, std::size_t size, unsigned charSize)
        : bytes_(new char[size / charSize * charSize + charSize]()) {
        if (size >= charSize) std::memcpy(bytes_.get(), bytes, size / charSize * charSize);
    }
    const char* Get() const { return bytes_.get(); }

  private:
    std::unique_ptr<char[]> bytes_;
};

unsigned CharSize(unsigned char codeSet) { return codeSet < VqFirstWideCodeSet ? 1 : 2; }

struct Input {
    unsigned char codeSet1, codeSet2, language1, language2, order;
    unsigned short op;
    short n;

    int Compare(const char* text1, const char* text2, int* out) const {
        return VqStrCmp(codeSet1, language1, text1, codeSet2, language2, text2, op, n, order, out);
    }
    int Reversed(const char* text1, const char* text2) const {
        return VqStrCmp(codeSet2, language2, text2, codeSet1, language1, text1, op, n, order, nullptr);
    }
};

// Code sets and languages come from outside like everything else; the third byte makes them often the same.
Input InputFrom(const unsigned char* head) {
    Input input = {head[0], head[0], head[1], head[1], 1, static_cast<unsigned short>(head[3] | (head[4] & 3) << 8),
                   -1};
    if (head[2] & 1) input.codeSet2 = head[5];
    if (head[2] & 2) input.language2 = head[6];
    if (head[2] & 4) input.order = 2;
    if (head[2] & 8) input.n = static_cast<short>(head[5]);
    return input;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    if (size < HeadSize + 1 || size > 4096) return 0;
    const Input input = InputFrom(data);
    const unsigned char* const texts = data + HeadSize + 1;
    const std::size_t all = size - HeadSize - 1, split = all * data[HeadSize] / 255;
    const ExactText text1(texts, split, CharSize(input.codeSet1));
    const ExactText text2(texts + split, all - split, CharSize(input.codeSet2));

    int out = 0;
    const int result = input.Compare(text1.Get(), text2.Get(), &out);
    const bool literal = input.op & (VqCmp_Exact | VqCmp_KeyOnly);
    if (literal) Require(Sign(input.Reversed(text1.Get(), text2.Get())) == -Sign(result));
    if (!(input.op & VqCmp_Report)) Require(input.Compare(text1.Get(), text2.Get(), nullptr) == result && out == 0);
    if (all > ReferenceSize) return 0;

    const vqtest::ReferenceText a = {input.codeSet1, input.language1, text1.Get()};
    const vqtest::ReferenceText b = {input.codeSet2, input.language2, text2.Get()};
    int expectedOut = 0;
    const int expected = vqtest::StrCmpReference(a, b, input.op, input.n, input.order, &expectedOut).Run();
    Require(Sign(result) == Sign(expected));
    if (literal) Require(result == expected && out == expectedOut);
    return 0;
}
