"""An ordinary user's quiet installation, with administrator rights that sudo grants or refuses."""

import os
import pathlib
import shutil
import signal
import stat
import subprocess
import unittest

from harness import ON_PRIVATE_MACHINE, Disk, Product, SystemTest, entry, run, tree, write
from rights import PYTHON, Account, Installation, Terminal, processes, taken_from, wait_until

LOGIN = "installing-user"
NOBODY = 65534
REASON = "Filters 2 by Acme needs administrator rights"
REFUSED = ("Administrator rights were refused or lost: the installation is not complete "
           "(0 items installed)")
COMPLETE = "The installation is complete (3 items"


def setUpModule():
    if not ON_PRIVATE_MACHINE:
        raise AssertionError("this test would make an account on the real system")
    OrdinaryUser.account = Account(LOGIN)


class OrdinaryUser(SystemTest):
    """Runs on the throw-away machine: account and rules vanish with it. The user is one of the
    administrators, as whoever may install is: only they can give a folder of theirs to the group.
    """

    account = None

    def setUp(self):
        super().setUp()
        self.user = self.account.user
        self.disk, self.environment = self.new_machine()
        self.product = Product(self.scratch / "maker")
        self.product.add_package("HD/Applications/Tool.app", {"Contents/tool.txt": "tool"})
        self.product.add("HD/Library/Application Support/Acme/Filters 2/readme.txt", "read me")
        self.product.add("PHOTOSHOP/run.jsx", "alert();")
        self.disk.add_photoshop("Adobe Photoshop CS6")
        self.account.own(self.disk.home)

    def allow_without_a_question(self):
        rule = write(f"/etc/sudoers.d/{LOGIN}", f"{LOGIN} ALL=(root) NOPASSWD: ALL\n", 0o440)
        self.addCleanup(rule.unlink)

    def install(self, **environment):
        return run(self.product, environment=self.environment | environment,
                   **self.account.options)

    def assertNothingInstalled(self):
        self.assertFalse(os.path.lexists("/Applications/Tool.app"))
        self.assertFalse(os.path.lexists(self.disk.installer_log(self.product)))
        self.assertEqual(entry("/Applications")["owner"], 0)

    def assertNothingRuns(self):
        for program in ("/usr/bin/sudo", self.product.contents / "MacOS/privileged-helper"):
            wait_until(lambda p=program: not processes(p), f"{program} to end")


class OrdinaryUserWithoutAQuestion(OrdinaryUser):
    """Where the rules let the user become root just so, or where nobody could answer."""

    def test_what_root_must_write_belongs_to_the_user_and_the_administrators_group(self):
        self.allow_without_a_question()
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
        self.allow_without_a_question()
        self.install()
        write("/Applications/Tool.app/Contents/stale.txt", "of an older version")
        outcome = self.install()
        self.assertFalse(os.path.lexists("/Applications/Tool.app/Contents/stale.txt"))
        self.assertInstalled("/Applications/Tool.app/Contents/tool.txt", "tool", owner=self.user)
        self.assertIn("The installation is complete (3 items", outcome.messages)

    def test_without_the_rule_the_rights_are_refused_and_nothing_is_installed(self):
        outcome = self.install()
        self.assertEqual(outcome.status, 0)
        self.assertIn(REFUSED, outcome.messages)
        self.assertNotIn(REASON, outcome.messages)
        self.assertNothingInstalled()


class OrdinaryUserOnADiskOfTheirOwn(OrdinaryUser):
    """A file system in user space (FUSE) is closed to everybody but its user, root included."""

    def setUp(self):
        super().setUp()
        self.allow_without_a_question()
        self.take_the_device()
        self.contents = self.scratch / "contents"
        self.product.files.rename(self.contents)
        self.product.files.mkdir()
        self.account.own(self.contents, self.product.files)
        subprocess.run(["bindfs", "--no-allow-other", self.contents, self.product.files],
                       check=True, **self.account.options)
        self.addCleanup(subprocess.run, ["umount", self.product.files], check=True)

    def take_the_device(self):
        """For everybody, as on most machines; on some it is for root alone."""
        device = self.scratch / "fuse"
        os.mknod(device, stat.S_IFCHR, os.makedev(10, 229))
        device.chmod(0o666)
        subprocess.run(["mount", "--bind", device, "/dev/fuse"], check=True)
        self.addCleanup(subprocess.run, ["umount", "/dev/fuse"], check=True)

    def test_a_payload_that_root_may_not_read_is_installed_by_the_rights_of_the_user(self):
        with self.assertRaises(PermissionError):
            os.listdir(self.product.files)
        outcome = self.install()
        self.assertIn(COMPLETE, outcome.messages)
        self.assertInstalled("/Applications/Tool.app/Contents/tool.txt", "tool", owner=self.user)
        self.assertInstalled("/Applications/Adobe Photoshop CS6/run.jsx", "alert();",
                             owner=self.user)


