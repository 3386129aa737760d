"""What the tests of packed files share: a product that a maker made, and a kit with other programs.

The program is given by the environment, so that these tests take their own arguments.
"""

import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

PROGRAM = pathlib.Path(os.environ["MKINSTALLER"])
TIME_LIMIT = 120


def run(*command, check=True, **options):
    """Runs a command without a display and without input."""
    environment = {**os.environ, **options.pop("environment", {})}
    for name in ("DISPLAY", "WAYLAND_DISPLAY"):
        environment.pop(name, None)
    options.setdefault("stdin", subprocess.DEVNULL)
    finished = subprocess.run(
        [str(word) for word in command], env=environment, capture_output=True, text=True,
        errors="backslashreplace", timeout=TIME_LIMIT, check=False, **options)
    if check and finished.returncode != 0:
        raise AssertionError(f"{command}: {finished.returncode}\n{finished.stderr}")
    return finished


def script(path, text):
    """Makes a program of the lines for the shell."""
    path.write_text("#!/bin/sh\n" + text)
    path.chmod(0o755)
    return path


class PackedProduct(unittest.TestCase):
    """A test with a scratch folder and a product in it."""

    maxDiff = None

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.scratch = pathlib.Path(folder.name)
        self.scratch.chmod(0o755)
        self.product = self.scratch / "product"
        self.output = self.scratch / "output"
        self.temporary = self.new_folder("temporary")
        run(PROGRAM, "new", self.product, "--company", "Acme", "--product", "Filters 2",
            "--id", "com.acme.filters", "--languages", "en,de,ja")

    def new_folder(self, name):
        folder = self.scratch / name
        folder.mkdir()
        return folder

    def pack(self, form, program=PROGRAM, output=None, **options):
        """Packs the product; gives the path of the file that was made."""
        made = run(program, "pack", self.product, "--format", form, "--output",
                   output or self.output, **options)
        return pathlib.Path(made.stdout.removesuffix("\n"))

    def kit_with(self, **programs):
        """A mkinstaller whose bundles have these lines for the shell as their programs."""
        folder = self.new_folder("kit")
        shutil.copy(PROGRAM, folder)
        shutil.copytree(PROGRAM.parent / "runtime", folder / "runtime")
        for name, text in programs.items():
            script(folder / "runtime/Contents/MacOS" / name, text)
        return folder / PROGRAM.name

    def new_volume(self, name="volume"):
        """A disk to install on, and the environment that names it."""
        volume = self.new_folder(name)
        return volume, {"INSTALLER_TARGET_VOLUME": str(volume), "TMPDIR": str(self.temporary)}

    def assertNothingUnpacked(self):
        self.assertEqual([], os.listdir(self.temporary))
