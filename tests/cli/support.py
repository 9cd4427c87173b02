"""What the tests of lumirra-cli share: each runs it as a user would, in a folder of its own."""
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

CLI = pathlib.Path(sys.argv.pop(1)).resolve()


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


def loop_field(path):
    """The value of the loop field; None without one."""
    data = path.read_bytes()
    at = data.find(b"NETSCAPE2.0\x03\x01")
    return None if at < 0 else int.from_bytes(data[at + 13:at + 15], "little")


def delays(path):
    """The delay of each frame as a foreign decoder reads it, in hundredths."""
    text = subprocess.run(
        ["ffprobe", "-v", "error", "-show_entries", "packet=duration_time", "-of", "csv=p=0",
         str(path)], check=True, capture_output=True, text=True).stdout
    return [round(100 * float(line)) for line in text.split()]


class CliTest(unittest.TestCase):
    """Clips of the class, and for each test empty folders to work in and for what is temporary."""

    @classmethod
    def setUpClass(cls):
        cls.clips = pathlib.Path(tempfile.mkdtemp(prefix="cli-test-clips"))
        cls.addClassCleanup(shutil.rmtree, cls.clips)
        cls.clip = cls.clips / "clip.mp4"
        ffmpeg("-f", "lavfi", "-i", "testsrc2=size=160x120:rate=10:duration=2", "-pix_fmt",
               "yuv420p", cls.clip)
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
