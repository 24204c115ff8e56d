#!/bin/sh
# Registers the simulator in a prefix of the build tree and, with "serve", starts one server
# process that serves every test until the prefix's Wine server ends. Tests then never start a
# server themselves, which would hold on to their output until it exits.
# Usage: start_simulator.sh <wine-run> <bin folder> <prefix> [serve]
wine_run=$1 bin=$2
export OSTREL_WINE_PREFIX=$3
"$wine_run" "$bin/camsim.exe" /RegServer || exit 1
if [ "$4" = serve ]; then
    "$wine_run" "$bin/camsim.exe" /Serve </dev/null >/dev/null 2>&1 &
    # Until its class objects are registered, a client would start a server of its own.
    sleep 2
fi
