#include "defaultmanager.h"

#include <atomic>
#include <new>

#include "memoryhandler.h"
#include "vqtypes.h"

#if defined(_WIN32) && defined(VQTM_BUILD)
#include <windows.h>
#endif

namespace {

// Stands for the manager that the library offers and nobody has asked for yet: loading makes nothing, and what a host
// attaches before it asks replaces nothing.
constinit char offered = 0;
constinit std::atomic<void*> current{&offered};

VqTypeMgr* MakeManager() {
    constexpr unsigned long currentTable = 5;
    do {
        auto* const manager = new (std::nothrow) VqTypeMgr(currentTable);
        if (manager != nullptr) return manager;
    } while (VqCallMemoryHandler(sizeof(VqTypeMgr)) != 0);
    return nullptr;
}

// Makes what is offered, or takes what another thread has made or installed meanwhile. The handler may ask for the
// manager itself, so no lock is held. Without memory the offer stands, for whoever asks later.
VqTypeMgr* TakeOffered() {
    VqTypeMgr* const made = MakeManager();
    void* found = &offered;
    if (made == nullptr || current.compare_exchange_strong(found, made)) return made;
    delete made;
    return static_cast<VqTypeMgr*>(found);
}

}  // namespace

VqTypeMgr* DefaultTypeMgr(VqTypeMgr* manager) {
    void* const found = current;
    VqTypeMgr* const before = found != &offered ? static_cast<VqTypeMgr*>(found) : TakeOffered();
    if (manager != nullptr) current = manager;
    return before;
}

void vq::AttachDefaultManager() {
    current = &offered;
    TakeOffered();
}

void vq::DetachDefaultManager() {
    void* const before = current.exchange(nullptr);
    if (before != &offered) delete static_cast<VqTypeMgr*>(before);
}

// --- The library's end

// Both stand here, where every user of the default manager brings them along, also from the static library.
#if defined(_WIN32) && defined(VQTM_BUILD)

// Windows calls it when a process or a thread comes or goes. `isProcessEnd` is null when the library is unloaded and
// the process goes on; at the end of the process the system takes everything, and the heap may be gone or locked.
extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID isProcessEnd) {
    if (reason == DLL_PROCESS_DETACH && isProcessEnd == nullptr) vq::DetachDefaultManager();
    return TRUE;
}

#else

// Destructors of static objects may still use the manager. They run among the destructor functions without a priority;
// 101, the highest that is free for use, comes last.
[[gnu::destructor(101)]] static void EndLibrary() { vq::DetachDefaultManager(); }

#endif
