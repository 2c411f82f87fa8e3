#!/usr/bin/env bash
# The benchmarks: installs the peer libraries as well (Boost.Geometry, CGAL, GEOS; only these
# programs link them), builds in Release under build/bench and runs the comparison of the core
# queries with the peers. Extra arguments go to that program (e.g. --benchmark_filter=pieces).
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
cd "$root"
bash scripts/deps.sh --bench

jobs=2
cmake -S . -B build/bench -G Ninja -DCMAKE_BUILD_TYPE=Release -DBUILD_TESTING=OFF -DUG_BUILD_BENCH=ON >/dev/null
cmake --build build/bench -j "$jobs"
./build/bench/bench/bench_queries "$@"