class OrdinaryUserWithALinkedPhotoshop(OrdinaryUser):
    """Photoshop has been moved to another disk, and the user has put a link in its place. Anybody
    may add to /Applications here, so root does not follow links there.
    """

    FOLDER = pathlib.Path("/Applications/Adobe Photoshop CC 2015")
    BOTH = ["Adobe Photoshop CC 2015", "Adobe Photoshop CS6"]

    def setUp(self):
        super().setUp()
        self.allow_without_a_question()
        os.chmod("/Applications", 0o1777)
        self.addCleanup(os.chmod, "/Applications", 0o755)
        self.place = self.scratch / "other disk"
        self.place.mkdir()
        subprocess.run(["mount", "-t", "tmpfs", "-o", "mode=755", "tmpfs", self.place], check=True)
        self.addCleanup(subprocess.run, ["umount", self.place], check=True)
        self.disk.add_photoshop(self.FOLDER.name)
        self.account.own(self.disk.home)
        self.real = self.place / "Photoshop"
        shutil.move(self.FOLDER, self.real)

    def link(self, target, owner):
        self.FOLDER.symlink_to(target)
        os.lchown(self.FOLDER, owner, owner)

    def install_into_both(self, **options):
        outcome = run(self.product, environment=self.environment, **options)
        self.assertIn("The installation is complete (4 items", outcome.messages)
        self.assertNotIn("is reached through a link", outcome.messages)
        items = [f"/Applications/{name}/run.jsx" for name in self.BOTH]
        self.assertLessEqual(set(items), set(self.disk.logged_paths(self.product)))
        self.assertTrue(self.FOLDER.is_symlink())
        return outcome

    def test_it_is_installed_into_where_the_link_leads_and_named_as_its_file_names_it(self):
        self.link(self.real, self.user)
        self.install_into_both(**self.account.options)
        self.assertInstalled(self.real / "run.jsx", owner=self.user)

    def test_a_second_run_replaces_what_the_first_one_installed(self):
        self.link(self.real, self.user)
        self.install_into_both(**self.account.options)
        write(self.real / "run.jsx", "of an older version")
        self.install_into_both(**self.account.options)
        self.assertInstalled(self.real / "run.jsx", "alert();", owner=self.user)

    def test_root_follows_links_of_its_own(self):
        self.link(self.real, 0)
        self.install_into_both()
        self.assertInstalled(self.real / "run.jsx")

    def test_it_works_on_a_target_volume_too(self):
        root = self.scratch / "volume"
        volume = Disk(root, root / "Users" / LOGIN)
        environment = self.environment | {"INSTALLER_TARGET_VOLUME": str(root)}
        folder = volume.add_photoshop("Adobe Photoshop CC 2017")
        self.account.own(volume.root)
        shutil.copytree(folder, self.real, dirs_exist_ok=True)
        shutil.rmtree(folder)
        folder.symlink_to(self.real)
        os.lchown(folder, self.user, self.user)
        outcome = run(self.product, environment=environment, **self.account.options)
        self.assertIn(COMPLETE, outcome.messages)
        self.assertIn(str(folder / "run.jsx"), volume.logged_paths(self.product))
        self.assertInstalled(self.real / "run.jsx", owner=self.user)

    def test_a_link_of_somebody_else_leads_nowhere(self):
        self.link(self.real, NOBODY)
        outcome = run(self.product, environment=self.environment, **self.account.options)
        self.assertIn(f"{self.FOLDER.name}: its folder is reached through a link of another user",
                      outcome.messages)
        self.assertIn(f"Could not install file: {self.FOLDER}/run.jsx", outcome.messages)
        self.assertFalse((self.real / "run.jsx").exists())

    def test_a_link_to_a_folder_of_the_system_leads_nowhere(self):
        for target in ("/usr/share", "/etc", "/home/neighbour"):
            with self.subTest(target):
                pathlib.Path(target, "Photoshop.app").mkdir(parents=True)
                self.link(target, self.user)
                outcome = run(self.product, environment=self.environment, **self.account.options)
                self.assertIn(f"{self.FOLDER.name}: its folder is reached through a link into a folder "
                              "of the system", outcome.messages)
                self.assertIn(f"Could not install file: {self.FOLDER}/run.jsx", outcome.messages)
                self.assertFalse(os.path.lexists(f"{target}/run.jsx"))
                self.FOLDER.unlink()


