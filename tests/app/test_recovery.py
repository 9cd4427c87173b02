#!/usr/bin/python3
"""Ends the program without warning in the middle of its work and goes on with the next one.

usage: test_recovery.py PROGRAM SYNCED_WRITES
"""
import hashlib
import json
import pathlib
import re
import shutil
import sys
import tempfile
import time
import unittest

import desktop
from desktop import until
from end_to_end import make_clip

NOTICE = r"(\d+) frames? of an interrupted session w(?:as|ere) found"


def lose_power(folder, log):
    """What was not on the disk goes: names that their folder did not have yet, contents beyond
    what was written."""
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
        if names.get(str(path.parent), {}).get(path.name) != inode:
            lost += path.is_file()
            path.unlink() if path.is_file() else None
        elif path.is_file() and path.stat().st_size > sizes.get(inode, 0):
            lost += 1
            with path.open("r+b") as file:
                file.truncate(sizes.get(inode, 0))
    return lost


class Recovery(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.desk = cls.enterClassContext(desktop.Desktop(pathlib.Path(folder.name)))
        cls.work = cls.desk.folder / "tmp" / "lumirra"
        cls.clip = cls.desk.folder / "home" / "clip.mp4"
        make_clip(cls.clip)

    def setUp(self):
        shutil.rmtree(self.work, ignore_errors=True)

    def frames(self, app):
        return int(app.text("labelFrameCount"))

    def extract(self, app, count):
        until(lambda: app.enabled("buttonAddFramesAutomatically"), "the clip")
        app.click("radioFixedNumberOfFrames")
        app.click("textFieldFixedNumberOfFrames")
        self.desk.key("ctrl+a")
        self.desk.type(str(count))
        self.desk.key("Tab")
        until(lambda: app.text("labelAddFramesStatus") == f"{count} frames will be added", "a plan")
        app.click("buttonAddFramesAutomatically")

    def kept(self):
        """The pictures of the one session, in order, as the disk has them."""
        [index] = self.work.glob("run-*/session.json")
        return [hashlib.md5((index.parent / frame["file"]).read_bytes()).digest()
                for frame in json.loads(index.read_text())["frames"]]

    def killed_in_a_run(self, app):
        """How many frames were safe a moment before."""
        until(lambda: len(self.kept()) > 40, "frames that are kept")
        shown = self.frames(app)
        until(lambda: len(self.kept()) >= shown, "those that are shown")
        kept = len(self.kept())
        time.sleep(0.5)
        app.process.kill()
        app.process.wait()
        return kept

    def restored(self, least, most):
        """Starts again, answers the notice and gives the pictures that are back."""
        with desktop.Program(self.desk, [PROGRAM]) as app:
            notice = app.named("push button", "Restore")
            found = int(re.match(NOTICE, notice.description)[1])
            self.assertTrue(least <= found <= most, (least, found, most))
            before = self.kept()[:found]
            app.click(notice)
            until(lambda: self.frames(app) == found, "the frames")
            until(lambda: len(list(self.work.glob("run-*/session.json"))) == 1,
                  "the old place to go")
            self.assertEqual(self.kept(), before)
            until(lambda: app.enabled("sliderVideoPosition"), "the video")
            self.desk.key("alt+F4")
            app.named("push button", "Yes")  # the number of frames was changed and is not saved
            self.desk.key("Return")
            self.assertEqual(app.process.wait(desktop.WAIT_SECONDS), 0)
        return before

    def test_killed_while_frames_come_in_and_while_the_gif_is_made(self):
        with desktop.Program(self.desk, [PROGRAM, self.clip]) as app:
            self.extract(app, 9000)
            kept = self.killed_in_a_run(app)
        first = self.restored(kept, 9000)

        with desktop.Program(self.desk, [PROGRAM]) as app:
            def reopened():  # it was closed in order since; nothing happens until it is found
                self.desk.key("ctrl+alt+o")
                return self.frames(app) == len(first)
            until(reopened, "the last session")
            until(lambda: len(list(self.work.glob("run-*/session.json"))) == 1,
                  "the old place to go")
            app.click(app.named("page tab", "Output"))
            until(lambda: app.shown("textFieldFrameDelay"), "the page")
            app.click("buttonGeneratePreview")
            until(lambda: not app.enabled("buttonAddFrame"), "the run")
            app.process.kill()
        self.assertEqual(self.restored(len(first), len(first)), first)

    def test_power_is_lost(self):
        log = self.desk.folder / "synced"
        with desktop.Program(self.desk, [PROGRAM, self.clip], SYNC_LOG=str(log),
                             LD_PRELOAD=SYNCED_WRITES) as app:
            self.extract(app, 9000)
            kept = self.killed_in_a_run(app)
        self.assertGreater(lose_power(self.work, log), 0, "nothing was on its way")
        self.restored(kept, 9000)


if __name__ == "__main__":
    desktop.in_private_session()
    SYNCED_WRITES = str(pathlib.Path(sys.argv.pop()).resolve())
    PROGRAM = pathlib.Path(sys.argv.pop()).resolve()
    unittest.main(verbosity=2)
