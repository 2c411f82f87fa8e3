#!/usr/bin/env bash
# Compares the symbols that the shared libraries of a build export with the committed list
# scripts/exported-symbols.txt, so that every change to the binary interface shows in review.
#
#   bash scripts/exported-symbols.sh [build-dir]            check (default build dir: build/gcc)
#   bash scripts/exported-symbols.sh --update [build-dir]   rewrite the list from the build
#
# After adding or removing an exported function or class, run the second form on a g++ build
# and commit the list with the change.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
update=0
if [ "${1:-}" = "--update" ]; then
  update=1
  shift
fi
build="${1:-$root/build/gcc}"
list="$root/scripts/exported-symbols.txt"

current="$(mktemp)"
trap 'rm -f "$current"' EXIT
for lib in UtilityBasicsClass UtilityGeneral UtilityGeometry; do
  so="$build/lib$lib.so"
  if [ ! -f "$so" ]; then
    echo "no shared library $so (build with BUILD_SHARED_LIBS=ON first)" >&2
    exit 1
  fi
  # Names only: whether a symbol is weak or strong depends on the compiler and the optimisation.
  nm -DC --defined-only "$so" | cut -d' ' -f3- | LC_ALL=C sort -u | sed "s/^/$lib: /"
done >"$current"

# Copies of standard library or Boost code are never part of the interface, whatever the list
# says.
if grep -E '^[A-Za-z]+: ([^(]* )?(std|boost)::' "$current"; then
  echo "standard library or Boost code is exported (see cmake/exports.map)" >&2
  exit 1
fi

if [ "$update" = 1 ]; then
  cp "$current" "$list"
  echo "wrote $(wc -l <"$list") symbols to scripts/exported-symbols.txt"
elif ! diff -u "$list" "$current"; then
  echo "the exported symbols differ from scripts/exported-symbols.txt (- listed, + exported);" >&2
  echo "if the change is intended: bash scripts/exported-symbols.sh --update && commit the list" >&2
  exit 1
else
  echo "exported symbols match scripts/exported-symbols.txt ($(wc -l <"$list") symbols)"
fi
