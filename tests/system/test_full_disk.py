"""Full file systems, and folders that nobody may write: what does not fit fails, and says so."""

import contextlib
import os
import pathlib
import subprocess
import unittest

from harness import Product, SystemTest, administrators_group, run, write
from traced import make_ordinary_user
from versions import shape, temporaries

SUPPORT = "/Library/Application Support/Acme"
FOLDER = f"{SUPPORT}/Filters 2"
TOOL = "/Applications/Tool.app"
MEBIBYTE = 1 << 20


def mount(*arguments):
    subprocess.run(["mount", *map(str, arguments)], check=True)


def free_bytes(folder):
    status = os.statvfs(folder)
    return status.f_bavail * status.f_frsize


class DisksOfATest(SystemTest):
    """On the throw-away machine, whose mounts end with it; each is taken away with its test."""

    def setUp(self):
        super().setUp()
        self.disk, self.environment = self.new_machine()
        self.product = Product(self.scratch / "maker")
        self.product.add_package("HD/Applications/Tool.app", {"Contents/tool.txt": "new tool"},
                                 executable="Tool")

    def add(self, name, content):
        self.product.add(f"HD{FOLDER}/{name}", content)

    def mounted(self, folder, *arguments):
        pathlib.Path(folder).mkdir(parents=True, exist_ok=True)
        mount(*arguments, folder)
        self.addCleanup(subprocess.run, ["umount", str(folder)], check=True)

    def small_disk(self, folder, options):
        self.mounted(folder, "-t", "tmpfs", "-o", f"mode=0755,{options}", "tmpfs")

    @contextlib.contextmanager
    def read_only(self, folder):
        """The folder as a mount of its own that refuses every change."""
        mount("--bind", folder, folder)
        try:
            mount("-o", "remount,bind,ro", folder)
            yield
        finally:
            subprocess.run(["umount", str(folder)], check=True)

    def install(self, **options):
        outcome = run(self.product, environment=self.environment, **options)
        self.assertEqual(outcome.status, 0)
        return outcome

    def assertComplete(self, outcome, count):
        self.assertIn(f"The installation is complete ({count} items",
                      outcome.messages.splitlines()[-1], outcome.messages)

    def assertIncomplete(self, outcome, count, *failed):
        self.assertIn(f"The installation is not complete ({count} items installed)",
                      outcome.messages.splitlines()[-1], outcome.messages)
        for path in failed:
            self.assertIn(f"Could not install file: {path}\n", outcome.messages)

    def assertNoTemporaries(self):
        self.assertEqual(temporaries("/Library", "/Applications", self.disk.home), [])


