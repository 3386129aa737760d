"""Installs through the real window and measures how long it goes without painting.

Started by bench/repaint on the throw-away machine.
"""

import os
import pathlib
import subprocess
import sys
import time
import unittest

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent / "tests/system"))

from harness import administrators_group, write  # noqa: E402
from repaint_probe import RepaintProbe  # noqa: E402
from walk import WindowTest  # noqa: E402

LOGIN = "bench-user"
PACKAGE = "HD/Applications/Big.app"
PIECE = 16 * 2**20
PIECES = 64
ITEMS = 5000
ITEMS_IN_A_FOLDER = 25
IDLE_SECONDS = 3
# What the sample payload puts below /Applications: a script, a filter and a package of two files.
SAMPLE_FILES = 4
MARKS = ("<!-- repaint table -->\n", "<!-- end of repaint table -->\n")

rows = []


def setUpModule():
    subprocess.run(["useradd", "--create-home", LOGIN], check=True, capture_output=True)


class Installation:
    """An ordinary user's, with a helper that sudo starts without a question."""

    what = ""
    login = LOGIN

    def setUp(self):
        super().setUp()
        account = self.desktop.account
        self.user, self.group = account.pw_uid, account.pw_gid
        self.photoshop()
        subprocess.run(["chown", "-R", f"{self.user}:{self.group}", self.disk.home], check=True)
        os.chown("/Applications", self.owner_of_applications(), 0)
        rule = write(f"/etc/sudoers.d/{LOGIN}", f"{LOGIN} ALL=(root) NOPASSWD: ALL\n", 0o440)
        self.addCleanup(rule.unlink)
        self.add_payload()

    def account(self):
        return {"user": self.user, "group": self.group, "cwd": "/",
                "extra_groups": [administrators_group()]}

    def owner_of_applications(self):
        return 0

    def add_payload(self):
        raise NotImplementedError

    def files_to_come(self):
        """How many files of the payload will be there."""
        raise NotImplementedError

    def files_there(self):
        return sum(len(files) for _, _, files in os.walk("/Applications"))

    def test_longest_time_without_a_paint(self):
        before = self.files_there()
        window = self.reach_hosts(self.start())
        name = self.desktop.environment(self.disk.home)["DISPLAY"]
        probe = RepaintProbe(name, int(window.front()))
        idle_start = time.monotonic()
        time.sleep(IDLE_SECONDS)
        start = time.monotonic()
        self.install(window)
        end = time.monotonic()
        probe.stop()
        self.assertEqual(self.files_there() - before, self.files_to_come())
        idle = probe.gaps(idle_start, start)[0][0]
        longest, at = probe.gaps(start, end)[0]
        rows.append(f"| {self.what} | {end - start:.2f} s | {idle * 1e3:.0f} ms "
                    f"| {longest * 1e3:.0f} ms, after {at - start:.2f} s "
                    f"| **{longest / idle:.1f}** x idle |\n")


class OnePackage(Installation):
    def add_payload(self):
        self.product.add_package(PACKAGE)
        piece = os.urandom(PIECE)
        with open(self.product.files / PACKAGE / "Contents/big", "wb") as file:
            for _ in range(PIECES):
                file.write(piece)

    def files_to_come(self):
        return SAMPLE_FILES + 2


class CopiedByTheHelper(OnePackage, WindowTest):
    what = "1 GB copied by the helper"


class CopiedByTheUser(OnePackage, WindowTest):
    """The user may write to /Applications."""

    what = "1 GB copied by the user"

    def owner_of_applications(self):
        return self.user


class ManyItems(Installation, WindowTest):
    what = f"{ITEMS:,} items"

    def add_payload(self):
        for number in range(ITEMS):
            self.product.add(f"PHOTOSHOP_PLUGINS/{number // ITEMS_IN_A_FOLDER}/{number}.dat",
                             os.urandom(8192))

    def files_to_come(self):
        return SAMPLE_FILES + ITEMS


def main():
    write_table = "--write" in sys.argv[1:]
    program = unittest.main(argv=sys.argv[:1], exit=False)
    table = "| case | duration | longest gap when idle | longest gap while installing | ratio |\n"
    table += "|---|---|---|---|---|\n" + "".join(rows)
    print(table, end="")
    if not program.result.wasSuccessful():
        sys.exit(1)
    if write_table:
        readme = HERE / "README.md"
        before, rest = readme.read_text().split(MARKS[0])
        readme.write_text(before + MARKS[0] + table + MARKS[1] + rest.split(MARKS[1])[1])


if __name__ == "__main__":
    main()
