#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test: the Windows binaries under Wine (and
# the connection and engine tests once more as clang built them), the portable computing core
# natively under the address and undefined-behaviour sanitizers, and the file readers briefly
# under libFuzzer. Leaves the SDK's zips in build/package, and no Wine process running.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/common.sh

ensure_packages

cmake --preset mingw >/dev/null
cmake --build --preset mingw

trap stop_wine_servers EXIT
for prefix in main bare crash lifetime registration; do
    prepare_wine_prefix build/mingw $prefix
done
ctest --preset mingw

cmake --preset mingw-clang >/dev/null
cmake --build --preset mingw-clang
for prefix in main bare crash lifetime registration; do
    prepare_wine_prefix build/mingw-clang $prefix
done
ctest --preset mingw-clang
# The release is clang's build, which has the PDBs.
cpack --config build/mingw-clang/CPackConfig.cmake -B build/package
stop_wine_servers
check_no_wine_processes

cmake --preset native >/dev/null
cmake --build --preset native
ctest --preset native

# The file readers under libFuzzer, briefly: the seed corpus and its regression cases, and a
# few seconds of new inputs.
scripts/fuzz.sh 5
