"""An ordinary user's quiet installation, with administrator rights that the real polkit grants,
refuses or loses. How often somebody is asked is counted by whom polkit asks.
"""

import os
import pathlib
import signal
import socket
import unittest

from harness import (ON_PRIVATE_MACHINE, TIME_LIMIT, Product, SystemTest, no_leftovers, tree,
                     write)
from held import HeldFiles
from rights import (BUS, Account, Installation, Terminal, processes, start_polkit, taken_from,
                    wait_until)

RULES = """polkit.addRule(function(action, subject) {
    if (subject.user == "refused") return polkit.Result.NO;
});
"""
REASON = ("Filters 2 by Acme installs files for everybody who uses this computer. "
          "An administrator’s permission is needed for that.")
REFUSED = "Administrator rights were refused or lost: the installation is not complete"
ITEMS = ["/Applications/Tool.app", "/Library/Application Support/Acme/Filters 2/readme.txt",
         "/Applications/Adobe Photoshop CS6/run.jsx"]
MANY = 100


def setUpModule():
    if not ON_PRIVATE_MACHINE:
        raise AssertionError("this test would make accounts on the real system")
    User.account = Account("asked")
    User.refused = Account("refused", administrator=False)
    start_polkit(RULES)


class User(SystemTest):
    account = refused = None

    def setUp(self):
        super().setUp()
        self.disk, self.environment = self.new_machine()
        self.product = self.new_product("maker")
        self.disk.add_photoshop("Adobe Photoshop CS6")
        self.account.own(self.disk.home)

    def new_product(self, folder, name="Filters 2", content="tool"):
        product = Product(self.scratch / folder, name=name)
        product.write_texts(
            {"authorization_reason":
             "%1$@ by %2$@ installs files for everybody who uses this computer. "
             "An administrator’s permission is needed for that."},
            {"company_name": "Acme", "product_name": name})
        product.add_package("HD/Applications/Tool.app", {"Contents/tool.txt": content})
        product.add(f"HD/Library/Application Support/Acme/{name}/readme.txt", "read me")
        product.add("PHOTOSHOP/run.jsx", "alert();")
        return product

    def start(self, agent=None, account=None, product=None):
        return Installation(self, product or self.product, account or self.account,
                            self.environment, agent)

    def install(self, *agent, account=None):
        return self.start(agent, account).go_on().wait()

    @property
    def granted(self):
        return "password", self.account.password

    def assertComplete(self, installation, items=3):
        self.assertEqual(installation.status, 0, installation.messages)
        self.assertIn(f"The installation is complete ({items} items", self.last_line(installation))
        self.assertNothingIsLeft(installation)

    def assertRefused(self, installation, items=0):
        self.assertEqual(installation.status, 0, installation.messages)
        self.assertIn(f"{REFUSED} ({items} items installed)", self.last_line(installation))
        self.assertNothingIsLeft(installation)

    def assertNothingIsLeft(self, installation):
        """No process of it."""
        for program in (installation.helper, "/usr/bin/pkexec", "/usr/bin/pkttyagent",
                        "/usr/bin/sudo"):
            self.assertEqual(processes(program), [], program)

    @staticmethod
    def last_line(installation):
        # What a helper that is ended says comes at any time.
        lines = installation.messages.splitlines()
        return [line for line in lines if "installation is" in line][-1]


class Root:
    """Whoever starts the installer as root."""

    options = {"cwd": "/"}


class PolkitQuestion(User):
    def test_one_right_password_installs_everything_for_the_user_and_the_group(self):
        installation = self.install(*self.granted)
        self.assertComplete(installation)
        self.assertEqual(len(installation.questions), 1)
        self.assertEqual(sorted(self.disk.logged_paths(self.product)), sorted(ITEMS))
        for item in ITEMS + ["/Applications/Tool.app/Contents/tool.txt",
                             "/Library/Application Support/Acme/Filters 2"]:
            self.assertInstalled(item, owner=self.account.user)
        self.assertInstalled(self.disk.installer_log(self.product), owner=self.account.user,
                             mode=0o644)

    def test_the_question_names_the_helper_and_offers_the_user_s_own_password(self):
        question, = self.install(*self.granted).questions
        self.assertEqual(question["action"], "org.freedesktop.policykit.exec")
        self.assertIn(str(self.product.contents / "MacOS/privileged-helper"), question["message"])
        self.assertIn(self.account.login, question["users"])

    def test_hundreds_of_items_are_one_question(self):
        for number in range(300):
            self.product.add(f"PHOTOSHOP/{number}.jsx")
        installation = self.install(*self.granted)
        self.assertComplete(installation, items=303)
        self.assertEqual(len(installation.questions), 1)

    def test_nothing_can_be_taken_out_of_the_installer_while_its_helper_lives(self):
        self.product.add_package("HD/Applications/Big.app",
                                 {f"Contents/{number}": "x" for number in range(3000)})
        installation = self.start(self.granted).go_on()
        installation.wait_for_helper()
        os.kill(installation.process.pid, signal.SIGSTOP)
        self.assertTrue(processes(installation.helper), "the helper has ended too early")
        self.assertEqual(taken_from(installation.process.pid, self.account), "")
        self.assertComplete(installation.go_on().wait(), items=4)

    def test_every_run_asks_once(self):
        for _ in range(2):
            installation = self.install(*self.granted)
            self.assertComplete(installation)
            self.assertEqual(len(installation.questions), 1)
        self.assertEqual(no_leftovers("/Applications", "/Library"), [])

    def test_who_asks_and_why_is_said_before_anybody_is_asked(self):
        installation = self.start(("never",)).go_on()
        installation.agent.wait_for_question()
        self.assertIn(REASON, installation.messages_file.read_text())

    def test_root_is_not_asked(self):
        installation = Installation(self, self.product, Root, self.environment, ("cancel",))
        installation.go_on().wait()
        self.assertComplete(installation)
        self.assertEqual(installation.questions, [])
        self.assertNotIn(REASON, installation.messages)


