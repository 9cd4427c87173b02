#!/usr/bin/env python3
"""Start to a painted window that answers, against an empty Qt window, run in turn.

usage: bench/start.py [RUNS]; on the display at hand, on one of its own (Xvfb) without one, and off-screen,
where an empty window costs next to nothing. Needs the bench build.
"""
import contextlib
import os
import pathlib
import statistics
import subprocess
import sys
import time

BENCH = pathlib.Path(os.environ.get("LUMIRRA_BUILD", pathlib.Path(__file__).parents[1] / "build/bench"))


def seconds(*command):
    start = time.perf_counter()
    subprocess.run([str(word) for word in command], check=True, stdout=subprocess.DEVNULL,
                   stderr=subprocess.DEVNULL)
    return time.perf_counter() - start


@contextlib.contextmanager
def display():
    """The one at hand, or a new one."""
    if "DISPLAY" in os.environ or "WAYLAND_DISPLAY" in os.environ:
        yield
        return
    read, write = os.pipe()
    server = subprocess.Popen(["Xvfb", "-displayfd", str(write), "-screen", "0", "1400x900x24"],
                              pass_fds=(write,), stderr=subprocess.DEVNULL)
    os.close(write)
    with os.fdopen(read) as answer:
        os.environ["DISPLAY"] = ":" + answer.readline().strip()
    try:
        yield
    finally:
        server.terminate()
        server.wait()


def compare(where, runs):
    ours, empty = (BENCH / "bench/bench_window", "start"), (BENCH / "bench/bench_empty_window",)
    pairs = [(seconds(*ours), seconds(*empty)) for _ in range(runs + 1)][1:]
    ratio = statistics.median(a / b for a, b in pairs)
    print(f"{where}: start {min(a for a, _ in pairs) * 1000:.0f} ms, empty window "
          f"{min(b for _, b in pairs) * 1000:.0f} ms (minima); ratio {ratio:.2f} (median)")


def main():
    runs = int((sys.argv + [11])[1])
    with display():
        compare("on a display", runs)
    os.environ["QT_QPA_PLATFORM"] = "offscreen"
    compare("off-screen", runs)


if __name__ == "__main__":
    main()
