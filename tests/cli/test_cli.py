"""Runs lumirra-cli as a user would, in a temporary folder of its own.

usage: test_cli.py LUMIRRA_CLI MEDIA_FOLDER [unittest options]
"""
import json
import os
import pathlib
import pty
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest

CLI = pathlib.Path(sys.argv.pop(1)).resolve()
MEDIA = pathlib.Path(sys.argv.pop(1)).resolve()

FRESH = (
    "0|20|20.0|1|0.1|1.0|0|0.0|1.0|1.0|0.0|1.0|0.0|0|0|0|2.0|0.2|10.0|0|0.8|1.0|0|0.0||1.0|1.0|1.0|"
    "12|80|80.0|70|70.0|0|0|0.0|0|0.0|0|0|0|0|1|0|0|0.0|0|0.0|100|100.0|100|100.0|100|100.0|0|0|"
    "0.1|1.0|0|0.0|0|32.0|"
).replace("|", "\n").encode()


def ffmpeg(*arguments):
    subprocess.run(["ffmpeg", "-v", "error", "-y", *map(str, arguments)], check=True)


def gif_size(path):
    data = path.read_bytes()
    return int.from_bytes(data[6:8], "little"), int.from_bytes(data[8:10], "little")


def gif_frames(path):
    """Frames as a foreign decoder counts them."""
    text = subprocess.run(
        ["ffprobe", "-v", "error", "-count_frames", "-show_entries", "stream=nb_read_frames",
         "-of", "csv=p=0", str(path)], check=True, capture_output=True, text=True).stdout
    return int(text)


def average_color(path, frame=0):
    raw = subprocess.run(
        ["ffmpeg", "-v", "error", "-i", str(path), "-vf", f"select=eq(n\\,{frame}),scale=1:1",
         "-frames:v", "1", "-f", "rawvideo", "-pix_fmt", "rgb24", "-"],
        check=True, capture_output=True).stdout
    return tuple(raw)


class CliTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.clips = pathlib.Path(tempfile.mkdtemp(prefix="cli-test-clips"))
        cls.addClassCleanup(shutil.rmtree, cls.clips)
        cls.clip = cls.clips / "clip.mp4"
        ffmpeg("-f", "lavfi", "-i", "testsrc2=size=160x120:rate=10:duration=2", "-pix_fmt",
               "yuv420p", cls.clip)
        cls.long_clip = cls.clips / "long.mp4"
        ffmpeg("-f", "lavfi", "-i", "testsrc2=size=640x480:rate=25:duration=60", "-preset",
               "ultrafast", "-pix_fmt", "yuv420p", cls.long_clip)
        for name, size in (("red", "64x48"), ("green", "48x64"), ("blue", "64x48")):
            ffmpeg("-f", "lavfi", "-i", f"color={name}:size={size}", "-frames:v", "1",
                   cls.clips / f"{name}.png")

    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="cli-test-work"))
        self.addCleanup(shutil.rmtree, self.folder)
        self.tmp = self.folder / "tmp"
        self.tmp.mkdir()
        self.work = self.folder / "work"
        self.work.mkdir()
        self.out = self.work / "out.gif"
        self.environment = {k: v for k, v in os.environ.items() if k != "DISPLAY"}
        self.environment["TMPDIR"] = str(self.tmp)

    def run_cli(self, *arguments):
        return subprocess.run([CLI, *map(str, arguments)], cwd=self.work, env=self.environment,
                              stdin=subprocess.DEVNULL, capture_output=True, text=True,
                              timeout=300)

    def assert_no_leftovers(self):
        self.assertEqual([p for p in self.tmp.rglob("*") if p.is_file()], [])

    def succeed(self, *arguments):
        result = self.run_cli(*arguments)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assert_no_leftovers()
        return result

    def refuse(self, code, *arguments, saying=""):
        result = self.run_cli(*arguments)
        self.assertEqual(result.returncode, code, (arguments, result.stderr))
        self.assertEqual(len(result.stderr.splitlines()), 1, result.stderr)
        self.assertIn(saying, result.stderr)
        self.assertEqual(result.stdout, "")
        self.assert_no_leftovers()
        return result


