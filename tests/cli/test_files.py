"""Names, folders and places of what is read and written.

usage: test_files.py LUMIRRA_CLI [unittest options]
"""
import os
import pathlib
import shutil
import subprocess
import unittest

from support import average_color, CLI, CliTest, ffmpeg, gif_frames


class Files(CliTest):
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
                ffmpeg("-i", self.clip, "-vf", "scale=800:600", "-frames:v", "1", "-update", "1",
                       whole)
                torn.write_bytes(whole.read_bytes()[:whole.stat().st_size // 2])
                told = self.succeed("--info", torn).stdout
                self.assertRegex(told, r"torn\.jpg\" is cut short: only \d+ % of the picture")

    def on_a_small_disk(self, kilobytes, *arguments):
        """Runs it where `disk` is a file system of that size, with p.lmr and old.gif from here on
        it; gives the run and what is on the disk afterwards. Nobody's rights are ignored, root's
        neither."""
        disk, after = self.work / "disk", self.work / "after"
        disk.mkdir(exist_ok=True)
        shutil.rmtree(after, ignore_errors=True)
        after.mkdir()
        script = ("mount -t tmpfs -o size=$1k lumirra-test disk && shift && cp p.lmr old.gif disk "
                  "&& { setpriv --bounding-set=-all \"$@\"; code=$?; cp -a disk/. after; "
                  "exit $code; }")
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


if __name__ == "__main__":
    unittest.main()
