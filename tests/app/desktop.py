"""A virtual desktop, and a program on it that is driven as people and assistive technology do:
by mouse, keyboard and the accessibility tree. Controls are named by their outlet, which the program
gives as each one's accessible description.

Call `in_private_session()` first: it starts the script again inside a D-Bus session of its own.
"""
import os
import pathlib
import subprocess
import sys
import time

PRIVATE = "LUMIRRA_TEST_SESSION"
WAIT_SECONDS = 40  # a sanitizer build on a busy machine is slow


def in_private_session():
    if PRIVATE not in os.environ:
        os.environ[PRIVATE] = "1"
        os.execvp("dbus-run-session", ["dbus-run-session", "--", sys.executable, *sys.argv])


def until(holds, what, seconds=WAIT_SECONDS):
    """The first true answer of `holds`; fails saying `what` when none comes. A control that goes
    away while it is looked at counts as no answer."""
    end = time.monotonic() + seconds
    while True:
        try:
            answer = holds()
        except Exception as error:  # the tree's own errors have no common base
            if isinstance(error, AssertionError):
                raise
            answer = None
        if answer:
            return answer
        if time.monotonic() > end:
            raise AssertionError(f"waited {seconds} s in vain: {what}")
        time.sleep(0.05)


class Screenshot:
    """The display's pixels; (x, y) gives the red, green and blue of one."""

    def __init__(self, data):
        fields = data.split(maxsplit=4)
        assert fields[0] == b"P6" and fields[3] == b"255", data[:20]
        self.data = data
        self.width = int(fields[1])
        self.start = len(data) - 3 * self.width * int(fields[2])

    def __call__(self, x, y):
        at = self.start + 3 * (int(y) * self.width + int(x))
        return tuple(self.data[at:at + 3])

    def grey(self, x, y):
        return sum(self(x, y)) / 3

    def save(self, path):
        subprocess.run(["convert", "ppm:-", str(path)], input=self.data, check=True)


class Desktop:
    """Xvfb, a window manager and the accessibility registry; ends what it started."""

    def __init__(self, folder, size="1400x900"):
        self.folder = pathlib.Path(folder)
        self.size = size
        self.started = []

    def __enter__(self):
        read, write = os.pipe()
        self._start("Xvfb", "-displayfd", str(write), "-screen", "0", self.size + "x24",
                    "-nolisten", "tcp", pass_fds=(write,))
        os.close(write)
        with os.fdopen(read) as answer:
            display = answer.readline().strip()
        assert display, "Xvfb did not start"
        for name in ("run", "home", "tmp", "config"):
            (self.folder / name).mkdir(mode=0o700, parents=True, exist_ok=True)
        os.environ.update(DISPLAY=":" + display, XDG_RUNTIME_DIR=str(self.folder / "run"),
                          HOME=str(self.folder / "home"),
                          XDG_CONFIG_HOME=str(self.folder / "config"))
        self._start("openbox")
        import pyatspi
        self.spi = pyatspi
        pyatspi.Registry.getDesktop(0).childCount  # its registry must run before the program
        until(lambda: subprocess.run(["xdotool", "get_num_desktops"],
                                     capture_output=True).returncode == 0, "the window manager")
        return self

    def _start(self, *command, **more):
        self.started.append(subprocess.Popen(command, stdout=subprocess.DEVNULL,
                                             stderr=subprocess.DEVNULL, **more))

    def __exit__(self, *_):
        for process in reversed(self.started):
            process.terminate()
            process.wait()

    def screenshot(self):
        shot = subprocess.run(["import", "-window", "root", "-depth", "8", "ppm:-"], check=True,
                              capture_output=True)
        return Screenshot(shot.stdout)

    @staticmethod
    def xdotool(*words):
        subprocess.run(["xdotool", *map(str, words)], check=True)

    def key(self, *names):
        self.xdotool("key", "--delay", 30, *names)

    def type(self, text):
        self.xdotool("type", "--delay", 15, text)

    def click(self, x, y):
        self.xdotool("mousemove", int(x), int(y), "click", 1)

    def drag(self, start, end, steps=12):
        self.xdotool("mousemove", *map(int, start), "mousedown", 1)
        for i in range(1, steps + 1):
            at = [a + (b - a) * i / steps for a, b in zip(start, end)]
            self.xdotool("mousemove", *map(int, at), "sleep", 0.02)
        self.xdotool("mouseup", 1)


class Program:
    def __init__(self, desktop, command, **environment):
        self.desktop, self.spi = desktop, desktop.spi
        self.process = subprocess.Popen(
            [str(word) for word in command],
            env={**os.environ, "QT_QPA_PLATFORM": "xcb", "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
                 "TMPDIR": str(desktop.folder / "tmp"),
                 # The display's, font's and session's libraries keep what they allocated.
                 "ASAN_OPTIONS": "detect_leaks=0:allocator_may_return_null=1", **environment})
        name = pathlib.Path(command[0]).name
        try:
            self.root = until(lambda: self._appeared(name), f"{name} on the accessibility bus")
        except BaseException:
            self.process.kill()
            raise

    def _appeared(self, name):
        assert self.process.poll() is None, f"{name} ended with {self.process.returncode}"
        return next((a for a in self.spi.Registry.getDesktop(0) if a and a.name == name), None)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        if self.process.poll() is None:
            self.process.kill()
        self.process.wait()

    def _walk(self, node):
        yield node
        for i in range(node.childCount):
            child = node.getChildAtIndex(i)
            if child is not None:
                yield from self._walk(child)

    def _first(self, fits, what):
        def found():
            node = next((n for n in self._walk(self.root) if fits(n)), None)
            if node is None:
                self.root.clear_cache()  # which may not know what has come since
            return node
        return until(found, what)

    def find(self, outlet):
        return self._first(lambda n: n.description == outlet, outlet)

    def named(self, role, name):
        """A control without an outlet, by role and visible name."""
        return self._first(lambda n: n.getRoleName() == role and n.name.replace("&", "") == name
                           and n.getState().contains(self.spi.STATE_SHOWING), f"{role} {name}")

    def place(self, what):
        node = self.find(what) if isinstance(what, str) else what
        e = node.queryComponent().getExtents(self.spi.DESKTOP_COORDS)
        return e.x, e.y, e.width, e.height

    def click(self, what):
        x, y, width, height = self.place(what)
        self.desktop.click(x + width / 2, y + height / 2)

    def value(self, outlet):
        return self.find(outlet).queryValue().currentValue

    def set(self, outlet, value):
        self.find(outlet).queryValue().currentValue = value

    def text(self, outlet):
        node = self.find(outlet)
        try:
            return node.queryText().getText(0, -1)
        except NotImplementedError:
            return node.name

    def has(self, outlet, state):
        return self.find(outlet).getState().contains(state)

    def enabled(self, outlet):
        return self.has(outlet, self.spi.STATE_ENABLED)

    def shown(self, outlet):
        return self.has(outlet, self.spi.STATE_SHOWING)

    def title(self):
        return self.root.getChildAtIndex(0).name
