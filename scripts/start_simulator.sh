#!/bin/sh
# Registers the simulator in a prefix of the build tree and, with "serve", starts one server
# process that serves every client until the prefix's Wine server ends. Clients then never start
# a server themselves, which would inherit their output and hold it open until it exits.
# Usage: start_simulator.sh <wine-run> <bin folder> <prefix> [serve]
wine_run=$1 bin=$2
export OSTREL_WINE_PREFIX=$3
"$wine_run" "$bin/camsim.exe" /RegServer || exit 1
if [ "$4" = serve ]; then
    "$wine_run" "$bin/camsim.exe" /Serve </dev/null >/dev/null 2>&1 &
    # Until its class objects are registered, a client would start a server of its own.
    sleep 2
fi
