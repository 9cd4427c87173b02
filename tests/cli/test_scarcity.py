"""Runs lumirra-cli where the system is short of something: memory, threads, room for its output.

usage: test_scarcity.py LUMIRRA_CLI FAILING_CALLS_LIBRARY SANITIZED(0 or 1) [unittest options]
"""
import os
import pathlib
import resource
import shutil
import signal
import struct
import subprocess
import sys
import tempfile
import unittest
import zlib

CLI = pathlib.Path(sys.argv.pop(1)).resolve()
FAILING_CALLS = pathlib.Path(sys.argv.pop(1)).resolve()
SANITIZED = sys.argv.pop(1) == "1"  # memory is then the sanitizers', and they need terabytes of it
NOBODY = 54321  # a user without any process


def ffmpeg(*arguments):
    subprocess.run(["ffmpeg", "-v", "error", "-y", *map(str, arguments)], check=True)


def write_deep_png(path, side):
    """16 bits a channel with a gamma of its own: it has to be converted twice."""
    def chunk(name, data):
        return (struct.pack(">I", len(data)) + name + data
                + struct.pack(">I", zlib.crc32(name + data)))
    packer = zlib.compressobj(1)
    row = b"\0" + bytes(6 * side)
    packed = b"".join(packer.compress(row) for _ in range(side)) + packer.flush()
    path.write_bytes(b"\x89PNG\r\n\x1a\n"
                     + chunk(b"IHDR", struct.pack(">IIBBBBB", side, side, 16, 2, 0, 0, 0))
                     + chunk(b"gAMA", struct.pack(">I", 70000)) + chunk(b"IDAT", packed)
                     + chunk(b"IEND", b""))


def write_header_only_png(path, width, height):
    path.write_bytes(b"\x89PNG\r\n\x1a\n" + struct.pack(">I", 13) + b"IHDR"
                     + struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)
                     + struct.pack(">I", zlib.crc32(b"IHDR" + struct.pack(
                         ">IIBBBBB", width, height, 8, 2, 0, 0, 0))) + bytes(200_000))


