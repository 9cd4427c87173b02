"""Ends the window by signals and looks at what it leaves.

usage: test_signals.py LUMIRRA
"""
import os
import pathlib
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest

LUMIRRA = pathlib.Path(sys.argv.pop(1)).resolve()


class Signals(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="signals"))
        self.addCleanup(shutil.rmtree, self.folder)

    def runs(self):
        return list(self.folder.glob("lumirra/run-*"))

    def start(self):
        environment = dict(os.environ, TMPDIR=str(self.folder), HOME=str(self.folder),
                           XDG_CONFIG_HOME=str(self.folder), QT_QPA_PLATFORM="offscreen")
        process = subprocess.Popen([LUMIRRA], env=environment, stdin=subprocess.DEVNULL,
                                   stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)
        end = time.monotonic() + 60
        while not self.runs() and time.monotonic() < end:
            time.sleep(0.02)
        self.assertTrue(self.runs(), "no working folder")
        return process

    def test_it_leaves_nothing(self):
        for numbers, pause in (([signal.SIGTERM], 0.5), ([signal.SIGINT], 0.5),
                               ([signal.SIGHUP], 0), ([signal.SIGTERM, signal.SIGTERM], 0.5)):
            with self.subTest(numbers=numbers):
                process = self.start()
                time.sleep(pause)
                for number in numbers:
                    process.send_signal(number)
                _, errors = process.communicate(timeout=60)
                self.assertEqual(process.returncode, 1, errors)
                self.assertEqual(self.runs(), [])


if __name__ == "__main__":
    unittest.main(verbosity=2)