class FullDisk(DisksOfATest):
    def test_what_does_not_fit_fails_and_what_fits_is_whole(self):
        self.small_disk(FOLDER, "size=2m")
        self.add("fits.bin", b"f" * MEBIBYTE)
        self.add("large.bin", b"l" * (4 * MEBIBYTE))
        self.add("folder/large.bin", b"l" * (4 * MEBIBYTE))
        outcome = self.install()
        self.assertIncomplete(outcome, 2, f"{FOLDER}/large.bin", f"{FOLDER}/folder")
        self.assertEqual(os.listdir(FOLDER), ["fits.bin"])
        self.assertInstalled(f"{FOLDER}/fits.bin", "f" * MEBIBYTE)
        self.assertInstalled(f"{TOOL}/Contents/tool.txt", "new tool")
        self.assertEqual(sorted(self.disk.logged_paths(self.product)), [TOOL, f"{FOLDER}/fits.bin"])
        self.assertEqual(free_bytes(FOLDER), MEBIBYTE, "a failed copy still takes room")

    def test_a_run_after_room_was_made_completes(self):
        self.small_disk(FOLDER, "size=2m")
        self.add("large.bin", b"l" * (3 * MEBIBYTE))
        write(f"{FOLDER}/large.bin", "old")
        self.assertIncomplete(self.install(), 1, f"{FOLDER}/large.bin")
        mount("-o", "remount,size=8m", FOLDER)
        self.assertComplete(self.install(), 2)
        self.assertInstalled(f"{FOLDER}/large.bin", "l" * (3 * MEBIBYTE))
        self.assertNoTemporaries()

    def test_an_old_item_makes_room_for_its_successor(self):
        self.small_disk(FOLDER, "size=4m")
        write(f"{FOLDER}/Presets/old.bin", b"o" * (3 * MEBIBYTE))
        self.add("Presets/new.bin", b"n" * (3 * MEBIBYTE))
        self.assertComplete(self.install(), 2)
        self.assertEqual(os.listdir(f"{FOLDER}/Presets"), ["new.bin"])

    def test_without_free_entries_an_item_fails_as_a_whole(self):
        self.small_disk(FOLDER, "size=8m,nr_inodes=12")
        for number in range(20):
            self.add(f"many/{number}.xml", "preset")
        self.add("one.txt", "one")
        outcome = self.install()
        self.assertIncomplete(outcome, 2, f"{FOLDER}/many")
        self.assertEqual(os.listdir(FOLDER), ["one.txt"])
        mount("-o", "remount,nr_inodes=100", FOLDER)
        self.assertComplete(self.install(), 3)
        self.assertEqual(len(os.listdir(f"{FOLDER}/many")), 20)
        self.assertNoTemporaries()

    def test_a_disk_without_room_for_a_single_folder_fails_each_item_on_it(self):
        self.small_disk("/Library", "size=1m,nr_inodes=1")
        self.add("readme.txt", "read me")
        outcome = self.install()
        self.assertIncomplete(outcome, 1, f"{FOLDER}/readme.txt")
        self.assertEqual(os.listdir("/Library"), [])
        self.assertIn("can't open installer log file for writing", outcome.messages)
        self.assertInstalled(f"{TOOL}/Contents/tool.txt", "new tool")

    def test_a_log_that_does_not_fit_holds_no_part_of_a_line(self):
        # The items lie elsewhere, so that nothing but the log meets the full disk.
        for number in range(80):
            self.product.add_package(f"HD/Applications/{number:03}{'x' * 60}.app")
        self.small_disk(SUPPORT, "size=64k")
        write(f"{SUPPORT}/Filters 2 Installer.log", "/an/old/item\n")
        room = write(f"{SUPPORT}/room", b"r" * free_bytes(SUPPORT))
        outcome = self.install()
        self.assertIn("can't write to installer log file: No space left on device",
                      outcome.messages)
        # The old list is gone by then: it names what this run has replaced.
        self.assertEqual(self.disk.installer_log(self.product).read_bytes(), b"")
        room.unlink()
        self.assertComplete(self.install(), 81)
        self.assertEqual(len(self.disk.logged_paths(self.product)), 81)

    def test_a_home_without_room_costs_the_desktop_entry_and_nothing_else(self):
        applications = self.disk.home / ".local/share/applications"
        self.small_disk(applications, "size=4k")
        room = write(applications / "room", b"r" * free_bytes(applications))
        outcome = self.install()
        self.assertComplete(outcome, 1)
        self.assertIn(f"Could not register the application {TOOL}: No space left on device",
                      outcome.messages)
        self.assertEqual(os.listdir(applications), ["room"])
        room.unlink()
        self.install()
        self.assertEqual(len(os.listdir(applications)), 1)

    def test_a_file_above_the_limit_of_the_users_files_fails_and_the_run_goes_on(self):
        self.add("large.bin", b"l" * (4 * MEBIBYTE))
        self.add("readme.txt", "read me")
        for limit in ("2048", "unlimited"):
            finished = subprocess.run(
                ["bash", "-c", f'ulimit -f {limit}; exec "$0" -quiet',
                 str(self.product.executable)],
                env=self.environment, stdin=subprocess.DEVNULL, capture_output=True, check=False,
                text=True, timeout=60)
            self.assertEqual(finished.returncode, 0, finished.stderr)
            self.assertInstalled(f"{TOOL}/Contents/tool.txt", "new tool")
            if limit != "unlimited":
                self.assertIn("installation is not complete", finished.stderr.splitlines()[-1])
                self.assertFalse(os.path.lexists(f"{FOLDER}/large.bin"))
        self.assertInstalled(f"{FOLDER}/large.bin", "l" * (4 * MEBIBYTE))
        self.assertNoTemporaries()


