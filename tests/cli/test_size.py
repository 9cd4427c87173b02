"""Quality, size limit, estimate, loops.

usage: test_size.py LUMIRRA_CLI [unittest options]
"""
import re
import unittest

from support import CliTest, ffmpeg, gif_frames, gif_size, loop_field


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

    def test_a_smaller_width(self):
        free, _ = self.make("--max-width", 160)
        self.assertEqual(gif_size(self.out), (160, 120))
        self.assertEqual(self.make("--max-width", 4000)[0], self.make()[0])
        self.refuse(2, self.film, "-o", self.out, "--max-width", 0, saying="--max-width")
        limit = free // 2
        self.out.unlink()
        told = self.succeed(self.film, "-o", self.out, *self.short, "--max-size", limit,
                            "--estimate", "-q").stdout
        width = int(re.search(r"--max-width (\d+) would make it so", told)[1])
        quality = int(re.findall(r"quality of about (\d+)", told)[-1])
        self.assertLess(width, 160)
        _, told = self.make("--max-size", limit, "--max-width", width)
        reached = re.search(r"quality ([\d.]+)\n$", told)
        self.assertGreater(float(reached[1]) if reached else 90, quality - 10)
        limit, _ = self.make("--quality", 20)
        said = self.succeed(self.film, "-o", self.out, *self.short, "--max-size", limit).stderr
        self.assertIn("--estimate says which width", said)

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


if __name__ == "__main__":
    unittest.main()
