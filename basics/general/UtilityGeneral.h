#pragma once
/// @file
/// Plain routines of the companion general library.

// Exported symbols carry KVGEN_API; the switch follows the geometry library's.
#ifdef UTILITYGEOMETRY_STATIC_DEFINE
#define KVGEN_API
#define KVGEN_NO_EXPORT
#elif defined(_WIN32) || defined(__CYGWIN__)
#ifdef UtilityGeneral_EXPORTS
#define KVGEN_API __declspec(dllexport)
#else
#define KVGEN_API __declspec(dllimport)
#endif
#define KVGEN_NO_EXPORT
#else
#define KVGEN_API __attribute__((visibility("default")))
#define KVGEN_NO_EXPORT __attribute__((visibility("hidden")))
#endif

/// 1 when the two coordinates are equal within 0.001 drawing units (a difference of exactly
/// 0.001 counts as equal), otherwise 0. The sorting of point arrays asks it which coordinates
/// tie.
KVGEN_API int iqrkor(double a, double b);

/// Euclidean distance of the plane points (x1, y1) and (x2, y2).
KVGEN_API double distance2Points2D(double x1, double y1, double x2, double y2);
