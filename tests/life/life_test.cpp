// The library's life in a process: a plug-in brings it in, uses it in one of the ways in which hosts do, and takes it
// out again. Afterwards it is gone, and so is all that it allocated.
#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <thread>
#include <vector>

#include "countednew.h"
#include "plugin.h"

#if defined(_WIN32)
#include <malloc.h>
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace {

using vqtest::liveBlocks;
using vqtest::Plugin;

// --- Loading

#if defined(_WIN32)

using Module = HMODULE;
Module Open(const char* path) { return LoadLibraryA(path); }
bool Close(Module module) { return FreeLibrary(module) != 0; }
FARPROC Find(Module module, const char* name) { return GetProcAddress(module, name); }
bool IsLibraryLoaded() { return GetModuleHandleA("vq95FtmB.dll") != nullptr; }

// Whether the C heap, which all modules share, holds the block.
bool IsInUse(const void* block) {
    _HEAPINFO entry = {};
    while (_heapwalk(&entry) == _HEAPOK) {
        if (entry._pentry == block) return entry._useflag == _USEDENTRY;
    }
    return false;
}

#else

using Module = void*;
Module Open(const char* path) { return dlopen(path, RTLD_NOW | RTLD_LOCAL); }
bool Close(Module module) { return dlclose(module) == 0; }
void* Find(Module module, const char* name) { return dlsym(module, name); }
bool IsLibraryLoaded() {
    void* const library = dlopen("libvq95FtmB.so.9", RTLD_NOW | RTLD_NOLOAD);
    if (library != nullptr) dlclose(library);
    return library != nullptr;
}

// What is in use is counted here, with the libraries' blocks.
bool IsInUse(const void*) { return false; }

#endif

const Plugin* Entry(Module module) {
    const auto address = Find(module, vqtest::PluginName);
    vqtest::PluginFunc entry = nullptr;
    if (address != nullptr) std::memcpy(&entry, &address, sizeof entry);
    return entry != nullptr ? entry() : nullptr;
}

// The library in this process while it lives.
class LibraryLife : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_FALSE(IsLibraryLoaded());
        blocksBefore_ = liveBlocks;
        module_ = Open(VQTM_LIFE_PLUGIN);
        ASSERT_NE(module_, nullptr);
        plugin = Entry(module_);
        ASSERT_NE(plugin, nullptr);
        EXPECT_EQ(NewBlocks(), 0) << "loading alone makes nothing";
    }
    void TearDown() override {
        if (module_ == nullptr) return;
        ASSERT_TRUE(Close(module_));
        EXPECT_FALSE(IsLibraryLoaded());
        EXPECT_EQ(NewBlocks(), 0);
        EXPECT_FALSE(IsInUse(lastManager_));
    }

    VqTypeMgr* Default() { return lastManager_ = plugin->defaultManager(nullptr); }
    long NewBlocks() const { return liveBlocks - blocksBefore_; }

    const Plugin* plugin = nullptr;

  private:
    Module module_ = nullptr;
    VqTypeMgr* lastManager_ = nullptr;
    long blocksBefore_ = 0;
};

// --- Ways of using it

TEST_F(LibraryLife, LoadedAndUnloaded) {}

TEST_F(LibraryLife, UsedWithoutAttachingAndThenAttached) {
    VqTypeMgr* const offered = Default();
    EXPECT_TRUE(plugin->use(offered));
    if (vqtest::CountsLibraries) {
        EXPECT_GE(NewBlocks(), 1) << "the manager, at least";
    }
    plugin->context(1);
    EXPECT_NE(Default(), offered);
    plugin->deleteManager(offered);
}

TEST_F(LibraryLife, UsedAndUnloaded) { EXPECT_TRUE(plugin->use(Default())); }

TEST_F(LibraryLife, AttachedTwiceAndDetached) {
    plugin->context(1);
    VqTypeMgr* const first = Default();
    plugin->context(1);
    EXPECT_TRUE(plugin->use(first)) << "it is the host's now";
    plugin->deleteManager(first);
    EXPECT_TRUE(plugin->use(Default()));
    plugin->context(0);
    EXPECT_EQ(Default(), nullptr);
}

TEST_F(LibraryLife, DetachedWithoutAManager) {
    plugin->context(0);
    EXPECT_EQ(Default(), nullptr) << "and none is offered after that";
    plugin->context(0);
    plugin->context(1);
    EXPECT_TRUE(plugin->use(Default()));
}

TEST_F(LibraryLife, GivenManagersOfTheHosts) {
    for (const unsigned long version : {3ul, 5ul}) {
        VqTypeMgr* const own = plugin->newManager(version);
        plugin->deleteManager(plugin->defaultManager(own));
        EXPECT_EQ(Default(), own);
        EXPECT_TRUE(plugin->use(own));
    }
}

TEST_F(LibraryLife, FirstAskedByManyThreads) {
    std::atomic<bool> go{false};
    std::vector<VqTypeMgr*> found(8);
    std::vector<std::thread> threads;
    for (VqTypeMgr*& mine : found) {
        threads.emplace_back([&] {
            while (!go) std::this_thread::yield();
            mine = plugin->defaultManager(nullptr);
        });
    }
    go = true;
    for (std::thread& thread : threads) thread.join();
    EXPECT_NE(Default(), nullptr);
    EXPECT_EQ(found, std::vector<VqTypeMgr*>(found.size(), Default()));
}

// Objects that a module keeps may use its library in their destructors.
TEST(LibraryInAModule, OutlivesTheObjectsBesideIt) {
    const long before = liveBlocks;
    const Module module = Open(VQTM_LIFE_STATIC_PLUGIN);
    ASSERT_NE(module, nullptr);
    EXPECT_TRUE(Close(module));
    EXPECT_EQ(liveBlocks, before);
}

// A process may end with the library in it and in use.
TEST(LibraryAtTheEnd, StaysLoaded) {
    const Plugin* const plugin = Entry(Open(VQTM_LIFE_PLUGIN));
    ASSERT_NE(plugin, nullptr);
    EXPECT_TRUE(plugin->use(plugin->defaultManager(nullptr)));
}

}  // namespace
