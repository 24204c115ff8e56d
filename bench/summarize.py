#!/usr/bin/env python3
"""Markdown tables from ostrel_bench JSON output: best rate of all repetitions, in MP/s."""
import json
import sys

TYPES = ["Int8", "UInt8", "Int16", "UInt16", "Int32", "UInt32", "Int64", "UInt64", "Float", "Double"]
FRAMES = ["640x512", "4096x3072"]


def best_rates(path):
    best = {}
    for run in json.load(open(path))["benchmarks"]:
        if run.get("run_type") != "iteration" or "items_per_second" not in run:
            continue
        name = run["run_name"].removesuffix("/real_time")
        best[name] = max(best.get(name, 0.0), run["items_per_second"] / 1e6)
    return best


def main(path):
    rate = best_rates(path)
    print("Same unit, no status (MP/s; K = kernel, S = streaming loop, L = scalar look-up):\n")
    header = "| In | Out |"
    rule = "|---|---|"
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
                k, s, l = (rate[f"{what}/{src}/{dst}/{frame}"] for what in ("Kernel", "Stream", "Lookup"))
                row += f" {k:.0f} | {s:.0f} | {l:.0f} | {k / s:.2f} | {k / l:.2f} |"
                if frame == FRAMES[-1]:
                    worst = min(worst, (k / s, f"{src}->{dst}"))
            print(row)
    print(f"\nLowest kernel/stream ratio at {FRAMES[-1]}: {worst[0]:.2f} ({worst[1]})\n")

    print("Unit conversion and status (MP/s; ratios against the same pair, same unit, no status):\n")
    print("| Kernel | Frame | MP/s | same unit | /same unit | /stream |")
    print("|---|---|---:|---:|---:|---:|")
    for name, value in sorted(rate.items()):
        parts = name.split("/")
        if parts[0] != "Kernel" or len(parts) != 5:
            continue
        src, dst, variant, frame = parts[1:]
        same = rate[f"Kernel/{src}/{dst}/{frame}"]
        stream = rate[f"Stream/{src}/{dst}/{frame}"]
        print(f"| {src}->{dst} {variant} | {frame} | {value:.0f} | {same:.0f} | {value / same:.2f} | {value / stream:.2f} |")


if __name__ == "__main__":
    main(sys.argv[1])
