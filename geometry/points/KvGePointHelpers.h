#pragma once
/// @file
/// The point helper routines: the space point operations in a procedural form, kept because
/// applications call them under these names. Results go to output arguments; each routine hands
/// its work to the point member or free function, the plan circle or arc, the point array or the
/// plan distance and crossing function named in its comment, so it answers exactly what that
/// function answers. Unless the name says otherwise (LineLen3, DotProd, CrossProd, Clip with a
/// non-zero mode) a routine works in plan, on x and y. Every output may be one of the inputs.
///
/// Three oddities are part of the interface and kept: DisFromLine, DisFromSeg, DisFromCrc and
/// DisFromArc answer squared distances although their names say distance; SphereCart, like
/// KvGePoint3d::SetSphere, does not scale x and y by cos b; Polar from a point at infinity
/// copies it. The cylinder and sphere conversions the other way (CartCylind, CartSphere) and
/// BetweenAng are declared with the angle and the numeric helpers.

#include "basics/UtilityGeometryExport.h"
#include "geometry/points/KvGeAngle.h"
#include "geometry/points/KvGePoint2dArray.h"
#include "geometry/points/KvGePoint3d.h"

/// p = (v, v, v), ordinary.
KVGE_API void SetPoint(KvGePoint3d& p, double v);
/// r = a + b, r = a - b, r = a * s, with the flag rules of the point operators.
KVGE_API void AddPnt(const KvGePoint3d& a, const KvGePoint3d& b, KvGePoint3d& r);
/// r = a - b, with the flag rules of the point operators.
KVGE_API void SubPnt(const KvGePoint3d& a, const KvGePoint3d& b, KvGePoint3d& r);
/// r = a * s, with the flag rules of the point operators.
KVGE_API void MulPnt(const KvGePoint3d& a, double s, KvGePoint3d& r);
/// r = CrossProduct(b - a, c - b) in space: the normal of the turn at b.
KVGE_API void CrossProd(const KvGePoint3d& a, const KvGePoint3d& b, const KvGePoint3d& c, KvGePoint3d& r);
/// The plan turn at b: (b - a) x (c - b) in x and y; positive for a left turn, exact (no band).
KVGE_API double CrossZ(const KvGePoint3d& a, const KvGePoint3d& b, const KvGePoint3d& c);
/// (b - a) . (c - b) in space.
KVGE_API double DotProd(const KvGePoint3d& a, const KvGePoint3d& b, const KvGePoint3d& c);
/// Angle2d(a, b): the plan direction from a to b.
KVGE_API KvGeAngle Angle(const KvGePoint3d& a, const KvGePoint3d& b);
/// Distance2d(a, b): the plan distance.
KVGE_API double Distance(const KvGePoint3d& a, const KvGePoint3d& b);
/// Distance3d(a, b): the distance in space.
KVGE_API double LineLen3(const KvGePoint3d& a, const KvGePoint3d& b);
/// out = (p.x + r cos a, p.y + r sin a, p.z), ordinary; a copy of p when p is a point at
/// infinity.
KVGE_API void Polar(const KvGePoint3d& p, const KvGeAngle& a, double r, KvGePoint3d& out);
/// p becomes Project2d(a, b, p): its plan foot on the infinite line a-b, keeping its z.
KVGE_API void Project(const KvGePoint3d& a, const KvGePoint3d& b, KvGePoint3d& p);
/// mode 0: Clip2d (in plan, each end keeps its z); otherwise Clip3d. 1 when something remains;
/// on 0 the ends are not touched.
KVGE_API int Clip(KvGePoint3d& p1, KvGePoint3d& p2, const KvGePoint3d& min, const KvGePoint3d& max, int mode);
/// Between2d(a, b, p): where the plan foot of p falls on the segment a-b (-1 before a, 1 at a
/// within 0.001 inclusive, 0 between, 2 at b, -2 beyond b; 0 for a segment of 0.001 or less).
KVGE_API int Between(const KvGePoint3d& a, const KvGePoint3d& b, const KvGePoint3d& p);
/// The plan circle through a, b and c (KvGeCircle23d::By3Points, centre at their mean height):
/// 1 with its centre and radius written; 0 for collinear or coincident points, centre and radius
/// then untouched.
KVGE_API int Circ3Pt(const KvGePoint3d& a, const KvGePoint3d& b, const KvGePoint3d& c, KvGePoint3d& centre,
                     double& radius);
/// x = r cos a, y = r sin a, z = h (KvGePoint3d::SetCylinder).
KVGE_API void CylindCart(double r, const KvGeAngle& a, double h, double& x, double& y, double& z);
/// x = r cos a, y = r sin a, z = r sin b (KvGePoint3d::SetSphere): deliberately without a factor
/// cos b on x and y, so the point lies on the sphere of radius r only for b = 0.
KVGE_API void SphereCart(double r, const KvGeAngle& a, const KvGeAngle& b, double& x, double& y, double& z);
/// The squared plan distance of p from its foot on the infinite line a-b (DistanceSqrToLine2d,
/// from a when a and b lie within 0.001): squared, although the name says distance.
KVGE_API double DisFromLine(const KvGePoint3d& a, const KvGePoint3d& b, const KvGePoint3d& p);
/// DistanceSqrToLineseg2d(a, b, p): the squared plan distance from the segment; a foot up to
/// 0.001 beyond an end (inclusive) is still measured perpendicularly.
KVGE_API double DisFromSeg(const KvGePoint3d& a, const KvGePoint3d& b, const KvGePoint3d& p);
/// The squared plan distance of p from the circle line of that centre and radius (DistanceSqr2d
/// of the plan circle).
KVGE_API double DisFromCrc(const KvGePoint3d& centre, double r, const KvGePoint3d& p);
/// The same for the plan arc from angle a1 to a2 (DistanceSqr2d of the plan arc: the range from
/// the smaller to the larger angle, 1e-6 radians inclusive; outside it, the nearer end point).
KVGE_API double DisFromArc(const KvGePoint3d& centre, double r, const KvGeAngle& a1, const KvGeAngle& a2,
                           const KvGePoint3d& p);
/// The corners of arr.BoundingBox(); the empty box (1e9 .. -1e9) for an empty array.
KVGE_API void PolyExtents(const KvGePoint3dArray& arr, KvGePoint3d& min, KvGePoint3d& max);
/// First arr.Normalize2d() (start at the lowest point, counter-clockwise in plan), then the
/// corners of its bounding box.
KVGE_API void PolyFix(KvGePoint3dArray& arr, KvGePoint3d& min, KvGePoint3d& max);
/// IntrLineLine2d(a, b, c, d, r, mode) in plan: 0 for a degenerate or parallel pair (r
/// untouched); with mode 0 the crossing sense (+1 when c-d crosses a-b from right to left, else
/// -1); with mode non-zero 1 when the crossing lies on both segments, ends within 0.001 counting.
KVGE_API int IntrLinLin(const KvGePoint3d& a, const KvGePoint3d& b, const KvGePoint3d& c, const KvGePoint3d& d,
                        KvGePoint3d& r, int mode);
/// (x, y) becomes (-y, x): the plan vector turned by +90 degrees; z and the flag stay.
KVGE_API void NorVkt(KvGePoint3d& p);
