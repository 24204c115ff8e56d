#!/bin/sh
# Runs one test program alone in a Wine prefix of its own, with its Wine server (and with it
# every COM registration a killed server leaves behind) started afresh and ended after.
# Usage: run_in_fresh_prefix.sh <wine-run> <prefix name> <bin folder> <program.exe> [args...]
wine_run=$1 prefix=$2 bin=$3 program=$4
shift 4
export OSTREL_WINE_PREFIX="$prefix"
root=$(dirname "$wine_run")/wine/$prefix
"$wine_run" cmd /c exit >/dev/null 2>&1
WINEPREFIX="$root" wineserver -k >/dev/null 2>&1
"$wine_run" "$bin/camsim.exe" /RegServer || exit 1
"$wine_run" "$bin/$program" "$@"
status=$?
WINEPREFIX="$root" wineserver -k >/dev/null 2>&1
exit $status
