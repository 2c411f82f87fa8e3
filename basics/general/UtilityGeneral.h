#pragma once
/// @file
/// Plain routines of the companion general library.

/// Marks what the companion general library exports.
#define KVGEN_API __attribute__((visibility("default")))

/// 1 when the two coordinates are equal within 0.001 drawing units (a difference of exactly
/// 0.001 counts as equal), otherwise 0. The sorting of point arrays asks it which coordinates
/// tie.
KVGEN_API int iqrkor(double a, double b);

/// Euclidean distance of the plane points (x1, y1) and (x2, y2).
KVGEN_API double distance2Points2D(double x1, double y1, double x2, double y2);
