#!/usr/bin/env bash
# The main job: builds the library in Release, installs it into _install/ inside the checkout,
# builds the example consumer against the installed package and runs it.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
cd "$root"
bash scripts/deps.sh

jobs=2
cmake -S . -B build/release -G Ninja -DCMAKE_BUILD_TYPE=Release -DBUILD_TESTING=OFF -DUG_BUILD_BENCH=OFF -DUG_BUILD_EXAMPLES=OFF \
  -DUG_BUILD_DOCS=OFF >/dev/null
cmake --build build/release -j "$jobs"
cmake --install build/release --prefix "$root/_install" >/dev/null

cmake -S examples/consumer -B build/consumer -G Ninja -DCMAKE_PREFIX_PATH="$root/_install" >/dev/null
cmake --build build/consumer -j "$jobs"
echo
./build/consumer/ug_demo
echo
./build/consumer/ug_typical "$root/typical.svg"
