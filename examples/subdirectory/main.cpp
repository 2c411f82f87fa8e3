// The umbrella header included with its folder, as from the include/ directory of an installed
// copy; the headers' version and the linked library's must agree.
#include <UtilityGeometry/UtilityGeometry.h>

#include <cstdio>
#include <cstring>

int main() {
  const KvGePoint2d a(0, 0), b(3, 4);
  std::printf("UtilityGeometry %s: distance %g\n", UtilityGeometry_VersionString(), Distance2d(a, b));
  return std::strcmp(UtilityGeometry_VersionString(), UTILITYGEOMETRY_VERSION_STRING) == 0 ? 0 : 1;
}
