/// \file
/// Export marks of the type library, for C and C++.
#ifndef VQTMDEFS_H
#define VQTMDEFS_H

/// \def VQTM_API
/// Marks what the type library offers to code outside. Whoever builds the shared library defines VQTM_BUILD; whoever
/// builds or uses the static one defines VQTM_STATIC. Users of the shared library define neither.
#if defined(VQTM_STATIC)
#define VQTM_API
#elif !defined(_WIN32)
#define VQTM_API __attribute__((visibility("default")))
#elif defined(VQTM_BUILD)
#define VQTM_API __declspec(dllexport)
#else
#define VQTM_API __declspec(dllimport)
#endif

/// \def VQTM_TYPE
/// Marks types that exported templates are made of; with clang++ a template is only as visible as they are.
#if defined(_WIN32)
#define VQTM_TYPE
#else
#define VQTM_TYPE __attribute__((visibility("default")))
#endif

#endif
