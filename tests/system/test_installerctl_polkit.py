"""installerctl by an ordinary user, to whom the real polkit grants administrator rights or not. How
often somebody is asked is counted by whom polkit asks.
"""

import pathlib
import types
import unittest

from ctl import DIFFERENCES, DONE, RIGHTS_REFUSED, program, small_product
from harness import ON_PRIVATE_MACHINE, SystemTest, entry, tree, write
from rights import Account, Installation, processes, start_polkit

RULES = """polkit.addRule(function(action, subject) {
    if (subject.user == "ctl-refused") return polkit.Result.NO;
});
"""


def setUpModule():
    if not ON_PRIVATE_MACHINE:
        raise AssertionError("this test would make accounts on the real system")
    Scene.account = Account("ctl-asked")
    Scene.refused = Account("ctl-refused", administrator=False)
    start_polkit(RULES)


class Scene(SystemTest):
    account = refused = None

    def setUp(self):
        super().setUp()
        self.disk, self.environment = self.new_machine()
        self.product = small_product(self.scratch / "maker")
        self.photoshop = self.disk.add_photoshop("Adobe Photoshop CS6")
        self.account.own(self.disk.home)
        self.receipt = pathlib.Path("/Library/Receipts/com.example.filters.json")
        self.before = self.seen()

    def seen(self):
        """Everything but the times, which every entry changes in the folder that it is in."""
        return tree("/Library", "/Applications", str(self.disk.home), times=False)

    def run_verb(self, verb, *agent, account=None):
        runnable = types.SimpleNamespace(executable=program(self.product),
                                         contents=self.product.contents)
        run = Installation(self, runnable, account or self.account, self.environment, agent or None,
                           (verb,)).go_on().wait()
        for left in (run.helper, "/usr/bin/pkexec", "/usr/bin/pkttyagent"):
            self.assertEqual(processes(left), [], left)
        return run

    def granted(self, verb):
        return self.run_verb(verb, "password", self.account.password)

    def assertEnded(self, run, status, questions):
        self.assertEqual((run.status, len(run.questions)), (status, questions), run.messages)


class InstallerctlPolkit(Scene):
    def test_one_password_installs_and_one_removes_and_nothing_is_left(self):
        self.assertEnded(self.granted("install"), DONE, questions=1)
        self.assertInstalled("/Applications/Tool.app/Contents/tool.txt", "tool 1.0",
                             owner=self.account.user)
        self.assertInstalled(self.photoshop / "Presets/Scripts/run.jsx", owner=self.account.user)
        self.assertEqual((entry(self.receipt)["owner"], entry(self.receipt)["mode"]), (0, 0o644))
        self.assertEnded(self.granted("remove"), DONE, questions=1)
        self.assertEqual(self.seen(), self.before)

    def test_nobody_is_asked_where_nothing_is_changed(self):
        self.assertEnded(self.granted("plan"), DIFFERENCES, questions=0)
        self.granted("install")
        installed = self.seen()
        for verb in ("plan", "install", "verify", "status"):
            self.assertEnded(self.granted(verb), DONE, questions=0)
        self.assertEqual(self.seen(), installed)

    def test_what_was_damaged_by_root_is_named_and_repaired_after_a_password(self):
        self.granted("install")
        damaged = write(self.photoshop / "Presets/Scripts/run.jsx", "damaged")
        run = self.granted("verify")
        self.assertEnded(run, DIFFERENCES, questions=0)
        self.assertIn(str(damaged), run.messages)
        self.assertEnded(self.granted("install"), DONE, questions=1)
        self.assertEqual(damaged.read_text(), "alert();")


class InstallerctlPolkitRefusal(Scene):
    """Rights that are not given: the status says so, and the disk stays as it was."""

    def assertRefused(self, run, questions):
        self.assertEnded(run, RIGHTS_REFUSED, questions)
        self.assertEqual(self.seen(), self.before)

    def test_a_wrong_password_installs_nothing(self):
        self.assertRefused(self.run_verb("install", "password", "wrong"), questions=1)

    def test_a_dismissed_question_installs_nothing(self):
        self.assertRefused(self.run_verb("install", "cancel"), questions=1)

    def test_a_rule_that_refuses_installs_nothing(self):
        self.refused.own(self.disk.home)
        self.before = self.seen()
        run = self.run_verb("install", "password", self.refused.password, account=self.refused)
        self.assertRefused(run, questions=0)

    def test_nothing_is_installed_where_nobody_can_be_asked(self):
        self.assertRefused(self.run_verb("install"), questions=0)

    def test_a_dismissed_question_removes_nothing(self):
        self.granted("install")
        self.disk.installer_log(self.product)
        receipt = self.receipt.read_text()
        run = self.run_verb("remove", "cancel")
        self.assertEnded(run, RIGHTS_REFUSED, questions=1)
        self.assertEqual(self.receipt.read_text(), receipt)
        self.assertEnded(self.granted("remove"), DONE, questions=1)
        self.assertEqual(self.seen(), self.before)


if __name__ == "__main__":
    unittest.main(verbosity=2)
