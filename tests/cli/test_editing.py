"""Order and times of frames, loops, presets.

usage: test_editing.py LUMIRRA_CLI [unittest options]
"""
import unittest

from support import average_color, CliTest, delays, ffmpeg, gif_frames, gif_size


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


if __name__ == "__main__":
    unittest.main()
