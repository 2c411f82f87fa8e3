#pragma once
/// @file
/// UtilityGeometry: plane and space geometry for CAD. Including this header gives every public
/// class and function of the library and of its companion libraries.

#include "UtilityGeometryVersion.h"

#include "basics/companion/KvBtArchive.h"
#include "basics/companion/KvBtCompare.h"
#include "basics/companion/KvBtObject.h"
#include "basics/companion/KvBtSimpleArray.h"
#include "basics/companion/KvBtString.h"
#include "basics/companion/KvTlPermVector.h"
#include "basics/general/UtilityGeneral.h"

#include "basics/KvBtArray.h"
#include "basics/KvGeTolerance.h"
#include "basics/KvMath.h"

#include "geometry/algebra/KvGeMatrix.h"
#include "geometry/algebra/KvGeModMat.h"
#include "geometry/algebra/KvGeVector.h"

#include "geometry/points/KvGeAngle.h"
#include "geometry/points/KvGePoint2d.h"
#include "geometry/points/KvGePoint2dArray.h"
#include "geometry/points/KvGePoint3d.h"
#include "geometry/points/KvGePointHelpers.h"

#include "geometry/curves/KvGeBox2d.h"
#include "geometry/curves/KvGeCircle23d.h"
#include "geometry/curves/KvGeCircle2d.h"
#include "geometry/curves/KvGeLine2d.h"

#include "geometry/polygons/KvGeParallel2d.h"
#include "geometry/polygons/KvGePolyVert2d.h"
#include "geometry/polygons/KvGePolygon2d.h"
#include "geometry/polygons/KvGePolyline2d.h"
#include "geometry/polygons/Simple2dPolygon.h"

#include "geometry/intersection/KvGeContainment2d.h"
#include "geometry/intersection/KvGeDistance2d.h"
#include "geometry/intersection/KvGeIntrCalculator2d.h"
#include "geometry/intersection/KvGeIntrLine2d.h"
#include "geometry/intersection/KvGeIntrPoint2d.h"
#include "geometry/intersection/KvGePieces2d.h"
#include "geometry/intersection/KvGePreparedRegion2d.h"

#include "geometry/io/KvGeSvg.h"
#include "geometry/io/KvGeWkt.h"

#include "tools/KvTlFunktion2d.h"
