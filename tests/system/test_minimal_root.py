"""What mkinstaller packs, on a machine with nothing but this system's base: unpacked, installed,
run, verified, removed, and refused if it is damaged.
"""

import os
import pathlib
import shutil
import signal
import subprocess
import unittest

from harness import ON_PRIVATE_MACHINE, SystemTest
from minimal_root import MinimalRoot
from rights import wait_until
from test_packages import NAME, tool

PROGRAM = pathlib.Path(os.environ["MKINSTALLER"])
FORMATS = "run,tar,deb,rpm"
RECEIPT = "Library/Receipts/com.acme.filters.json"


def setUpModule():
    if not ON_PRIVATE_MACHINE:
        raise AssertionError("this test needs a throw-away machine")
    folder = pathlib.Path("/run/minimal")
    folder.mkdir()
    MinimalRootTest.root = MinimalRoot(folder / "root")
    product, key = folder / "product", folder / "key"
    tool(PROGRAM, "new", product, "--company", "Acme", "--product", "Filters 2", "--id",
         "com.acme.filters", "--languages", "en,de")
    tool(PROGRAM, "keygen", key)
    made = tool(PROGRAM, "pack", product, "--format", FORMATS, "--sign", key, "--output",
                folder / "files")
    MinimalRootTest.files = {pathlib.Path(line).suffix: pathlib.Path(line)
                             for line in made.stdout.splitlines()}


class MinimalRootTest(SystemTest):
    root = files = None

    def setUp(self):
        super().setUp()
        for folder in ("Library", "tmp"):
            self.empty(folder)
        self.place = self.root.root / "tmp"

    def empty(self, folder):
        for path in (self.root.root / folder).iterdir():
            shutil.rmtree(path) if path.is_dir() else path.unlink()

    def put(self, suffix, spoil=lambda contents: contents):
        """Puts the packed file there; gives its path as the machine sees it."""
        file = self.files[suffix]
        copy = self.place / file.name
        copy.write_bytes(spoil(file.read_bytes()))
        copy.chmod(0o755)
        return f"/tmp/{file.name}"

    def is_installed(self):
        return (self.root.root / "Library/Application Support/Acme/Filters 2/Read Me.txt").is_file()


class MinimalRootFiles(MinimalRootTest):
    def test_has_neither_libplist_nor_a_window_toolkit(self):
        names = {path.name for path in (self.root.root / "usr/lib").rglob("*.so*")}
        self.assertIn("libc.so.6", names)
        self.assertEqual([], [name for name in names if name.startswith(("libplist", "libQt"))])

    def test_one_file_installs_and_leaves_nothing_behind(self):
        file = self.put(".run")
        started = self.root.run(file, "-quiet")
        self.assertEqual(0, started.returncode, started.stderr)
        self.assertTrue(self.is_installed(), started.stderr)
        self.assertEqual([os.path.basename(file)], os.listdir(self.place))

    def test_one_file_without_a_window_toolkit_says_so(self):
        started = self.root.run(self.put(".run"))
        self.assertEqual(1, started.returncode)
        self.assertIn("Start it with -quiet", started.stderr)

    def test_an_archive_is_unpacked_and_installs(self):
        unpacked = self.root.run("tar", "-xzf", self.put(".gz"), "-C", "/tmp")
        self.assertEqual(0, unpacked.returncode, unpacked.stderr)
        started = self.root.run("/tmp/Acme Filters 2 Installer.app/Contents/MacOS/Installer",
                                "-quiet")
        self.assertTrue(self.is_installed(), started.stderr)

    def test_a_package_is_installed_used_verified_and_removed(self):
        installed = self.root.run("dpkg", "--install", self.put(".deb"))
        self.assertEqual(0, installed.returncode, installed.stderr)
        self.assertFalse(self.is_installed())
        verified = self.root.run("dpkg", "--verify", NAME)
        self.assertEqual((0, ""), (verified.returncode, verified.stdout))
        started = self.root.run(NAME, "-quiet")
        self.assertTrue(self.is_installed(), started.stderr)
        removed = self.root.run("dpkg", "--remove", NAME)
        self.assertEqual(0, removed.returncode, removed.stderr)
        self.assertFalse((self.root.root / "usr/lib/acme").exists())


