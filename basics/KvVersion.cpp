#include "UtilityGeometryVersion.h"

const char* UtilityGeometry_VersionString() { return UTILITYGEOMETRY_VERSION_STRING; }
