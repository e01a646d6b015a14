// Any format and any text, for any row: scanning stays within the text and leaves values that print; a text of 2-byte
// characters reads as its 1-byte form does, and printing into one gives the same characters.

#include <cstdlib>
#include <cstring>
#include <string>

#include "vqtm.h"

namespace {

void Require(bool holds) {
    if (!holds) std::abort();
}

// Where a value has no date or time of its own, its text shows the clock's.
constexpr VqClock standing = {
    [](btime* time, bdate* date) {
        *time = {13, 14, 15, 0}, *date = {2024, 2, 29};
    },
    [](btime* time, bdate* date) {
        *time = {12, 14, 15, 0}, *date = {2024, 2, 29};
    },
    [] { return 60; },
};

constexpr unsigned char Windows = 1, Unicode = 253;

// What a row makes of a text under a format.
struct Reading {
    char id;
    const char* format;
    unsigned long count;

    // The values' text as printed in a code set, in Unicode.
    VqString Of(VqString text, unsigned char codeSet) const {
        const VqTypeMgr manager(5);
        void* const values = manager.Create(id, count);
        manager.ScanFromVqString(id, values, text, format, count);
        VqString printed(codeSet, 0), plain(codeSet, 0);
        manager.PrintToVqString(id, printed, values, format, count);
        manager.PrintToVqString(id, plain, values, nullptr, count);
        manager.Delete(id, values, count);
        VqString both(Unicode, 0);
        return (both += printed) += plain;
    }
};

bool AreSame(const VqString& a, const VqString& b) {
    return a.GetSize() == b.GetSize() && std::memcmp(a.StrGet(), b.StrGet(), a.GetSize()) == 0;
}

}  // namespace

// First byte: row; second: count and code set; then the format up to a zero byte; then the text.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    if (size < 2 || size > 4096) return 0;
    VqSetClock(&standing);
    const std::string rest(reinterpret_cast<const char*>(data) + 2, size - 2);
    const std::string format(rest.c_str());
    const Reading reading = {static_cast<char>(data[0] % VqTypeCount), format.c_str(), data[1] % 4ul};
    VqString text(rest.size() > format.size() ? rest.c_str() + format.size() + 1 : "");
    if (data[1] & 0x80) {  // units as they come
        text.SetCodeSet(Unicode);
        reading.Of(text, Unicode);
        return 0;
    }
    VqString wide(text);
    wide.MapToCodeSet(Unicode);
    const VqString expected = reading.Of(text, Windows);
    Require(AreSame(reading.Of(wide, Windows), expected));
    Require(AreSame(reading.Of(text, Unicode), expected));
    return 0;
}
