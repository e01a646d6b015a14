/// \file
/// Export mark of the internationalisation library.
#ifndef VQI18NDEFS_H
#define VQI18NDEFS_H

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

#endif
