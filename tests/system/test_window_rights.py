"""The window of an ordinary user who is refused, or given, an administrator's rights."""

import os
import subprocess
import unittest

from harness import ON_PRIVATE_MACHINE, administrators_group, write
from walk import WindowTest

LOGIN = "window-user"


def setUpModule():
    if not ON_PRIVATE_MACHINE:
        raise AssertionError("this test would make an account on the real system")
    subprocess.run(["useradd", "--create-home", LOGIN], check=True, capture_output=True)


class WindowRights(WindowTest):
    login = LOGIN

    def setUp(self):
        super().setUp()
        self.user = self.desktop.account.pw_uid
        self.group = self.desktop.account.pw_gid
        self.installed = self.photoshop()
        subprocess.run(["chown", "-R", f"{self.user}:{self.group}", self.disk.home], check=True)
        self.rule = write(f"/etc/sudoers.d/{LOGIN}", "", 0o440)
        self.addCleanup(self.rule.unlink)

    def account(self):
        return {"user": self.user, "group": self.group, "cwd": "/",
                "extra_groups": [administrators_group()]}

    def test_refused_rights_are_the_reason_on_the_last_page_and_nothing_is_installed(self):
        window = self.install(self.reach_hosts(self.start()))
        texts = window.texts()
        self.assertIn(self.text("install_failed", self.product.company), " ".join(texts))
        self.assertIn(self.text("rights_refused"), texts)
        self.assertIn(self.text("failure_picture_name"), texts)
        # There is no log of a run that installed nothing.
        for key in ("open_log", "copy_log"):
            self.assertNotIn(self.text(key), texts)
        self.finish_walk(window)
        for path in [*self.installed, "/Applications/Tool.app"]:
            self.assertFalse(os.path.lexists(path), path)

    def test_rights_that_are_given_install_everything_for_the_user(self):
        self.rule.write_text(f"{LOGIN} ALL=(root) NOPASSWD: ALL\n")
        window = self.install(self.reach_hosts(self.start()))
        window.wait_for_label(self.text("outcome_success_fmt"))
        self.finish_walk(window)
        for path in [*self.installed, "/Applications/Tool.app/Contents/tool.txt"]:
            self.assertInstalled(path, owner=self.user)

    def test_before_rights_are_asked_for_it_says_why(self):
        self.rule.write_text(f"{LOGIN} ALL=(root) NOPASSWD: ALL\n")
        # A program that could ask is there, though it is not needed.
        window = self.install(self.reach_hosts(self.start(SUDO_ASKPASS="/bin/false")))
        reason = self.text("authorization_reason", self.product.name, self.product.company)
        self.assertIn(reason, window.messages)


if __name__ == "__main__":
    unittest.main(verbosity=2)
