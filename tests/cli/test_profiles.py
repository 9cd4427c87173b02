"""Profiles written and read.

usage: test_profiles.py LUMIRRA_CLI [unittest options]
"""
import json
import unittest

from support import CliTest, ffmpeg, gif_size

FRESH = (
    "0|20|20.0|1|0.1|1.0|0|0.0|1.0|1.0|0.0|1.0|0.0|0|0|0|2.0|0.2|10.0|0|0.8|1.0|0|0.0||1.0|1.0|1.0|"
    "12|80|80.0|70|70.0|0|0|0.0|0|0.0|0|0|0|0|1|0|0|0.0|0|0.0|100|100.0|100|100.0|100|100.0|0|0|"
    "0.1|1.0|0|0.0|0|32.0|"
).replace("|", "\n").encode()


class Profiles(CliTest):
    def test_a_fresh_profile_byte_for_byte(self):
        self.succeed("--write-profile", "fresh.lmr")
        self.assertEqual((self.work / "fresh.lmr").read_bytes(), FRESH)

    def test_a_profile_does_what_its_settings_did(self):
        words = [word for setting in (
            "sliderHue=40", "checkSketch=1", "textFieldText=Grüße", "textFieldTextFontSize=20",
            "colorWellTextColor=#3366cc", "radioAutoCropTo=1", "comboAspectRatio=4:3",
            "textFieldResizeTo=50", "textFieldFrameDelay=0.25", "textFieldLoopCount=3",
            "stepperFixedIntervalBetweenFrames=4") for word in ("--set", setting)]
        self.succeed(self.clip, "-o", self.out, *words, "--write-profile", "p.lmr")
        again = self.work / "again.gif"
        self.succeed(self.clip, "-o", again, "-p", "p.lmr")
        self.assertEqual(self.out.read_bytes(), again.read_bytes())
        lines = (self.work / "p.lmr").read_text().split("\n")
        self.assertEqual((lines[24], lines[54], lines[55], lines[59]), ("Grüße", "80", "60", "3.0"))

    def test_the_tail_carries_quality_limit_and_repeating(self):
        self.succeed("--quality", 40, "--max-size", "256K", "--loop", "forever", "--write-profile",
                     "p.lmr")
        stored = (self.work / "p.lmr").read_bytes()
        self.assertTrue(stored.startswith(FRESH))
        self.assertEqual(json.loads(stored[len(FRESH):]),
                         {"lumirra": 1, "sliderQuality": 40, "checkMaxSize": True,
                          "fieldMaxSize": 0.256, "checkRepeatForever": True})
        again = self.work / "again.gif"
        self.succeed(self.clip, "-o", self.out, "--quality", 40, "--loop", "forever")
        self.succeed(self.clip, "-o", again, "-p", "p.lmr")
        self.assertEqual(self.out.read_bytes(), again.read_bytes())
        self.succeed(self.clip, "-o", again, "-p", "p.lmr", "--quality", 90, "--loop", "once",
                     "--set", "checkMaxSize=0", "--set", "sliderQuality=5")
        self.succeed(self.clip, "-o", self.out)
        self.assertEqual(self.out.read_bytes(), again.read_bytes(), "options win")

        later = FRESH + b'{"lumirra":2,"speed":[1,2]}'
        (self.work / "p.lmr").write_bytes(later)
        self.succeed("-p", "p.lmr", "--quality", 40, "--write-profile", "q.lmr")
        self.assertEqual(json.loads((self.work / "q.lmr").read_bytes()[len(FRESH):]),
                         {"lumirra": 1, "speed": [1, 2], "sliderQuality": 40})

    def test_a_size_that_was_set_is_the_profiles_too(self):
        tiny = self.clips / "tiny.mp4"
        ffmpeg("-i", self.clip, "-vf", "scale=32:24", "-frames:v", "3", tiny)
        for name, value in (("Width", 512), ("Height", 77)):
            self.succeed(tiny, "-o", self.out, "--set", f"textFieldDimensions{name}={value}",
                         "--write-profile", "p.lmr")
            again = self.work / "again.gif"
            self.succeed(tiny, "-o", again, "-p", "p.lmr")
            self.assertEqual(self.out.read_bytes(), again.read_bytes())
        self.succeed(self.clips / "red.png", "-o", self.out, "--set",
                     "textFieldDimensionsWidth=960")
        self.assertEqual(gif_size(self.out), (960, 720))
        self.refuse(1, tiny, "--set", "textFieldDimensionsWidth=512", "--set",
                    "textFieldDimensionsHeight=512", "--write-profile", "q.lmr",
                    saying="512x512 cannot be made, 512x384 could")
        self.refuse(2, "--set", "textFieldDimensionsWidth=512", "--write-profile", "q.lmr",
                    saying="needs a source")
        self.assertFalse((self.work / "q.lmr").exists())

    def test_stored_dimensions_do_not_count(self):
        lines = FRESH.decode().split("\n")
        lines[54], lines[55] = "77", "33"
        (self.work / "p.lmr").write_text("\n".join(lines))
        self.succeed(self.clip, "-o", self.out, "-p", "p.lmr")
        self.assertEqual(gif_size(self.out), (160, 120))

    def test_a_damaged_profile_is_refused(self):
        for damage in (FRESH + b"\n", FRESH[:-1], FRESH.replace(b"\n", b"\r\n"), b"\xff" + FRESH,
                       FRESH.replace(b"32.0", b"x"), b""):
            (self.work / "p.lmr").write_bytes(damage)
            self.refuse(1, self.clip, "-o", self.out, "-p", "p.lmr",
                        saying="Could not load profile.")
        self.assertFalse(self.out.exists())


if __name__ == "__main__":
    unittest.main()
