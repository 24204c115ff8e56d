#!/usr/bin/env bash
# Installs what is missing, builds, and runs the example host against the camera-server
# simulator in the build tree's own Wine prefix. Without arguments it has the simulator
# synthesise a scene (out/demo.pgm, its true temperatures in out/demo_truth.pfm) and converts it
# into out/demo.png; with arguments it runs ostrel-convert with them, e.g.
#   scripts/demo.sh out/demo.pgm --pfm --csv --unit K
# OSTREL_BUILD_DIR picks another build folder than build/mingw.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/common.sh
build=${OSTREL_BUILD_DIR:-build/mingw}

ensure_packages

serve_simulator "$build" demo ostrel-convert

# Relative paths work under Wine: the current folder is the repository's, seen as Z:\...
in_demo_prefix() { OSTREL_WINE_PREFIX=demo "$build/wine-run" "$@"; }
if [ $# -gt 0 ]; then
    in_demo_prefix "$build/bin/ostrel-convert.exe" "$@"
    exit
fi
mkdir -p out
in_demo_prefix "$build/bin/camsim.exe" /Scene out/demo.pgm out/demo_truth.pfm
in_demo_prefix "$build/bin/ostrel-convert.exe" out/demo.pgm --png
echo "The false-colour picture is out/demo.png."
