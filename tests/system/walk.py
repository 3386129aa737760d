"""What the tests of the window share: the product, the desktop, and the way from page to page."""

import atexit
import os
import re
import shutil
import signal
import subprocess
import sys

from control import connect
from desktop import Desktop
from harness import SAMPLE_BUNDLE, Product, SystemTest, write
from window import Window

LOCALES = {"en": "en_US.UTF-8", "en_GB": "en_GB.UTF-8", "de": "de_DE.UTF-8", "fr": "fr_FR.UTF-8", "es": "es_ES.UTF-8",
           "ja": "ja_JP.UTF-8", "ar": "ar_EG.UTF-8"}

ENTRY = re.compile(r'^"((?:[^"\\]|\\.)*)"\s*=\s*"((?:[^"\\]|\\.)*)";', re.MULTILINE)
ESCAPES = {"n": "\n", "t": "\t"}
ARGUMENT = re.compile(r"%(?:(\d)\$)?@")


def read_table(path):
    """The entries of a table of texts."""
    def plain(text):
        return re.sub(r"\\(.)", lambda found: ESCAPES.get(found[1], found[1]), text)
    return {plain(key): plain(value) for key, value in ENTRY.findall(path.read_text("utf-8"))}


def filled(pattern, *arguments):
    """The text with its "%@" and "%1$@" replaced."""
    left = list(arguments)
    return ARGUMENT.sub(
        lambda found: arguments[int(found[1]) - 1] if found[1] else left.pop(0), pattern)


class ShippedProduct(Product):
    """The shipped bundle as it is, but for what it installs."""

    def __init__(self, folder, leave_out=("files",)):  # pylint: disable=super-init-not-called
        self.bundle = folder / SAMPLE_BUNDLE.name
        self.contents = self.bundle / "Contents"
        self.resources = self.contents / "Resources"
        self.files = self.resources / "files"
        shutil.copytree(SAMPLE_BUNDLE, self.bundle, symlinks=True,
                        ignore=lambda path, _: leave_out if path.endswith("/Resources") else [])
        names = read_table(self.resources / "en.lproj/installer.strings")
        self.company, self.name = names["company_name"], names["product_name"]

    @classmethod
    def as_shipped(cls, folder):
        return cls(folder, leave_out=())

    def text(self, key, *arguments, language="en"):
        """The text of that key. Where a text takes a name and none is given, it is the product's."""
        text = read_table(self.resources / f"{language}.lproj/Localizable.strings")[key]
        return filled(text, *(arguments or [self.name] * len(ARGUMENT.findall(text))))

    def add_sample_payload(self):
        support = f"HD/Library/Application Support/{self.company}/{self.name}"
        self.add(f"{support}/readme.txt", "read me")
        self.add_package("HD/Applications/Tool.app", {"Contents/tool.txt": "tool"})
        self.add("PHOTOSHOP/Presets/Scripts/run.jsx", "alert();")
        self.add(f"PHOTOSHOP_PLUGINS/{self.company}/filter.8bf", "filter")


def desktop(login="root"):
    """This process's desktop."""
    if not hasattr(desktop, "it"):
        desktop.it = Desktop(login, os.environ.get("INSTALLER_TEST_SCREEN", "1600x1200x24"))
        atexit.register(desktop.it.close)
        # A test that is told to end shall not leave a display behind.
        signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))
        desktop.it.enter()
        connect()
    return desktop.it


class WindowTest(SystemTest):
    """A test with an installer's window on a private desktop, on the throw-away machine."""

    login = "root"
    language = "en"

    def setUp(self):
        super().setUp()
        self.desktop = desktop(self.login)
        self.desktop.forget_opened()
        self.disk, _ = self.new_machine()
        self.product = ShippedProduct(self.scratch)
        self.product.add_sample_payload()
        self.started = 0

    def text(self, key, *arguments):
        return self.product.text(key, *arguments, language=self.language)

    def start(self, arguments=(), **environment):
        """Starts the installer; the test's end is the installer's too."""
        self.started += 1
        messages = self.scratch / f"messages {self.started}"
        program, *arguments = self.command(arguments)
        window = Window(self.desktop, program,
                        self.desktop.environment(self.disk.home) |
                        {"LANG": LOCALES[self.language]} | environment,
                        arguments, messages, **self.account())
        self.addCleanup(self.finish, window)
        return window

    def command(self, arguments):
        """How the installer is started."""
        return [self.product.executable, *arguments]

    def account(self):
        """As whom the installer runs: the options of the process."""
        return {}

    def finish(self, window):
        crashed = not window.running and window.process.returncode < 0
        window.end()
        if not self._outcome.success:
            print(f"{self.id()}: what the installer said:\n{window.messages}", file=sys.stderr)
        self.assertFalse(crashed, f"the installer crashed:\n{window.messages}")
        self.assertNotIn("Sanitizer", window.messages)

    def photoshop(self, name="Adobe Photoshop CS6"):
        """An installed Photoshop; gives the paths of what is installed into it."""
        folder = self.disk.add_photoshop(name)
        return [folder / "Presets/Scripts/run.jsx",
                folder / "Plug-Ins" / self.product.company / "filter.8bf"]

    def run_program(self, name):
        """Starts a program that a person knows by that name; it does nothing for a long time."""
        program = self.scratch / "programs" / name
        program.parent.mkdir(exist_ok=True)
        shutil.copy("/bin/sleep", program)
        process = subprocess.Popen([str(program), "1000"], cwd="/", stdin=subprocess.DEVNULL)
        self.addCleanup(self.end_program, process)
        return process

    @staticmethod
    def end_program(process):
        process.kill()
        process.wait()

    def cover_read_only(self, folder):
        """Makes the folder one that not even the administrator can write to."""
        subprocess.run(["mount", "--bind", folder, folder], check=True)
        self.addCleanup(subprocess.run, ["umount", folder], check=True)
        subprocess.run(["mount", "-o", "remount,ro,bind", folder], check=True)

    # The way from page to page

    def agree(self, window):
        window.press(self.text("continue"))
        window.wait_for_label(self.text("agree_message"))
        window.press(self.text("agree_button"))
        window.wait_until_gone("label", self.text("agree_message"))
        return window

    def reach_hosts(self, window):
        self.agree(window).wait_for_label(self.text("select_host"))
        return window

    def install(self, window):
        """From the page of hosts on to the last one."""
        window.press(self.text("continue"))
        window.wait_for_label(self.text("register_title"))
        return window

    def finish_walk(self, window):
        window.press(self.text("finish"))
        self.assertEqual(window.wait_for_end(), 0, window.messages)

    def custom_folder(self, window):
        """The path that the page of the custom install shows."""
        window.wait_for_label(self.text("custom_install_label_path"))
        return window.find("text", self.text("custom_install_label_path"))

    def choose_folder(self, window, folder, name=None):
        """Chooses a folder through the panel, by typing its path."""
        window.press(self.text("custom_install_browse_button"))
        panel = self.folder_panel(window)
        field = next(control for control in panel.shown() if control.role == "text")
        field.replace_text(str(folder))
        window.wait_until_enabled("push button", self.text("browse_path_prompt")).press()
        window.wait_until(lambda: not window.shows("dialog"), "the panel to close")

    def folder_panel(self, window):
        return window.find("dialog", self.text("browse_path_title"))

    def defaults_file(self):
        return self.disk.home / "Library/Preferences/com.quarrytone.installer.plist"

    def write_defaults(self, content):
        return write(self.defaults_file(), content)
