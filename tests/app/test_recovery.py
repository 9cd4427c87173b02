#!/usr/bin/python3
"""Ends the program without warning in the middle of its work and goes on with the next one.

usage: test_recovery.py PROGRAM SYNCED_WRITES

Every run of the program has a desktop of its own, in a process of its own: the accessibility bus
does not get over a program that is killed.
"""
import hashlib
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import time
import unittest

import desktop
from desktop import until
from end_to_end import make_clip

NOTICE = r"(\d+) frames? of an interrupted session w(?:as|ere) found"
FRAMES_ASKED_FOR = 9000  # more than there will be time for


class Stage:
    """One run of the program, in `folder`."""

    def __init__(self, folder):
        self.folder = pathlib.Path(folder)
        self.work = self.folder / "tmp" / "lumirra"
        self.clip = self.folder / "clip.mp4"

    def indices(self):
        return list(self.work.glob("run-*/session.json"))

    def kept(self):
        """The pictures of the one session, in order, as the disk has them."""
        [index] = self.indices()
        return [hashlib.md5((index.parent / frame["file"]).read_bytes()).hexdigest()
                for frame in json.loads(index.read_text())["frames"]]

    def frames(self):
        return int(self.app.text("labelFrameCount"))

    def killed_while_frames_come_in(self):
        """How many were safe a moment before."""
        app, desk = self.app, self.desk
        until(lambda: app.enabled("buttonAddFramesAutomatically"), "the clip")
        app.click("radioFixedNumberOfFrames")
        app.click("textFieldFixedNumberOfFrames")
        desk.key("ctrl+a")
        desk.type(str(FRAMES_ASKED_FOR))
        desk.key("Tab")
        until(lambda: app.text("labelAddFramesStatus").startswith(str(FRAMES_ASKED_FOR)), "a plan")
        app.click("buttonAddFramesAutomatically")
        until(lambda: len(self.kept()) > 40, "frames that are kept")
        shown = self.frames()
        until(lambda: len(self.kept()) >= shown, "those that are shown")
        kept = len(self.kept())
        time.sleep(0.5)
        app.process.kill()
        return kept

    def take_over(self):
        """How many frames the notice names, and what of them there was before and is after."""
        place, before = self.indices(), self.kept()
        notice = self.app.named("push button", "Restore")
        found = int(re.match(NOTICE, notice.description)[1])
        self.app.click(notice)
        until(lambda: self.frames() == found, "the frames")
        until(lambda: len(self.indices()) == 1 and self.indices() != place, "the new place")
        return found, before[:found], self.kept()

    def restored(self):
        answer = self.take_over()
        until(lambda: self.app.enabled("sliderVideoPosition"), "the video")
        self.app.process.terminate()  # in order, but by nobody who decided about the frames
        self.app.process.wait(desktop.WAIT_SECONDS)
        return answer

    def killed_while_the_gif_is_made(self):
        answer = self.take_over()
        self.app.click(self.app.named("page tab", "Output"))
        until(lambda: self.app.shown("textFieldFrameDelay"), "the page")
        self.app.click("buttonGeneratePreview")
        until(lambda: list(self.work.glob("run-*/tempGif.gif*")), "what is written of it")
        self.app.process.kill()
        return answer

    def play(self, name, **environment):
        with desktop.Desktop(self.folder) as self.desk:
            clip = [self.clip] if "frames_come_in" in name else []
            with desktop.Program(self.desk, [PROGRAM, *clip], **environment) as self.app:
                return getattr(self, name)()


def lose_power(folder, log):
    """What was not on the disk goes: names that their folder did not have yet, contents beyond
    what was written. How many files that were."""
    sizes, names, at = {}, {}, None
    for line in log.read_text().splitlines():
        kind, rest = line.split(" ", 1)
        if kind == "F":
            inode, size = rest.split()
            sizes[int(inode)] = int(size)
        elif kind == "D":
            at = names[rest] = {}
        else:
            inode, name = rest.split(" ", 1)
            at[name] = int(inode)
    lost = 0
    for path in folder.rglob("*"):
        inode = path.stat().st_ino
        if not path.is_file():
            continue
        if names.get(str(path.parent), {}).get(path.name) != inode:
            lost += 1
            path.unlink()
        elif path.stat().st_size > sizes.get(inode, 0):
            lost += 1
            with path.open("r+b") as file:
                file.truncate(sizes.get(inode, 0))
    return lost


class Recovery(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder, ignore_errors=True)
        make_clip(self.folder / "clip.mp4")

    def run_stage(self, name, **environment):
        played = subprocess.run(
            [sys.executable, __file__, name, self.folder, PROGRAM],
            env={**os.environ, **environment}, stdout=subprocess.PIPE, text=True, timeout=300)
        self.assertEqual(played.returncode, 0, name)
        return json.loads(played.stdout.splitlines()[-1])

    def taken_over(self, stage, least):
        found, before, after = self.run_stage(stage)
        self.assertTrue(least <= found <= FRAMES_ASKED_FOR, (least, found))
        self.assertEqual(after, before)
        return after

    def test_killed_while_frames_come_in_and_while_the_gif_is_made(self):
        kept = self.run_stage("killed_while_frames_come_in")
        first = self.taken_over("restored", kept)
        for stage in ("killed_while_the_gif_is_made", "restored"):
            self.assertEqual(self.taken_over(stage, len(first)), first, stage)

    def test_power_is_lost(self):
        log = self.folder / "synced"
        kept = self.run_stage("killed_while_frames_come_in", SYNC_LOG=str(log),
                              PROGRAM_PRELOAD=SYNCED_WRITES)
        lost = lose_power(self.folder / "tmp" / "lumirra", log)
        self.assertGreater(lost, 0, "nothing was on its way")
        self.taken_over("restored", kept)


if __name__ == "__main__":
    if len(sys.argv) == 4:  # a stage
        desktop.in_private_session()
        PROGRAM = pathlib.Path(sys.argv[3])
        preload = os.environ.get("PROGRAM_PRELOAD")
        more = {"LD_PRELOAD": preload} if preload else {}
        print(json.dumps(Stage(sys.argv[2]).play(sys.argv[1], **more)))
    else:
        PROGRAM, SYNCED_WRITES = [str(pathlib.Path(path).resolve()) for path in sys.argv[1:]]
        unittest.main(argv=sys.argv[:1], verbosity=2)
