"""The steps of an end-to-end session that make, play and save the GIF of the frames in the list."""
import os
import shutil
import subprocess
import time

from desktop import until

FRAMES_PER_SECOND = 5
LIKE = 3  # levels that GIF and frame may differ on average


class GifSteps:
    """For a `Session` of end_to_end.py: needs its desk, app, shot and the clip's measures."""

    def number_in(self, grey, width, height):
        """What the blocks of a grey picture say; None while it is none of the clip's."""
        number = 0
        for i in range(8):
            level = grey(width * (2 * i + 1) / 16, height * (1 - self.BLOCK / self.HEIGHT / 2))
            if 60 <= level <= 195:
                return None
            number = 2 * number + (level > 128)
        return number

    def gif_on_screen(self):
        left, top, width, height = self.app.place("gifPreview")
        scale = min(width / self.WIDTH, height / self.HEIGHT)
        left += (width - self.WIDTH * scale) / 2
        top += (height - self.HEIGHT * scale) / 2
        shot = self.desk.screenshot()
        return self.number_in(lambda x, y: shot.grey(left + x, top + y), self.WIDTH * scale,
                              self.HEIGHT * scale)

    def types_into(self, outlet, text):
        self.app.click(outlet)
        self.desk.key("ctrl+a")
        self.desk.type(text)
        self.desk.key("Tab")

    def generates(self, numbers):
        self.app.click(self.app.named("page tab", "Output"))
        until(lambda: self.app.shown("textFieldFrameDelay"), "the Output page")
        self.types_into("textFieldFrameDelay", str(1 / FRAMES_PER_SECOND))
        x, y, _, height = self.app.place("checkRepeatForever")
        self.desk.click(x + 12, y + height / 2)
        until(lambda: self.app.has("checkRepeatForever", self.spi.STATE_CHECKED), "the check box")
        self.app.click("buttonGeneratePreview")
        seconds = len(numbers) / FRAMES_PER_SECOND
        said = f"{len(numbers)} frames · {self.WIDTH} × {self.HEIGHT} px · {seconds:.1f} s · "
        until(lambda: self.app.text("labelGifInfo").startswith(said), said)
        until(lambda: self.gif_on_screen() == numbers[0], "the GIF's first picture")
        self.assertTrue(self.app.enabled("buttonGeneratePreview"))
        self.shot("generated")

    def plays(self, numbers):
        self.app.click("buttonPlayStopPreview")
        until(lambda: self.app.text("buttonPlayStopPreview") == "Stop the GIF", "the button's name")
        seen = set()

        def all_seen():
            seen.add(self.gif_on_screen())
            return seen >= set(numbers)
        until(all_seen, f"{set(numbers)} on the screen")
        self.assertEqual(seen - {None}, set(numbers))
        self.shot("playing")
        self.app.click("gifPreview")
        until(lambda: self.app.text("buttonPlayStopPreview") == "Play the GIF", "the GIF to stop")
        until(lambda: self.gif_on_screen() == numbers[0], "the first picture again")
        time.sleep(2 / FRAMES_PER_SECOND)
        self.assertEqual(self.gif_on_screen(), numbers[0])

    def copies_the_gif(self):
        """The copy goes with the program: the end of the session looks for what is left."""
        self.desk.key("ctrl+shift+c")
        copies = (self.desk.folder / "tmp").rglob
        copy, = until(lambda: list(copies("videoGif.gif")), "the copy")
        made, = copies("tempGif.gif")
        self.assertEqual(copy.read_bytes(), made.read_bytes())

    def saves_the_gif(self, numbers):
        frames = self.stored_frames()
        self.assertEqual(len(frames), len(numbers))
        home = self.desk.folder / "home"
        self.app.click("buttonSaveGif")
        self.app.named("push button", "Save")
        self.desk.key("ctrl+a")
        self.desk.type(str(home / "clip v2.5"))
        self.shot("save-panel")
        self.desk.key("Return")
        self.app.named("push button", "OK")
        self.shot("saved")
        self.desk.key("Return")
        until(lambda: self.app.root.childCount == 1, "the message to go")
        self.expect_gif(home / "clip v2.5.gif", frames, numbers)

    def stored_frames(self):
        """The files of the frames in the order in which they were added, but for the second, which
        was removed and can still come back."""
        files = sorted(p for p in (self.desk.folder / "tmp").rglob("frame*.png")
                       if not p.stem.endswith("_small"))
        return files[:1] + files[2:]

    def grey_pictures(self, path):
        """Every picture of a file, decoded by a foreign program."""
        run = subprocess.run(
            ["ffmpeg", "-v", "error", "-i", str(path), "-f", "rawvideo", "-pix_fmt", "gray",
             "-fps_mode", "passthrough", "-"], check=True, capture_output=True)
        self.assertEqual(run.stderr, b"")
        size = self.WIDTH * self.HEIGHT
        self.assertEqual(len(run.stdout) % size, 0)
        return [run.stdout[i:i + size] for i in range(0, len(run.stdout), size)]

    def expect_gif(self, path, frames, numbers):
        pictures = self.grey_pictures(path)
        self.assertEqual(len(pictures), len(numbers))
        for picture, frame, number in zip(pictures, frames, numbers):
            grey = (lambda p: lambda x, y: p[int(y) * self.WIDTH + int(x)])(picture)
            self.assertEqual(self.number_in(grey, self.WIDTH, self.HEIGHT), number)
            stored, = self.grey_pictures(frame)
            difference = sum(abs(a - b) for a, b in zip(picture, stored)) / len(stored)
            self.assertLess(difference, LIKE, f"the picture of frame {number}")
        self.assertIn(b"NETSCAPE2.0\x03\x01\x00\x00", path.read_bytes())

    def saves_and_loads_the_profile(self):
        path = self.desk.folder / "home" / "quick.lmr"
        self.desk.key("ctrl+shift+s")
        self.app.named("push button", "Save")
        self.desk.key("ctrl+a")
        self.desk.type(str(path)[:-len(".lmr")])
        self.desk.key("Return")
        until(lambda: self.app.title() == "Lumirra - quick", "the profile in the title")
        lines = path.read_text().split("\n")
        self.assertEqual(len(lines), 63)
        self.assertEqual(lines[56], str(1 / FRAMES_PER_SECOND))
        other = path.with_name("other.lmr")
        shutil.copy(path, other)
        lines[56] = "0.5"
        other.write_text("\n".join(lines))
        self.desk.key("ctrl+l")
        self.app.named("push button", "Open")
        self.desk.type(str(other))
        self.desk.key("Return")
        until(lambda: self.app.title() == "Lumirra - other", "the loaded profile in the title")
        until(lambda: self.app.text("textFieldFrameDelay") == "0.5", "its frame delay")
        self.shot("profile")
        os.remove(other)
