/// Which versions of the libraries go together.
#pragma once

#include "vqbasedefs.h"

/// What CheckVqVersionNumber compares. Release, build and patch count in this order: a part is looked at only while the
/// parts before it that were asked for are equal.
constexpr unsigned long VqVersionCheck_MajorMinor = 1;  // major and minor must be the same
constexpr unsigned long VqVersionCheck_Release = 2;     // the caller must not be of a newer release
constexpr unsigned long VqVersionCheck_Build = 4;       // ... nor of a newer build of this release
constexpr unsigned long VqVersionCheck_Patch = 8;       // ... nor of a newer patch of this build

/// What CheckVqVersionNumber answers.
constexpr int VqVersion_Compatible = 0;
constexpr int VqVersion_OtherMajor = 1;
constexpr int VqVersion_OtherMinor = 2;
constexpr int VqVersion_NewerRelease = 3;  // the caller expects what this library does not have yet
constexpr int VqVersion_NewerBuild = 4;
constexpr int VqVersion_NewerPatch = 5;

/// Whether a library or program built for the given version can work with this one, which is 9.5.23, build 262, patch
/// 0. `flags` is a sum of VqVersionCheck_ values (others are ignored); 0 compares nothing. Returns VqVersion_Compatible
/// or the first reason against it.
VQBASE_API int CheckVqVersionNumber(unsigned long major, unsigned long minor, unsigned long release,
                                    unsigned long build, unsigned long patch, unsigned long flags);
