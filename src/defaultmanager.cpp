#include "defaultmanager.h"

#include <new>
#include <utility>

#include "vqtypes.h"

#if defined(_WIN32) && defined(VQTM_BUILD)
#include <windows.h>
#endif

namespace {

VqTypeMgr* MakeManager() {
    constexpr unsigned long currentTable = 5;
    return new (std::nothrow) VqTypeMgr(currentTable);
}

// The first call decides whether the library offers a manager: it does to a host that asks for one, and not to a host
// that begins by attaching or detaching. So loading makes nothing, and what a host attaches replaces nothing.
VqTypeMgr*& DefaultManager(bool isOffered) {
    static VqTypeMgr* manager = isOffered ? MakeManager() : nullptr;
    return manager;
}

}  // namespace

VqTypeMgr* DefaultTypeMgr(VqTypeMgr* manager) {
    VqTypeMgr*& current = DefaultManager(true);
    return manager != nullptr ? std::exchange(current, manager) : current;
}

void vq::AttachDefaultManager() { DefaultManager(false) = MakeManager(); }

void vq::DetachDefaultManager() { delete std::exchange(DefaultManager(false), nullptr); }

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

// Runs after the destructors of all static objects, which may still use the manager.
[[gnu::destructor]] static void EndLibrary() { vq::DetachDefaultManager(); }

#endif
