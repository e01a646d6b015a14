// Comparison of 8-bit strings as keys, in memory and stored.

#include "istringkeys.h"

#include <climits>

#include "stringarray.h"
#include "vqstring.h"
#include "vqtypcmp.h"
#include "wildcard.h"

namespace {

using vq::ByteHeader;

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

    bool Ended() const { return left_ < (inMemory_ ? sizeof(Value) : ByteHeader::Size); }
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
        const ByteHeader header(at_, format_);
        const unsigned long room = left_ - ByteHeader::Size;
        const bool cut = header.length > room;
        const unsigned long bytes = cut ? room : header.length;
        const vq::ByteText text = {at_ + ByteHeader::Size, bytes, header.flags};
        return {text, cut, cut && room >= vq::NoClippedLength, ByteHeader::Size + bytes};
    }

    const unsigned char* at_;
    unsigned long left_;  // bytes that may be read, ULONG_MAX when the elements alone tell
    unsigned char format_;
    bool inMemory_;
};

// Clipped keys compare as far as both go; of a clipped or clipping pattern only the part before its first wildcard
// counts.
int CompareCut(const vq::WeightTable& table, const Element& a, const Element& b, std::size_t wildcard) {
    auto n = static_cast<unsigned long>(wildcard);
    if (a.cut && a.text.length < n) n = a.text.length;
    if (b.cut && b.text.length < n) n = b.text.length;
    return n == 0 ? 0 : vq::CompareWeights(table, a.text, b.text, n);
}

int CompareElements(const vq::WeightTable& table, const Element& a, const Element& b, bool isPattern) {
    const std::size_t wildcard = isPattern ? vq::FindWildcardByte(b.text.at, b.text.length) : vq::NoWildcard;
    if (a.cut || b.cut) return CompareCut(table, a, b, wildcard);
    if (wildcard != vq::NoWildcard) return vq::MatchWeights(table, a.text, b.text);
    return vq::CompareWeights(table, a.text, b.text, vq::MaxWeights);
}

// Compares the elements where both arrays stand and, with `more`, moves on.
template <class Value>
int CompareNext(Array<Value>& first, Array<Value>& second, bool more, bool isPattern, int& error) {
    const Element a = first.Current(), b = second.Current();
    if (a.malformed || b.malformed) {
        error = VqStatus_NotSupported;
        return -1;
    }
    const vq::WeightTable& table = vq::WeightsOf(static_cast<const Value*>(nullptr), a.text.flags);
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
