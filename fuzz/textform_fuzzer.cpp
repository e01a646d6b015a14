// Any format and any text, for any row: scanning stays within the text and leaves values that print.

#include <cstring>
#include <string>

#include "vqtm.h"

// First byte: row; second: count and character size; then the format up to a zero byte; then the text.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    if (size < 2 || size > 4096) return 0;
    const char id = static_cast<char>(data[0] % VqTypeCount);
    const unsigned long count = data[1] % 4;
    const std::string rest(reinterpret_cast<const char*>(data) + 2, size - 2);
    const std::string format(rest.c_str());
    VqString text(rest.size() > format.size() ? rest.c_str() + format.size() + 1 : "");
    if (data[1] & 0x80) text.SetCodeSet(253);

    const VqTypeMgr manager(5);
    void* const values = manager.Create(id, count);
    manager.ScanFromVqString(id, values, text, format.c_str(), count);
    VqString printed;
    manager.PrintToVqString(id, printed, values, format.c_str(), count);
    manager.PrintToVqString(id, printed, values, nullptr, count);
    manager.Delete(id, values, count);
    return 0;
}
