// Storing a point array in the library's archive format and loading it back.
#include <UtilityGeometry.h>

#include <iostream>
#include <sstream>

int main() {
  KvGePoint2dArray points{{1.2, 3.4}, {-0.1, 0}, {250.55, 17}};

  // An archive on an output stream stores. The stored form keeps coordinates in tenths of a
  // drawing unit between -3276.7 and 3276.7, so 250.55 comes back as 250.6.
  std::stringstream bytes;
  {
    KvBtArchive out(static_cast<std::ostream&>(bytes));
    points.Serialize(out);
    if (out.IsFailed()) return 1;
  }

  // An archive on an input stream loads. Loading never trusts its input: a short or damaged
  // stream puts the archive into its failure state and leaves the array as it was.
  KvGePoint2dArray loaded;
  {
    KvBtArchive in(static_cast<std::istream&>(bytes));
    loaded.Serialize(in);
    if (in.IsFailed()) return 1;
  }

  std::cout << "stored   " << points << '\n';
  std::cout << "loaded   " << loaded << '\n';
  std::cout << bytes.str().size() << " bytes\n";

  // The first two points survive exactly (within the 0.001 tolerance); the third was rounded.
  const bool right =
      loaded.GetSize() == 3 && loaded[0] == points[0] && loaded[1] == points[1] && loaded[2] == KvGePoint2d(250.6, 17);
  return right ? 0 : 1;
}
