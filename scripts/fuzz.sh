#!/usr/bin/env bash
# Builds the file readers' libFuzzer targets with clang and runs each for the given seconds
# (default 60), starting from the seed corpus in fuzz/corpus. New inputs stay in build/fuzz; a
# crash stops the run and leaves its input in build/fuzz/artifacts: add it to fuzz/corpus as a
# regression case once the reader is fixed.
#   scripts/fuzz.sh [seconds]
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/common.sh

seconds=${1:-60}
ensure_packages

cmake --preset fuzz >/dev/null
cmake --build --preset fuzz >/dev/null

# The targets hand each input to the readers as a file: keep those in memory where we can.
[ -d /dev/shm ] && [ -w /dev/shm ] && export TMPDIR=/dev/shm

mkdir -p build/fuzz/artifacts
for target in pgm_fuzz raw_fuzz record_fuzz preset_map_fuzz key_table_fuzz; do
    mkdir -p "build/fuzz/corpus/$target"
    if ! "build/fuzz/fuzz/$target" -max_total_time="$seconds" -print_final_stats=1 \
            -artifact_prefix="build/fuzz/artifacts/$target-" \
            "build/fuzz/corpus/$target" "fuzz/corpus/$target" >"build/fuzz/$target.log" 2>&1; then
        tail -n 40 "build/fuzz/$target.log" >&2
        echo "fuzz: $target failed; its input is in build/fuzz/artifacts" >&2
        exit 1
    fi
    runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "build/fuzz/$target.log")
    echo "fuzz: $target: $runs inputs in ${seconds} s, no failure"
done
