#include "library.h"

#include "defaultmanager.h"
#include "options.h"
#include "vqlanguagecontext.h"

void ___VqTypemgrContext(int attach) {
    ___VqI18NContext(attach);
    if (attach != 0) {
        vq::AttachDefaultManager();
    } else {
        vq::DetachDefaultManager();
    }
}

std::uint32_t* ___VqTypeMgrOptions() { return &vq::optionBlock; }
