#pragma once

/// @file
/// The geometry library is built with hidden symbols; what it exports carries KVGE_API. A shared
/// build defines UtilityGeometry_EXPORTS while the library itself is compiled; a static build and
/// everything linked against it define UTILITYGEOMETRY_STATIC_DEFINE.
#ifdef UTILITYGEOMETRY_STATIC_DEFINE
#define KVGE_API
#define KVGE_NO_EXPORT
#elif defined(_WIN32) || defined(__CYGWIN__)
#ifdef UtilityGeometry_EXPORTS
#define KVGE_API __declspec(dllexport)
#else
#define KVGE_API __declspec(dllimport)
#endif
#define KVGE_NO_EXPORT
#else
#define KVGE_API __attribute__((visibility("default")))
#define KVGE_NO_EXPORT __attribute__((visibility("hidden")))
#endif
