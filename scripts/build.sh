#!/usr/bin/env bash
# Configures and builds Lirenza into ./build (or $LIRENZA_BUILD_DIR).
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
build=${LIRENZA_BUILD_DIR:-$here/build}
generator=()
command -v ninja >/dev/null 2>&1 && generator=(-G Ninja)
if [ ! -f "$build/CMakeCache.txt" ]; then
  cmake -S "$here" -B "$build" "${generator[@]}" -DCMAKE_BUILD_TYPE=RelWithDebInfo
fi
cmake --build "$build" --parallel "$(nproc)"
