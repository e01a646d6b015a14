/// \file
/// The library's entry points: who it is, whether it fits, and where its use begins and ends. For C and C++.
///
/// They have C linkage, and the names in the export table are exactly those below, also on Windows, so that a host may
/// load the library at run time and look them up (dlsym, GetProcAddress); for that each has its function type.
///
///     VqCheckDllFunc check;                          // as examples/host.c does it
///     void* found = dlsym(library, "_VqCheckDll");
///     memcpy(&check, &found, sizeof check);
///     if (check(0) != 0) ...                         // the base library beside it is of another version
///
/// Every text is static, ends in a zero byte, and is there as long as the library is loaded. Nobody frees it.
#ifndef LIBRARY_H
#define LIBRARY_H

#include <stdint.h>

#include "vqtmdefs.h"

#ifdef __cplusplus
extern "C" {
#endif

/// Writes who the library is, and returns the product's name, "Quillbase Typemanager". No pointer may be null.
///
/// The version is five numbers, 9.5.23.262.0: `major`, `minor`, `release`, `build`, `patch`. `module` becomes
/// "vq95FtmsB", `buildDateTime` "Jun 28 2005 01:17:27" (the product's date, not that of this build), `text2` "unknown",
/// `number` the product's build number, 1361, and `extra` the empty text. `compiler` becomes the compiler that made
/// this build, and the word size of the product: "g++ 12.2.0 / 32" (also where pointers have 64 bits).
VQTM_API const char* _VqDescribeDll(unsigned long* major, unsigned long* minor, unsigned long* release,
                                    unsigned long* build, unsigned long* patch, const char** module,
                                    const char** buildDateTime, const char** text2, unsigned long* number,
                                    const char** compiler, const char** extra);

/// Whether the base library that this library runs with is one that it can work with: CheckVqVersionNumber
/// (vqversion.h) of this library's own five version numbers, with `flags` and 3 together. So major, minor and release
/// are always compared; bit 4 compares the build, bit 8 the patch too; other bits are ignored.
///
/// Returns 0 when the two go together, else the first reason why not: 1 another major, 2 another minor version; 3 this
/// library's release, 4 build or 5 patch is newer than the base library's.
VQTM_API int _VqCheckDll(unsigned long flags);

/// Writes those parts of the identity that are asked for; each pointer may be null and is skipped then. `compiler`,
/// `number` and `module` become what _VqDescribeDll says, `date` "Jun 28 2005". `description` becomes the product's
/// name and version with a blank behind each, "Quillbase Typemanager 9.5.23.262.0 ", in the library's one buffer for
/// it, which each call that asks for it fills anew with the same bytes.
VQTM_API void _GetVqTypeMgrInfo(const char** compiler, unsigned long* number, const char** description,
                                const char** date, const char** module);

/// The library's option block, 32 bits, 0 at start; never null. Its lowest bit, when set, makes numbers in strings
/// decimal only (`atol`); otherwise 0x stands for hexadecimal and a leading 0 for octal (`strtol` with base 0). The
/// other bits mean nothing. The library never writes it.
VQTM_API uint32_t* ___VqTypeMgrOptions(void);

/// Attaches (`attach` not 0) or detaches (0) the library for this process, first its internationalisation library with
/// the same argument (___VqI18NContext, which sets the languages' defaults to their start values).
///
/// Attaching makes a new manager of the current table the default one (DefaultTypeMgr); the one before is not deleted,
/// it stays with whoever asked for it. Where neither the heap nor the memory handler has room, there is none (null),
/// but whoever asks for it later has it made. Detaching deletes the default manager, also one that the host installed,
/// and leaves none until the next attach. Without a default manager it deletes nothing.
///
/// A host calls it with 1 before it uses the library, and with 0 at the end. One that never calls it is served too: a
/// loaded library offers a default manager to whoever asks first, and deletes its default manager when it is
/// unloaded. Loading alone makes nothing. Attach and detach take no lock; no other thread uses the library meanwhile.
VQTM_API void ___VqTypemgrContext(int attach);

/// The function type of the entry point that it is named after, for those who look that up by name.
/// @{
typedef const char* (*VqDescribeDllFunc)(unsigned long* major, unsigned long* minor, unsigned long* release,
                                         unsigned long* build, unsigned long* patch, const char** module,
                                         const char** buildDateTime, const char** text2, unsigned long* number,
                                         const char** compiler, const char** extra);
typedef int (*VqCheckDllFunc)(unsigned long flags);
typedef void (*VqTypeMgrInfoFunc)(const char** compiler, unsigned long* number, const char** description,
                                  const char** date, const char** module);
typedef uint32_t* (*VqTypeMgrOptionsFunc)(void);
typedef void (*VqTypemgrContextFunc)(int attach);
/// @}

#ifdef __cplusplus
}
#endif

#endif
