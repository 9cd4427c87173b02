#!/usr/bin/env python3
"""Paired whole-process figures: our programs against ffmpeg doing the comparable work.

usage: bench/paired.py [--runs N] [--media FOLDER] [extraction|gif|memory ...]

The two commands of a pair run in turn (A B A B ...), so that a machine whose speed drifts slows both;
the figure to quote is the median of the ratios. Needs the bench build (see bench/README.md).
"""
import argparse
import os
import pathlib
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parents[1]
BUILD = ROOT / "build" / "bench"
CLI = BUILD / "src" / "cli" / "lumirra-cli"
BENCH_GIF = BUILD / "bench" / "bench_gif"
EVERYTHING = [
    "sliderBrightness=0.05", "sliderContrast=1.1", "sliderSaturation=1.2", "sliderExposure=0.1",
    "sliderGamma=0.9", "sliderHue=10", "checkCartoon=1", "checkVignette=1",
    "textFieldText=A caption", "textFieldTextFontSize=48", "comboTextPosition=4",
]


def run(command):
    """Wall seconds and peak memory (MB) of one run; its output is thrown away."""
    start = time.perf_counter()
    process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                               stderr=subprocess.PIPE)
    error = process.stderr.read()
    _, status, usage = os.wait4(process.pid, 0)
    wall = time.perf_counter() - start
    if os.waitstatus_to_exitcode(status) != 0:
        sys.exit(f"{' '.join(map(str, command))}\n{error.decode(errors='replace')}")
    return wall, usage.ru_maxrss / 1024


def emptied(folder):
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    return folder


def pair(name, ours, theirs, runs, folder):
    walls, ratios, peaks = ([], []), [], []
    for number in range(runs + 1):
        emptied(folder)
        a, peak = run(ours)
        emptied(folder)
        b, _ = run(theirs)
        if number == 0:
            continue  # warms the file cache
        walls[0].append(a)
        walls[1].append(b)
        ratios.append(a / b)
        peaks.append(peak)
    print(f"{name:34} ours {statistics.median(walls[0]):6.2f} s  ffmpeg "
          f"{statistics.median(walls[1]):6.2f} s  ratio {statistics.median(ratios):.2f} "
          f"({min(ratios):.2f} to {max(ratios):.2f})  peak {max(peaks):.0f} MB", flush=True)
    return statistics.median(ratios)


def settings(values):
    return [word for value in values for word in ("--set", value)]


def extraction(media, runs, work):
    clip = media / "monster.mp4"
    frames = work / "frames"
    theirs = ["ffmpeg", "-v", "error", "-i", clip, "-vf", "fps=10", frames / "%04d.png"]
    for name, values in (("extraction, neutral", []), ("extraction, everything on", EVERYTHING)):
        ours = [CLI, "-q", clip, "--keep-frames", frames, *settings(values)]
        pair(name, ours, theirs, runs, frames)


def gif(media, runs, work):
    ratios = []
    for clip in ("monster", "rabbit320", "bottle-detection", "screencast"):
        source = emptied(work / clip)
        subprocess.run(["ffmpeg", "-v", "error", "-i", media / f"{clip}.mp4", "-t", "5", "-vf",
                        "fps=10", source / "%04d.png"], check=True)
        out = work / "gif"
        ours = [BENCH_GIF, out / "ours.gif", *sorted(source.iterdir())]
        theirs = ["ffmpeg", "-v", "error", "-framerate", "10", "-i", source / "%04d.png", "-vf",
                  "split[a][b];[a]palettegen[p];[b][p]paletteuse", out / "theirs.gif"]
        ratios.append(pair(f"gif, {clip}", ours, theirs, runs, out))
    print(f"gif, geometric mean of the ratios {statistics.geometric_mean(ratios):.2f}")


def memory(media, runs, work):
    del runs
    peaks = {}
    for count in (60, 600):
        frames = emptied(work / f"frames{count}")
        command = [CLI, "-q", media / "monster.mp4", "--keep-frames", frames, *settings(
            [f"textFieldFixedNumberOfFrames={count}", "radioFixedNumberOfFrames=1"])]
        peaks[count] = run(command)[1]
        made = len(list(frames.glob("*.png")))
        assert made == count, f"{made} frames"
    print(f"extraction, peak memory            60 frames {peaks[60]:.0f} MB  600 frames "
          f"{peaks[600]:.0f} MB  ratio {peaks[600] / peaks[60]:.3f}")


def main():
    groups = {"extraction": extraction, "gif": gif, "memory": memory}
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("group", nargs="*", choices=[[], *groups], help="all without one")
    parser.add_argument("--runs", type=int, default=5)
    parser.add_argument("--media", type=pathlib.Path, default=ROOT.parent / "shared" / "media")
    options = parser.parse_args()
    with tempfile.TemporaryDirectory() as work:
        for name in options.group or groups:
            groups[name](options.media, options.runs, pathlib.Path(work))


if __name__ == "__main__":
    main()
