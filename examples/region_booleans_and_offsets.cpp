// Uniting, intersecting and subtracting regions, and growing or shrinking them.
#include <UtilityGeometry.h>

#include <iostream>

int main() {
  // Two overlapping 10 x 10 squares, each a region of one counter-clockwise ring.
  const KvGePolygon2dArray a{KvGePolygon2d{{0, 0}, {10, 0}, {10, 10}, {0, 10}}};
  const KvGePolygon2dArray b{KvGePolygon2d{{5, 5}, {15, 5}, {15, 15}, {5, 15}}};

  // The operators work on the integer grid of 1e-6 drawing units and give normalised results:
  // outer rings counter-clockwise, each followed by its holes clockwise.
  const KvGePolygon2dArray both = a | b;    // 100 + 100 - 25 = 175
  const KvGePolygon2dArray common = a & b;  // the 5 x 5 overlap
  const KvGePolygon2dArray rest = a - b;    // an L-shaped ring of 75
  std::cout << "a | b    " << both << "  area " << both.Area() << '\n';
  std::cout << "a & b    " << common << "  area " << common.Area() << '\n';
  std::cout << "a - b    " << rest << "  area " << rest.Area() << '\n';

  // A hole is a difference too: a frame of width 2.
  const KvGePolygon2dArray frame = a - KvGePolygon2dArray{KvGePolygon2d{{2, 2}, {8, 2}, {8, 8}, {2, 8}}};
  std::cout << "frame    " << frame << "  area " << frame.Area() << '\n';

  // Offsets: a positive distance grows a region, a negative one shrinks it. Miter corners stay
  // sharp; round corners become short chords, eps (0.001 by default) fixing how fine.
  KvGePolygon2dArray grown, shrunk, band;
  if (!ParallelPolygon2d(a, 1.0, grown, kKvGeJoinMiter)) return 1;
  if (!ParallelPolygon2d(frame, -0.5, shrunk, kKvGeJoinRound)) return 1;
  // A band of half-width 1 around an open polyline, its ends rounded.
  if (!ParallelPolygon2d(KvGePolyline2d{{0, 0}, {10, 0}}, 1.0, band, kKvGeEndRound)) return 1;
  std::cout << "a grown by 1      " << grown << '\n';
  // The outer ring shrinks to 9 x 9 with sharp corners; the hole grows by 0.5 with round ones.
  std::cout << "frame shrunk 0.5  area " << shrunk.Area() << " in " << shrunk.GetSize() << " rings\n";
  // Chords cut a little off every arc: the band comes out slightly below its exact area, the
  // shrunk frame slightly above (its rounded hole is a little smaller).
  std::cout << "band around a line area " << band.Area() << " (20 + pi, less the chords)\n";

  const bool right = IsEqual(both.Area(), 175) && IsEqual(common.Area(), 25) && IsEqual(rest.Area(), 75) &&
                     IsEqual(frame.Area(), 64) && IsEqual(grown.Area(), 144) &&
                     IsEqual(shrunk.Area(), 81 - (36 + 12 + 0.25 * 3.14159), 0.05) &&
                     IsEqual(band.Area(), 20 + 3.14159, 0.05);
  return right ? 0 : 1;
}
