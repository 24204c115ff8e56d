#!/usr/bin/env python3
"""A Markdown table from ostrel_lookup_bench's JSON output (and, if given, numpy_baseline.py's
lines): the best rate of each variant in MP/s per frame, as a ratio to the fastest streaming loop
of the same run, and to numpy's take.

usage: summarize_variants.py BENCH.json [NUMPY.txt]"""
import json
import sys

from summarize import FRAMES, best_rates


def main():
    if len(sys.argv) not in (2, 3):
        sys.exit(__doc__)
    rate = best_rates(json.load(open(sys.argv[1])))
    if len(sys.argv) == 3:
        for line in open(sys.argv[2]):
            name, value = line.split()
            rate[name] = float(value)
    variants = sorted({name.rsplit("/", 1)[0] for name in rate}, key=lambda v: (
        ["Stream", "numpy", "Lookup", "Status", "Kernel"].index(v.split("-")[0]), v))
    stream = {f: max(v for n, v in rate.items() if n.startswith("Stream") and n.endswith(f))
              for f in FRAMES}
    header, rule = "| variant |", "|---|"
    for frame in FRAMES:
        header += f" MP/s {frame} | /stream | /numpy take |"
        rule += "---:|---:|---:|"
    print(header)
    print(rule)
    for variant in variants:
        row = f"| {variant} |"
        for frame in FRAMES:
            value = rate.get(f"{variant}/{frame}")
            take = rate.get(f"numpy-take/{frame}")
            if value is None:
                row += " - | - | - |"
                continue
            row += f" {value:.0f} | {value / stream[frame]:.2f} |"
            row += f" {value / take:.1f} |" if take else " - |"
        print(row)
    print(f"\nstream = the fastest Stream loop of the run: "
          + ", ".join(f"{stream[f]:.0f} MP/s at {f}" for f in FRAMES))


if __name__ == "__main__":
    main()
