#include "vqversion.h"

#include <gtest/gtest.h>

namespace {

TEST(Version, IsCompatibleUpToItsOwn) {
    constexpr unsigned long Two = VqVersionCheck_MajorMinor | VqVersionCheck_Release;
    constexpr unsigned long All = Two | VqVersionCheck_Build | VqVersionCheck_Patch;
    const struct {
        unsigned long major, minor, release, build, patch, flags;
        int verdict;
    } cases[] = {
        {9, 5, 23, 262, 0, Two, VqVersion_Compatible},
        {9, 5, 22, 999, 9, Two, VqVersion_Compatible},
        {9, 5, 23, 999, 9, Two, VqVersion_Compatible},
        {9, 5, 24, 0, 0, Two, VqVersion_NewerRelease},
        {9, 4, 23, 262, 0, Two, VqVersion_OtherMinor},
        {9, 6, 0, 0, 0, Two, VqVersion_OtherMinor},
        {8, 5, 23, 262, 0, Two, VqVersion_OtherMajor},
        {10, 6, 99, 262, 0, Two, VqVersion_OtherMajor},

        {9, 5, 23, 262, 0, All, VqVersion_Compatible},
        {9, 5, 23, 263, 0, All, VqVersion_NewerBuild},
        {9, 5, 23, 262, 1, All, VqVersion_NewerPatch},
        {9, 5, 23, 261, 9, All, VqVersion_Compatible},
        {9, 5, 22, 263, 9, All, VqVersion_Compatible},

        // Major, minor and release need no flag.
        {8, 5, 23, 262, 0, 0, VqVersion_OtherMajor},
        {9, 6, 23, 262, 0, VqVersionCheck_Release, VqVersion_OtherMinor},
        {9, 5, 24, 0, 0, VqVersionCheck_MajorMinor, VqVersion_NewerRelease},
        {9, 5, 23, 999, 9, 0, VqVersion_Compatible},
        {9, 5, 23, 999, 1, VqVersionCheck_Patch, VqVersion_NewerPatch},
        {9, 5, 23, 263, 0, Two | 0xFFFFFFF0, VqVersion_Compatible},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(CheckVqVersionNumber(c.major, c.minor, c.release, c.build, c.patch, c.flags), c.verdict)
            << c.major << '.' << c.minor << '.' << c.release << '.' << c.build << '.' << c.patch << " flags "
            << c.flags;
    }
}

}  // namespace
