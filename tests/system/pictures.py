"""Takes pictures of every page of the window, in the looks and languages that people use it in.

Started by scripts/make-screenshots on the throw-away machine; writes into the folder $PICTURES.
"""

import os
import pathlib
import shutil
import signal
import subprocess
import unittest

from harness import TIME_LIMIT
from walk import ShippedProduct, WindowTest

SOURCE = pathlib.Path(__file__).resolve().parents[2]
PRESETS = 2000
FOLDER = "/Applications/Lightbox/Plug-ins"


class Light(WindowTest):
    """One look or language: `name` is the first part of its pictures' names."""

    name = "light"
    appearance = None
    surroundings = {}

    def setUp(self):
        super().setUp()
        self.pictures = pathlib.Path(os.environ["PICTURES"])
        self.desktop.prefer(self.appearance)
        self.addCleanup(self.desktop.prefer, None)
        self.fill_disk()
        self.product = ShippedProduct.as_shipped(self.scratch / "shipped")

    def fill_disk(self):
        sample = self.scratch / "sample"
        subprocess.run([SOURCE / "scripts/make-sample-disk", sample], check=True,
                       timeout=TIME_LIMIT)
        for folder in ("Library", "Applications"):
            shutil.copytree(sample / folder, f"/{folder}", dirs_exist_ok=True)
        shutil.copytree(sample / "Users/root/Library", self.disk.home / "Library")
        os.makedirs(FOLDER)

    def start(self, arguments=(), **environment):
        window = super().start(arguments, **self.surroundings, **environment)
        window.wait_for_label(self.text("license_instructions"))
        return window

    def take(self, window, page):
        window.picture(self.pictures / f"{self.name}-{page}.png")

    def test_pages_of_a_successful_walk(self):
        window = self.start()
        self.take(window, "licence")
        window.press(self.text("continue"))
        window.wait_for_label(self.text("agree_message"))
        self.take(window, "question")
        window.press(self.text("agree_button"))
        window.wait_for_label(self.text("select_host"))
        self.take(window, "hosts")
        window.press(self.text("custom_install_button"))
        self.custom_folder(window)
        self.choose_folder(window, FOLDER)
        self.take(window, "custom")
        window.press(self.text("go_back"))
        window.wait_until(lambda: window.controls("list item"), "the list of hosts")
        program = self.run_program("Photoshop")
        window.press(self.text("continue"))
        window.wait_for_label(self.text("host_running_title"))
        self.take(window, "running")
        self.end_program(program)
        window.wait_for_label(self.text("thank_you"))
        self.install(window)
        self.take(window, "finished")

    def test_the_page_that_installs(self):
        presets = f"Library/Application Support/{self.product.company}/{self.product.name}"
        for number in range(PRESETS):
            self.product.add(f"HD/{presets}/Tone {number}.twpreset", "tone")
        window = self.reach_hosts(self.start())
        window.press(self.text("continue"))
        bar = window.find("progress bar", self.text("progress_name"))
        window.wait_until(lambda: bar.value > 0, "progress")
        os.kill(window.process.pid, signal.SIGSTOP)
        self.take(window, "installing")
        os.kill(window.process.pid, signal.SIGCONT)

    def test_pages_of_a_failure(self):
        actions = "/Applications/Adobe Photoshop CS6/Presets/Actions"
        os.makedirs(actions)
        self.cover_read_only(actions)
        window = self.reach_hosts(self.start())
        window.press(self.text("continue"))
        window.wait_for_label(self.text("install_error_title"))
        self.take(window, "alert")
        window.press(self.text("install_error_proceed"))
        window.wait_for_label(self.text("register_title"))
        self.take(window, "failed")


class Dark(Light):
    name, appearance = "dark", "dark"


class German(Light):
    name = language = "de"


class French(Light):
    name = language = "fr"


class Spanish(Light):
    name = language = "es"


class Japanese(Light):
    name = language = "ja"


class Arabic(Light):
    name = language = "ar"


class LargeText(Light):
    name, surroundings = "large", {"QT_FONT_DPI": "144"}


class Doubled(Light):
    name, surroundings = "doubled", {"QT_SCALE_FACTOR": "2"}


class DesktopsLargeText(Light):
    """A desktop whose own font is of 16 points."""

    name = "sixteen"
    surroundings = {"XDG_CURRENT_DESKTOP": "KDE", "KDE_SESSION_VERSION": "5"}

    def start(self, arguments=(), **environment):
        settings = self.disk.home / ".config/kdeglobals"
        settings.parent.mkdir(parents=True, exist_ok=True)
        settings.write_text("[General]\nfont=DejaVu Sans,16,-1,5,50,0,0,0,0,0\n")
        return super().start(arguments, **environment)


class SmallScreen(Light):
    """With INSTALLER_TEST_SCREEN=1024x600x24 in the environment."""

    name = "small"


class SmallScreenLargeText(Light):
    """The same, with text of one and a half times the size."""

    name, surroundings = "small-large", {"QT_FONT_DPI": "144"}


if __name__ == "__main__":
    unittest.main(verbosity=2)
