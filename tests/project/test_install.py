"""Installs the programs in a temporary folder and runs them from there: the parts that they load are
found, and one that is missing is told of.

usage: test_install.py BUILD_FOLDER MEDIA_FOLDER
"""
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

BUILD, MEDIA = (pathlib.Path(argument) for argument in sys.argv[1:3])


class Install(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.prefix = pathlib.Path(folder.name) / "tree with a space"
        subprocess.run(["cmake", "--install", BUILD, "--prefix", cls.prefix],
                       check=True, stdout=subprocess.DEVNULL)

    def run_cli(self, *words):
        # Elsewhere than here: nothing may be found because of the folder that we are in.
        return subprocess.run([self.prefix / "bin/lumirra-cli", *words], cwd=self.prefix,
                              capture_output=True, text=True, timeout=120)

    def test_modules_are_found_and_missed(self):
        clip, picture = MEDIA / "counter-2997.mov", MEDIA / "photo.jpg"
        found = self.run_cli("--info", clip)
        self.assertEqual(found.returncode, 0, found.stderr)
        self.assertIn("h264", found.stdout)

        [module] = self.prefix.rglob("lumirra-video.so")
        module.rename(module.with_suffix(".away"))
        try:
            missed = self.run_cli("--info", clip)
            self.assertEqual(missed.returncode, 1)
            self.assertIn("Videos cannot be read", missed.stderr)
            self.assertIn("lumirra-video.so", missed.stderr)
            self.assertEqual(self.run_cli(clip, "-o", self.prefix / "no.gif").returncode, 1)
            self.assertFalse((self.prefix / "no.gif").exists())
            self.assertEqual(self.run_cli("--info", picture).returncode, 0, "pictures need it not")
        finally:
            module.with_suffix(".away").rename(module)

    def test_the_list_of_libraries_is_whole(self):
        script = pathlib.Path(__file__).resolve().parents[2] / "scripts/list-libraries"
        made = subprocess.run([script, self.prefix], env={**os.environ, "SOURCE_DATE_EPOCH": "1"},
                              capture_output=True, text=True, timeout=120)
        self.assertEqual(made.returncode, 0, made.stderr)
        listed = json.loads(made.stdout)
        needs = {row["ref"]: row["dependsOn"] for row in listed["dependencies"]}
        components = {entry["bom-ref"]: entry for entry in listed["components"]}
        program = listed["metadata"]["component"]["bom-ref"]
        self.assertEqual(set(needs), {*components, program})
        for entry in components.values():
            self.assertTrue(entry["licenses"] and entry["version"], entry["name"])
        # from the programs one comes to each of them, also behind the modules
        reached, ahead = set(), [program]
        while ahead:
            reached.add(ref := ahead.pop())
            ahead += set(needs[ref]) - reached
        self.assertEqual(reached, set(needs))
        direct = {components[ref]["name"] for ref in needs[program]}
        for name in ("libqt6widgets", "libqt6multimedia", "libavcodec", "libtiff", "libc6"):
            self.assertTrue(any(other.startswith(name) for other in direct), name)

    def test_the_help_finds_its_pages_and_pictures(self):
        pages = list((self.prefix / "share/lumirra/help").glob("*.html"))
        self.assertGreaterEqual(len(pages), 3)
        for page in pages:
            for target in re.findall(r'(?:href|src)="([^":]+)"', page.read_text()):
                path, _, place = target.partition("#")
                other = page.parent / path if path else page
                self.assertTrue(other.exists(), f"{page.name}: {target}")
                if place:
                    self.assertIn(f'id="{place}"', other.read_text(), f"{page.name}: {target}")
        pictures = {path.name for path in (self.prefix / "share/lumirra/images").iterdir()}
        shown = " ".join(page.read_text() for page in pages)
        self.assertEqual({name for name in pictures if name not in shown}, set(), "shown nowhere")


if __name__ == "__main__":
    sys.exit(unittest.main(argv=sys.argv[:1]))
