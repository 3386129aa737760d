#!/usr/bin/env python3
"""The kit for makers: that it works where it is unpacked, and that the guide's commands do what the
guide says, as they stand there.
"""

import os
import pathlib
import re
import subprocess
import tempfile
import unittest

SOURCES = pathlib.Path(os.environ["SOURCES"])
BUILD = pathlib.Path(os.environ["BUILD"])
VERSION = os.environ["VERSION"]
GUIDE = SOURCES / "docs/making-an-installer.md"
PLATFORMS = SOURCES / "docs/platforms.md"


def run(*command, **options):
    finished = subprocess.run([str(word) for word in command], capture_output=True, text=True,
                              check=False, timeout=300, **options)
    if finished.returncode != 0:
        raise AssertionError(f"{command}: {finished.returncode}\n{finished.stdout}{finished.stderr}")
    return finished.stdout


def environment(**more):
    kept = {name: os.environ[name] for name in ("PATH", "LANG") if name in os.environ}
    return {**kept, **more}


class Kit(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.scratch = pathlib.Path(folder.name)
        run(SOURCES / "packaging/make-kit", BUILD, VERSION, cls.scratch / "kit")
        cls.archive, = (cls.scratch / "kit").glob("*.tar.gz")
        cls.package, = (cls.scratch / "kit").glob("*.deb")

    def test_the_guides_commands_work_as_they_stand(self):
        commands = re.findall(r"^    \$ (.+)$", GUIDE.read_text(encoding="utf-8"), re.MULTILINE)
        self.assertGreater(len(commands), 10)
        folder = self.scratch / "maker"
        folder.mkdir()
        (folder / self.archive.name).symlink_to(self.archive)
        shown = run("bash", "-euc", "\n".join(commands), cwd=folder,
                    env=environment(HOME=str(folder)))
        self.assertIn(f"mkinstaller {VERSION}\n", shown)
        self.assertIn("every item is where the plan says", shown)
        self.assertIn("Signature and comment signature verified", shown)
        self.assertIn("disk/Library/Application Support/Acme/Filters 2/Read Me.txt\n", shown)
        table = re.findall(r"^\| `(\w[^`*]+\.(?:run|deb))` \|", GUIDE.read_text(encoding="utf-8"),
                           re.MULTILINE)
        self.assertEqual(2, len(table))
        for name in table:
            self.assertTrue((folder / "release" / name).is_file(), name)
            self.assertTrue((folder / "release" / f"{name}.minisig").is_file(), name)

    def test_the_package_works_where_it_is_installed(self):
        root = self.scratch / "root"
        run("dpkg-deb", "--extract", self.package, root)
        product = self.scratch / "from package"
        program = root / "usr/bin/mkinstaller"
        run(program, "new", product, "--company", "A", "--product", "B", "--id", "com.a.b",
            env=environment())
        self.assertEqual("", run(program, "lint", product, env=environment()))

    def test_the_package_checker_is_silent(self):
        self.assertEqual("", run("lintian", "--allow-root", "--fail-on", "error,warning",
                                 self.package))

    def test_the_same_build_gives_the_same_bytes(self):
        run(SOURCES / "packaging/make-kit", BUILD, VERSION, self.scratch / "again", umask=0o077)
        for file in (self.archive, self.package):
            self.assertEqual(file.read_bytes(), (self.scratch / "again" / file.name).read_bytes())

    def test_the_needed_c_library_is_the_one_that_is_documented(self):
        programs = [BUILD / "mkinstaller", *(BUILD / "runtime/Contents/MacOS").iterdir()]
        versions = re.findall(r"GLIBC_(\d+)\.(\d+)", run("objdump", "-T", *programs))
        newest = max((int(major), int(minor)) for major, minor in versions)
        documented = set(re.findall(r"glibc (\d+)\.(\d+)", PLATFORMS.read_text(encoding="utf-8")))
        self.assertEqual({tuple(map(str, newest))}, documented)


if __name__ == "__main__":
    unittest.main()
