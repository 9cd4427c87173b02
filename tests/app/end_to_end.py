#!/usr/bin/python3
"""One person's session with the real program on a virtual desktop, from opening a clip to closing.

usage: end_to_end.py PROGRAM [FOLDER]; screenshots of every step are left in FOLDER.
"""
import json
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

import desktop
from desktop import until
from gif_steps import GifSteps

FRAMES, RATE, WIDTH, HEIGHT, BLOCK = 90, 30, 320, 180, 40
GREY = 96  # of the clip above its blocks


def make_clip(path):
    """A clip whose frames say their number: eight blocks at the bottom, the highest bit first."""
    def frame(number):
        row = b"".join((b"\xff" if number >> (7 - i) & 1 else b"\0") * BLOCK for i in range(8))
        return bytes([GREY]) * (WIDTH * (HEIGHT - BLOCK)) + row * BLOCK
    subprocess.run(
        ["ffmpeg", "-v", "error", "-y", "-f", "rawvideo", "-pix_fmt", "gray", "-s",
         f"{WIDTH}x{HEIGHT}", "-r", str(RATE), "-i", "-", "-c:v", "libx264", "-bf", "3",
         "-pix_fmt", "yuv420p", str(path)],
        input=b"".join(map(frame, range(FRAMES))), check=True)


