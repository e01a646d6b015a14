// Strings as keys: comparison and hashing, in memory and stored.

#include <bit>
#include <climits>

#include "comparearrays.h"
#include "comparetexts.h"
#include "cutkeys.h"
#include "equalrun.h"
#include "hasharrays.h"
#include "strhash.h"
#include "stringarray.h"
#include "vqlanguagecontext.h"
#include "vqtypcmp.h"
#include "vqtyphash.h"
#include "wildcard.h"

namespace {

// --- Comparison

using vq::Operands;
using vq::StringArray;
using vq::StringElement;
using vq::TerminatedText;

constexpr unsigned long All = ~0UL;
constexpr unsigned short LiteralBits = VqCmp_Exact | VqCmp_KeyOnly;

// What all elements of a comparison have in common.
struct Manner {
    unsigned short flags;
    unsigned char order;  // of 2-byte characters

    bool IsLiteral() const { return flags & LiteralBits; }
};

vq::ComparedText Compared(const StringElement& element, const TerminatedText& text) {
    return {element.codeSet, element.language, text.Get(), element.bytes + element.CharSize()};
}

int CompareFirst(const StringElement& a, const StringElement& b, unsigned long n, Manner manner, int* out, int& error) {
    const TerminatedText text1(a), text2(b);
    if (text1.Get() == nullptr || text2.Get() == nullptr) {
        error = VqStatus_NotSupported;
        return -1;
    }
    const bool bytes = a.CharSize() == 1 && b.CharSize() == 1;
    return vq::CompareTexts(Compared(a, text1), Compared(b, text2), manner.flags, static_cast<short>(n),
                            bytes ? static_cast<unsigned char>(1) : manner.order, out);
}

// Wildcards are bytes where both texts are in the native set, else orders.
std::size_t FindWildcard(const StringElement& text, const StringElement& pattern, Manner manner) {
    if (manner.IsLiteral()) return vq::NoWildcard;
    const bool byOrder = pattern.codeSet == 0 && text.codeSet != 0;
    const unsigned char codeSet = byOrder ? VqLanguageContext::GetNativeCodeSet() : pattern.codeSet;
    return vq::FindWildcard(codeSet, pattern.language, pattern.text, pattern.bytes, manner.order);
}

int CompareCut(const StringElement& a, const StringElement& b, Manner manner, int& error) {
    constexpr int unreported = INT_MIN;  // no two keys are as far apart
    const vq::CutTexts texts = {a.Characters(), b.Characters(), a.cut, b.cut, FindWildcard(a, b, manner)};
    const bool report = manner.flags & VqCmp_Report;
    int reported = unreported;
    const int result = CompareFirst(a, b, texts.Limit(), manner, &reported, error);
    if (error == VqStatus_Ok && (report || !texts.Decide())) error = VqStatus_BufferEnd;
    if (report) return reported != unreported ? reported : result;
    const bool sameLength = a.whole / a.CharSize() == b.whole / b.CharSize();
    return result != 0 || sameLength ? result : texts.OrderOfRest();
}

int CompareElements(StringElement a, StringElement b, Manner manner, int& error) {
    if (a.malformed || b.malformed) {
        error = VqStatus_NotSupported;
        return -1;
    }
    const bool damaged1 = a.Repair(), damaged2 = b.Repair();
    if (damaged1 || damaged2) error = VqStatus_BufferEnd;
    // Of a pattern whose header is damaged no more than its beginning is trusted.
    if (damaged2 && !manner.IsLiteral()) b.cut = true;
    return a.cut || b.cut ? CompareCut(a, b, manner, error) : CompareFirst(a, b, All, manner, nullptr, error);
}

// Compares the elements where both arrays stand and, with `more`, moves on.
int CompareNext(StringArray& first, StringArray& second, bool more, Manner manner, int& error) {
    const StringElement a = first.Current(), b = second.Current();
    const int result = CompareElements(a, b, manner, error);
    if (more) {
        first.Advance(a);
        second.Advance(b);
        if (error == VqStatus_Ok && (first.Ended() || second.Ended())) error = VqStatus_BufferEnd;
    }
    return result;
}

// --- The usual keys: one whole record in each array, of one set of 1-byte characters and one language

struct Record {
    const unsigned char* at;
    unsigned long length;  // bytes behind its length field

    // False for what is not a whole record of the current layout with a zero byte behind its characters.
    bool Read(const void* value, unsigned long readable, bool bigEndian) {
        at = static_cast<const unsigned char*>(value);
        if (readable - 1 < MinSize - 1) return false;
        const auto stored = vq::LoadWord<std::uint16_t>(at);
        length = bigEndian ? vq::ByteSwap(stored) : stored;
        return length >= MinSize - 2 && (readable == 0 || length + 2 <= readable) && at[length] == 0 &&
               at[length + 1] != 0;
    }
    unsigned char CodeSet() const { return at[2]; }
    unsigned char Language() const { return at[3]; }
    const char* Text() const { return reinterpret_cast<const char*>(at + 4); }
    unsigned long Size() const { return length - 3; }  // with the zero byte

    static constexpr unsigned long MinSize = 6;
};

// The keys of two characters in one place.
struct KeyPair {
    std::int32_t key1, key2;
    std::int32_t closer;  // negative where they do not say enough

