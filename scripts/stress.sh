#!/usr/bin/env bash
# Runs ostrel-stress against the simulator serving in the build tree's stress prefix, e.g.
#   scripts/stress.sh lifecycles 1000
#   scripts/stress.sh threads 8 2000 churn
#   scripts/stress.sh faults
# OSTREL_BUILD_DIR picks another build folder than build/mingw.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/common.sh
build=${OSTREL_BUILD_DIR:-build/mingw}

ensure_packages
cmake --preset mingw -B "$build" >/dev/null
cmake --build "$build" -j2 --target ostrel-stress camsim >/dev/null

trap stop_wine_servers EXIT
prepare_wine_prefix "$build" stress
scripts/start_simulator.sh "$build/wine-run" "$build/bin" stress serve
OSTREL_WINE_PREFIX=stress "$build/wine-run" "$build/bin/ostrel-stress.exe" "$@"
