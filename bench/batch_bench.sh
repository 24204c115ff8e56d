#!/usr/bin/env bash
# Times ostrel-convert on a batch of 640x512 frames under Wine, with --jobs 1 and --jobs 2, against
# the simulator serving in the build tree's bench prefix. The time per frame is the batch's wall
# time less that of a one-frame run (start-up and connection). Frames and results live in a
# RAM-backed folder where there is one.
#   bench/batch_bench.sh [frames] [repetitions]
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/common.sh
build=${OSTREL_BUILD_DIR:-build/mingw}
frames=${1:-256}
repetitions=${2:-3}

serve_simulator "$build" bench ostrel-convert
run() { OSTREL_WINE_PREFIX=bench "$build/wine-run" "$@"; }

root=/dev/shm
[ -d "$root" ] && [ -w "$root" ] || root=${TMPDIR:-/tmp}
work=$(mktemp -d "$root/ostrel-batch.XXXXXX")
trap 'rm -rf "$work"; stop_wine_servers' EXIT
mkdir "$work/one" "$work/batch"
run "$build/bin/camsim.exe" /Scene "$work/scene.pgm" "$work/truth.pfm" --width 640 --height 512
cp "$work/scene.pgm" "$work/one/f0000.pgm"
for i in $(seq 1 "$frames"); do cp "$work/scene.pgm" "$work/batch/f$(printf %04d "$i").pgm"; done

# Best wall time of the repetitions, in seconds.
best() {
    local best=
    for _ in $(seq "$repetitions"); do
        rm -rf "$work/out" && mkdir "$work/out"
        local start end
        start=$(date +%s.%N)
        run "$build/bin/ostrel-convert.exe" "$@" --pfm --out "$work/out" >/dev/null
        end=$(date +%s.%N)
        best=$(awk -v s="$start" -v e="$end" -v b="$best" \
            'BEGIN { t = e - s; print (b == "" || t < b) ? t : b }')
    done
    echo "$best"
}

single=$(best "$work/one" --jobs 1)
echo "one frame: $single s"
for jobs in 1 2; do
    total=$(best "$work/batch" --jobs "$jobs")
    per=$(awk -v t="$total" -v s="$single" -v n="$frames" 'BEGIN { print (t - s) * 1000 / n }')
    printf 'jobs %d: %d frames in %.2f s, %.2f ms per frame\n' "$jobs" "$frames" "$total" "$per"
done
