#!/usr/bin/python3
"""What numpy does with the same UInt16 frame as lookup_variants_bench: a plain cast into a float32
frame (np.copyto, casting='unsafe') and a table look-up (np.take into a preallocated output).
Prints, per frame size, the best of REPETITIONS timings in megapixels per second, as
<name>/<frame> <MP/s>, for summarize_variants.py. Run it beside the benchmark, interleaved."""
import sys
import time

import numpy as np

FRAMES = [(640, 512), (4096, 3072)]


def scene(width, height):
    noise = np.empty(width * height, dtype=np.uint32)
    value = 12345
    # The benchmark's generator, vectorised where it can be: the same counts, row by row.
    for k in range(width * height):
        value = (value * 1664525 + 1013904223) & 0xFFFFFFFF
        noise[k] = value >> 24
    y, x = np.divmod(np.arange(width * height, dtype=np.uint32), width)
    return (8000 + (x * 8000) // width + (y * 4000) // height + noise).astype(np.uint16)


def best(run, seconds=0.5, repetitions=5):
    rates = []
    for _ in range(repetitions):
        count, start = 0, time.perf_counter()
        while time.perf_counter() - start < seconds:
            run()
            count += 1
        rates.append(count / (time.perf_counter() - start))
    return max(rates)


def main():
    repetitions = int(sys.argv[1]) if len(sys.argv) > 1 else 5
    table = (-40.0 + np.arange(65536, dtype=np.float32) * np.float32(0.01)).astype(np.float32)
    for width, height in FRAMES:
        counts = scene(width, height) if width * height < 1 << 20 else np.resize(
            scene(640, 512), width * height)
        out = np.empty(width * height, dtype=np.float32)
        pixels = width * height / 1e6
        cast = best(lambda: np.copyto(out, counts, casting="unsafe"), repetitions=repetitions)
        take = best(lambda: np.take(table, counts, out=out), repetitions=repetitions)
        print(f"numpy-cast/{width}x{height} {cast * pixels:.1f}")
        print(f"numpy-take/{width}x{height} {take * pixels:.1f}")


if __name__ == "__main__":
    main()
