"""Another user of the machine swaps names in folders that the installer works in.

The installer runs again and again, as root and as an ordinary user with administrator rights, into
folders that the neighbour may change. Whatever becomes of these folders: what root keeps elsewhere
is not written, given away, opened to others or removed, and nothing appears beside it.

INSTALLER_RACE_SECONDS=60 races that long instead of a fixed number of runs; see
scripts/race-with-a-neighbour.
"""

import errno
import os
import pathlib
import shutil
import signal
import subprocess
import time
import unittest

from harness import Product, SystemTest, administrators_group, run, write

NEIGHBOUR = os.environ["INSTALLER_NEIGHBOUR"]
NEIGHBOURS_NUMBER = 4711
LOGIN = "installing-user"
SECONDS = float(os.environ.get("INSTALLER_RACE_SECONDS", "0"))

SUPPORT = pathlib.Path("/Library/Application Support")
PHOTOSHOP = pathlib.Path("/Applications/Adobe Photoshop CS6")
PRECIOUS = pathlib.Path("/precious")

LINK_REFUSED = os.strerror(errno.ELOOP)
INSTALLED = "The installation is complete (6 items"

# What the neighbour swaps, and what a link in its place leads to: entries of the very names that the
# installer would remove, write, and give away there.
SWAPPED = {
    SUPPORT / "Acme": PRECIOUS,
    SUPPORT / "Acme/Filters 2": PRECIOUS / "Filters 2",
    SUPPORT / "Acme/Filters 2/readme.txt": PRECIOUS / "Filters 2/readme.txt",
    SUPPORT / "Acme/Filters 2/Data": PRECIOUS / "Filters 2/Data",
    SUPPORT / "Acme/Filters 2 Installer.log": PRECIOUS / "Filters 2 Installer.log",
    PHOTOSHOP / "run.jsx": PRECIOUS / "run.jsx",
    PHOTOSHOP / "Presets": PRECIOUS / "Presets",
    PHOTOSHOP / "Plug-ins": PRECIOUS / "Plug-ins",
}
PRECIOUS_FILES = ["Filters 2/readme.txt", "Filters 2/Data/inner.txt", "Filters 2 Installer.log",
                  "Filters 2/Tool.app/Contents/Info.plist", "run.jsx", "Presets/preset.txt",
                  "Plug-ins/Filter.plugin/Contents/Info.plist", "readme.txt"]


def everything_about(folder):
    """What any change of the tree would change, by path; reading it changes nothing of that."""
    seen = {}
    for path in [folder, *sorted(folder.rglob("*"))]:
        status = os.lstat(path)
        content = path.read_bytes() if path.is_file() else None
        seen[str(path)] = (status.st_ino, oct(status.st_mode), status.st_uid, status.st_gid,
                           status.st_nlink, status.st_mtime_ns, status.st_ctime_ns, content)
    return seen


class Neighbour:
    """The neighbour's program, as long as the `with` lasts."""

    def __init__(self, swapped):
        self.arguments = [str(NEIGHBOURS_NUMBER)]
        for path, target in swapped.items():
            self.arguments += [str(path), str(target)]
        self.swaps = 0

    def __enter__(self):
        self.process = subprocess.Popen([NEIGHBOUR, *self.arguments], stdin=subprocess.PIPE,
                                        stdout=subprocess.PIPE, encoding="utf-8")
        assert self.process.stdout.readline() == "at work\n"
        return self

    def __exit__(self, *_):
        self.process.send_signal(signal.SIGCONT)
        output, _ = self.process.communicate()
        self.swaps = int(output)


class NeighbourRace(SystemTest):
    def setUp(self):
        super().setUp()
        self.disk, self.environment = self.new_machine()
        self.product = Product(self.scratch / "maker")
        self.product.add("HD/Library/Application Support/Acme/Filters 2/readme.txt", "installed")
        self.product.add("HD/Library/Application Support/Acme/Filters 2/Data/inner.txt", "installed")
        self.product.add_package("HD/Library/Application Support/Acme/Filters 2/Tool.app",
                                 {"Contents/tool.txt": "installed"})
        self.product.add("PHOTOSHOP/run.jsx", "installed")
        self.product.add("PHOTOSHOP/Presets/preset.txt", "installed")
        self.product.add_package("PHOTOSHOP_PLUGINS/Filter.plugin", {"Contents/code": "installed"})
        self.disk.add_photoshop("Adobe Photoshop CS6")
        for name in PRECIOUS_FILES:
            write(PRECIOUS / name, "canary", 0o600)
        self.addCleanup(shutil.rmtree, PRECIOUS)
        self.give_the_neighbour_room()

    def give_the_neighbour_room(self):
        """Folders that are his, and folders that are everybody's, as some hosts make theirs."""
        for folder in (SUPPORT / "Acme", PHOTOSHOP):
            folder.mkdir(parents=True, exist_ok=True)
        SUPPORT.chmod(0o777)
        PHOTOSHOP.chmod(0o777)
        os.lchown(SUPPORT / "Acme", NEIGHBOURS_NUMBER, NEIGHBOURS_NUMBER)

    def clear_the_field(self, neighbour):
        """Everything starts anew: otherwise nothing but the neighbour's rubbish is left."""
        neighbour.process.send_signal(signal.SIGSTOP)
        os.waitpid(neighbour.process.pid, os.WUNTRACED)
        rubbish = [path for folder in (SUPPORT, PHOTOSHOP) for path in folder.iterdir()
                   if path.name != f"{PHOTOSHOP.name}.app"]
        subprocess.run(["rm", "-rf", "--", *rubbish], check=True)
        self.give_the_neighbour_room()
        neighbour.process.send_signal(signal.SIGCONT)

    def install(self, who):
        outcome = run(self.product, environment=self.environment, cwd="/", **who)
        self.assertEqual(outcome.status, 0, outcome.messages)
        return outcome.messages

    def race(self, runs, **who):
        before = everything_about(PRECIOUS)
        self.assertIn(INSTALLED, self.install(who), "nothing to race for")
        deadline = time.monotonic() + SECONDS
        done = refused = 0
        with Neighbour(SWAPPED) as neighbour:
            while time.monotonic() < deadline if SECONDS else done < runs:
                messages = self.install(who)
                done += 1
                self.assertEqual(everything_about(PRECIOUS), before, f"in run {done}")
                refused += LINK_REFUSED in messages
                self.clear_the_field(neighbour)
        self.assertEqual(everything_about(PRECIOUS), before)
        print(f"{done} runs against {neighbour.swaps} swaps, a link refused in {refused}",
              flush=True)
        self.assertGreater(neighbour.swaps, 10 * done)
        self.assertGreater(refused, 0, "the neighbour was never in the way")

    def test_root_changes_nothing_outside_the_folders_that_the_neighbour_swaps(self):
        self.race(50)

    def test_an_ordinary_users_helper_changes_nothing_outside_either(self):
        subprocess.run(["useradd", "--create-home", LOGIN], check=True, capture_output=True)
        write(f"/etc/sudoers.d/{LOGIN}", f"{LOGIN} ALL=(root) NOPASSWD: ALL\n", 0o440)
        status = os.stat(f"/home/{LOGIN}")
        subprocess.run(["chown", "-R", LOGIN, self.disk.home], check=True)
        self.race(20, user=status.st_uid, group=status.st_gid,
                  extra_groups=[administrators_group()])


if __name__ == "__main__":
    unittest.main(verbosity=2)
