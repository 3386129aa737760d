"""An ordinary user's quiet installation, with administrator rights that sudo grants."""

import os
import pathlib
import subprocess
import unittest

from harness import Product, SystemTest, administrators_group, entry, run, write

LOGIN = "installing-user"


class OrdinaryUser(SystemTest):
    """Runs on the throw-away machine: the account and the rule vanish with it. The user is one of the
    administrators, as whoever may install is: only they can give a folder of theirs to the group.
    """

    @classmethod
    def setUpClass(cls):
        subprocess.run(["useradd", "--create-home", LOGIN], check=True, capture_output=True)
        status = os.lstat(f"/home/{LOGIN}")
        cls.user, cls.group = status.st_uid, status.st_gid
        cls.rule = write(f"/etc/sudoers.d/{LOGIN}", f"{LOGIN} ALL=(root) NOPASSWD: ALL\n", 0o440)

    def setUp(self):
        super().setUp()
        self.disk, self.environment = self.new_machine()
        self.product = Product(self.scratch / "maker")
        self.product.add_package("HD/Applications/Tool.app", {"Contents/tool.txt": "tool"})
        self.product.add("HD/Library/Application Support/Acme/Filters 2/readme.txt", "read me")
        self.product.add("PHOTOSHOP/run.jsx", "alert();")
        self.disk.add_photoshop("Adobe Photoshop CS6")
        subprocess.run(["chown", "-R", f"{self.user}:{self.group}", self.disk.home], check=True)

    def install(self):
        return run(self.product, environment=self.environment, user=self.user, group=self.group,
                   extra_groups=[administrators_group()], cwd="/")

    def test_what_root_must_write_belongs_to_the_user_and_the_administrators_group(self):
        outcome = self.install()
        self.assertEqual(outcome.status, 0)
        items = ["/Applications/Tool.app", "/Library/Application Support/Acme/Filters 2/readme.txt",
                 "/Applications/Adobe Photoshop CS6/run.jsx"]
        self.assertEqual(sorted(self.disk.logged_paths(self.product)), sorted(items),
                         outcome.messages)
        for item in items + ["/Applications/Tool.app/Contents/tool.txt",
                             "/Library/Application Support/Acme/Filters 2"]:
            self.assertInstalled(item, owner=self.user)
        self.assertInstalled(self.disk.installer_log(self.product), owner=self.user, mode=0o644)

    def test_a_second_run_replaces_what_the_first_one_installed(self):
        self.install()
        write("/Applications/Tool.app/Contents/stale.txt", "of an older version")
        outcome = self.install()
        self.assertFalse(os.path.lexists("/Applications/Tool.app/Contents/stale.txt"))
        self.assertInstalled("/Applications/Tool.app/Contents/tool.txt", "tool", owner=self.user)
        self.assertIn("The installation is complete (3 items", outcome.messages)

    def test_without_the_rule_the_rights_are_refused_and_nothing_is_installed(self):
        self.rule.rename("/root/rule")
        try:
            outcome = self.install()
        finally:
            pathlib.Path("/root/rule").rename(self.rule)
        self.assertEqual(outcome.status, 0)
        self.assertIn("Administrator rights were refused", outcome.messages)
        self.assertFalse(os.path.lexists("/Applications/Tool.app"))
        self.assertFalse(os.path.lexists(self.disk.installer_log(self.product)))
        self.assertEqual(entry("/Applications")["owner"], 0)


if __name__ == "__main__":
    unittest.main(verbosity=2)
