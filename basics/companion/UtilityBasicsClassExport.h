#pragma once

/// @file
/// The companion basics library is built with hidden symbols; what it exports carries KVBT_API,
/// and private members of an exported class that must stay inside carry KVBT_NO_EXPORT.
/// The switch follows the geometry library's (see basics/UtilityGeometryExport.h).
#ifdef UTILITYGEOMETRY_STATIC_DEFINE
#define KVBT_API
#define KVBT_NO_EXPORT
#elif defined(_WIN32) || defined(__CYGWIN__)
#ifdef UtilityBasicsClass_EXPORTS
#define KVBT_API __declspec(dllexport)
#else
#define KVBT_API __declspec(dllimport)
#endif
#define KVBT_NO_EXPORT
#else
#define KVBT_API __attribute__((visibility("default")))
#define KVBT_NO_EXPORT __attribute__((visibility("hidden")))
#endif
