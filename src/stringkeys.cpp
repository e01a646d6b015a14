// Strings as keys: comparison and hashing, in memory and stored.

#include "comparearrays.h"
#include "hasharrays.h"
#include "strcompare.h"
#include "strhash.h"
#include "stringarray.h"
#include "vqbase.h"
#include "vqtypcmp.h"
#include "vqtyphash.h"

namespace {

// --- Comparison

using vq::Operands;
using vq::StringArray;
using vq::StringElement;
using vq::TerminatedText;

int CompareTexts(const StringElement& a, const StringElement& b, unsigned char format, unsigned short flags,
                 int& error) {
    const TerminatedText text1(a), text2(b);
    if (text1.Get() == nullptr || text2.Get() == nullptr) {
        error = VqStatus_NotSupported;
        return -1;
    }
    return VqStrCmp(a.codeSet, a.language, text1.Get(), b.codeSet, b.language, text2.Get(), flags, -1,
                    format & VqFormat_OrderMask, nullptr);
}

// Compares the elements where both arrays stand and, with `more`, moves on.
int CompareNext(StringArray& first, StringArray& second, bool more, unsigned char format, unsigned short flags,
                int& error) {
    StringElement a = first.Current(), b = second.Current();
    if (a.cut || b.cut) {
        error = VqStatus_BufferEnd;
        return 0;
    }
    const bool damaged1 = a.Repair(), damaged2 = b.Repair();
    if (damaged1 || damaged2) error = VqStatus_BufferEnd;
    const int result = CompareTexts(a, b, format, flags, error);
    if (more) {
        first.Advance(a);
        second.Advance(b);
        if (error == VqStatus_Ok && (first.Ended() || second.Ended())) error = VqStatus_BufferEnd;
    }
    return result;
}

int CompareStrings(unsigned char format, const Operands& operands, unsigned short flags, unsigned long lacking,
                   int& error) {
    error = VqStatus_Ok;
    unsigned long count = operands.count;
    if (count == 0) return 0;
    if (flags == VqCmp_Default) flags = VqString::GetDefaultCmpOp();
    StringArray first(format, operands.length1, operands.value1, lacking);
    StringArray second(format, operands.length2, operands.value2, lacking);
    if (first.Ended() || second.Ended()) error = VqStatus_BufferEnd;
    int result = 0;
    for (; count != 0 && result == 0 && error == VqStatus_Ok; --count) {
        result = CompareNext(first, second, count > 1, format, flags, error);
    }
    return result;
}

// --- Hashing

// The code of one string, with the status of what it was read from.
std::uint32_t HashElement(vq::StringElement element, unsigned long left, unsigned char format, int& error) {
    const bool damaged = element.cut && left > vq::LongestClippedKey;
    element.Repair();
    const vq::TerminatedText text(element);
    if (damaged || text.Get() == nullptr) {
        error = VqStatus_NotSupported;
        return 0;
    }
    const auto characters = static_cast<short>(element.bytes / vq::CharSizeOf(element.codeSet));
    return HashString(element.codeSet, element.language, text.Get(), element.cut ? characters : static_cast<short>(-1),
                      format & VqFormat_OrderMask);
}

unsigned long HashStrings(unsigned char format, unsigned long length, const void* values, unsigned long count,
                          unsigned long lacking, int& error) {
    error = VqStatus_Ok;
    if (count == 0) return 0;
    vq::StringArray strings(format, length, values, lacking);
    std::uint32_t hash = 0;
    for (; count != 0; --count) {
        if (strings.Ended()) {
            error = VqStatus_BufferEnd;
            break;
        }
        const vq::StringElement element = strings.Current();
        hash ^= HashElement(element, strings.Left(), format, error);
        if (error != VqStatus_Ok) return 0;
        strings.Advance(element);
    }
    return hash * vq::HashMultiplier;
}

}  // namespace

VQ_COMPARE_FUNCTION(StringCompare, CompareStrings(format, VQ_OPERANDS, flags, 0, error))
VQ_COMPARE_FUNCTION(LegacyStringCompare, CompareStrings(format, VQ_OPERANDS, flags, 2, error))

unsigned long StringHash(unsigned char format, unsigned long length, const void* values, unsigned long count,
                         int& error) {
    return HashStrings(format, length, values, count, 0, error);
}

unsigned long LegacyStringHash(unsigned char format, unsigned long length, const void* values, unsigned long count,
                               int& error) {
    return HashStrings(format, length, values, count, 2, error);
}