class Usage(CliTest):
    def test_asking(self):
        self.assertIn("lumirra-cli", self.succeed("--help").stdout)
        self.assertRegex(self.succeed("--version").stdout, r"^lumirra-cli \d+\.\d+\.\d+\n$")
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
            ([clip, *gif, "--max-size", "8X"], "8X"),
            ([clip, *gif, "--max-size", "nan"], "--max-size"),
            ([clip, *gif, "--max-size=-1M"], "--max-size"),
            ([clip, *gif, "--loop", "0"], "--loop"),
            ([clip, *gif, "--loop", "65536"], "--loop"),
            ([clip, *gif, "--loop", "always"], "always"),
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


def loop_field(path):
    """The value of the loop field; None without one."""
    data = path.read_bytes()
    at = data.find(b"NETSCAPE2.0\x03\x01")
    return None if at < 0 else int.from_bytes(data[at + 13:at + 15], "little")


class QualityAndSize(CliTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.film = MEDIA / "rabbit320.mp4"
        cls.short = ["--end", "0.1", "--set", "textFieldFixedIntervalBetweenFrames=0.1"]

    def make(self, *options):
        result = self.succeed(self.film, "-o", self.out, *self.short, *options)
        return self.out.stat().st_size, result.stdout

    def test_bytes_follow_quality(self):
        sizes = [self.make("--quality", q)[0] for q in (1, 50, 90, 100)]
        self.assertEqual(sizes, sorted(sizes))
        self.assertLess(sizes[1], 0.6 * sizes[2])
        self.assertEqual(self.make()[0], sizes[2], "90 is the quality without the option")

    def test_a_limit_is_used_up_or_does_not_bind(self):
        free, _ = self.make()
        frames = gif_frames(self.out)
        for share in (0.85, 0.4):
            limit = int(share * free)
            size, told = self.make("--max-size", limit)
            self.assertLessEqual(size, limit)
            self.assertGreaterEqual(size, 0.96 * limit)
            self.assertEqual((gif_frames(self.out), gif_size(self.out)), (frames, (320, 240)))
            self.assertRegex(told, r"bytes, quality \d+\.\d\n$")
        size, told = self.make("--max-size", "1G")
        self.assertEqual(size, free)
        self.assertNotIn("quality", told)

    def test_a_limit_that_nothing_can_keep(self):
        size, _ = self.make("--quality", 1)
        frames = gif_frames(self.out)
        self.out.write_bytes(b"old")
        limit = size // 2
        result = self.run_cli(self.film, "-o", self.out, *self.short, "--max-size", limit)
        self.assertEqual(result.returncode, 1)
        self.assertEqual(self.out.read_bytes(), b"old")
        said = result.stderr.splitlines()[-1]
        self.assertIn("limit", said)
        width = int(re.search(r"width of about (\d+)", said)[1])
        count = int(re.search(r"about (\d+) frames", said)[1])
        self.assertLess(count, frames)
        size, _ = self.make("--max-size", limit, "--set", f"textFieldDimensionsWidth={width}")
        self.assertLessEqual(size, limit)

    def test_loops(self):
        setting = ["--set", "textFieldLoopCount=7"]
        for options, field in ((["--loop", "forever"], 0), (["--loop", "once"], None),
                               (["--loop", "3"], 3), ([], 7)):
            self.succeed(self.clip, "-o", self.out, *setting, *options)
            self.assertEqual(loop_field(self.out), field, options)

    def test_estimate(self):
        size, _ = self.make("--quality", 60)
        self.out.unlink()
        result = self.succeed(self.film, "-o", self.out, *self.short, "--quality", 60,
                              "--estimate", "-q")
        about = int(re.match(r"About (\d+) bytes .* 320x240, quality 60\n$", result.stdout)[1])
        self.assertLess(abs(about / size - 1), 0.15)
        self.assertEqual(list(self.work.iterdir()), [])


class Making(CliTest):
    def test_a_video(self):
        result = self.succeed(self.clip, "-o", self.out)
        self.assertRegex(result.stdout, r"out\.gif: 21 frames, 160x120, 2\.10 s, \d+ bytes\n$")
        self.assertEqual(gif_frames(self.out), 21)
        self.assertEqual(gif_size(self.out), (160, 120))
        self.assertIn(f"{self.out.stat().st_size} bytes", result.stdout)
        self.assertEqual(len(result.stderr.splitlines()), 8, "two phases in quarters")

    def test_quiet_prints_nothing(self):
        result = self.succeed("-q", self.clip, "-o", self.out)
        self.assertEqual((result.stdout, result.stderr), ("", ""))

    def test_an_old_gif_is_replaced_only_when_the_new_one_is_there(self):
        self.out.write_bytes(b"old")
        bad = self.work / "bad.mp4"
        bad.write_bytes(b"no film at all")
        self.refuse(1, bad, "-o", self.out, saying="bad.mp4")
        self.assertEqual(self.out.read_bytes(), b"old")
        self.succeed(self.clip, "-o", self.out)
        self.assertEqual(self.out.read_bytes()[:3], b"GIF")

    def test_a_video_without_a_picture_makes_no_gif(self):
        data = bytearray(self.clip.read_bytes())
        start, end = data.index(b"mdat") + 4, data.index(b"moov") - 4
        blank = self.work / "blank.mp4"
        blank.write_bytes(data[:start] + bytes(end - start) + data[end:])
        self.refuse(1, blank, "-o", self.out, saying="blank.mp4 has no picture in it that can be")
        torn = self.work / "torn.mkv"
        ffmpeg("-i", self.clip, "-c:v", "mjpeg", "-pix_fmt", "yuvj420p", torn)
        torn.write_bytes(torn.read_bytes()[:torn.stat().st_size // 2])
        for mode in (0, 1):
            self.refuse(1, "-q", torn, "--start", "0.8", "-o", self.out, "--set",
                        f"comboPlayMode={mode}", saying="has no picture that can be decoded at")
        self.assertFalse(self.out.exists())

    def test_a_damaged_picture_is_told_in_one_line(self):
        tiff = self.work / "torn.tif"
        ffmpeg("-i", self.clips / "red.png", "-compression_algo", "deflate", tiff)
        whole = tiff.read_bytes()
        for damaged in (whole[:8] + bytes(60) + whole[68:], whole[:len(whole) // 2]):
            tiff.write_bytes(damaged)
            self.refuse(1, "-q", tiff, "-o", self.out, saying="torn.tif")

    def test_markers_mode_and_play_mode(self):
        self.succeed(self.clip, "-o", self.out, "--set", "radioFixedNumberOfFrames=1", "--set",
                     "textFieldFixedNumberOfFrames=3", "--start", "0.2", "--end", "0.6", "--set",
                     "comboPlayMode=Circular (Start - End - Start)")
        self.assertEqual(gif_frames(self.out), 5)
        self.succeed(self.clip, "-o", self.out, "--set", "stepperFixedIntervalBetweenFrames=5")
        self.assertEqual(gif_frames(self.out), 5)

    def test_output_size(self):
        few = ["--set", "radioFixedNumberOfFrames=1", "--set", "textFieldFixedNumberOfFrames=2"]
        for settings, size in (
            (["textFieldResizeTo=50"], (80, 60)),
            (["radioAutoCropTo=1"], (120, 120)),
            (["textFieldDimensionsWidth=100"], (100, 75)),
            (["textFieldDimensionsHeight=60"], (80, 60)),
            (["textFieldDimensionsHeight=60", "radioAutoCropTo=1"], (60, 60)),
            (["textFieldDimensionsWidth=100", "textFieldDimensionsHeight=20"], (100, 20)),
            (["comboCustomCrop=Pixels", "textFieldCustomCropWidth=50"], (50, 120)),
            (["textFieldCustomCropWidth=50", "comboCustomCrop=1"], (80, 120)),
            (["textFieldCustomCropOriginX=75"], (40, 120)),
        ):
            with self.subTest(settings=settings):
                words = [word for setting in settings for word in ("--set", setting)]
                self.succeed(self.clip, "-o", self.out, *few, *words)
                self.assertEqual(gif_size(self.out), size)

    def test_pictures_in_order_and_both_fits(self):
        names = ["red.png", "green.png", "blue.png"]
        pictures = [self.clips / name for name in names]
        self.succeed(*pictures, "-o", self.out)
        self.assertEqual((gif_frames(self.out), gif_size(self.out)), (3, (64, 64)))
        self.succeed(*pictures, "-o", self.out, "--fit", "crop")
        self.assertEqual(gif_size(self.out), (48, 42), "the mean of the three shapes")
        for frame, channel in ((0, 0), (1, 1), (2, 2)):
            color = average_color(self.out, frame)
            self.assertEqual(max(color), color[channel], (frame, color))
        self.succeed(self.clips / "red.png", "-o", self.out, "--set", "textFieldDimensionsWidth=32")
        self.assertEqual(gif_size(self.out), (32, 24))
        self.refuse(1, self.clips / "red.png", "-o", self.out, "--set", "textFieldDimensionsWidth=32",
                  "--set", "textFieldDimensionsHeight=99", saying="32x99")

    def test_settings_reach_the_picture(self):
        self.succeed(self.clips / "red.png", "-o", self.out, "--set", "sliderSaturation=0")
        red, green, blue = average_color(self.out)
        self.assertLess(max(red, green, blue) - min(red, green, blue), 6)

    def test_names_of_any_kind(self):
        source = self.work / "-q ü 画像 'x\".mp4"
        shutil.copy(self.clip, source)
        self.succeed("-o", "ö 📷.gif", "--", source.name)
        self.assertTrue((self.work / "ö 📷.gif").is_file())

    def test_same_bytes_for_any_number_of_threads(self):
        files = []
        for threads in (1, 2, 7):
            out = self.work / f"{threads}.gif"
            self.succeed(self.clip, "-o", out, "--threads", threads, "--set", "checkVignette=1",
                         "--set", "textFieldText=Hi", "--set", "checkCartoon=1")
            files.append(out.read_bytes())
        self.assertEqual(files[0], files[1])
        self.assertEqual(files[0], files[2])

    def test_kept_frames(self):
        frames = self.work / "frames"
        result = self.succeed(self.clip, "--keep-frames", frames, "-o", self.out)
        names = sorted(p.name for p in frames.iterdir())
        self.assertEqual(names, [f"frame{i:05}.png" for i in range(1, 22)])
        self.assertIn("21 frames kept", result.stdout)
        self.assertNotEqual((frames / names[0]).read_bytes(), (frames / names[9]).read_bytes())
        for ours, theirs in zip(average_color(frames / names[0]), average_color(self.clip)):
            self.assertAlmostEqual(ours, theirs, delta=6)
        self.refuse(1, self.clip, "--keep-frames", frames, saying="already has frames")
        self.assertEqual(len(list(frames.iterdir())), 21)
        other = self.work / "other"
        self.succeed(self.clip, "--keep-frames", other)
        self.assertEqual([p.read_bytes() for p in sorted(other.iterdir())],
                         [p.read_bytes() for p in sorted(frames.iterdir())])


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
            self.refuse(1, self.clip, "-o", self.out, "-p", "p.lmr", saying="Could not load profile.")
        self.assertFalse(self.out.exists())


class Stopping(CliTest):
    def stop_with(self, number, marker):
        self.out.write_bytes(b"old")
        process = subprocess.Popen(
            [CLI, self.long_clip, "-o", self.out, "--keep-frames", self.work / "frames"],
            cwd=self.work, env=self.environment, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
            stderr=subprocess.PIPE, text=True)
        for line in process.stderr:
            if marker in line:
                break
        process.send_signal(number)
        stopped = time.monotonic()
        _, errors = process.communicate(timeout=60)
        self.assertEqual(process.returncode, 1, errors)
        self.assertIn("Stopped", errors)
        self.assertLess(time.monotonic() - stopped, 20)
        self.assertEqual(self.out.read_bytes(), b"old")
        self.assertEqual([p.name for p in self.work.iterdir()], ["out.gif"])
        self.assert_no_leftovers()

    def test_while_frames_are_read(self):
        self.stop_with(signal.SIGINT, "Frames: 25 %")

    def test_while_the_gif_is_written(self):
        self.stop_with(signal.SIGTERM, "GIF: 25 %")

    def test_a_terminal_shows_a_bar_and_ends_clean(self):
        main, other = pty.openpty()
        process = subprocess.Popen([CLI, self.clip, "-o", self.out], cwd=self.work,
                                   env=self.environment, stdout=subprocess.DEVNULL, stderr=other)
        os.close(other)
        shown = b""
        while True:
            try:
                piece = os.read(main, 4096)
            except OSError:
                break
            if not piece:
                break
            shown += piece
        os.close(main)
        self.assertEqual(process.wait(60), 0)
        self.assertIn(b"\rFrames   [", shown)
        self.assertIn(b"100 %", shown)
        self.assertTrue(shown.endswith(b"\r\x1b[K"), shown[-40:])


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


@unittest.skipUnless(MEDIA.is_dir() or "CI" in os.environ, "the folder of sample media is not here")
class Media(CliTest):
    """The shared clips: a missing one is a failure."""

    def test_rotation_is_told(self):
        facts = json.loads(
            self.succeed("--info", MEDIA / "counter-rotated-90.mp4", "--json").stdout)
        self.assertEqual((facts["width"], facts["height"]), (180, 320))
        self.assertEqual((facts["storedWidth"], facts["storedHeight"]), (320, 180))

    def test_without_any_readable_picture(self):
        for name in ("bad-empty.mov", "bad-noise.png", "bad-sound-only.m4v", "bad-text.mp4",
                     "bad-truncated.jpg", "bad-truncated.mp4"):
            with self.subTest(name):
                self.assertTrue((MEDIA / name).is_file())
                self.refuse(1, MEDIA / name, "-o", self.out, saying=name)
                self.assertFalse(self.out.exists())

    def test_partly_readable(self):
        photo = self.work / "torn.jpg"
        photo.write_bytes((MEDIA / "photo.jpg").read_bytes()[:30000])
        for path in (MEDIA / "bad-cut-short.mp4", MEDIA / "bad-scrambled.mov", photo):
            with self.subTest(path):
                result = self.succeed(path, "-o", self.out)
                self.assertRegex(result.stderr, r"Warning: \d+ of \d+ ")
                self.assertGreater(gif_frames(self.out), 0)

    def test_photos_make_one_gif_in_order(self):
        photos = sorted(MEDIA.glob("photo*")) + sorted(MEDIA.glob("ü*"))
        self.assertGreater(len(photos), 13)
        result = self.succeed(*photos, "-o", self.out)
        self.assertEqual(gif_frames(self.out), len(photos))
        self.assertNotIn("Warning", result.stderr)

    def test_no_window_library(self):
        libraries = subprocess.run(["ldd", CLI], check=True, capture_output=True, text=True).stdout
        self.assertIn("Qt6Gui", libraries)
        self.assertNotIn("Qt6Widgets", libraries)


if __name__ == "__main__":
    unittest.main()
