"""Runs lumirra-cli as a user would, in a temporary folder of its own.

usage: test_cli.py LUMIRRA_CLI [unittest options]
"""
import json
import os
import pathlib
import pty
import random
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import unittest

CLI = pathlib.Path(sys.argv.pop(1)).resolve()
CHANGELOG = pathlib.Path(__file__).resolve().parents[2] / "CHANGELOG.md"

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


def loop_field(path):
    """The value of the loop field; None without one."""
    data = path.read_bytes()
    at = data.find(b"NETSCAPE2.0\x03\x01")
    return None if at < 0 else int.from_bytes(data[at + 13:at + 15], "little")


class QualityAndSize(CliTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        # Grain and motion, so that the bytes follow the quality.
        cls.film = cls.clips / "film.mp4"
        ffmpeg("-f", "lavfi", "-i", "testsrc2=size=320x240:rate=20:duration=10", "-vf",
               "noise=alls=24:allf=t:all_seed=7,gblur=1", "-pix_fmt", "yuv420p", cls.film)
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

    def test_the_users_own_folders_are_left_alone(self):
        self.environment.pop("XDG_RUNTIME_DIR", None)
        photos = self.tmp / "lumirra-photos"
        photos.mkdir()
        shutil.copy(self.clips / "red.png", photos)
        for name in ("lumirra-frames", "lumirra-abcdef"):
            (self.tmp / name).mkdir()
        made = self.tmp / "lumirra-frames" / "out.gif"
        for _ in range(2):
            result = self.run_cli(photos / "red.png", "-o", made)
            self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(sorted(str(p.relative_to(self.tmp)) for p in self.tmp.rglob("*")),
                         ["lumirra", "lumirra-abcdef", "lumirra-frames", "lumirra-frames/out.gif",
                          "lumirra-photos", "lumirra-photos/red.png"])

    def test_same_bytes_for_any_number_of_threads(self):
        files = []
        for threads in (1, 2, 7):
            out = self.work / f"{threads}.gif"
            self.succeed(self.clip, "-o", out, "--threads", threads, "--set", "checkVignette=1",
                         "--set", "textFieldText=Hi", "--set", "checkCartoon=1")
            files.append(out.read_bytes())
        self.assertEqual(files[0], files[1])
        self.assertEqual(files[0], files[2])

    def test_names_of_any_bytes(self):
        for name in (b"100%1 %2 %3.%4", b"gr\xfc\xdf-\xff\xf0\x9f\x98\x80", b"a\nb\x1b[2J"):
            with self.subTest(name=name):
                folder = pathlib.Path(os.fsdecode(os.fsencode(self.work) + b"/" + name))
                folder.mkdir()
                self.environment["TMPDIR"] = str(folder)
                def at(ending, folder=folder, name=name):
                    return folder / os.fsdecode(name + ending)
                clip, still, gif = at(b".mp4"), at(b".png"), at(b".gif")
                shutil.copy(self.clip, clip)
                shutil.copy(self.clips / "red.png", still)
                made = self.succeed(clip, "-o", gif, "--write-profile", at(b".lmr"),
                                    "--keep-frames", at(b"-frames"))
                shown = os.fsencode(gif).decode(errors="replace")
                shown = "".join("?" if ord(c) < 32 else c for c in shown)
                self.assertIn(f"{shown}: 21 frames, 160x120, 2.10 s, ", made.stdout)
                self.assertEqual(len(list(at(b"-frames").iterdir())), 21)
                self.succeed(still, still, "-p", at(b".lmr"), "-o", gif)
                self.assertEqual(gif_frames(gif), 2)
                self.refuse(1, clip, "--keep-frames", at(b"-frames"), saying="already has frames")
                self.refuse(1, still, "-o", still, saying="is a source")
                for source in (clip, still):
                    self.assertIn("Size:", self.succeed("--info", source).stdout)
                torn = at(b"-torn.jpg")
                whole = self.work / "whole.jpg"
                ffmpeg("-i", self.clip, "-vf", "scale=800:600", "-frames:v", "1", "-update", "1", whole)
                torn.write_bytes(whole.read_bytes()[:whole.stat().st_size // 2])
                told = self.succeed("--info", torn).stdout
                self.assertRegex(told, r"torn\.jpg\" is cut short: only \d+ % of the picture")

    def on_a_small_disk(self, kilobytes, *arguments):
        """Runs it where `disk` is a file system of that size, with p.lmr and old.gif from here on it;
        gives the run and what is on the disk afterwards. Nobody's rights are ignored, root's
        neither."""
        disk, after = self.work / "disk", self.work / "after"
        disk.mkdir(exist_ok=True)
        shutil.rmtree(after, ignore_errors=True)
        after.mkdir()
        script = ("mount -t tmpfs -o size=$1k lumirra-test disk && shift && cp p.lmr old.gif disk && "
                  "{ setpriv --bounding-set=-all \"$@\"; code=$?; cp -a disk/. after; exit $code; }")
        unshare = ["unshare", "-m"] if os.geteuid() == 0 else ["unshare", "-rm"]
        result = subprocess.run(
            [*unshare, "sh", "-c", script, "sh", str(kilobytes), CLI, *map(str, arguments)],
            cwd=self.work, env=self.environment, stdin=subprocess.DEVNULL, capture_output=True,
            text=True, timeout=300)
        self.assert_no_leftovers()
        return result, {p.name: p.read_bytes() for p in after.rglob("*") if p.is_file()}

    def test_a_full_disk_costs_nothing_that_was_there(self):
        (self.work / "p.lmr").write_bytes(b"old profile\n" * 400)
        (self.work / "old.gif").write_bytes(b"GIF" + bytes(30_000))
        before = {name: (self.work / name).read_bytes() for name in ("p.lmr", "old.gif")}
        # 40 KB are in use: nothing of the new file fits, or only its first pages do.
        for kilobytes, arguments in (
            (40, ["--write-profile", "disk/p.lmr"]),
            (40, [self.clip, "-o", "disk/old.gif"]),
            (60, [self.clip, "-o", "disk/old.gif"]),
            (60, [self.clip, "--keep-frames", "disk/frames"]),
        ):
            with self.subTest(kilobytes=kilobytes, arguments=arguments):
                result, after = self.on_a_small_disk(kilobytes, *arguments)
                self.assertEqual(result.returncode, 1, result.stderr)
                self.assertIn("the disk is full", result.stderr.splitlines()[-1])
                self.assertEqual(after, before)

    def test_a_read_only_file_is_replaced_and_stays_one(self):
        (self.work / "p.lmr").write_bytes(b"old")
        (self.work / "old.gif").write_bytes(b"old")
        (self.work / "old.gif").chmod(0o444)
        (self.work / "p.lmr").chmod(0o444)
        result, after = self.on_a_small_disk(
            4000, self.clip, "-o", "disk/old.gif", "--write-profile", "disk/p.lmr",
            "--keep-frames", "disk/frames")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(after["old.gif"][:3], b"GIF")
        self.assertEqual((self.work / "after" / "old.gif").stat().st_mode & 0o777, 0o444)
        self.assertEqual(len(after["p.lmr"].split(b"\n")), 63)
        self.assertEqual(len(after), 23, "a frame for each picture, moved to the other disk")

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


def delays(path):
    """The delay of each frame as a foreign decoder reads it, in hundredths."""
    text = subprocess.run(
        ["ffprobe", "-v", "error", "-show_entries", "packet=duration_time", "-of", "csv=p=0",
         str(path)], check=True, capture_output=True, text=True).stdout
    return [round(100 * float(line)) for line in text.split()]


class Editing(CliTest):
    def colors(self):
        """Which of red, green and blue each frame shows."""
        return "".join("rgb"[max(range(3), key=average_color(self.out, i).__getitem__)]
                       for i in range(gif_frames(self.out)))

    def edit(self, *options):
        pictures = [self.clips / f"{name}.png" for name in ("red", "green", "blue")]
        self.succeed(*pictures, "-o", self.out, "--fit", "crop", *options)
        return self.colors(), delays(self.out)

    def test_order_and_delays(self):
        times = self.work / "times"
        times.write_text("0.5\n0.07\r\n1.25\n\n")
        self.assertEqual(self.edit("--delays", times), ("rgb", [50, 7, 125]))
        self.assertEqual(self.edit("--delays", times, "--reverse"), ("bgr", [125, 7, 50]))
        self.assertEqual(self.edit("--bounce", "--delay-last", 2), ("rgbg", [10, 10, 10, 200]))
        self.assertEqual(self.edit("--every", 2, "--speed", 0.5), ("rb", [20, 20]))
        self.assertEqual(self.edit("--delays", times, "--speed", 3), ("rgb", [17, 2, 42]))
        for text, saying in (("0.5\n", "1 delays for 3"), ("1\n2\n3\n4\n", "Line 4"),
                             ("1\nx\n3\n", "Line 2"), ("1\n0\n3\n", "Line 2")):
            times.write_text(text)
            self.refuse_after_frames(saying, "--delays", times)
        self.refuse_after_frames("less than 0.01", "--speed", 50)
        self.refuse_after_frames("at least 4 frames", "--crossfade", 2)

    def refuse_after_frames(self, saying, *options):
        result = self.run_cli("-q", self.clips / "red.png", self.clips / "green.png",
                              self.clips / "blue.png", "-o", self.work / "no.gif", *options)
        self.assertEqual(result.returncode, 1)
        self.assertIn(saying, result.stderr)
        self.assertFalse((self.work / "no.gif").exists())
        self.assert_no_leftovers()

    def test_a_loop_is_found_to_the_frame_and_faded(self):
        wave = self.work / "wave.mp4"
        ffmpeg("-f", "lavfi", "-i", "color=black:size=96x64:rate=20:duration=5,format=rgb24,"
               "geq=r='128+90*sin(2*PI*(X/96+T/1.7))':g='128+90*sin(2*PI*(Y/64-2*T/1.7))':b=60",
               "-pix_fmt", "yuv420p", wave)
        step = ["--set", "textFieldFixedIntervalBetweenFrames=0.05"]
        told = self.succeed(wave, "-o", self.out, *step, "--find-loop").stdout
        self.assertEqual(gif_frames(self.out), 34, told)
        self.assertRegex(told, r"Loop: frames \d+ to \d+, whose ends differ by \d")
        self.succeed(wave, "-o", self.out, *step, "--find-loop", "--min-loop", 4)
        self.assertEqual(gif_frames(self.out), 68)
        self.succeed(wave, "-o", self.out, "--crossfade", 5)
        self.assertEqual(gif_frames(self.out), 51 - 5)

    def test_presets(self):
        self.assertRegex(self.succeed("--list-presets").stdout, r"(?m)^slack-emoji .* 50 frames")
        self.succeed(self.clip, "-o", self.out, "--preset", "slack-emoji")
        self.assertEqual(gif_size(self.out), (128, 96))
        self.assertLessEqual(self.out.stat().st_size, 128_000)
        for options, saying in (
            (["--set", "textFieldDimensionsWidth=150"], "128x96 would fit"),
            (["--set", "textFieldFixedIntervalBetweenFrames=0.02"], "--every 3 would do"),
        ):
            self.refuse(1, self.clip, "-o", "no.gif", "--preset", "slack-emoji", *options,
                        saying=saying)
        self.refuse(2, self.clip, "-o", "no.gif", "--preset", "moon", saying="github")
        own = self.work / "config" / "lumirra" / "presets.json"
        own.parent.mkdir(parents=True)
        self.environment["XDG_CONFIG_HOME"] = str(own.parent.parent)
        own.write_text('[{"name": "moon", "maxWidth": 40, "maxSeconds": 1}]')
        result = self.run_cli("-q", self.clip, "-o", self.out, "--preset", "moon")
        self.assertIn("--speed 2.1 would do", result.stderr)
        self.succeed(self.clip, "-o", self.out, "--preset", "moon", "--speed", 2.1)
        self.assertEqual((gif_size(self.out), sum(delays(self.out))), ((40, 30), 100))
        own.write_text("[")
        self.refuse(2, self.clip, "-o", self.out, "--preset", "moon", saying="not understood")


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
        self.succeed(self.clips / "red.png", "-o", self.out, "--set", "textFieldDimensionsWidth=960")
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
        _, errors = process.communicate(timeout=60)
        self.assertEqual(process.returncode, 1, errors)
        self.assertIn("Stopped", errors)
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


class Media(CliTest):
    def test_rotation_is_told(self):
        turned = self.work / "turned.mp4"
        ffmpeg("-i", self.clip, "-c", "copy", "-metadata:s:v:0", "rotate=90", turned)
        facts = json.loads(self.succeed("--info", turned, "--json").stdout)
        self.assertEqual((facts["width"], facts["height"]), (120, 160))
        self.assertEqual((facts["storedWidth"], facts["storedHeight"]), (160, 120))
        self.succeed(turned, "-o", self.out)
        self.assertEqual(gif_size(self.out), (120, 160))

    def test_without_any_readable_picture(self):
        noise = random.Random(5).randbytes(5000)
        sound = self.work / "sound.m4v"
        ffmpeg("-f", "lavfi", "-i", "sine=duration=1", "-f", "mp4", sound)
        photo = self.work / "photo.jpg"
        ffmpeg("-i", self.clips / "red.png", photo)
        for name, data in (("empty.mov", b""), ("noise.png", noise), ("text.mp4", b"no film\n"),
                           ("noise.mp4", noise), ("cut.jpg", photo.read_bytes()[:100]),
                           ("cut.mp4", self.clip.read_bytes()[:3000]), ("sound.m4v", None)):
            with self.subTest(name):
                if data is not None:
                    (self.work / name).write_bytes(data)
                self.refuse(1, self.work / name, "-o", self.out, saying=name)
                self.assertFalse(self.out.exists())

    def test_partly_readable(self):
        photo = self.work / "torn.jpg"
        ffmpeg("-i", self.clip, "-vf", "scale=800:600", "-frames:v", "1", "-update", "1", photo)
        photo.write_bytes(photo.read_bytes()[:photo.stat().st_size // 2])
        cut = self.work / "cut.mp4"
        ffmpeg("-i", self.film(), "-c", "copy", "-movflags", "+faststart", cut)
        cut.write_bytes(cut.read_bytes()[:cut.stat().st_size * 2 // 3])
        scrambled = self.work / "scrambled.mov"
        data = bytearray(self.film().read_bytes())
        middle = len(data) // 2
        data[middle:middle + 4000] = random.Random(7).randbytes(4000)
        scrambled.write_bytes(data)
        for path in (cut, scrambled, photo):
            with self.subTest(path):
                result = self.succeed(path, "-o", self.out)
                self.assertRegex(result.stderr, r"Warning: \d+ of \d+ ")
                self.assertGreater(gif_frames(self.out), 0)

    def film(self):
        """Long enough to be damaged in the middle."""
        film = self.work / "film.mp4"
        if not film.exists():
            ffmpeg("-f", "lavfi", "-i", "testsrc2=size=320x240:rate=10:duration=6", "-g", "10",
                   "-pix_fmt", "yuv420p", film)
        return film

    def test_pictures_of_every_kind_make_one_gif_in_order(self):
        pictures = []
        for i, kind in enumerate(("jpg", "png", "tif", "bmp", "gif", "jp2")):
            pictures.append(self.work / f"ü {i}.{kind}")
            ffmpeg("-i", self.clips / ("red.png", "green.png", "blue.png")[i % 3], "-update", "1",
                   "-frames:v", "1", pictures[-1])
        result = self.succeed(*pictures, "-o", self.out, "--fit", "crop")
        self.assertEqual(gif_frames(self.out), len(pictures))
        self.assertNotIn("Warning", result.stderr)
        for i in range(len(pictures)):
            color = average_color(self.out, i)
            self.assertEqual(max(color), color[i % 3], (i, color))

    def test_no_window_library(self):
        libraries = subprocess.run(["ldd", CLI], check=True, capture_output=True, text=True).stdout
        self.assertIn("Qt6Gui", libraries)
        self.assertNotIn("Qt6Widgets", libraries)


if __name__ == "__main__":
    unittest.main()
