#!/usr/bin/env python3
"""Start to a painted window that answers, against an empty Qt window, run in turn.

usage: bench/start.py [RUNS]; on the display at hand, "offscreen" without one. Needs the bench build.
"""
import os
import pathlib
import statistics
import subprocess
import sys
import time

BENCH = pathlib.Path(os.environ.get("LUMIRRA_BUILD", pathlib.Path(__file__).parents[1] / "build/bench"))


def seconds(*command):
    start = time.perf_counter()
    subprocess.run([str(word) for word in command], check=True)
    return time.perf_counter() - start


def main():
    if "DISPLAY" not in os.environ and "WAYLAND_DISPLAY" not in os.environ:
        os.environ.setdefault("QT_QPA_PLATFORM", "offscreen")
    ours, empty = (BENCH / "bench/bench_window", "start"), (BENCH / "bench/bench_empty_window",)
    pairs = [(seconds(*ours), seconds(*empty)) for _ in range(int((sys.argv + [11])[1]) + 1)][1:]
    ratio = statistics.median(a / b for a, b in pairs)
    print(f"start {min(a for a, _ in pairs) * 1000:.0f} ms, empty window "
          f"{min(b for _, b in pairs) * 1000:.0f} ms (minima); ratio {ratio:.2f} (median)")


if __name__ == "__main__":
    main()
