#!/usr/bin/env bash
# The fuzz targets: builds them with clang (libFuzzer, AddressSanitizer, UndefinedBehavior-
# Sanitizer) under build/fuzz and runs each for the given number of seconds (default 30),
# starting from its committed seed corpus (fuzz/corpus/<name>, copied into build/fuzz/corpus so
# that new inputs stay out of the source tree) with its dictionary. A crash or a violated
# invariant stops with its input in build/fuzz/artifacts and exits non-zero. Where clang's
# fuzzer runtime is missing (Debian: libclang-rt-14-dev) the run is skipped with a message.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
cd "$root"
seconds="${1:-30}"
jobs=2

probe="$(mktemp -d)"
trap 'rm -rf "$probe"' EXIT
printf 'extern "C" int LLVMFuzzerTestOneInput(const unsigned char*, unsigned long) { return 0; }\n' >"$probe/p.cpp"
if ! clang++ -fsanitize=fuzzer,address,undefined "$probe/p.cpp" -o "$probe/p" >/dev/null 2>&1; then
  echo "fuzz targets skipped: clang's libFuzzer runtime is missing (install libclang-rt-14-dev)"
  exit 0
fi

CXX=clang++ cmake -S . -B build/fuzz -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DUG_BUILD_FUZZ=ON \
  -DBUILD_TESTING=OFF -DUG_BUILD_BENCH=OFF -DUG_BUILD_APPS=OFF -DUG_BUILD_EXAMPLES=OFF -DUG_BUILD_DOCS=OFF \
  -DUG_WARNINGS_AS_ERRORS=ON >/dev/null
cmake --build build/fuzz -j "$jobs"

mkdir -p build/fuzz/artifacts
for name in archive operations wkt; do
  work="build/fuzz/corpus/$name"
  mkdir -p "$work"
  options=(-max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -print_final_stats=1
           -artifact_prefix="build/fuzz/artifacts/$name-")
  [ -f "fuzz/$name.dict" ] && options+=(-dict="fuzz/$name.dict")
  # A fixed seed (UG_FUZZ_SEED) makes a short run take the same mutations every time.
  [ -n "${UG_FUZZ_SEED:-}" ] && options+=(-seed="$UG_FUZZ_SEED")
  echo "fuzz_$name: ${seconds} s"
  if ! ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
      "./build/fuzz/fuzz/fuzz_$name" "${options[@]}" "$work" "fuzz/corpus/$name" >"build/fuzz/$name.log" 2>&1; then
    tail -n 40 "build/fuzz/$name.log"
    echo "fuzz_$name failed; the input is in build/fuzz/artifacts (replay: ./build/fuzz/fuzz/fuzz_$name <file>)"
    exit 1
  fi
  grep -E "^stat::number_of_executed_units|^Done" "build/fuzz/$name.log" || true
done
