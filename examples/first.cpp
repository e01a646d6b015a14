// The first steps with the type manager: an array of keys is scanned, stored, loaded, compared, sorted and printed by
// code that knows the keys' type only as a number.
#include <algorithm>
#include <cstdio>
#include <vector>

#include "vqtypes.h"

int main() {
    VqTypeMgr& types = *DefaultTypeMgr();
    const char id = VqTypeId_VqNull_short;  // 16-bit numbers that may be null; other types work the same
    const unsigned long count = 4;

    // In memory, from text.
    void* keys = types.Create(id, count);
    VqString text("300,{NULL},-7,42");
    types.ScanFromVqString(id, keys, text, nullptr, count);

    // To disk form, high byte first, and back.
    std::vector<unsigned char> disk(types.DiskLenGet(id, keys, VqFormat_BigEndian, count, VqFormat_Memory));
    types.Store(id, disk.data(), keys, VqFormat_BigEndian, count);
    void* loaded = types.Create(id, count);
    types.Load(id, loaded, disk.data(), VqFormat_BigEndian, count);
    const bool equal = types.Cmp(id, keys, loaded, VqCmp_Exact, count, VqFormat_Memory) == 0;

    // In the type's order, nulls first.
    std::vector<void*> order;
    for (unsigned long i = 0; i < count; ++i) order.push_back(types.GetArrayElement(id, loaded, i, count));
    std::sort(order.begin(), order.end(),
              [&](const void* a, const void* b) { return types.Cmp(id, a, b, VqCmp_Exact, 1, VqFormat_Memory) < 0; });

    std::printf("on disk:");
    for (const unsigned char byte : disk) std::printf(" %02x", byte);
    std::printf("\nloaded back: %s\nsorted:", equal ? "equal" : "different");
    for (void* key : order) {
        VqString line;
        std::printf(" %s", types.PrintToVqString(id, line, key, nullptr, 1).StrGet());
    }
    std::printf("\n");

    types.Delete(id, loaded, count);
    types.Delete(id, keys, count);
    return equal ? 0 : 1;
}
