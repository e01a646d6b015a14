#include "memoryhandler.h"

#include <atomic>

namespace {

int FreeNothing(unsigned long) { return 0; }

constinit std::atomic<VqMemoryHandler> memoryHandler{FreeNothing};

}  // namespace

int VqCallMemoryHandler(unsigned long size) { return memoryHandler.load()(size); }

VqMemoryHandler VqSetMemoryHandler(VqMemoryHandler handler) {
    return memoryHandler.exchange(handler ? handler : FreeNothing);
}
