#include "plugin.h"

#include <memory>

#include "convert.h"
#include "library.h"
#include "vqtypes.h"

namespace {

VqTypeMgr* NewManager(unsigned long version) { return new VqTypeMgr(version); }
void DeleteManager(VqTypeMgr* manager) { delete manager; }

bool Use(VqTypeMgr* manager) {
    VqTypeMgr& types = *manager;
    VqString text("\"Zoe\",\"\",{NULL}");
    void* const values = types.Create(VqTypeId_VqString, 3);
    types.ScanFromVqString(VqTypeId_VqString, values, text, nullptr, 3);
    const std::unique_ptr<VqTypeConvertData> data(types.ConvertTo(VqTypeId_VqString, values, 3));
    void* const copy = types.ConvertFrom(VqTypeId_VqString, data.get(), 3);
    VqString printed;
    types.PrintToVqString(VqTypeId_VqString, printed, copy, nullptr, 3);
    const bool isFine =
        types.Cmp(VqTypeId_VqString, values, copy, VqCmp_Default, 3, VqFormat_Memory) == 0 && !printed.IsEmpty();
    types.Delete(VqTypeId_VqString, copy, 3);
    types.Delete(VqTypeId_VqString, values, 3);
    return isFine;
}

constexpr vqtest::Plugin plugin = {DefaultTypeMgr, ___VqTypemgrContext, NewManager, DeleteManager, Use};

}  // namespace

#if defined(_WIN32)
#define PLUGIN_API __declspec(dllexport)
#else
#define PLUGIN_API __attribute__((visibility("default")))
#endif

extern "C" PLUGIN_API const vqtest::Plugin* TestPlugin() { return &plugin; }
