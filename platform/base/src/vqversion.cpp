#include "vqversion.h"

namespace {

struct Part {
    bool isCompared;
    unsigned long ours;
    unsigned long theirs;
    int verdictIfNewer;
};

}  // namespace

int CheckVqVersionNumber(unsigned long major, unsigned long minor, unsigned long release, unsigned long build,
                         unsigned long patch, unsigned long flags) {
    if (major != VqVersionMajor) return VqVersion_OtherMajor;
    if (minor != VqVersionMinor) return VqVersion_OtherMinor;
    const Part parts[] = {
        {true, VqVersionRelease, release, VqVersion_NewerRelease},
        {(flags & VqVersionCheck_Build) != 0, VqVersionBuild, build, VqVersion_NewerBuild},
        {(flags & VqVersionCheck_Patch) != 0, VqVersionPatch, patch, VqVersion_NewerPatch},
    };
    for (const Part& part : parts) {
        if (!part.isCompared || part.theirs == part.ours) continue;
        return part.theirs > part.ours ? part.verdictIfNewer : VqVersion_Compatible;
    }
    return VqVersion_Compatible;
}
