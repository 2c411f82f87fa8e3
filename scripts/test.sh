#!/usr/bin/env bash
# The test job: formatting check, the API reference (Doxygen, warnings are errors), unit tests
# with g++ (warnings are errors), the installed package used from a separate consumer project,
# and the unit tests again under AddressSanitizer and UndefinedBehaviorSanitizer with clang, and
# the concurrency tests under ThreadSanitizer with clang. Exits non-zero on any failure.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
cd "$root"
bash scripts/deps.sh
jobs=2

echo "== Formatting"
git ls-files '*.h' '*.cpp' | xargs clang-format --dry-run --Werror

echo "== API reference: Doxygen over the public headers, warnings are errors"
if command -v doxygen >/dev/null 2>&1; then
  rm -rf build/docs
  mkdir -p build/docs
  doxygen docs/Doxyfile
  echo "reference in build/docs/html/index.html"
else
  echo "doxygen not installed: reference not built"
fi

echo "== g++: build and unit tests"
CXX=g++ cmake -S . -B build/gcc -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DUG_WARNINGS_AS_ERRORS=ON >/dev/null
cmake --build build/gcc -j "$jobs"
ctest --test-dir build/gcc --output-on-failure -j "$jobs"

echo "== Installed package from a consumer project"
rm -rf build/test-install build/test-consumer
cmake --install build/gcc --prefix "$root/build/test-install" >/dev/null
cmake -S examples/consumer -B build/test-consumer -G Ninja -DCMAKE_PREFIX_PATH="$root/build/test-install" >/dev/null
cmake --build build/test-consumer -j "$jobs"
./build/test-consumer/ug_demo >/dev/null
./build/test-consumer/ug_typical build/test-consumer/typical.svg >/dev/null
echo "consumer built against the installed package and ran"
# The command-line tool is installed with the package and runs from there.
test -x build/test-install/bin/ugeo
[ "$(build/test-install/bin/ugeo area 'POLYGON ((0 0, 4 0, 4 3, 0 3))')" = 12 ]
echo "ugeo installed and ran"

echo "== clang with AddressSanitizer and UndefinedBehaviorSanitizer"
CXX=clang++ cmake -S . -B build/asan -G Ninja -DCMAKE_BUILD_TYPE=Debug -DUG_SANITIZE=ON \
  -DUG_WARNINGS_AS_ERRORS=ON -DUG_BUILD_BENCH=OFF >/dev/null
cmake --build build/asan -j "$jobs"
ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
  ctest --test-dir build/asan --output-on-failure -j "$jobs"

echo "== clang with ThreadSanitizer: objects shared between threads"
CXX=clang++ cmake -S . -B build/tsan -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DUG_TSAN=ON \
  -DUG_WARNINGS_AS_ERRORS=ON -DUG_BUILD_BENCH=OFF >/dev/null
cmake --build build/tsan -j "$jobs" --target test_geometry_intersection
TSAN_OPTIONS=halt_on_error=1 ./build/tsan/tests/test_geometry_intersection --gtest_filter='*Concurrency*'