class OrdinaryUserWithAWindowThatAsks(OrdinaryUser):
    """sudo was told of a program that asks for the password."""

    def make_program(self, answer):
        folder = self.scratch / "asking"
        folder.mkdir()
        self.account.own(folder)
        self.prompts = folder / "prompts"
        remember = f'printf "%s\\0" "$1" >> "{self.prompts}"'
        return write(folder / "ask", f"#!/bin/sh\n{remember}\n{answer}\n", 0o755)

    def install_with_answer(self, answer):
        outcome = self.install(SUDO_ASKPASS=str(self.make_program(answer)))
        self.assertEqual(outcome.status, 0)
        self.assertIn(REASON, outcome.messages)
        self.assertNothingRuns()
        return outcome, self.prompts.read_text().split("\0")[:-1]

    def test_the_question_names_the_product_and_the_right_answer_installs_everything(self):
        outcome, prompts = self.install_with_answer(f"echo '{self.account.password}'")
        self.assertIn(COMPLETE, outcome.messages)
        prompt, = prompts
        self.assertIn(REASON, prompt)
        self.assertIn(LOGIN, prompt)
        self.assertInstalled("/Applications/Tool.app/Contents/tool.txt", "tool", owner=self.user)

    def test_a_dismissed_question_is_a_refusal_and_comes_once(self):
        outcome, prompts = self.install_with_answer("exit 1")
        self.assertIn(REFUSED, outcome.messages)
        self.assertEqual(len(prompts), 1)
        self.assertNothingInstalled()


class OrdinaryUserUnderAttack(OrdinaryUser):
    """Whoever wants to become root through a run that somebody else has agreed to."""

    PLACES = ("/etc/systemd/system.control", "/etc/cron.d/x", "/usr/bin/x", "/var/spool/x")

    def setUp(self):
        super().setUp()
        self.allow_without_a_question()

    def test_a_planted_paths_file_leads_root_into_no_folder_of_the_system(self):
        self.product.add("PHOTOSHOP_PLUGINS/evil.service", "[Service]\nExecStart=/bin/sh\n")
        name = "Adobe Photoshop CC 2015"
        self.disk.add_photoshop(name)
        before = tree("/etc/systemd", "/etc/cron.d", "/var/spool")
        for place in self.PLACES:
            with self.subTest(place):
                write(self.disk.home / f"Library/Preferences/{name} Paths",
                      f"/Applications/{name}\0{place}\0")
                self.account.own(self.disk.home)
                outcome = self.install()
                self.assertFalse(os.path.lexists(place))
                self.assertIn(f"its destination is a folder of the system: {place}/evil.service",
                              outcome.messages)
                self.assertInstalled("/Applications/Tool.app", owner=self.user)
        self.assertEqual(tree("/etc/systemd", "/etc/cron.d", "/var/spool"), before)

    def test_nothing_can_be_taken_out_of_the_installer_while_its_helper_lives(self):
        self.product.add_package("HD/Applications/Big.app",
                                 {f"Contents/{number}": "x" for number in range(3000)})
        installation = Installation(self, self.product, self.account, self.environment).go_on()
        installation.wait_for_helper()
        os.kill(installation.process.pid, signal.SIGSTOP)
        self.assertTrue(processes(installation.helper), "the helper has ended too early")
        self.assertEqual(taken_from(installation.process.pid, self.account), "")
        # The same robber robs any other program of the user.
        victim = subprocess.Popen([PYTHON, "-c", "import sys; sys.stdin.read()"], stdin=subprocess.PIPE,
                                  **self.account.options)
        self.addCleanup(victim.communicate)
        wait_until(lambda: "descriptor 0" in taken_from(victim.pid, self.account), "the robber")
        installation.go_on().wait()
        self.assertIn("The installation is complete", installation.messages)

    def test_nobody_is_asked_for_a_bundle_that_others_can_change(self):
        helper = self.product.contents / "MacOS/privileged-helper"
        ways = [("a folder of it", helper.parent, lambda: os.chmod(helper.parent, 0o777)),
                ("the helper", helper, lambda: os.chmod(helper, 0o757)),
                ("a neighbour's", helper, lambda: os.chown(helper, 65534, 65534))]
        for name, entry_, change in ways:
            status = entry_.stat()
            change()
            with self.subTest(name):
                outcome = self.install()
                self.assertEqual(outcome.status, 0)
                self.assertIn("No administrator rights are asked for, because other users can "
                              f"change {entry_}", outcome.messages)
                self.assertIn(REFUSED, outcome.messages)
                self.assertNothingInstalled()
            os.chown(entry_, status.st_uid, status.st_gid)
            os.chmod(entry_, status.st_mode)
        self.assertIn(COMPLETE, self.install().messages)

    def test_a_secret_in_place_of_a_payloads_file_is_not_copied(self):
        readme = (self.product.contents
                  / "Resources/files/HD/Library/Application Support/Acme/Filters 2/readme.txt")
        write(readme, "root's", 0o600)
        outcome = self.install()
        installed = pathlib.Path("/Library/Application Support/Acme/Filters 2/readme.txt")
        self.assertFalse(os.path.lexists(installed))
        self.assertIn("readme.txt: Permission denied", outcome.messages)
        self.assertIn("The installation is not complete", outcome.messages)


