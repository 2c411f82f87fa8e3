#!/usr/bin/env bash
# Installs what building, testing and benchmarking need, through apt-get, when it is missing.
# Quiet and quick when everything is there already. With --bench it also installs the peer
# libraries that only the benchmark against them uses (CGAL, GEOS); the library, the tests and
# the main job never need them.
set -euo pipefail

packages=(cmake ninja-build g++ clang libclang-rt-14-dev clang-format libboost-dev
          libgtest-dev libgmock-dev libbenchmark-dev libpolyclipping-dev doxygen pkg-config
          libcli11-dev)
for arg in "$@"; do
  case "$arg" in
    --bench) packages+=(libcgal-dev libgeos-dev) ;;
    *) echo "deps.sh: unknown option $arg" >&2; exit 2 ;;
  esac
done
missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  echo "Installing: ${missing[*]}"
  export DEBIAN_FRONTEND=noninteractive
  sudo_cmd=""
  [ "$(id -u)" -ne 0 ] && sudo_cmd="sudo"
  $sudo_cmd apt-get update -qq
  $sudo_cmd apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
fi
