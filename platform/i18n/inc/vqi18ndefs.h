/// \file
/// Export mark of the internationalisation library.
#ifndef VQI18NDEFS_H
#define VQI18NDEFS_H

/// Marks what the internationalisation library offers to code outside. Whoever builds the shared library defines
/// VQI18N_BUILD; whoever builds or uses the static one defines VQI18N_STATIC. Users of the shared library define
/// neither.
#if defined(VQI18N_STATIC)
#define VQI18N_API
#elif defined(_WIN32)
#ifdef VQI18N_BUILD
#define VQI18N_API __declspec(dllexport)
#else
#define VQI18N_API __declspec(dllimport)
#endif
#else
#define VQI18N_API __attribute__((visibility("default")))
#endif

/// Marks a class that is called through its virtual functions alone: one type for everybody on Linux, and nothing that
/// a Windows program would have to import.
#if defined(_WIN32)
#define VQI18N_TYPE
#else
#define VQI18N_TYPE __attribute__((visibility("default")))
#endif

#endif
