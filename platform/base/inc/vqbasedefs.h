/// \file
/// Export mark of the base library.
#ifndef VQBASEDEFS_H
#define VQBASEDEFS_H

/// Marks what the base library offers to code outside. Whoever builds the shared library defines VQBASE_BUILD; whoever
/// builds or uses the static one defines VQBASE_STATIC. Users of the shared library define neither.
#if defined(VQBASE_STATIC)
#define VQBASE_API
#elif !defined(_WIN32)
#define VQBASE_API __attribute__((visibility("default")))
#elif defined(VQBASE_BUILD)
#define VQBASE_API __declspec(dllexport)
#else
#define VQBASE_API __declspec(dllimport)
#endif

#endif
