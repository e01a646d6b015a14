// A plug-in with the library in it, and with an object that uses the library until its own end.
#include "vqtypes.h"

namespace {

struct Kept {
    void* values = DefaultTypeMgr()->Create(VqTypeId_long, 3);
    ~Kept() { DefaultTypeMgr()->Delete(VqTypeId_long, values, 3); }
};

const Kept kept;

}  // namespace