class OrdinaryUserOnATerminal(OrdinaryUser):
    """sudo asks there."""

    def start(self, twice=False):
        return Terminal(self, self.product, self.account, self.environment, twice=twice)

    def assertComplete(self, terminal):
        self.assertEqual(terminal.status, 0)
        self.assertIn(COMPLETE, terminal.messages)
        self.assertNothingRuns()

    @staticmethod
    def answer(terminal, passwords):
        for number, password in enumerate(passwords):
            terminal.wait_for_prompt(f"[sudo] password for {LOGIN}: ", number + 1)
            terminal.type(password + "\n")
        return terminal.wait()

    def test_the_question_names_the_product_and_the_right_password_installs_everything(self):
        terminal = self.answer(self.start(), [self.account.password])
        self.assertComplete(terminal)
        # Once from the installer, before it asks, and once in sudo's question.
        self.assertEqual(terminal.messages.count(REASON), 2)
        self.assertEqual(terminal.messages.count("[sudo] password"), 1)
        self.assertInstalled("/Applications/Tool.app/Contents/tool.txt", "tool", owner=self.user)
        self.assertInstalled(self.disk.installer_log(self.product), owner=self.user, mode=0o644)

    def test_nothing_of_the_granted_rights_is_left_for_the_next_run(self):
        """Both runs have the same terminal, for which sudo would remember the password."""
        terminal = self.answer(self.start(twice=True), [self.account.password] * 2)
        self.assertEqual(terminal.messages.count(COMPLETE), 2)
        self.assertEqual(terminal.messages.count("[sudo] password"), 2)

    def test_three_wrong_passwords_are_a_refusal(self):
        terminal = self.answer(self.start(), ["wrong"] * 3)
        self.assertEqual(terminal.status, 0)
        self.assertIn(REFUSED, terminal.messages)
        self.assertEqual(terminal.messages.count("[sudo] password"), 3)
        self.assertTrue(terminal.shows_what_is_typed)
        self.assertNothingInstalled()
        self.assertNothingRuns()

    def test_an_interrupt_is_a_refusal_and_the_terminal_is_as_before(self):
        terminal = self.start()
        terminal.wait_for_prompt("[sudo] password")
        terminal.interrupt("/usr/bin/sudo")
        terminal.wait()
        self.assertEqual(terminal.status, 0)
        self.assertIn(REFUSED, terminal.messages)
        self.assertTrue(terminal.shows_what_is_typed)
        self.assertNothingInstalled()
        self.assertNothingRuns()


if __name__ == "__main__":
    unittest.main(verbosity=2)