class PolkitRefusal(User):
    """Rights that are not given: nothing is installed, nobody is asked again, and it is told."""

    def setUp(self):
        super().setUp()
        self.log = write(self.disk.installer_log(self.product), "of an earlier run\n")
        self.before = tree("/Library", "/Applications")

    def assertNothingInstalled(self, installation, questions):
        self.assertRefused(installation)
        self.assertEqual(len(installation.questions), questions)
        self.assertEqual(tree("/Library", "/Applications"), self.before)

    def test_a_wrong_password_installs_nothing(self):
        self.assertNothingInstalled(self.install("password", "wrong"), questions=1)

    def test_a_dismissed_question_installs_nothing(self):
        self.assertNothingInstalled(self.install("cancel"), questions=1)

    def test_a_rule_that_refuses_installs_nothing(self):
        self.refused.own(self.disk.home)
        installation = self.install("password", self.refused.password, account=self.refused)
        self.assertNothingInstalled(installation, questions=0)

    def test_nothing_is_installed_where_nobody_can_be_asked(self):
        self.assertNothingInstalled(self.install(), questions=0)

    def test_an_agent_that_dies_with_the_question_open_installs_nothing(self):
        self.assertNothingInstalled(self.install("die"), questions=1)

    def test_nothing_can_be_taken_out_of_the_installer_while_the_question_is_open(self):
        installation = self.start(("never",)).go_on()
        installation.agent.wait_for_question()
        self.assertEqual(taken_from(installation.process.pid, self.account), "")
        installation.agent.kill()
        self.assertNothingInstalled(installation.wait(), questions=1)

    def test_an_agent_that_never_answers_and_is_killed_installs_nothing(self):
        installation = self.start(("never",)).go_on()
        installation.agent.wait_for_question()
        installation.agent.kill()
        self.assertNothingInstalled(installation.wait(), questions=1)

    def test_the_end_of_the_program_that_asks_installs_nothing(self):
        installation = self.start(("never",)).go_on()
        installation.agent.wait_for_question()
        os.kill(processes("/usr/bin/pkexec")[0], signal.SIGKILL)
        installation.process.wait()
        installation.agent.kill()
        self.assertNothingInstalled(installation.wait(), questions=1)

    def test_an_installer_that_is_killed_takes_its_question_with_it(self):
        installation = self.start(("never",)).go_on()
        installation.agent.wait_for_question()
        installation.process.kill()
        wait_until(lambda: not processes("/usr/bin/pkexec"), "the question to go")
        self.assertEqual(tree("/Library", "/Applications"), self.before)

    def test_a_refusal_keeps_what_the_user_could_copy_alone_and_does_not_log_it(self):
        """It is not finished, since only the administrator can give it away, so no log lists it."""
        folder = pathlib.Path("/Applications")
        os.chown(folder, self.account.user, self.account.group)
        self.addCleanup(os.chown, folder, 0, 0)
        installation = self.install("cancel")
        self.assertRefused(installation)
        self.assertEqual(len(installation.questions), 1)
        self.assertEqual(pathlib.Path("/Applications/Tool.app/Contents/tool.txt").read_text(),
                         "tool")
        self.assertFalse(os.path.lexists(ITEMS[1]))
        self.assertFalse(os.path.lexists(ITEMS[2]))
        self.assertEqual(self.log.read_text(), "of an earlier run\n")