class FullDiskOrReadOnlyFolder(DisksOfATest):
    def test_new_items_in_a_read_only_folder_fail_and_the_others_are_installed(self):
        pathlib.Path(FOLDER).mkdir(parents=True)
        self.add("readme.txt", "read me")
        self.add("Presets/a.xml", "a")
        with self.read_only(FOLDER):
            outcome = self.install()
        self.assertIncomplete(outcome, 1, f"{FOLDER}/readme.txt", f"{FOLDER}/Presets")
        self.assertEqual(self.disk.logged_paths(self.product), [TOOL])
        self.assertEqual(os.listdir(FOLDER), [])
        self.assertComplete(self.install(), 3)

    def test_old_items_in_a_read_only_folder_stay_whole_count_as_there_and_are_named(self):
        # On purpose: what is at its place counts as installed, even an item that could not be
        # replaced. Who wants to know finds the refusals in the messages.
        write(f"{FOLDER}/readme.txt", "old")
        write(f"{FOLDER}/Presets/a.xml", "old")
        before = shape(FOLDER)
        self.add("readme.txt", "new")
        self.add("Presets/a.xml", "new")
        with self.read_only(FOLDER):
            outcome = self.install()
        self.assertComplete(outcome, 3)
        self.assertEqual(shape(FOLDER), before)
        for item in ("readme.txt", "Presets"):
            self.assertIn(f"/bin/rm: {FOLDER}/{item}: Read-only file system", outcome.messages)
        self.assertComplete(self.install(), 3)
        self.assertInstalled(f"{FOLDER}/readme.txt", "new")

    def test_a_library_that_is_read_only_fails_what_belongs_there(self):
        self.add("readme.txt", "read me")
        with self.read_only("/Library"):
            outcome = self.install()
        self.assertIncomplete(outcome, 1, f"{FOLDER}/readme.txt")
        self.assertIn("can't open installer log file for writing", outcome.messages)
        self.assertEqual(os.listdir("/Library"), [])
        self.assertInstalled(f"{TOOL}/Contents/tool.txt", "new tool")

    def test_a_read_only_home_costs_the_desktop_entry_and_nothing_else(self):
        self.add("readme.txt", "read me")
        manifest = write(self.disk.home / "Library/Application Support/Acme/manifest.xml", "old")
        with self.read_only(self.disk.home):
            outcome = self.install()
        self.assertComplete(outcome, 2)
        self.assertIn(f"Could not register the application {TOOL}: Read-only file system",
                      outcome.messages)
        self.assertTrue(manifest.exists())
        self.assertInstalled(f"{FOLDER}/readme.txt", "read me")
        self.install()
        self.assertFalse(manifest.exists())


class FullDiskOrClosedFolderOfAnOrdinaryUser(DisksOfATest):
    @classmethod
    def setUpClass(cls):
        cls.user = make_ordinary_user()

    def setUp(self):
        super().setUp()
        os.chown(self.disk.home, self.user.number, self.user.number)

    def test_a_user_whose_rights_are_refused_leaves_a_closed_folder_as_it_was(self):
        rule = pathlib.Path(f"/etc/sudoers.d/{self.user.name}")
        write(f"{FOLDER}/readme.txt", "old")
        self.add("readme.txt", "new")
        before = shape("/Library")
        aside = rule.rename("/root/rule")
        try:
            outcome = self.install(cwd="/", **self.user.options)
        finally:
            aside.rename(rule)
        self.assertIn("Administrator rights were refused or lost: the installation is not complete "
                      "(0 items installed)", outcome.messages.splitlines()[-1])
        self.assertEqual(shape("/Library"), before)
        self.assertFalse(os.path.lexists(TOOL))

    def test_what_a_user_can_move_but_not_take_apart_is_cleared_by_the_helper(self):
        # As left by another administrator whose installer was lost before it set the modes.
        write(f"{FOLDER}/Presets/deep/old.xml", "old")
        for path in (SUPPORT, FOLDER):
            os.chown(path, 0, administrators_group())
            os.chmod(path, 0o775)
        self.add("Presets/new.xml", "new")
        outcome = self.install(cwd="/", **self.user.options)
        self.assertComplete(outcome, 2)
        self.assertEqual(os.listdir(f"{FOLDER}/Presets"), ["new.xml"])
        self.assertNoTemporaries()


if __name__ == "__main__":
    unittest.main(verbosity=2)
