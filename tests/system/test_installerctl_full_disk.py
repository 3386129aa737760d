"""installerctl on disks that are full: what does not fit is named, nothing is lost, and the next run
completes once there is room.
"""

import os
import pathlib
import unittest

from ctl import DIFFERENCES, DONE, ITEMS_FAILED, ctl, small_product
from harness import ON_PRIVATE_MACHINE, tree, write
from rights import Account
from test_full_disk import DisksOfATest, free_bytes, mount

MEBIBYTE = 1 << 20
FOLDER = "/Library/Application Support/Acme/Filters 2"
RECEIPTS = "/Library/Receipts"
FULL = "No space left on device"


def setUpModule():
    if not ON_PRIVATE_MACHINE:
        raise AssertionError("this test would mount disks on the real system")
    Scene.account = Account("ctl-full")


class Scene(DisksOfATest):
    account = None

    def setUp(self):
        super().setUp()
        self.product = small_product(self.scratch / "product")
        self.disk.add_photoshop("Adobe Photoshop CS6")
        self.receipt = pathlib.Path(RECEIPTS) / "com.example.filters.json"

    def seen(self):
        """Everything but the times, which every entry changes in the folder that it is in."""
        return tree("/Library", "/Applications", str(self.disk.home), times=False)

    def ctl(self, *arguments, status=DONE, product=None, **options):
        answer = ctl(product or self.product, *arguments, environment=self.environment, **options)
        self.assertEqual(answer.status, status, answer)
        return answer

    def add_large(self, product, mebibytes):
        return product.add(f"HD{FOLDER}/large.bin", b"l" * (mebibytes * MEBIBYTE))

    def fill(self, folder):
        """Leaves no room on the folder's disk; gives the file that takes it."""
        return write(f"{folder}/room", b"r" * free_bytes(folder))


class InstallerctlFullDiskInstall(Scene):
    def test_what_does_not_fit_is_named_and_the_next_run_completes(self):
        self.small_disk(FOLDER, "size=2m")
        before = self.seen()
        self.add_large(self.product, 3)
        answer = self.ctl("install", status=ITEMS_FAILED)
        # After a failed item no host is installed into.
        untried = "was not tried, since another item had failed"
        self.assertEqual([(note["path"].rpartition("/")[2], note["reason"]) for note in answer.failed],
                         [("large.bin", FULL), ("run.jsx", untried), ("Filter.plugin", untried)])
        self.assertEqual(answer.results()[f"{FOLDER}/large.bin"], "failed")
        self.assertEqual(self.ctl("status", status=ITEMS_FAILED).version, "1.0")
        mount("-o", "remount,size=8m", FOLDER)
        self.assertTrue(self.ctl("install").changed)
        self.ctl("verify")
        self.assertNoTemporaries()
        self.ctl("remove")
        self.assertEqual(self.seen(), before)

    def test_what_an_ended_run_has_left_can_be_removed(self):
        self.small_disk(FOLDER, "size=2m")
        before = self.seen()
        self.add_large(self.product, 3)
        self.ctl("install", status=ITEMS_FAILED)
        self.ctl("remove")
        self.assertEqual(self.seen(), before)

    def test_an_upgrade_that_does_not_fit_completes_later(self):
        self.small_disk(FOLDER, "size=2m")
        own = write(f"{FOLDER}/mine.txt", "mine")
        self.add_large(self.product, 1)
        self.ctl("install")
        newer = small_product(self.scratch / "newer", "2.0")
        self.add_large(newer, 3)
        self.ctl("install", product=newer, status=ITEMS_FAILED)
        mount("-o", "remount,size=8m", FOLDER)
        self.ctl("install", product=newer)
        self.ctl("verify", product=newer)
        self.assertEqual(pathlib.Path(f"{FOLDER}/large.bin").stat().st_size, 3 * MEBIBYTE)
        self.assertEqual(own.read_text(), "mine")

    def test_nothing_is_installed_if_it_cannot_be_recorded(self):
        self.small_disk(RECEIPTS, "size=64k")
        self.fill(RECEIPTS)
        before = self.seen()
        answer = self.ctl("install", status=ITEMS_FAILED)
        self.assertIn(f"The receipt {self.receipt} cannot be written: {FULL}", answer.messages)
        self.assertFalse(answer.changed)
        self.assertEqual(self.seen(), before)
        os.unlink(f"{RECEIPTS}/room")
        self.ctl("install")
        self.ctl("verify")

    def test_a_last_record_that_does_not_fit_is_written_by_the_next_run(self):
        # The first record takes the only free entry, and the second one cannot be put beside it.
        self.small_disk(RECEIPTS, "size=1m,nr_inodes=2")
        answer = self.ctl("install", status=ITEMS_FAILED)
        self.assertIn(f"The receipt {self.receipt} cannot be written: {FULL}", answer.messages)
        self.assertInstalled("/Applications/Tool.app/Contents/tool.txt", "tool 1.0")
        self.ctl("status", status=ITEMS_FAILED)
        mount("-o", "remount,nr_inodes=20", RECEIPTS)
        self.ctl("install")
        self.ctl("status")
        self.ctl("verify")


class InstallerctlFullDiskRemove(Scene):
    """Removing needs no room."""

    def on_a_full_disk(self, **options):
        self.small_disk("/Library", "size=4m,nr_inodes=200")
        before = self.seen()
        self.ctl("install", **options)
        room = self.fill("/Library")
        self.assertEqual(free_bytes("/Library"), 0)
        answer = self.ctl("remove", **options)
        self.assertEqual(set(answer.results().values()), {"removed"})
        room.unlink()
        self.assertEqual(self.seen(), before)

    def test_everything_is_removed_from_a_full_disk(self):
        self.on_a_full_disk()

    def test_an_ordinary_user_removes_everything_from_a_full_disk(self):
        rule = write(f"/etc/sudoers.d/{self.account.login}",
                     f"{self.account.login} ALL=(root) NOPASSWD: ALL\n", 0o440)
        self.addCleanup(rule.unlink)
        self.account.own(self.disk.home)
        self.on_a_full_disk(**self.account.options)

    def test_a_removal_that_was_refused_half_way_is_completed_by_the_next(self):
        self.small_disk(FOLDER, "size=4m")
        before = self.seen()
        self.ctl("install")
        with self.read_only(FOLDER):
            answer = self.ctl("remove", status=ITEMS_FAILED)
        self.assertIn({"path": f"{FOLDER}/readme.txt", "reason": "Read-only file system"},
                      answer.failed)
        self.assertFalse(os.path.lexists("/Applications/Tool.app"))
        self.assertTrue(self.receipt.exists())
        self.ctl("verify", status=DIFFERENCES)
        self.ctl("remove")
        self.assertEqual(self.seen(), before)


if __name__ == "__main__":
    unittest.main(verbosity=2)
