#!/bin/sh
# Ends every process of a prefix of the build tree, the serving simulator included.
# Usage: stop_simulator.sh <wine-run> <prefix>
WINEPREFIX="$(dirname "$1")/wine/$2" wineserver -k >/dev/null 2>&1
exit 0
