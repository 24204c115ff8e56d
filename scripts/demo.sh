#!/usr/bin/env bash
# Installs what is missing, builds, and runs the example host against the camera-server
# simulator in the build tree's own Wine prefix.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/common.sh

ensure_packages

cmake --preset mingw >/dev/null
cmake --build --preset mingw --target ostrel-convert camsim >/dev/null

trap stop_wine_servers EXIT
prepare_wine_prefix build/mingw demo
scripts/start_simulator.sh build/mingw/wine-run build/mingw/bin demo serve
OSTREL_WINE_PREFIX=demo build/mingw/wine-run build/mingw/bin/ostrel-convert.exe "$@"
