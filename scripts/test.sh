#!/usr/bin/env bash
# The test job: formatting check; unit tests, examples and the API reference (Doxygen, when it
# is installed; warnings, undocumented public entities included, are errors) with g++, the
# differential tests against Boost.Geometry, GEOS and CGAL among the unit tests; every public
# header compiled alone under strict flags; the exported symbols against the committed list; the
# installed package, shared and static, used through find_package, pkg-config and the plain
# include directory; the sources used through add_subdirectory; the unit tests again under
# AddressSanitizer and UndefinedBehaviorSanitizer with clang, the concurrency tests under
# ThreadSanitizer with clang, and each fuzz target for 30 seconds. Exits non-zero on any failure.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
cd "$root"
bash scripts/deps.sh --peers
jobs=2

echo "== Formatting"
git ls-files '*.h' '*.cpp' | xargs clang-format --dry-run --Werror

echo "== g++: build, unit tests, examples, API reference"
# The build runs Doxygen over the public headers (target ug_docs) when Doxygen is found; a
# warning fails the build.
CXX=g++ cmake -S . -B build/gcc -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DUG_WARNINGS_AS_ERRORS=ON \
  -DUG_BUILD_DOCS=ON >/dev/null
cmake --build build/gcc -j "$jobs"
if command -v doxygen >/dev/null 2>&1; then
  test -f build/gcc/docs/html/index.html
  echo "API reference in build/gcc/docs/html/index.html"
fi
ctest --test-dir build/gcc --output-on-failure --no-tests=error -j "$jobs"

echo "== Public headers alone, strict flags"
bash scripts/check-headers.sh build/gcc

echo "== Exported symbols"
bash scripts/exported-symbols.sh build/gcc

# Builds the find_package consumer, a pkg-config consumer and a program that has only the plain
# include directory on its include path against the installed package in $1, and runs them.
use_installed() {
  local prefix=$1 kind=$2 libdir
  rm -rf "build/test-consumer-$kind"
  cmake -S examples/consumer -B "build/test-consumer-$kind" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
  cmake --build "build/test-consumer-$kind" -j "$jobs"
  "./build/test-consumer-$kind/ug_demo" >/dev/null
  "./build/test-consumer-$kind/ug_typical" "build/test-consumer-$kind/typical.svg" >/dev/null
  "./build/test-consumer-$kind/ug_regions" >/dev/null

  libdir="$(PKG_CONFIG_PATH="$prefix/lib/pkgconfig" pkg-config --variable=libdir UtilityGeometry)"
  # shellcheck disable=SC2046
  g++ -std=c++17 examples/consumer/main.cpp -o "build/test-consumer-$kind/ug_demo_pkgconfig" \
    $(PKG_CONFIG_PATH="$prefix/lib/pkgconfig" pkg-config --cflags --libs UtilityGeometry) -Wl,-rpath,"$libdir"
  "./build/test-consumer-$kind/ug_demo_pkgconfig" >/dev/null
  # shellcheck disable=SC2046
  g++ -std=c++17 examples/region_booleans_and_offsets.cpp -o "build/test-consumer-$kind/ug_regions_pkgconfig" \
    $(PKG_CONFIG_PATH="$prefix/lib/pkgconfig" pkg-config --cflags --libs UtilityGeometry) -Wl,-rpath,"$libdir"
  "./build/test-consumer-$kind/ug_regions_pkgconfig" >/dev/null

  g++ -std=c++17 examples/subdirectory/main.cpp -o "build/test-consumer-$kind/ug_include_dir" -I"$prefix/include" \
    $([ "$kind" = static ] && echo -DUTILITYGEOMETRY_STATIC_DEFINE) \
    -L"$libdir" -lUtilityGeometry -lUtilityBasicsClass -lUtilityGeneral \
    $([ "$kind" = static ] && echo -lpolyclipping) -Wl,-rpath,"$libdir"
  "./build/test-consumer-$kind/ug_include_dir" >/dev/null
  echo "$kind package: find_package, pkg-config and include-directory consumers built and ran"
}

echo "== Installed shared package from consumer projects"
rm -rf build/test-install
cmake --install build/gcc --prefix "$root/build/test-install" >/dev/null
use_installed "$root/build/test-install" shared
# The command-line tool is installed with the package and runs from there.
test -x build/test-install/bin/ugeo
[ "$(build/test-install/bin/ugeo area 'POLYGON ((0 0, 4 0, 4 3, 0 3))')" = 12 ]
echo "ugeo installed and ran"

echo "== Static libraries, configured as on a machine without GoogleTest"
CXX=g++ cmake -S . -B build/static -G Ninja -DCMAKE_BUILD_TYPE=Debug -DBUILD_SHARED_LIBS=OFF -DBUILD_TESTING=OFF \
  -DCMAKE_DISABLE_FIND_PACKAGE_GTest=ON -DUG_BUILD_EXAMPLES=OFF -DUG_BUILD_BENCH=OFF -DUG_BUILD_DOCS=OFF \
  -DUG_WARNINGS_AS_ERRORS=ON >/dev/null
cmake --build build/static -j "$jobs"
test -f build/static/libUtilityGeometry.a
rm -rf build/test-install-static
cmake --install build/static --prefix "$root/build/test-install-static" >/dev/null
use_installed "$root/build/test-install-static" static

echo "== Sources used through add_subdirectory"
rm -rf build/test-subdirectory
CXX=g++ cmake -S examples/subdirectory -B build/test-subdirectory -G Ninja >/dev/null
if grep -q '^CMAKE_BUILD_TYPE:STRING=.' build/test-subdirectory/CMakeCache.txt; then
  echo "the library set the parent project's CMAKE_BUILD_TYPE" >&2
  exit 1
fi
if cmake --build build/test-subdirectory --target help | grep -E 'test_|example_|bench_|ug_docs'; then
  echo "the library added tests, examples, benchmarks or documentation to a parent project" >&2
  exit 1
fi
cmake --build build/test-subdirectory -j "$jobs"
./build/test-subdirectory/ug_subdirectory >/dev/null
echo "built as a subdirectory: libraries only, parent's build type untouched"

echo "== clang with AddressSanitizer and UndefinedBehaviorSanitizer"
CXX=clang++ cmake -S . -B build/asan -G Ninja -DCMAKE_BUILD_TYPE=Debug -DUG_SANITIZE=ON \
  -DUG_WARNINGS_AS_ERRORS=ON -DUG_BUILD_BENCH=OFF -DUG_BUILD_DOCS=OFF >/dev/null
cmake --build build/asan -j "$jobs"
ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
  ctest --test-dir build/asan --output-on-failure --no-tests=error -j "$jobs"

echo "== clang with ThreadSanitizer: objects shared between threads"
CXX=clang++ cmake -S . -B build/tsan -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DUG_TSAN=ON \
  -DUG_WARNINGS_AS_ERRORS=ON -DUG_BUILD_BENCH=OFF -DUG_BUILD_DOCS=OFF -DUG_BUILD_EXAMPLES=OFF >/dev/null
cmake --build build/tsan -j "$jobs" --target test_geometry_intersection
# The longest history: a race whose earlier access lies many calls back is reported only when
# that access's stack can still be restored; with the default history such reports are dropped.
TSAN_OPTIONS=halt_on_error=1:history_size=7 ./build/tsan/tests/test_geometry_intersection --gtest_filter='*Concurrency*'

echo "== Fuzz targets, 30 s each"
# The same mutations on every run, so that the short run answers for the change, not for chance;
# longer runs with fresh seeds are scripts/fuzz.sh on its own.
UG_FUZZ_SEED=1 bash scripts/fuzz.sh 30
