#include "vqversion.h"

namespace {

constexpr unsigned long kMajor = 9;
constexpr unsigned long kMinor = 5;

struct Part {
    unsigned long check;
    unsigned long ours;
    unsigned long theirs;
    int verdictIfNewer;
};

}  // namespace

int CheckVqVersionNumber(unsigned long major, unsigned long minor, unsigned long release, unsigned long build,
                         unsigned long patch, unsigned long flags) {
    if (flags & VqVersionCheck_MajorMinor) {
        if (major != kMajor) return VqVersion_OtherMajor;
        if (minor != kMinor) return VqVersion_OtherMinor;
    }
    const Part parts[] = {
        {VqVersionCheck_Release, 23, release, VqVersion_NewerRelease},
        {VqVersionCheck_Build, 262, build, VqVersion_NewerBuild},
        {VqVersionCheck_Patch, 0, patch, VqVersion_NewerPatch},
    };
    for (const Part& part : parts) {
        if (!(flags & part.check) || part.theirs == part.ours) continue;
        return part.theirs > part.ours ? part.verdictIfNewer : VqVersion_Compatible;
    }
    return VqVersion_Compatible;
}
