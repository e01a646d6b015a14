// Any format, any text and any fields: dates print and scan within their buffers, and as the slow way does.

#include <cstdlib>
#include <cstring>
#include <string>

#include "../tests/datetextreference.h"
#include "vqtm.h"

namespace {

void Require(bool holds) {
    if (!holds) std::abort();
}

bool Same(const VqDateTime& a, const VqDateTime& b) { return a.date == b.date && a.time == b.time; }

template <class T>
std::string Print(const T& value, const std::string& format) {
    VqString out;
    value.PrintToVqString(out, format.c_str());
    return out.StrGet();
}

template <class T>
T Scan(const VqString& text, const std::string& format) {
    T value = T();
    value.ScanFromVqString(text, format.c_str());
    return value;
}

void CheckPrint(const VqDateTime& value, const std::string& format) {
    if (!value.IsNullValue()) Require(Print(value, format) == vqtest::ReferenceDatePrint(value, format));
    // The other part is the clock's, and may tick.
    Print(value.date, format);
    Print(value.time, format);
}

void CheckScan(const std::string& characters, const std::string& format) {
    const VqString text(characters.c_str());
    VqString wide(text);
    wide.SetCodeSet(253);
    const auto scanned = Scan<VqDateTime>(text, format);
    Require(Same(scanned, Scan<VqDateTime>(wide, format)));
    Require(Scan<VqDate>(text, format) == scanned.date && Scan<VqTime>(text, format) == scanned.time);
    if (std::strncmp(characters.c_str(), "{NULL}", 6) == 0) {
        Require(scanned.IsNullValue());
    } else {
        Require(Same(scanned, vqtest::ReferenceDateScan(characters, format)));
    }
}

}  // namespace

// The fields in disk form, little-endian; then the format up to a zero byte; then the text.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    if (size < 7 || size > 4096) return 0;
    VqDateTime value(VqDate(0, 0, 0), VqTime(0, 0, 0));
    DaTimeLoad(&value, data, 1, 1);
    const std::string rest(reinterpret_cast<const char*>(data) + 7, size - 7);
    const std::string format(rest.c_str());
    CheckPrint(value, format);
    CheckScan(rest.size() > format.size() ? rest.c_str() + format.size() + 1 : "", format);
    return 0;
}
