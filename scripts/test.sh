#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test through CTest.
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
bash "$here/scripts/install-deps.sh"
bash "$here/scripts/build.sh"
build=${LIRENZA_BUILD_DIR:-$here/build}
export XDG_RUNTIME_DIR=${XDG_RUNTIME_DIR:-$(mktemp -d)}
export QT_QPA_PLATFORM=${QT_QPA_PLATFORM:-offscreen}
cd "$build"
ctest --output-on-failure --parallel "$(nproc)" --timeout 900
