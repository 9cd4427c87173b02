"""What lumirra-cli says: help, mistakes, facts of a file.

usage: test_usage.py LUMIRRA_CLI [unittest options]
"""
import json
import os
import pathlib
import re
import shutil
import unittest

from support import CliTest

CHANGELOG = pathlib.Path(__file__).resolve().parents[2] / "CHANGELOG.md"


class Usage(CliTest):
    def test_asking(self):
        self.assertIn("lumirra-cli", self.succeed("--help").stdout)
        version = self.succeed("--version").stdout
        [newest] = re.findall(r"^## (\S+) \(", CHANGELOG.read_text(), re.M)[:1]
        self.assertEqual(version.splitlines()[0], f"lumirra-cli {newest}")
        for library in "Qt", "fontconfig", "libavcodec":
            self.assertRegex(version, rf"(?m)^{library} \d+\.\d+\.\d+$")
        settings = self.succeed("--list-settings").stdout
        self.assertIn("sliderBrightness", settings)
        self.assertIn('12="Marker Felt"', settings)

    def test_mistakes_are_named(self):
        red, clip = self.clips / "red.png", self.clip
        gif = ["-o", "out.gif"]
        for arguments, saying in (
            ([], "nothing to do"), (gif, "no source"), ([clip], "-o FILE"),
            ([clip, clip, *gif], "one video"), ([clip, red, *gif], "mixed"),
            ([clip, *gif, "--frobnicate"], "frobnicate"), ([clip, "-o"], "'-o'"),
            ([clip, "-o", ""], "output"), ([clip, *gif, "-o", "b.gif"], "more than once"),
            ([clip, *gif, "--start", "0.5", "--end", "0.5"], "--start"),
            ([clip, *gif, "--start", "nan"], "--start"), ([clip, *gif, "--end", "1.5"], "--end"),
            ([red, *gif, "--start", "0.5"], "need a video"),
            ([clip, *gif, "--fit", "stretch"], "stretch"),
            ([clip, *gif, "--threads", "0"], "--threads"),
            ([clip, *gif, "--threads=-1"], "--threads"),
            ([clip, *gif, "--threads", "99999999999999999999"], "--threads"),
            ([clip, *gif, "--json"], "--info"),
            ([clip, *gif, "--quality", "0"], "--quality"),
            ([clip, *gif, "--quality", "101"], "--quality"),
            ([clip, *gif, "--quality", "best"], "best"),
            ([clip, *gif, "--max-size", "0"], "--max-size"),
            ([clip, *gif, "--max-size", "8X"], "8X"), ([clip, *gif, "--max-size", "999"], "999"),
            ([clip, *gif, "--max-size", "nan"], "--max-size"),
            ([clip, *gif, "--max-size=-1M"], "--max-size"),
            ([clip, *gif, "--loop", "0"], "--loop"),
            ([clip, *gif, "--loop", "10001"], "--loop"),
            ([clip, *gif, "--loop", "always"], "always"),
            ([clip, *gif, "--bounce", "--find-loop"], "no sense"),
            ([clip, *gif, "--bounce", "--crossfade", "2"], "no sense"),
            ([clip, *gif, "--speed", "0"], "--speed"), ([clip, *gif, "--every", "0"], "--every"),
            ([clip, *gif, "--min-loop", "1"], "--find-loop"),
            ([clip, "--keep-frames", "d", "--reverse"], "need a GIF"),
            ([clip, "--estimate", "--keep-frames", "d"], "--keep-frames"),
            (["--estimate"], "no source"),
            ([clip, *gif, "--set", "sliderBrightness"], "sliderBrightness"),
            ([clip, *gif, "--set", "sliderBrightness=2"], "sliderBrightness"),
            ([clip, *gif, "--set", "noSuchThing=2"], "noSuchThing"),
            ([clip, *gif, "--set", "textFieldFixedNumberOfFrames=many"],
             "textFieldFixedNumberOfFrames"),
            ([clip, *gif, "--set", "comboTextPosition=Nowhere"], "comboTextPosition"),
            ([clip, *gif, "--set", "colorWellTextColor=red"], "colorWellTextColor"),
            ([clip, *gif, "--set", "textFieldDimensionsWidth=0"], "textFieldDimensionsWidth"),
        ):
            with self.subTest(arguments=arguments):
                self.refuse(2, *arguments, saying=saying)
        self.assertEqual(list(self.work.iterdir()), [])

    def test_what_cannot_be_done_is_told_before_any_work(self):
        pipe = self.work / "pipe"
        os.mkfifo(pipe)
        copy = self.work / "copy.mp4"
        shutil.copy(self.clip, copy)
        (self.work / "link.gif").symlink_to(copy)
        for arguments, saying in (
            (["missing.mp4", "-o", "out.gif"], "missing.mp4"),
            (["missing.png", "-o", "out.gif"], "missing.png"),
            ([self.work, "-o", "out.gif"], "folder"),
            ([pipe, "-o", "out.gif"], "pipe"),
            ([self.clip, "-o", "no/such/out.gif"], "no/such/out.gif"),
            ([self.clip, "-o", "/dev/null"], "/dev/null"),
            ([self.clip, "-o", self.work], "not an ordinary file"),
            ([copy, "-o", copy], "is a source"),
            ([copy, "-o", "link.gif"], "is a source"),
            ([copy, "-o", "out.gif", "--write-profile", copy], "is a source"),
            ([copy, "-o", "x", "--write-profile", "x"], "both"),
            ([self.clip, "-o", "out.gif", "-p", "missing.lmr"], "Could not load profile."),
            ([self.clip, "-o", "out.gif", "-p", copy], "Could not load profile."),
            ([self.clip, "--keep-frames", copy], "not a folder"),
            ([self.clip, "--keep-frames", "no/such"], "no/such"),
            ([self.clip, "-o", "out.gif", "--set", "textFieldFixedIntervalBetweenFrames=1e-30"],
             "frames"),
            ([self.clip, "-o", "out.gif", "--set", "textFieldResizeTo=0"], "no area"),
            ([self.clip, "-o", "out.gif", "--set", "textFieldCustomCropWidth=0"], "no area"),
        ):
            with self.subTest(arguments=arguments):
                self.refuse(1, *arguments, saying=saying)
        self.assertEqual(sorted(p.name for p in self.work.iterdir()),
                         ["copy.mp4", "link.gif", "pipe"])
        self.assertEqual(copy.read_bytes(), self.clip.read_bytes())


class Info(CliTest):
    def test_video(self):
        text = self.succeed("--info", self.clip).stdout
        self.assertRegex(text, r"Size: +160x120\n")
        facts = json.loads(self.succeed("--info", self.clip, "--json").stdout)
        self.assertEqual((facts["width"], facts["height"]), (160, 120))
        self.assertAlmostEqual(facts["durationSeconds"], 2, delta=0.01)
        self.assertAlmostEqual(facts["framesPerSecond"], 10, delta=0.01)

    def test_picture_and_failures(self):
        facts = json.loads(self.succeed("--info", self.clips / "green.png", "--json").stdout)
        self.assertEqual((facts["kind"], facts["width"], facts["height"]), ("picture", 48, 64))
        self.refuse(1, "--info", "missing.mp4", saying="missing.mp4")
        self.refuse(1, "--info", self.work, saying="folder")


if __name__ == "__main__":
    unittest.main()
