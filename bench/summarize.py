#!/usr/bin/env python3
"""Markdown tables from ostrel_bench JSON output, one set per kernel path: best rate of all
repetitions, in MP/s, beside the baselines of the same run, and the speed targets' ratios. The
chosen path is the one the run reports, or the second argument."""
import json
import sys

TYPES = ["Int8", "UInt8", "Int16", "UInt16", "Int32", "UInt32", "Int64", "UInt64", "Float", "Double"]
FRAMES = ["640x512", "4096x3072"]
PATHS = ["sse2", "avx2", "avx2-gather", "avx512", "avx512-gather"]


def best_rates(data):
    best = {}
    for run in data["benchmarks"]:
        if run.get("run_type") != "iteration" or "items_per_second" not in run:
            continue
        name = run["run_name"].removesuffix("/real_time")
        best[name] = max(best.get(name, 0.0), run["items_per_second"] / 1e6)
    return best


def pair_table(rate, path):
    print(f"#### {path}: same unit, no status (MP/s; K = kernel, S = streaming loop, L = scalar look-up)\n")
    header, rule = "| In | Out |", "|---|---|"
    for frame in FRAMES:
        header += f" K {frame} | S | L | K/S | K/L |"
        rule += "---:|---:|---:|---:|---:|"
    print(header)
    print(rule)
    worst = (9.0, "")
    for src in TYPES:
        for dst in TYPES:
            row = f"| {src} | {dst} |"
            for frame in FRAMES:
                k = rate[f"Kernel-{path}/{src}/{dst}/{frame}"]
                s, l = (rate[f"{what}/{src}/{dst}/{frame}"] for what in ("Stream", "Lookup"))
                row += f" {k:.0f} | {s:.0f} | {l:.0f} | {k / s:.2f} | {k / l:.2f} |"
                if frame == FRAMES[-1]:
                    worst = min(worst, (k / s, f"{src}->{dst}"))
            print(row)
    print(f"\nLowest kernel/stream ratio at {FRAMES[-1]}: {worst[0]:.2f} ({worst[1]})\n")


def variant_table(rate, path):
    print(f"#### {path}: unit conversion and status (MP/s; against the same pair, same unit, no status)\n")
    print("| Kernel | Frame | MP/s | same unit | /same unit | /stream |")
    print("|---|---|---:|---:|---:|---:|")
    for name, value in sorted(rate.items()):
        parts = name.split("/")
        if parts[0] != f"Kernel-{path}" or len(parts) != 5:
            continue
        src, dst, variant, frame = parts[1:]
        same = rate[f"Kernel-{path}/{src}/{dst}/{frame}"]
        stream = rate[f"Stream/{src}/{dst}/{frame}"]
        print(f"| {src}->{dst} {variant} | {frame} | {value:.0f} | {same:.0f} | {value / same:.2f} | {value / stream:.2f} |")
    print()


def converted_table(rate, paths):
    print("#### Tables converted ahead: narrow integer inputs to integer outputs (MP/s; C = look-up in "
          "a table of the output type, K = the faster path's kernel)\n")
    header, rule = "| In | Out |", "|---|---|"
    for frame in FRAMES:
        header += f" K {frame} | C | C/K |"
        rule += "---:|---:|---:|"
    print(header)
    print(rule)
    for src in TYPES:
        for dst in TYPES:
            if f"Converted/{src}/{dst}/{FRAMES[0]}" not in rate:
                continue
            row = f"| {src} | {dst} |"
            for frame in FRAMES:
                k = max(rate[f"Kernel-{path}/{src}/{dst}/{frame}"] for path in paths)
                c = rate[f"Converted/{src}/{dst}/{frame}"]
                row += f" {k:.0f} | {c:.0f} | {c / k:.2f} |"
            print(row)
    print()


def targets_table(rate, paths):
    print("| path | " + " | ".join(f"{what} {frame}" for what in
          ("UInt16->Float K/S", "K/fastest path", "with status / without", "toF time / same-unit time")
          for frame in FRAMES) + " |")
    print("|---|" + "---:|" * 4 * len(FRAMES))
    for path in paths:
        cells = []
        for measure in ("stream", "fastest", "status", "toF"):
            for frame in FRAMES:
                k = rate[f"Kernel-{path}/UInt16/Float/{frame}"]
                if measure == "stream":
                    value = k / rate[f"Stream/UInt16/Float/{frame}"]
                elif measure == "fastest":
                    value = k / max(rate[f"Kernel-{p}/UInt16/Float/{frame}"] for p in paths)
                elif measure == "status":
                    value = rate[f"Kernel-{path}/UInt16/Float/status/{frame}"] / k
                else:
                    value = k / rate[f"Kernel-{path}/UInt16/Float/toF/{frame}"]
                cells.append(f"{value:.2f}")
        print(f"| {path} | " + " | ".join(cells) + " |")
    print("\n(targets: K/fastest at least 0.95, status at least 0.8, toF at most 1.2)\n")


def lowest_pairs_table(rate, paths, chosen):
    print(f"#### The five pairs of lowest kernel/stream ratio for {chosen}, against the fastest path "
          "of each pair\n")
    print("| Frame | In | Out | K/S | MP/s | fastest path | its MP/s | K/fastest |")
    print("|---|---|---|---:|---:|---|---:|---:|")
    for frame in FRAMES:
        pairs = sorted((rate[f"Kernel-{chosen}/{a}/{b}/{frame}"] / rate[f"Stream/{a}/{b}/{frame}"], a, b)
                       for a in TYPES for b in TYPES)
        for ratio, a, b in pairs[:5]:
            k = rate[f"Kernel-{chosen}/{a}/{b}/{frame}"]
            best, top = max((rate[f"Kernel-{p}/{a}/{b}/{frame}"], p) for p in paths)
            print(f"| {frame} | {a} | {b} | {ratio:.2f} | {k:.0f} | {top} | {best:.0f} | {k / best:.2f} |")
    print()


def main(json_path, chosen=None):
    data = json.load(open(json_path))
    chosen = chosen or data["context"].get("chosen kernel variant")
    if chosen is None:
        sys.exit("the run does not say which path the library chose: name it after the JSON file")
    rate = best_rates(data)
    paths = [p for p in PATHS if f"Kernel-{p}/UInt16/Float/{FRAMES[0]}" in rate]
    print(f"Chosen path: {chosen}\n")
    targets_table(rate, paths)
    lowest_pairs_table(rate, paths, chosen)
    converted_table(rate, paths)
    for path in paths:
        pair_table(rate, path)
        variant_table(rate, path)


if __name__ == "__main__":
    main(*sys.argv[1:3])