class Scarcity(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.media = pathlib.Path(tempfile.mkdtemp(prefix="scarcity-media"))
        cls.addClassCleanup(shutil.rmtree, cls.media)
        cls.media.chmod(0o755)
        cls.clip = cls.media / "clip.mp4"
        ffmpeg("-f", "lavfi", "-i", "testsrc2=size=640x480:rate=10:duration=1", "-pix_fmt",
               "yuv420p", cls.clip)
        cls.pictures = [cls.media / f"a.{ending}" for ending in ("jpg", "png", "tiff", "jp2", "bmp")]
        for picture in cls.pictures:
            ffmpeg("-f", "lavfi", "-i", "testsrc2=size=900x700", "-frames:v", "1", picture)

    def setUp(self):
        self.work = pathlib.Path(tempfile.mkdtemp(prefix="scarcity-work"))
        self.addCleanup(shutil.rmtree, self.work)
        self.tmp = self.work / "tmp"
        self.tmp.mkdir()
        for folder in (self.work, self.tmp):
            folder.chmod(0o777)
        self.out = self.work / "out.gif"

    def run_cli(self, *arguments, failing=None, more=None, **options):
        environment = {**os.environ, "TMPDIR": str(self.tmp), "HOME": str(self.tmp), **(more or {})}
        if failing:
            mark = self.work / "mark"
            mark.unlink(missing_ok=True)
            environment.update(LD_PRELOAD=str(FAILING_CALLS), FAIL_MARK=str(mark),
                               **{name: str(value) for name, value in failing.items()})
        options = {"stdout": subprocess.PIPE, **options}
        return subprocess.run([CLI, *map(str, arguments)], cwd=self.work, env=environment,
                              stdin=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True,
                              timeout=120, **options)

    def fails_by_one_sentence(self, ran, saying):
        self.assertEqual(ran.returncode, 1, ran.stderr)
        self.assertRegex(ran.stderr, rf"\A(Frames: .*\n|GIF: .*\n)*lumirra-cli: .*{saying}.*\n\Z")

    def leaves_nothing(self):
        self.assertEqual([p for p in self.tmp.rglob("*") if p.name.startswith("run-")], [])

    def ends_well_short_of_memory(self, *arguments, least, step):
        """Every allocation of a picture's size fails once, with all that come after it."""
        number = 1
        while True:
            self.out.unlink(missing_ok=True)
            ran = self.run_cli(*arguments, failing={"FAIL_CALL": "malloc", "FAIL_FROM": number,
                                                    "FAIL_BYTES": least})
            if not (self.work / "mark").exists():
                self.assertEqual(ran.returncode, 0, ran.stderr)
                return number
            self.fails_by_one_sentence(ran, "not enough memory")
            self.assertFalse(self.out.exists())
            self.leaves_nothing()
            number += step

    @unittest.skipIf(SANITIZED, "the sanitizers have the memory")
    def test_pictures_without_memory(self):
        for picture in self.pictures:
            with self.subTest(picture=picture.suffix):
                tried = self.ends_well_short_of_memory("--info", picture, least=1_000_000, step=1)
                self.assertGreater(tried, 1)

    @unittest.skipIf(SANITIZED, "the sanitizers have the memory")
    def test_gifs_without_memory(self):
        effects = ("--set", "checkCartoon=1", "--set", "textFieldText=Hello", "--threads", "1")
        for sources in ([self.clip], self.pictures[1:2]):
            tried = self.ends_well_short_of_memory(*sources, "-o", self.out, *effects,
                                                   least=600_000, step=5)
            self.assertGreater(tried, 5)

    @unittest.skipIf(SANITIZED, "the sanitizers have the memory")
    def test_a_large_picture_in_little_memory(self):
        large = self.work / "large.png"
        write_deep_png(large, 6000)
        limit = 450_000 * 1024
        ran = self.run_cli("--info", large, preexec_fn=lambda: resource.setrlimit(
            resource.RLIMIT_AS, (limit, limit)))
        self.fails_by_one_sentence(ran, "not enough memory to read")

    def test_the_same_gif_with_fewer_threads(self):
        for sources in ([self.clip], self.pictures[:2]):
            self.assertEqual(self.run_cli(*sources, "-o", self.out).returncode, 0)
            whole = self.out.read_bytes()
            for number in (1, 2, 3, 4, 6):
                self.out.unlink()
                ran = self.run_cli(*sources, "-o", self.out,
                                   failing={"FAIL_CALL": "pthread_create", "FAIL_FROM": number})
                self.assertEqual(ran.returncode, 0, ran.stderr)
                self.assertEqual(self.out.read_bytes(), whole)

    def test_a_user_who_may_have_no_thread(self):
        def alone():
            resource.setrlimit(resource.RLIMIT_NPROC, (1, 1))
            if os.getuid() == 0:  # whom the limit does not bind
                os.setgid(NOBODY)
                os.setuid(NOBODY)
        # What looks for leaks at the end would need a thread itself.
        options = os.environ.get("ASAN_OPTIONS", "") + ":detect_leaks=0"
        ran = self.run_cli(self.clip, "-o", self.out, preexec_fn=alone, more={"ASAN_OPTIONS": options})
        self.assertEqual(ran.returncode, 0, ran.stderr)
        self.assertTrue(self.out.exists())
        self.leaves_nothing()

    def test_sizes_are_told_by_headers_before_any_work(self):
        small = self.pictures[1]
        for width, height, arguments, saying in (
                (21000, 20000, ["--info"], "at most 400 million can be read"),
                (16320, 12240, ["-o", self.out], "a frame can have 100 million pixels"),
                (16320, 12240, [small, "-o", self.out], "a frame can have 100 million pixels")):
            picture = self.work / "claims.png"
            write_header_only_png(picture, width, height)
            before = resource.getrusage(resource.RUSAGE_CHILDREN)
            ran = self.run_cli(*arguments, picture)
            after = resource.getrusage(resource.RUSAGE_CHILDREN)
            self.fails_by_one_sentence(ran, saying)
            if not SANITIZED:
                self.assertLess(after.ru_utime - before.ru_utime, 2)
        self.assertFalse(self.out.exists())

    def test_a_limit_on_the_size_of_files(self):
        self.out.write_bytes(b"old")
        for limit in (1000, 50_000):
            ran = self.run_cli(self.clip, "-o", self.out, preexec_fn=lambda: resource.setrlimit(
                resource.RLIMIT_FSIZE, (limit, limit)))
            self.assertEqual(ran.returncode, 1, ran.stderr)
            self.assertIn("lumirra-cli: ", ran.stderr)
            self.leaves_nothing()
            self.assertEqual([p.name for p in self.work.iterdir() if p.is_file()], ["out.gif"])
            self.assertEqual(self.out.read_bytes(), b"old")

    def test_two_signals_end_it_at_once_and_clean(self):
        film = self.media / "film.mp4"
        ffmpeg("-f", "lavfi", "-i", "testsrc2=size=1280x720:rate=25:duration=20", "-preset",
               "ultrafast", "-pix_fmt", "yuv420p", film)
        for first, second in ((signal.SIGTERM, signal.SIGTERM), (signal.SIGHUP, signal.SIGINT)):
            for phase in ("Frames: ", "GIF: "):
                process = subprocess.Popen(
                    [CLI, film, "-o", self.out, "--keep-frames", self.work / "kept"],
                    cwd=self.work, env=dict(os.environ, TMPDIR=str(self.tmp)),
                    stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE,
                    text=True)
                for line in process.stderr:
                    if line.startswith(phase):
                        break
                process.send_signal(first)
                process.send_signal(second)
                process.communicate(timeout=60)
                self.assertEqual(process.returncode, 1)
                self.leaves_nothing()
                self.assertEqual([p.name for p in self.work.iterdir()], ["tmp"])

    def test_output_that_cannot_be_written(self):
        for arguments in (["--help"], ["--version"], ["--list-settings"], ["--info", self.clip],
                          ["--info", self.clip, "--json"], [self.clip, "--estimate"],
                          [self.clip, "-o", self.out]):
            with open("/dev/full", "w") as full:
                self.fails_by_one_sentence(self.run_cli(*arguments, stdout=full),
                                           "Standard output cannot be written")
        self.assertEqual(
            self.run_cli("--list-settings", preexec_fn=lambda: os.close(1)).returncode, 1)
        # A file that is made without a standard output must not become it.
        self.out.unlink()
        self.run_cli(self.clip, "-o", self.out, preexec_fn=lambda: os.close(1))
        self.assertNotIn(b"frames", self.out.read_bytes())
        # A reader that has enough is told nothing.
        reader, writer = os.pipe()
        os.close(reader)
        ran = self.run_cli("--list-settings", stdout=writer)
        os.close(writer)
        self.assertEqual((ran.returncode, ran.stderr), (1, ""))


if __name__ == "__main__":
    unittest.main(verbosity=2)
