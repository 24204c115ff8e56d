#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test: the Windows binaries under Wine, and
# the portable computing core natively under the address and undefined-behaviour sanitizers,
# and the file readers briefly under libFuzzer.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/common.sh

ensure_packages

cmake --preset mingw >/dev/null
cmake --build --preset mingw

trap stop_wine_servers EXIT
prepare_wine_prefix build/mingw main
prepare_wine_prefix build/mingw bare
prepare_wine_prefix build/mingw crash
prepare_wine_prefix build/mingw lifetime
ctest --preset mingw

cmake --preset native >/dev/null
cmake --build --preset native
ctest --preset native

# The file readers under libFuzzer, briefly: the seed corpus and its regression cases, and a
# few seconds of new inputs.
scripts/fuzz.sh 5