class PolkitLastCopy(User):
    """What happens in the middle of the last copy of a run."""

    folder = pathlib.Path("/Applications/Adobe Photoshop CS6/Plug-Ins")
    big = folder / "Big.plugin"

    def setUp(self):
        super().setUp()
        self.add_big_item(self.product, "x")
        # Of root, so that the user cannot copy into it without the helper.
        self.folder.mkdir()

    @staticmethod
    def add_big_item(product, content):
        product.add_package("PHOTOSHOP_PLUGINS/Big.plugin",
                            {f"Contents/{number}": content for number in range(MANY)})

    def unfinished(self):
        return [name for name in os.listdir(self.folder) if name.startswith(".installing-")]

    def start_and_hold_the_helper(self):
        """Gives the run, its helper, which has copied a part of the last item, and what holds it."""
        files = HeldFiles(self.product.resources / "files/PHOTOSHOP_PLUGINS/Big.plugin/Contents",
                          MANY // 2)
        self.addCleanup(files.release)
        installation = self.start(self.granted).go_on()
        helper = installation.wait_for_helper()
        files.wait(TIME_LIMIT)
        self.assertEqual(len(self.unfinished()), 1)
        return installation, helper, files

    def assertWhole(self, content="x", leftovers=()):
        self.assertEqual(len(os.listdir(self.big / "Contents")), MANY + 1)
        for number in range(MANY):
            self.assertEqual((self.big / f"Contents/{number}").read_text(), content)
        self.assertInstalled(self.big / "Contents/1", owner=self.account.user)
        self.assertEqual([os.path.basename(path) for path in
                          no_leftovers("/Applications", "/Library")], list(leftovers))

    def install_with_a_killed_helper(self):
        installation, helper, files = self.start_and_hold_the_helper()
        os.kill(helper, signal.SIGKILL)
        installation.wait()
        files.release()
        self.assertRefused(installation, items=3)
        self.assertIn("The privileged helper has ended before its work was done",
                      installation.messages)
        self.assertEqual(len(installation.questions), 1)
        self.assertFalse(os.path.lexists(self.big))

    def install_again(self):
        installation = self.install(*self.granted)
        self.assertComplete(installation, items=4)
        self.assertEqual(len(installation.questions), 1)
        self.assertWhole()

    def test_a_killed_helper_leaves_nothing_half_installed_and_the_next_run_no_debris(self):
        self.install_with_a_killed_helper()
        self.install_again()

    def test_what_was_installed_before_the_helper_was_killed_is_listed_in_the_log(self):
        write(self.disk.installer_log(self.product), "of an earlier run\n")
        self.account.own(self.disk.support("Acme"))
        self.install_with_a_killed_helper()
        self.assertEqual(self.disk.logged_paths(self.product), ITEMS)

    def test_a_killed_helper_leaves_nothing_of_the_older_item_either(self):
        write(self.big / "Contents/old", "old")
        self.install_with_a_killed_helper()
        self.install_again()

    def test_a_held_copy_is_not_disturbed_by_another_run(self):
        other = self.new_product("other maker")
        other.add_package("PHOTOSHOP_PLUGINS/Other.plugin", {"Contents/1": "y"})
        installation, _, files = self.start_and_hold_the_helper()
        self.assertComplete(self.start(self.granted, product=other).go_on().wait(), items=4)
        files.release()
        self.assertComplete(installation.wait(), items=4)
        self.assertWhole()

    def test_a_held_copy_leaves_the_whole_item_that_another_run_has_made(self):
        other = self.new_product("other maker")
        self.add_big_item(other, "y")
        installation, _, files = self.start_and_hold_the_helper()
        self.assertComplete(self.start(self.granted, product=other).go_on().wait(), items=4)
        unfinished = self.unfinished()
        self.assertEqual(len(unfinished), 1)
        self.assertWhole("y", leftovers=unfinished)
        files.release()
        self.assertComplete(installation.wait(), items=4)
        self.assertWhole("y")


class PolkitParallelRuns(User):
    """Two installations at the same time, each of them granted."""

    def run_together(self, *products):
        installations = [self.start(self.granted, product=product) for product in products]
        for installation in installations:
            installation.go_on()
        for installation in installations:
            installation.wait()
            self.assertEqual(installation.status, 0, installation.messages)
            self.assertEqual(len(installation.questions), 1)
        self.assertEqual(no_leftovers("/Applications", "/Library"), [])
        return installations

    def with_packages(self, product, content):
        for package in range(4):
            product.add_package(f"HD/Applications/Together/{package}.app",
                                {f"Contents/{number}": content for number in range(60)})
        return product

    def test_runs_of_the_same_product_leave_one_whole_item_at_each_place(self):
        versions = [self.with_packages(self.new_product(content, content=content), content)
                    for content in ("one", "another")]
        for _ in range(3):
            self.run_together(*versions)
            for package in range(4):
                contents = pathlib.Path(f"/Applications/Together/{package}.app/Contents")
                seen = {(contents / str(number)).read_text() for number in range(60)}
                self.assertEqual(len(seen), 1, contents)
                self.assertEqual(len(os.listdir(contents)), 61)
                self.assertInstalled(contents, owner=self.account.user)

    def test_runs_of_two_products_install_both(self):
        other = self.new_product("other", name="Other Filters")
        os.rename(other.files / "HD/Applications/Tool.app",
                  other.files / "HD/Applications/Other Tool.app")
        os.rename(other.files / "PHOTOSHOP/run.jsx", other.files / "PHOTOSHOP/other.jsx")
        for installation in self.run_together(self.product, other):
            self.assertIn("The installation is complete (3 items", self.last_line(installation))
        for product in (self.product, other):
            for path in self.disk.logged_paths(product):
                self.assertInstalled(path, owner=self.account.user)


class PolkitOnATerminal(User):
    """polkit asks there where no dialogue can."""

    def start_on_terminal(self, agent=None):
        return Terminal(self, self.product, self.account, self.environment, agent)

    def answer(self, password):
        terminal = self.start_on_terminal()
        terminal.wait_for_prompt("Password: ")
        self.assertIn(REASON, terminal.seen)
        terminal.type(password + "\n")
        return terminal.wait()

    def test_the_right_password_installs_everything_after_one_question(self):
        terminal = self.answer(self.account.password)
        self.assertIn("The installation is complete (3 items", terminal.messages)
        self.assertEqual(terminal.messages.count("Password: "), 1)
        for item in ITEMS:
            self.assertInstalled(item, owner=self.account.user)
        self.assertNoAgentIsLeft(terminal)

    def test_a_wrong_password_is_a_refusal_after_one_question(self):
        terminal = self.answer("wrong")
        self.assertEqual(terminal.status, 0)
        self.assertIn(f"{REFUSED} (0 items installed)", terminal.messages)
        self.assertEqual(terminal.messages.count("Password: "), 1)
        self.assertFalse(os.path.lexists(ITEMS[0]))
        self.assertNoAgentIsLeft(terminal)

    def test_an_interrupt_is_a_refusal_and_the_terminal_is_as_before(self):
        terminal = self.start_on_terminal()
        terminal.wait_for_prompt("Password: ")
        terminal.interrupt("/usr/bin/pkttyagent")
        terminal.wait()
        self.assertEqual(terminal.status, 0)
        self.assertIn(REFUSED, terminal.messages)
        self.assertTrue(terminal.shows_what_is_typed)
        self.assertFalse(os.path.lexists(ITEMS[0]))
        self.assertNoAgentIsLeft(terminal)

    def test_a_dialogue_is_asked_before_the_terminal(self):
        terminal = self.start_on_terminal(agent=self.granted).wait()
        self.assertIn("The installation is complete (3 items", terminal.messages)
        self.assertNotIn("Password: ", terminal.messages)
        self.assertEqual(len(terminal.agent.end()), 1)

    def assertNoAgentIsLeft(self, terminal):
        for program in ("/usr/bin/pkttyagent", "/usr/bin/pkexec"):
            wait_until(lambda: not processes(program), f"{program} to end")
        self.assertIsNotNone(terminal.process.returncode)


class PolkitMissing(User):
    """sudo is used, and only then."""

    def setUp(self):
        super().setUp()
        self.rule = write("/etc/sudoers.d/asked", "asked ALL=(root) NOPASSWD: ALL\n", 0o440)
        self.addCleanup(self.rule.unlink)

    def assertUsesSudo(self):
        self.assertComplete(self.start().go_on().wait())

    def test_sudo_is_not_used_where_polkit_is(self):
        self.assertRefused(self.install("cancel"))

    def test_sudo_is_used_where_pkexec_cannot_be_started(self):
        os.chmod("/usr/bin/pkexec", 0o644)
        self.addCleanup(os.chmod, "/usr/bin/pkexec", 0o4755)
        self.assertUsesSudo()

    def hide_the_bus(self):
        hidden = BUS.with_name("hidden")
        BUS.rename(hidden)
        self.addCleanup(hidden.rename, BUS)

    def test_sudo_is_used_where_there_is_no_system_bus(self):
        self.hide_the_bus()
        self.assertUsesSudo()

    def test_sudo_is_used_where_only_the_socket_of_a_bus_is_left(self):
        self.hide_the_bus()
        with socket.socket(socket.AF_UNIX) as stale:
            stale.bind(str(BUS))
        BUS.chmod(0o666)
        self.assertUsesSudo()


if __name__ == "__main__":
    unittest.main(verbosity=2)
