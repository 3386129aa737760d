"""The window of an ordinary user whom the real polkit asks for a password."""

import os
import signal
import unittest

from harness import ON_PRIVATE_MACHINE, no_leftovers
from rights import STOPPED, Account, Agent, processes, start_polkit, wait_until
from walk import WindowTest

LOGIN = "window-user"
MANY = 1000


def setUpModule():
    if not ON_PRIVATE_MACHINE:
        raise AssertionError("this test would make an account on the real system")
    WindowPolkit.person = Account(LOGIN)
    start_polkit()


class WindowPolkit(WindowTest):
    login = LOGIN
    person = None

    def setUp(self):
        super().setUp()
        self.installed = [*self.photoshop(), "/Applications/Tool.app/Contents/tool.txt"]
        self.person.own(self.disk.home)

    def account(self):
        return self.person.options

    def command(self, arguments):
        return [*STOPPED, *super().command(arguments)]

    def start_with_agent(self, answer, password=""):
        window = super().start()
        os.waitid(os.P_PID, window.process.pid, os.WSTOPPED)
        self.agent = Agent(window.process.pid, self.person, answer, password)
        self.addCleanup(self.agent.process.communicate)
        self.addCleanup(self.agent.kill)
        os.kill(window.process.pid, signal.SIGCONT)
        return window

    def start_and_be_granted(self):
        return self.start_with_agent("password", self.person.password)

    def questions(self):
        """What was asked until now."""
        return len(self.agent.end())

    def assertRefused(self, window):
        texts = window.texts()
        self.assertIn(self.text("install_failed", self.product.company), " ".join(texts))
        self.assertIn(self.text("rights_refused"), texts)
        self.assertIn(self.text("failure_picture_name"), texts)
        self.assertNothingOfARunIsLeft(window)

    def assertNothingOfARunIsLeft(self, window):
        """No process that asked or worked, nor one that nobody waited for."""
        with open(f"/proc/{window.process.pid}/task/{window.process.pid}/children",
                  encoding="utf-8") as children:
            self.assertEqual(children.read(), "")
        for program in (self.helper, "/usr/bin/pkexec", "/usr/bin/pkttyagent"):
            self.assertEqual(processes(program), [], program)

    @property
    def helper(self):
        return self.product.contents / "MacOS/privileged-helper"

    def assertNothingInstalled(self):
        for path in [*self.installed, "/Applications/Tool.app"]:
            self.assertFalse(os.path.lexists(path), path)

    def test_one_right_password_installs_everything_for_the_user(self):
        window = self.install(self.reach_hosts(self.start_and_be_granted()))
        window.wait_for_label(self.text("outcome_success_fmt"))
        self.assertNothingOfARunIsLeft(window)
        self.finish_walk(window)
        self.assertEqual(self.questions(), 1)
        for path in self.installed:
            self.assertInstalled(path, owner=self.person.user)

    def test_a_dismissed_question_is_the_reason_on_the_last_page(self):
        window = self.install(self.reach_hosts(self.start_with_agent("cancel")))
        self.assertRefused(window)
        self.finish_walk(window)
        self.assertEqual(self.questions(), 1)
        self.assertNothingInstalled()

    def test_the_run_ends_when_the_program_that_should_answer_does(self):
        window = self.reach_hosts(self.start_with_agent("never"))
        window.press(self.text("continue"))
        self.agent.wait_for_question()
        self.assertIn(
            self.text("authorization_reason", self.product.name, self.product.company),
            window.messages)
        self.agent.kill()
        window.wait_for_label(self.text("register_title"))
        self.assertRefused(window)
        self.finish_walk(window)
        self.assertEqual(self.questions(), 1)
        self.assertNothingInstalled()

    def test_a_helper_that_is_killed_ends_the_run_without_another_question(self):
        self.product.add_package("HD/Applications/Big.app",
                                 {f"Contents/{number}": "x" for number in range(MANY)})
        window = self.reach_hosts(self.start_and_be_granted())
        window.press(self.text("continue"))
        wait_until(lambda: any(name.startswith(".installing-")
                               for name in os.listdir("/Applications")), "a copy")
        os.kill(processes(self.helper)[0], signal.SIGKILL)
        window.wait_for_label(self.text("register_title"))
        self.assertRefused(window)
        self.finish_walk(window)
        self.assertEqual(self.questions(), 1)
        for path in self.installed[:2]:
            self.assertFalse(os.path.lexists(path), path)

        window = self.install(self.reach_hosts(self.start_and_be_granted()))
        self.finish_walk(window)
        self.assertEqual(self.questions(), 1)
        self.assertEqual(len(os.listdir("/Applications/Big.app/Contents")), MANY + 1)
        self.assertEqual(no_leftovers("/Applications", "/Library"), [])


if __name__ == "__main__":
    unittest.main(verbosity=2)
