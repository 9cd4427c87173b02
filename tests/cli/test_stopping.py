"""Stopping lumirra-cli, and what a terminal shows.

usage: test_stopping.py LUMIRRA_CLI [unittest options]
"""
import os
import pty
import signal
import subprocess
import unittest

from support import CLI, CliTest, ffmpeg


class Stopping(CliTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.long_clip = cls.clips / "long.mp4"
        ffmpeg("-f", "lavfi", "-i", "testsrc2=size=640x480:rate=25:duration=60", "-preset",
               "ultrafast", "-pix_fmt", "yuv420p", cls.long_clip)

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


if __name__ == "__main__":
    unittest.main()
