#!/usr/bin/env bash
# Installs what is missing, builds, and starts Lirenza.
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
bash "$here/scripts/install-deps.sh"
bash "$here/scripts/build.sh"
build=${LIRENZA_BUILD_DIR:-$here/build}
if [ -x "$build/src/app/lirenza" ]; then
  exec "$build/src/app/lirenza" "$@"
fi
exec "$build/src/cli/lirenza-cli" --help
