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
serve_simulator "$build" stress ostrel-stress
OSTREL_WINE_PREFIX=stress "$build/wine-run" "$build/bin/ostrel-stress.exe" "$@"