class Session(GifSteps, unittest.TestCase):
    WIDTH, HEIGHT, BLOCK = WIDTH, HEIGHT, BLOCK

    def shot(self, name):
        self.step += 1
        shot = self.desk.screenshot()
        shot.save(OUTPUT / f"{self.step:02}-{name}.png")
        return shot

    def pixel_place(self, x, y):
        """Where that pixel of the clip stands on the screen."""
        left, top, width, height = self.app.place("imageViewVideo")
        scale = min(width / WIDTH, height / HEIGHT)
        return (left + (width - WIDTH * scale) / 2 + x * scale,
                top + (height - HEIGHT * scale) / 2 + y * scale)

    def frame_shown(self):
        """The number that the blocks on the screen say."""
        shot = self.desk.screenshot()
        number = 0
        for i in range(8):
            level = shot.grey(*self.pixel_place(BLOCK * (i + 0.5), HEIGHT - BLOCK / 2))
            self.assertTrue(level < 40 or level > 215, f"block {i} is neither black nor white")
            number = 2 * number + (level > 128)
        return number

    def grey_at(self, x, y):
        return self.desk.screenshot().grey(*self.pixel_place(x, y))

    def slider_point(self, fraction):
        """On the position slider, whose knob of 16 stays within it."""
        x, y, width, height = self.app.place("sliderVideoPosition")
        return x + 8 + fraction * (width - 16), y + height / 2

    def wait_for_the_frame_of_the_position(self):
        def right():
            exact = self.app.value("sliderVideoPosition") * FRAMES
            return self.frame_shown() in {min(int(exact + e), FRAMES - 1) for e in (-0.01, 0.01)}
        until(right, "the picture at the position")

    def test_from_a_clip_to_the_end(self):
        clip = pathlib.Path(self.desk.folder) / "home" / "zähler #1.mp4"
        make_clip(clip)
        with desktop.Program(self.desk, [PROGRAM, clip]) as self.app:
            self.opens_what_it_was_started_with()
            self.seeks_by_mouse_and_keys()
            self.sets_markers()
            self.changes_effects()
            self.leaves_an_untouched_field_alone()
            self.zooms()
            self.starts_anew()
            self.opens_by_the_panel(clip)
            self.adds_frames_by_hand()
            self.selects_and_moves_frames()
            self.drags_and_times_frames()
            self.removes_frames()
            self.adds_frames_automatically()
            numbers = [0, 54, 0, 30, 60, FRAMES - 1]
            self.generates(numbers)
            self.plays(numbers)
            self.copies_the_gif()
            self.saves_the_gif(numbers)
            self.undoes_and_redoes_everything(numbers)
            self.saves_and_loads_the_profile()
            self.closes_during_a_run()

    def opens_what_it_was_started_with(self):
        until(lambda: self.frame_shown() == 0, "the clip's first picture")
        self.assertEqual(self.app.title(), "Lumirra")
        self.assertEqual(self.app.text("labelVideoPositionTime"), "00:00:00.0")
        self.assertEqual(self.app.text("labelEndTime"), "00:00:03.0")
        for outlet in ("sliderVideoPosition", "buttonMarkAsStartTime", "comboPlayMode"):
            self.assertTrue(self.app.enabled(outlet), outlet)
        self.assertFalse(self.app.enabled("buttonMoveUp"))
        self.assertFalse(self.app.shown("buttonNextImage"))
        self.shot("opened")

    def seeks_by_mouse_and_keys(self):
        self.desk.drag(self.slider_point(0), self.slider_point(0.4))
        self.assertAlmostEqual(self.app.value("sliderVideoPosition"), 0.4, delta=0.01)
        self.wait_for_the_frame_of_the_position()
        self.assertEqual(self.app.text("labelVideoPositionTime"), "00:00:01.%d" %
                         int(self.app.value("sliderVideoPosition") * 30 % 10))
        before = self.frame_shown()
        self.desk.key("period")
        until(lambda: self.frame_shown() == before + 1, "the next frame")
        self.desk.key("comma")
        until(lambda: self.frame_shown() == before, "the frame before")
        self.shot("sought")

    def sets_markers(self):
        self.desk.key("i")
        start = self.app.text("labelVideoPositionTime")
        until(lambda: self.app.text("labelStartTime") == start, "the start marker")
        self.desk.click(*self.slider_point(0.8))
        self.wait_for_the_frame_of_the_position()
        self.app.click("buttonMarkAsEndTime")
        end = self.app.text("labelVideoPositionTime")
        until(lambda: self.app.text("labelEndTime") == end, "the end marker")
        self.assertLess(start, end)

        self.app.click("buttonMarkAsStartTime")  # where the end is: refused, in words
        self.app.named("push button", "OK")
        self.shot("marker-refused")
        self.desk.key("Return")
        until(lambda: self.app.root.childCount == 1, "the message to go")
        self.assertEqual(self.app.text("labelStartTime"), start)
        self.assertEqual(self.app.title(), "Lumirra")

    def changes_effects(self):
        self.app.click(self.app.named("page tab", "Adjust"))
        until(lambda: self.app.shown("sliderBrightness"), "the adjustments")
        self.app.set("sliderBrightness", 0.25)
        expected = GREY + 0.25 * 255
        until(lambda: abs(self.grey_at(160, 60) - expected) < 8, "a brighter picture")
        self.assertEqual(self.app.title(), "Lumirra*")
        self.shot("brighter")
        self.app.set("sliderBrightness", 0)
        until(lambda: abs(self.grey_at(160, 60) - GREY) < 4, "the picture as it was")

        self.app.click(self.app.named("page tab", "Effects"))
        until(lambda: self.app.shown("checkVignette"), "the effects")
        x, y, _, height = self.app.place("checkVignette")
        self.desk.click(x + 12, y + height / 2)
        until(lambda: self.app.has("checkVignette", self.spi.STATE_CHECKED), "the check box")
        until(lambda: self.grey_at(4, 4) < GREY - 20, "dark corners")
        self.assertLess(abs(self.grey_at(160, 90) - GREY), 12)
        self.shot("vignette")

    def leaves_an_untouched_field_alone(self):
        """A field that was only passed through says and means what it did."""
        self.app.click(self.app.named("page tab", "Crop"))
        until(lambda: self.app.shown("textFieldDimensionsWidth"), "the crop page")
        self.app.click("textFieldDimensionsWidth")
        self.desk.key("ctrl+a")
        self.desk.type("150")
        self.desk.key("Return")
        until(lambda: self.app.text("textFieldDimensionsHeight") == "84", "the other dimension")
        percent = self.app.text("textFieldResizeTo")
        self.assertAlmostEqual(float(percent), 100 * 150 / WIDTH, places=2)
        self.app.click("textFieldResizeTo")
        self.app.click("textFieldDimensionsHeight")
        self.assertEqual(self.app.text("textFieldResizeTo"), percent)
        self.assertEqual(self.app.text("textFieldDimensionsWidth"), "150")
        self.shot("resized")

    def zooms(self):
        whole = self.app.place("imageViewVideo")
        self.app.click("buttonZoomIn")
        larger = until(lambda: (p := self.app.place("imageViewVideo"))[2] > whole[2] and p, "zoom")
        self.assertGreater(larger[3], whole[3])
        left, top, width, height = self.app.place("customViewVideo")
        middle = (left + width / 2, top + height / 2)
        self.desk.drag(middle, (middle[0] + 30, middle[1] + 20))
        until(lambda: self.app.place("imageViewVideo")[:2] != larger[:2], "the picture to follow")
        self.shot("zoomed")
        self.app.click("buttonResetZoom")
        until(lambda: self.app.place("imageViewVideo") == whole, "the whole picture again")

    def starts_anew(self):
        self.desk.key("ctrl+n")
        self.app.named("push button", "No")
        self.shot("question")
        self.desk.key("Escape")
        until(lambda: self.app.root.childCount == 1, "the question to go")
        self.assertEqual(self.app.title(), "Lumirra*")
        self.desk.key("ctrl+n")
        self.app.named("push button", "Yes")
        self.desk.key("Return")
        until(lambda: self.app.title() == "Lumirra", "a new project")
        self.assertFalse(self.app.enabled("sliderVideoPosition"))
        for label in ("labelStartTime", "labelEndTime", "labelVideoPositionTime"):
            self.assertEqual(self.app.text(label), "00:00:00.0", label)
        self.assertFalse(self.app.has("checkVignette", self.spi.STATE_CHECKED))
        self.shot("new")

    def opens_by_the_panel(self, clip):
        self.desk.key("ctrl+o")
        self.app.named("push button", "Open")
        plain = clip.with_name("counter.mp4")  # a name that every keyboard can type
        shutil.copy(clip, plain)
        self.desk.type(str(plain))
        self.shot("open-panel")
        self.desk.key("Return")
        until(lambda: self.app.enabled("sliderVideoPosition"), "the clip")
        until(lambda: self.frame_shown() == 0, "the clip's first picture")
        self.shot("opened-again")

    def frame(self, index):
        return self.app.find("scrollViewFrames").getChildAtIndex(index)

    def number_in_strip(self, index):
        """The number that the blocks of that thumbnail on the screen say."""
        left, top, side, _ = self.app.place(self.frame(index))
        shot = self.desk.screenshot()
        scale = side / WIDTH
        y = top + (side - HEIGHT * scale) / 2 + (HEIGHT - BLOCK / 2) * scale
        number = 0
        for i in range(8):
            level = shot.grey(left + (i + 0.5) * BLOCK * scale, y)
            self.assertTrue(level < 60 or level > 195, f"block {i} is neither black nor white")
            number = 2 * number + (level > 128)
        return number

    def selected(self):
        strip = self.app.find("scrollViewFrames")
        return [i for i in range(strip.childCount)
                if strip.getChildAtIndex(i).getState().contains(self.spi.STATE_SELECTED)]

    def expect_strip(self, numbers):
        until(lambda: self.app.text("labelFrameCount") == str(len(numbers)), "the frames' count")
        until(lambda: [self.number_in_strip(i) for i in range(len(numbers))] == numbers,
              f"the thumbnails {numbers}")

    def adds_frames_by_hand(self):
        for count, position in enumerate((0, 0.3, 0.6), start=1):
            self.app.set("sliderVideoPosition", position)
            self.wait_for_the_frame_of_the_position()
            self.app.click("buttonAddFrame")
            until(lambda: self.app.text("labelFrameCount") == str(count), f"frame {count}")
        self.expect_strip([0, 27, 54])
        self.assertEqual(self.app.title(), "Lumirra")
        self.shot("frames")

    def selects_and_moves_frames(self):
        self.app.click(self.frame(2))
        until(lambda: self.selected() == [2], "the selection")
        self.assertTrue(self.app.enabled("buttonMoveUp"))
        self.desk.xdotool("keydown", "ctrl")
        self.app.click(self.frame(0))
        self.desk.xdotool("keyup", "ctrl")
        until(lambda: self.selected() == [0, 2], "one frame more")
        self.assertFalse(self.app.enabled("buttonMoveUp"))
        self.shot("two-selected")
        self.app.click(self.frame(2))
        until(lambda: self.selected() == [2], "one alone")
        self.app.click("buttonMoveUp")
        self.expect_strip([0, 54, 27])
        self.assertEqual(self.selected(), [1])
        self.desk.key("Down")
        until(lambda: self.selected() == [2], "the arrow key to select")
        self.shot("moved")

    def drags_and_times_frames(self):
        left, top, side, _ = self.app.place(self.frame(2))
        middle = left + side / 2
        self.desk.drag((middle, top + side / 2), (middle, self.app.place(self.frame(0))[1] + 20))
        self.expect_strip([27, 0, 54])
        self.assertEqual(self.selected(), [0])
        self.desk.key("ctrl+t")
        self.desk.type("2")
        self.desk.key("Return")
        until(lambda: self.app.text("labelFramesTotal") == "2.20 s in all", "the sum of delays")
        self.assertEqual(self.frame(0).name, "Frame 1 · 0.00 s, shown for 2 s")
        self.shot("delay")
        self.desk.key("ctrl+z", "ctrl+z")
        self.expect_strip([0, 54, 27])
        self.assertEqual(self.app.text("labelFramesTotal"), "0.30 s in all")
        self.assertEqual(self.selected(), [2])

    def removes_frames(self):
        self.desk.key("Delete")
        self.expect_strip([0, 54])
        self.desk.key("ctrl+z")
        self.expect_strip([0, 54, 27])
        self.desk.key("ctrl+shift+z")
        self.expect_strip([0, 54])
        self.assertEqual(len(list((self.desk.folder / "tmp").rglob("frame*.png"))), 6,
                         "a frame removed can still come back")

    def extracts(self, count):
        self.app.click(self.app.named("page tab", "Extract"))
        until(lambda: self.app.shown("radioFixedNumberOfFrames"), "the page")
        self.app.click("radioFixedNumberOfFrames")
        self.app.click("textFieldFixedNumberOfFrames")
        self.desk.key("ctrl+a")
        self.desk.type(str(count))
        self.desk.key("Tab")
        until(lambda: self.app.text("labelAddFramesStatus") == f"{count} frames will be added",
              "the plan")
        self.app.click("buttonAddFramesAutomatically")
        self.app.named("push button", "No")
        self.shot("keep-frames")
        self.desk.key("Escape")

    def adds_frames_automatically(self):
        self.extracts(4)
        until(lambda: self.app.text("labelAddFramesStatus") == "4 frames added", "the run's end")
        until(lambda: self.app.text("labelFrameCount") == "6", "six frames")
        self.desk.click(*[self.app.place("scrollViewFrames")[i] + 100 for i in (0, 1)])
        self.desk.key("End")
        until(lambda: self.number_in_strip(5) == FRAMES - 1, "the last frame")
        self.assertEqual(self.number_in_strip(4), 60)
        self.shot("added")

    def undoes_and_redoes_everything(self, numbers):
        work = self.desk.folder / "tmp"
        [gif] = work.glob("lumirra/run-*/tempGif.gif")
        files = {path: path.read_bytes() for path in work.rglob("frame*.png")}
        before = gif.read_bytes()
        steps = 99  # more than there were
        # a field would undo its own typing
        self.desk.click(*[self.app.place("scrollViewFrames")[i] + 100 for i in (0, 1)])
        self.desk.key(*["ctrl+z"] * steps)
        until(lambda: self.app.text("labelFrameCount") == "0", "the beginning")
        self.shot("undone")
        self.desk.key(*["ctrl+shift+z"] * steps)
        until(lambda: self.app.text("labelFrameCount") == str(len(numbers)), "the end")
        self.desk.key("Home")
        until(lambda: [self.number_in_strip(i) for i in range(3)] == numbers[:3], "the thumbnails")
        self.assertEqual({path: path.read_bytes() for path in work.rglob("frame*.png")}, files)
        gif.unlink()
        self.app.click("buttonGeneratePreview")
        until(lambda: gif.exists() and gif.read_bytes() == before, "the same GIF")

    def closes_during_a_run(self):
        self.extracts(9000)
        until(lambda: " of 9000" in self.app.text("labelAddFramesStatus"), "the run")
        for outlet in ("buttonAddFrame", "buttonAddFramesAutomatically", "sliderVideoPosition"):
            self.assertFalse(self.app.enabled(outlet), outlet)
        self.shot("busy")
        self.desk.key("alt+F4")
        self.app.named("push button", "Yes")
        self.desk.key("Return")
        self.assertEqual(self.app.process.wait(desktop.WAIT_SECONDS), 0)
        # the last session stays to be gone on with, and nothing else
        [run] = (self.desk.folder / "tmp" / "lumirra").iterdir()
        frames = json.loads((run / "session.json").read_text())["frames"]
        self.assertGreater(len(frames), 6)
        stays = {run / ".lumirra-run", run / "session.json"}
        stays |= {run / frame["file"] for frame in frames}
        stays |= {run / frame["file"].replace(".png", "_small.png") for frame in frames}
        left = {path for path in (self.desk.folder / "tmp").rglob("*") if path.is_file()}
        self.assertEqual(left, stays)

    def setUp(self):
        self.step = 0
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.desk = self.enterContext(desktop.Desktop(pathlib.Path(folder.name)))
        self.spi = self.desk.spi


if __name__ == "__main__":
    desktop.in_private_session()
    PROGRAM = pathlib.Path(sys.argv[1]).resolve()
    OUTPUT = pathlib.Path(sys.argv[2] if len(sys.argv) > 2 else "screenshots").resolve()
    shutil.rmtree(OUTPUT, ignore_errors=True)
    OUTPUT.mkdir(parents=True)
    unittest.main(argv=sys.argv[:1])
