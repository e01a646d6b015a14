/// \file
/// Which versions of the libraries go together.
#ifndef VQVERSION_H
#define VQVERSION_H

#include "vqbasedefs.h"

/// The version of this tree, which CMakeLists.txt repeats down to the release.
/// @{
constexpr unsigned long VqVersionMajor = 9;
constexpr unsigned long VqVersionMinor = 5;
constexpr unsigned long VqVersionRelease = 23;
constexpr unsigned long VqVersionBuild = 262;
constexpr unsigned long VqVersionPatch = 0;
/// @}

// What CheckVqVersionNumber compares. The first two ask for what is always compared; callers set them all the same.
constexpr unsigned long VqVersionCheck_MajorMinor = 1;  ///< major and minor must be the same; always compared
constexpr unsigned long VqVersionCheck_Release = 2;     ///< the caller must not be of a newer release; always compared
constexpr unsigned long VqVersionCheck_Build = 4;       ///< ... nor of a newer build of the same release
constexpr unsigned long VqVersionCheck_Patch = 8;       ///< ... nor of a newer patch of the same release and build

// What CheckVqVersionNumber answers.
constexpr int VqVersion_Compatible = 0;    ///< the two can work together
constexpr int VqVersion_OtherMajor = 1;    ///< not the same major version
constexpr int VqVersion_OtherMinor = 2;    ///< not the same minor version
constexpr int VqVersion_NewerRelease = 3;  ///< the caller expects what this library does not have yet
constexpr int VqVersion_NewerBuild = 4;    ///< the release is the same, the caller of a newer build
constexpr int VqVersion_NewerPatch = 5;    ///< all that is compared before is the same, the caller of a newer patch

/// Whether a library or program built for the given version can work with this one: major and minor are the same and
/// the release is not newer. `flags` is a sum of VqVersionCheck_ values (others are ignored); 4 and 8 compare build and
/// patch too, each only where all parts before it that are compared are the same. Returns VqVersion_Compatible (0) or
/// the first reason against it.
VQBASE_API int CheckVqVersionNumber(unsigned long major, unsigned long minor, unsigned long release,
                                    unsigned long build, unsigned long patch, unsigned long flags);

#endif
