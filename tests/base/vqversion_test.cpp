#include "vqversion.h"

#include <gtest/gtest.h>

namespace {

TEST(Version, IsCompatibleUpToItsOwn) {
    constexpr unsigned long kTwo = VqVersionCheck_MajorMinor | VqVersionCheck_Release;
    constexpr unsigned long kAll = kTwo | VqVersionCheck_Build | VqVersionCheck_Patch;
    const struct {
        unsigned long major, minor, release, build, patch, flags;
        int verdict;
    } cases[] = {
        {9, 5, 23, 262, 0, kTwo, VqVersion_Compatible},
        {9, 5, 22, 999, 9, kTwo, VqVersion_Compatible},
        {9, 5, 23, 999, 9, kTwo, VqVersion_Compatible},
        {9, 5, 24, 0, 0, kTwo, VqVersion_NewerRelease},
        {9, 4, 23, 262, 0, kTwo, VqVersion_OtherMinor},
        {9, 6, 0, 0, 0, kTwo, VqVersion_OtherMinor},
        {8, 5, 23, 262, 0, kTwo, VqVersion_OtherMajor},
        {10, 6, 99, 262, 0, kTwo, VqVersion_OtherMajor},

        {9, 5, 23, 262, 0, kAll, VqVersion_Compatible},
        {9, 5, 23, 263, 0, kAll, VqVersion_NewerBuild},
        {9, 5, 23, 262, 1, kAll, VqVersion_NewerPatch},
        {9, 5, 23, 261, 9, kAll, VqVersion_Compatible},
        {9, 5, 22, 263, 9, kAll, VqVersion_Compatible},

        {1, 1, 99, 999, 9, 0, VqVersion_Compatible},
        {1, 1, 24, 0, 0, VqVersionCheck_Release, VqVersion_NewerRelease},
        {9, 5, 99, 999, 9, VqVersionCheck_MajorMinor, VqVersion_Compatible},
        {9, 5, 23, 263, 0, kTwo | 0xFFFFFFF0, VqVersion_Compatible},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(CheckVqVersionNumber(c.major, c.minor, c.release, c.build, c.patch, c.flags), c.verdict)
            << c.major << '.' << c.minor << '.' << c.release << '.' << c.build << '.' << c.patch << " flags "
            << c.flags;
    }
}

}  // namespace
