// Comparison of 8-bit strings as keys, in memory and stored.

#include <climits>
#include <cstring>

#include "istringweights.h"
#include "stringarray.h"
#include "vqbase.h"
#include "vqistring.h"
#include "vqstring.h"
#include "vqtypcmp.h"

namespace {

constexpr unsigned long HeaderSize = 3;

struct Element {
    vq::ByteText text;
    bool cut;            // the array ends within the element
    bool malformed;      // as no clipping leaves one
    unsigned long step;  // bytes to the next element
};

// An array of 8-bit strings in memory or stored, and a place in it.
template <class Value>
class Array {
  public:
    Array(unsigned char format, unsigned long length, const void* value)
        : at_(static_cast<const unsigned char*>(value)),
          left_(length == 0 ? ULONG_MAX : length),
          format_(format & VqFormat_OrderMask),
          inMemory_(format == VqFormat_Memory) {}

    bool Ended() const { return left_ < (inMemory_ ? sizeof(Value) : HeaderSize); }
    Element Current() const { return inMemory_ ? InMemory() : Stored(); }
    void Advance(const Element& element) {
        at_ += element.step;
        if (left_ != ULONG_MAX) left_ -= element.step;
    }

  private:
    Element InMemory() const {
        const Value& value = *reinterpret_cast<const Value*>(at_);
        const auto* const text = reinterpret_cast<const unsigned char*>(value.StrGet());
        return {{text, vq::Terminated, value.GetFlags()}, false, false, sizeof(Value)};
    }
    Element Stored() const {
        std::uint16_t length;
        ShortStore(&length, at_ + 1, format_, 1);
        const unsigned long room = left_ - HeaderSize;
        const bool cut = length > room;
        const unsigned long bytes = cut ? room : length;
        return {{at_ + HeaderSize, bytes, at_[0]}, cut, cut && room >= vq::NoClippedLength, HeaderSize + bytes};
    }

    const unsigned char* at_;
    unsigned long left_;  // bytes that may be read, ULONG_MAX when the elements alone tell
    unsigned char format_;
    bool inMemory_;
};

constexpr unsigned long NoWildcard = ULONG_MAX;

// The position of the first '*' or '?'.
unsigned long FindWildcard(vq::ByteText text) {
    for (unsigned long i = 0; i < text.length && text.at[i] != 0; ++i) {
        if (text.at[i] == '*' || text.at[i] == '?') return i;
    }
    return NoWildcard;
}

// Clipped keys compare as far as both go; of a clipped or clipping pattern only the part before its first wildcard
// counts.
int CompareCut(const vq::WeightTable& table, const Element& a, const Element& b, unsigned long wildcard) {
    unsigned long n = wildcard;
    if (a.cut && a.text.length < n) n = a.text.length;
    if (b.cut && b.text.length < n) n = b.text.length;
    return n == 0 ? 0 : vq::CompareWeights(table, a.text, b.text, n);
}

int CompareElements(const vq::WeightTable& table, const Element& a, const Element& b, bool isPattern) {
    const unsigned long wildcard = isPattern ? FindWildcard(b.text) : NoWildcard;
    if (a.cut || b.cut) return CompareCut(table, a, b, wildcard);
    if (wildcard != NoWildcard) return vq::MatchWeights(table, a.text, b.text);
    return vq::CompareWeights(table, a.text, b.text, vq::MaxWeights);
}

const vq::WeightTable& WeightsOf(const VqIString*, unsigned char) { return vq::istringWeights; }
const vq::WeightTable& WeightsOf(const VqCaseIString*, unsigned char flags) { return vq::CaseWeights(flags); }

// Compares the elements where both arrays stand and, with `more`, moves on.
template <class Value>
int CompareNext(Array<Value>& first, Array<Value>& second, bool more, bool isPattern, int& error) {
    const Element a = first.Current(), b = second.Current();
    if (a.malformed || b.malformed) {
        error = VqStatus_NotSupported;
        return -1;
    }
    const vq::WeightTable& table = WeightsOf(static_cast<const Value*>(nullptr), a.text.flags);
    const int result = CompareElements(table, a, b, isPattern);
    if (a.cut || b.cut) {
        error = VqStatus_BufferEnd;
    } else if (more) {
        first.Advance(a);
        second.Advance(b);
        if (first.Ended() || second.Ended()) error = VqStatus_BufferEnd;
    }
    return result;
}

template <class Value>
int CompareArrays(Array<Value> first, Array<Value> second, unsigned short flags, unsigned long count, int& error) {
    error = VqStatus_Ok;
    if (count == 0) return 0;
    if (flags == VqCmp_Default) flags = VqString::GetDefaultCmpOp();
    const bool isPattern = (flags & (VqCmp_Exact | VqCmp_KeyOnly)) == 0;
    if (first.Ended() || second.Ended()) error = VqStatus_BufferEnd;
    int result = 0;
    for (; count != 0 && result == 0 && error == VqStatus_Ok; --count) {
        result = CompareNext(first, second, count > 1, isPattern, error);
    }
    return result;
}

}  // namespace

#define VQ_ISTRING_COMPARE(Value)                                                                                 \
    int Value##Compare(unsigned char format, unsigned long length1, const void* value1, unsigned long length2,    \
                       const void* value2, unsigned short flags, unsigned long count, int& error) {               \
        return CompareArrays(Array<Value>(format, length1, value1), Array<Value>(format, length2, value2), flags, \
                             count, error);                                                                       \
    }

VQ_ISTRING_COMPARE(VqIString)
VQ_ISTRING_COMPARE(VqCaseIString)