class MinimalRootAdministrator(MinimalRootTest):
    """Each format with the tool for administrators: installed, verified, damaged, repaired, removed."""

    def ended(self, *command, status=0):
        ended = self.root.run(*command)
        self.assertEqual(status, ended.returncode, ended.stdout + ended.stderr)
        return ended.stdout

    def assertGone(self):
        self.assertEqual([], os.listdir(self.root.root / "Library"))

    def use(self, *program):
        """Ends with the product installed again."""
        self.ended(*program, "install")
        self.assertTrue(self.is_installed())
        self.assertTrue((self.root.root / RECEIPT).is_file())
        self.ended(*program, "verify")
        read_me = self.root.root / "Library/Application Support/Acme/Filters 2/Read Me.txt"
        whole = read_me.read_bytes()
        read_me.write_bytes(b"damaged")
        self.assertIn(f"/{read_me.relative_to(self.root.root)}",
                      self.ended(*program, "verify", status=3))
        self.ended(*program, "install")
        self.assertEqual(whole, read_me.read_bytes())
        self.ended(*program, "remove")
        self.assertGone()
        self.ended(*program, "install")

    def test_one_file(self):
        file = self.put(".run")
        self.use(file)
        self.ended(file, "remove")
        self.assertGone()
        self.assertEqual([os.path.basename(file)], os.listdir(self.place))

    def test_an_archive(self):
        self.ended("tar", "-xzf", self.put(".gz"), "-C", "/tmp")
        program = "/tmp/Acme Filters 2 Installer.app/Contents/MacOS/installerctl"
        self.use(program)
        self.ended(program, "remove")
        self.assertGone()

    def test_a_package_whose_removal_removes_the_product(self):
        self.ended("dpkg", "--install", self.put(".deb"))
        self.use(NAME)
        self.ended("dpkg", "--remove", NAME)
        self.assertGone()
        self.assertFalse((self.root.root / "usr/lib/acme").exists())

    def test_a_package_of_the_other_kind_whose_removal_removes_the_product(self):
        """This system's base has no such tool; the machine's own one works on the root's own list."""
        rpm = ("unshare", "--mount", "sh", "-c",
               'mount -t proc proc "$0/proc" && exec rpm --root "$0" "$@"', self.root.root)
        tool(*rpm, "--install", "--nodeps", self.root.root / self.put(".rpm").lstrip("/"))
        self.addCleanup(tool, *rpm, "--erase", "--noscripts", NAME, check=False)
        self.assertIn(NAME, tool(*rpm, "--query", "--all").stdout)
        self.assertEqual("", tool(*rpm, "--verify", "--nodeps", NAME).stdout)
        self.use(NAME)
        tool(*rpm, "--erase", NAME)
        self.assertGone()
        self.assertFalse((self.root.root / "usr/lib/acme").exists())
        self.assertEqual("", tool(*rpm, "--query", "--all").stdout)


class MinimalRootToolkit(MinimalRootTest):
    """The window on a machine without a toolkit and without a font."""

    def start_display(self):
        """A display that is reached over the network namespace, which the machines share."""
        read_end, write_end = os.pipe()
        display = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write_end), "-screen", "0", "1280x800x24", "-nolisten", "tcp",
             # Else it starts anew, and loses the installer, whenever nobody else looks.
             "-noreset"],
            pass_fds=[write_end], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.addCleanup(display.wait)
        self.addCleanup(display.kill)
        os.close(write_end)
        with os.fdopen(read_end) as number:
            return ":" + number.readline().strip()

    def test_a_file_with_the_toolkit_opens_its_window_with_letters(self):
        folder = self.root.root.parent
        tool(PROGRAM, "pack", folder / "product", "--with-toolkit", "--output", folder / "with")
        file, = (folder / "with").iterdir()
        shutil.copy(file, self.place)
        display = self.start_display()
        started = self.root.start("/usr/bin/env", f"DISPLAY={display}", f"/tmp/{file.name}")
        self.addCleanup(started.communicate)
        self.addCleanup(os.killpg, started.pid, signal.SIGKILL)
        seen = wait_until(lambda: started.poll() is not None or self.windows(display), "the window")
        if not isinstance(seen, list):
            self.fail(f"ended with {started.returncode}: {started.communicate()}")
        # Blank texts would leave the licence's page with a few plain colours.
        wait_until(lambda: self.colours(display, seen[-1]) > 40, "letters in the window")

    @staticmethod
    def windows(display):
        found = subprocess.run(
            ["xdotool", "search", "--onlyvisible", "--name", "Filters 2"], capture_output=True,
            text=True, check=False, env={**os.environ, "DISPLAY": display})
        return found.stdout.split()

    @staticmethod
    def colours(display, window):
        shown = tool("import", "-display", display, "-window", window, "-crop", "600x120+200+120",
                     "-format", "%k", "info:-")
        return int(shown.stdout)


class MinimalRootDamage(MinimalRootTest):
    """A file that lost its end or was changed installs nothing."""

    def spoiled(self, suffix):
        def changed(contents):
            middle = len(contents) // 2
            return contents[:middle] + bytes([contents[middle] ^ 1]) + contents[middle + 1:]
        for spoil in (changed, lambda contents: contents[:-100]):
            yield self.put(suffix, spoil)

    def test_one_file_is_refused_with_a_clear_message(self):
        for file in self.spoiled(".run"):
            started = self.root.run(file, "-quiet")
            self.assertEqual(1, started.returncode)
            self.assertIn("is damaged or incomplete; please download it again.", started.stderr)
            self.assertFalse(self.is_installed())

    def test_an_archive_is_refused_by_the_system(self):
        for file in self.spoiled(".gz"):
            unpacked = self.root.run("tar", "-xzf", file, "-C", "/tmp")
            self.assertNotEqual(0, unpacked.returncode)
            # Which of the two notices first depends on what was changed.
            self.assertRegex(unpacked.stderr, "(?m)^(gzip: stdin|tar): ")
            self.assertFalse(self.is_installed())

    def test_a_package_is_refused_by_the_system(self):
        for file in self.spoiled(".deb"):
            installed = self.root.run("dpkg", "--install", file)
            self.assertNotEqual(0, installed.returncode)
            self.assertIn("dpkg: error processing", installed.stderr)
            self.assertFalse((self.root.root / "usr/bin" / NAME).exists())


if __name__ == "__main__":
    unittest.main()
