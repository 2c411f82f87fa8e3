#!/usr/bin/env bash
# Compiles every public header on its own, and the programs in tests/strict/, with g++ and
# clang in C++17 and C++20 under the strict warning flags a user may build with. New headers
# below basics/, geometry/ and tools/ are found without a change here.
#
#   bash scripts/check-headers.sh [build-dir]   (the build dir holds the generated headers)
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
cd "$root"
build="${1:-build/gcc}"
generated="$build/include/UtilityGeometry"
if [ ! -f "$generated/UtilityGeometryVersion.h" ]; then
  echo "no generated headers in $generated (configure that build first)" >&2
  exit 1
fi

flags="-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Werror"
headers=(UtilityGeometry.h "$generated/UtilityGeometryVersion.h")
while IFS= read -r h; do headers+=("$h"); done < <(find basics geometry tools -name '*.h' 2>/dev/null | LC_ALL=C sort)
programs=(tests/strict/*.cpp)

out="$(mktemp -d)"
trap 'rm -rf "$out"' EXIT
jobs=()
for cxx in g++ clang++; do
  for std in c++17 c++20; do
    for h in "${headers[@]}"; do jobs+=("$cxx $std header $h"); done
    for p in "${programs[@]}"; do jobs+=("$cxx $std program $p"); done
  done
done

# One compiler run per job, two at a time; a failing job leaves its messages in $out.
check_one() {
  local cxx=$1 std=$2 kind=$3 file=$4 log
  log="$out/$(echo "$cxx-$std-$file" | tr '/+' '_p').log"
  if [ "$kind" = header ]; then
    printf '#include "%s"\n' "$file" | $cxx -x c++ -std="$std" $flags -fsyntax-only -I. -I"$generated" - >"$log" 2>&1
  else
    $cxx -std="$std" $flags -fsyntax-only -I. -I"$generated" "$file" >"$log" 2>&1
  fi || { echo "FAILED: $cxx -std=$std $file" >>"$log"; return 0; }
  rm -f "$log"
}
export -f check_one
export out flags generated
printf '%s\n' "${jobs[@]}" | xargs -P 2 -L 1 bash -c 'check_one "$@"' _

# The array templates must refuse an element type that cannot be relocated bitwise.
refused="$(printf '#include <string>\n#include "basics/KvBtArray.h"\nKvBtDynArray<std::string> a;\n' |
  g++ -x c++ -std=c++17 -fsyntax-only -I. - 2>&1 || true)"
if ! grep -q "relocate elements bitwise" <<<"$refused"; then
  echo "KvBtDynArray<std::string> was not refused with the relocation message" >"$out/relocation.log"
fi

if compgen -G "$out/*.log" >/dev/null; then
  cat "$out"/*.log
  exit 1
fi
echo "${#headers[@]} headers and ${#programs[@]} programs compile alone with g++ and clang, C++17 and C++20, strict flags"
