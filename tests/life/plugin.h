// A plug-in that is linked with the library, and what it does with the library for those who load it.
#ifndef VQ_LIFE_PLUGIN_H
#define VQ_LIFE_PLUGIN_H

class VqTypeMgr;

namespace vqtest {

struct Plugin {
    VqTypeMgr* (*defaultManager)(VqTypeMgr* replacement);
    void (*context)(int attach);
    VqTypeMgr* (*newManager)(unsigned long version);
    void (*deleteManager)(VqTypeMgr* manager);
    bool (*use)(VqTypeMgr* manager);  // prints, scans and compares with it; tells whether all was well
};

using PluginFunc = const Plugin* (*)();
inline constexpr char PluginName[] = "TestPlugin";

}  // namespace vqtest

#endif
