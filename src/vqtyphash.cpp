#include "vqtyphash.h"

#include "strhash.h"
#include "stringarray.h"

namespace {

constexpr std::uint32_t Multiplier = 1103515245;

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
    return hash * Multiplier;
}

unsigned long NoHash(int& error) {
    error = VqStatus_Ok;
    return 0;
}

}  // namespace

unsigned long StringHash(unsigned char format, unsigned long length, const void* values, unsigned long count,
                         int& error) {
    return HashStrings(format, length, values, count, 0, error);
}

unsigned long LegacyStringHash(unsigned char format, unsigned long length, const void* values, unsigned long count,
                               int& error) {
    return HashStrings(format, length, values, count, 2, error);
}

unsigned long VqIStringHash(unsigned char, unsigned long, const void*, unsigned long, int& error) {
    return NoHash(error);
}

unsigned long VqCaseIStringHash(unsigned char, unsigned long, const void*, unsigned long, int& error) {
    return NoHash(error);
}
