"""Sources become a GIF: times, sizes, order, damage.

usage: test_making.py LUMIRRA_CLI [unittest options]
"""
import json
import random
import subprocess
import unittest

from support import average_color, CLI, CliTest, ffmpeg, gif_frames, gif_size


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
        self.refuse(1, self.clips / "red.png", "-o", self.out,
                    "--set", "textFieldDimensionsWidth=32",
                    "--set", "textFieldDimensionsHeight=99", saying="32x99")

    def test_settings_reach_the_picture(self):
        self.succeed(self.clips / "red.png", "-o", self.out, "--set", "sliderSaturation=0")
        red, green, blue = average_color(self.out)
        self.assertLess(max(red, green, blue) - min(red, green, blue), 6)

    def test_same_bytes_for_any_number_of_threads(self):
        files = []
        for threads in (1, 2, 7):
            out = self.work / f"{threads}.gif"
            self.succeed(self.clip, "-o", out, "--threads", threads, "--set", "checkVignette=1",
                         "--set", "textFieldText=Hi", "--set", "checkCartoon=1")
            files.append(out.read_bytes())
        self.assertEqual(files[0], files[1])
        self.assertEqual(files[0], files[2])


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
