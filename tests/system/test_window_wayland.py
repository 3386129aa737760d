"""The window on a Wayland compositor that shows it on no screen; there is no X display for it.

This compositor has neither keyboard nor mouse, without which Qt 6.4 cannot paint the cursor of a
text field that can be edited. So no such field is opened here.
"""

import os
import re
import signal
import subprocess
import tempfile
import unittest

import display
from control import poll
from walk import WindowTest

SOCKET = "installer-wayland"
WIDTH, HEIGHT = 1280, 800
# Nothing but windows can be seen on its screen.
CONFIGURATION = """[shell]
background-color=0xff000000
panel-position=none
locking=false
animation=none
startup-animation=none
"""


class Compositor:
    """Its socket lies among the run-time files of the desktop."""

    def __init__(self, desktop, folder):
        self.desktop = desktop
        self.folder = folder
        configuration = folder / "weston.ini"
        configuration.write_text(CONFIGURATION)
        self.process = desktop.start(
            ["weston", "--backend=headless-backend.so", "--use-pixman", "--debug",
             f"--config={configuration}", f"--socket={SOCKET}", f"--width={WIDTH}",
             f"--height={HEIGHT}", "--idle-time=0"])
        if poll(lambda: (desktop.runtime / SOCKET).exists() or self.process.poll() is not None
                ) is None or self.process.poll() is not None:
            raise RuntimeError(f"weston did not start:\n{desktop.services_log()}")

    def picture(self):
        """The path of a picture of the whole screen."""
        folder = tempfile.mkdtemp(dir=self.folder)
        subprocess.run(["weston-screenshooter"], cwd=folder, check=True,
                       timeout=display.TOOL_LIMIT, capture_output=True,
                       env=self.desktop.environment("/") | {"WAYLAND_DISPLAY": SOCKET})
        name, = os.listdir(folder)
        return f"{folder}/{name}"

    def end(self):
        self.process.send_signal(signal.SIGKILL)
        self.process.wait()


def size_of_window(picture):
    """The width and height of what is lighter than the ground, which is black."""
    box = display.run_tool("convert", picture, "-colorspace", "Gray", "-threshold", "30%",
                           "-format", "%@", "info:").decode()
    return [int(number) for number in re.match(r"(\d+)x(\d+)", box).groups()]


def differs(one, other):
    """The share of the screen's pixels that are clearly another colour."""
    return float(display.run_tool("convert", one, other, "-compose", "difference", "-composite",
                                  "-colorspace", "Gray", "-threshold", "20%", "-format",
                                  "%[fx:mean]", "info:"))


class WindowWayland(WindowTest):
    def setUp(self):
        super().setUp()
        self.compositor = Compositor(self.desktop, self.scratch)
        self.addCleanup(self.compositor.end)

    def start(self, arguments=(), **environment):
        # The toolkit's plug-in for Wayland never frees what it has of the compositor. The same
        # window is tried for leaks under X.
        return super().start(arguments, DISPLAY="", WAYLAND_DISPLAY=SOCKET,
                             ASAN_OPTIONS="detect_leaks=0", **environment)

    def assertShown(self):
        """A window that is as large as the installer's at least stands on the screen."""
        def is_shown():
            width, height = size_of_window(self.compositor.picture())
            return 700 <= width < WIDTH and 500 <= height < HEIGHT
        self.assertTrue(poll(is_shown), "no window of that size is on the screen")

    @staticmethod
    def keep(picture, name):
        """Writes the window's picture, without the screen around it, for the documents."""
        if "PICTURES" in os.environ:
            display.run_tool("convert", picture, "-fuzz", "15%", "-trim", "+repage", "-strip",
                             "+dither", "-colors", "128", f"PNG8:{os.environ['PICTURES']}/{name}")

    def wait_for_another_picture(self, before):
        self.assertTrue(poll(lambda: differs(before, self.compositor.picture()) > 0.005),
                        "the screen shows the page before")

    def test_the_whole_way_works_and_is_seen(self):
        installed = self.photoshop()
        window = self.start()
        window.wait_for_label(self.text("license_instructions"))
        self.assertShown()
        licence = self.compositor.picture()
        self.keep(licence, "wayland-licence.png")
        self.reach_hosts(window)
        self.wait_for_another_picture(licence)
        self.install(window)
        window.wait_for_label(self.text("outcome_success_fmt"))
        self.finish_walk(window)
        for path in installed:
            self.assertInstalled(path)


if __name__ == "__main__":
    unittest.main(verbosity=2)
