#!/usr/bin/env bash
# The benchmarks: installs the peer libraries as well (Boost.Geometry, CGAL, GEOS; only these
# programs link them), builds in Release under build/bench and runs the comparison of the core
# queries with the peers, then that of the region operations. Extra arguments go to both programs
# (e.g. --benchmark_filter=pieces; a filter that matches no case of one program leaves it empty).
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
cd "$root"
bash scripts/deps.sh --bench

jobs=2
cmake -S . -B build/bench -G Ninja -DCMAKE_BUILD_TYPE=Release -DBUILD_TESTING=OFF -DUG_BUILD_BENCH=ON >/dev/null
cmake --build build/bench -j "$jobs"
./build/bench/bench/bench_queries "$@"
./build/bench/bench/bench_regions "$@"