    // A negative key wants a closer look, also before a difference: it may begin a letter of several characters.
    KeyPair(const std::int32_t* keys, Record a, Record b, unsigned stops) {
        const unsigned place = 2 + static_cast<unsigned>(std::countr_zero(stops));
        key1 = keys[a.at[place]];
        key2 = keys[b.at[place]];
        closer = key1 | key2 | keys[a.at[place - 1]];
    }
    bool AtEnds() const { return (key1 | key2) == 0; }
    // Means nothing, and wraps, where a key wants the closer look.
    int Difference() const {
        return static_cast<int>(static_cast<std::uint32_t>(key1 & VqKeyPrimaryMask) -
                                static_cast<std::uint32_t>(key2 & VqKeyPrimaryMask));
    }
};

// True where short texts are equal, and where the first or the second pair of unlike characters differs as letters:
// most texts do on the way through an index. Both pairs are looked at without asking whether the first decides, for
// nobody foretells whether two texts begin in the same case.
[[gnu::always_inline]] inline bool CompareBeginnings(Record a, Record b, int& result) {
    if (std::min(a.length, b.length) < 16) return false;
    const std::int32_t* const keys = VqLanguageContext::QueryByteKeys(a.CodeSet(), a.Language());
    const unsigned stops = vq::BlockStops<unsigned char>(a.at + 2, b.at + 2) & ~3U;  // not set and language
    if (stops == 0 || keys == nullptr) return false;
    const unsigned others = stops & (stops - 1);
    const KeyPair first(keys, a, b, stops), second(keys, a, b, others != 0 ? others : stops);
    const bool ended = first.AtEnds();
    const int difference = first.Difference(), undecided = -static_cast<int>(difference == 0 && !ended);
    result = difference | (second.Difference() & undecided);
    return ended || (result != 0 && (first.closer | (second.closer & undecided)) >= 0);
}

// False, with nothing told, for all others.
[[gnu::always_inline]] inline bool CompareUsual(unsigned char format, Operands operands, unsigned short flags,
                                                int& result) {
    if (operands.count != 1 || format == VqFormat_Memory) return false;
    const bool bigEndian = vq::IsBigEndian(format);
    Record a, b;
    if (!a.Read(operands.value1, operands.length1, bigEndian)) return false;
    if (!b.Read(operands.value2, operands.length2, bigEndian)) return false;
    const vq::ComparedText text1 = {a.CodeSet(), a.Language(), a.Text(), a.Size()};
    const vq::ComparedText text2 = {b.CodeSet(), b.Language(), b.Text(), b.Size()};
    if (text1.codeSet >= VqFirstWideCodeSet || !vq::IsUsual(text1, text2, flags, -1, 1)) return false;
    if (CompareBeginnings(a, b, result)) return true;
    result = vq::CompareUsualRecords(text1.text, text2.text, std::min(text1.size, text2.size), text1.codeSet,
                                     text1.language, flags);
    return true;
}

// Takes its operands by value, so that those of the usual keys stay in registers.
[[gnu::noinline]] int CompareAll(unsigned char format, Operands operands, unsigned short flags, unsigned long lacking,
                                 int& error) {
    const Manner manner = {flags, static_cast<unsigned char>(format & VqFormat_OrderMask)};
    StringArray first(format, operands.length1, operands.value1, lacking);
    StringArray second(format, operands.length2, operands.value2, lacking);
    if (first.Ended() || second.Ended()) error = VqStatus_BufferEnd;
    int result = 0;
    for (unsigned long count = operands.count; count != 0 && result == 0 && error == VqStatus_Ok; --count) {
        result = CompareNext(first, second, count > 1, manner, error);
    }
    return result;
}

[[gnu::always_inline]] inline int CompareStrings(unsigned char format, Operands operands, unsigned short flags,
                                                 unsigned long lacking, int& error) {
    error = VqStatus_Ok;
    if (operands.count == 0) return 0;
    if (flags == VqCmp_Default) flags = VqString::GetDefaultCmpOp();
    int result = 0;
    if (CompareUsual(format, operands, flags, result)) return result;
    return CompareAll(format, operands, flags, lacking, error);
}

// --- Hashing

// The code of one string.
std::uint32_t HashElement(StringElement element, unsigned char order, int& error) {
    element.Repair();
    const TerminatedText text(element);
    if (element.malformed || text.Get() == nullptr) {
        error = VqStatus_NotSupported;
        return 0;
    }
    const auto n = static_cast<short>(element.cut ? element.Characters() : All);
    return HashString(element.codeSet, element.language, text.Get(), n, order);
}

unsigned long HashStrings(unsigned char format, unsigned long length, const void* values, unsigned long count,
                          unsigned long lacking, int& error) {
    error = VqStatus_Ok;
    if (count == 0) return 0;
    StringArray strings(format, length, values, lacking);
    std::uint32_t hash = 0;
    for (; count != 0; --count) {
        if (strings.Ended()) {
            error = VqStatus_BufferEnd;
            break;
        }
        const StringElement element = strings.Current();
        hash ^= HashElement(element, format & VqFormat_OrderMask, error);
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
