"""What an end from outside leaves behind: signals, and a display that is gone."""

import plistlib
import signal
import unittest

import display
from walk import WindowTest


class WindowEnds(WindowTest):
    """The user has switched the help page off, which is only saved when the installer ends."""

    def setUp(self):
        super().setUp()
        self.photoshop()
        self.window = self.install(self.reach_hosts(self.start()))
        self.window.set_checked(self.text("launch_help_url_string"), False)
        self.assertFalse(self.saved())

    def saved(self):
        """Whether the settings file holds the user's choice."""
        if not self.defaults_file().exists():
            return False
        return plistlib.loads(self.defaults_file().read_bytes()).get("launch_help_url") is False

    def test_a_polite_end_saves_the_settings_and_opens_nothing(self):
        self.window.process.send_signal(signal.SIGTERM)
        self.assertEqual(self.window.wait_for_end(), 0, self.window.messages)
        self.assertTrue(self.saved())
        self.assertEqual(self.desktop.opened(), [])

    def test_an_interrupt_saves_the_settings(self):
        self.window.process.send_signal(signal.SIGINT)
        self.assertEqual(self.window.wait_for_end(), 0, self.window.messages)
        self.assertTrue(self.saved())

    def test_a_display_that_is_gone_does_not_take_the_settings_with_it(self):
        display.disconnect(self.window.front())
        self.window.wait_for_end()
        self.assertTrue(self.saved(), self.window.messages)


class WindowEndsBehindAQuestion(WindowTest):
    def test_an_end_does_not_wait_for_an_answer(self):
        window = self.start()
        window.press(self.text("continue"))
        window.wait_for_label(self.text("agree_message"))
        window.process.send_signal(signal.SIGTERM)
        self.assertEqual(window.wait_for_end(), 0, window.messages)

    def test_a_press_behind_the_question_asks_nothing_again(self):
        self.photoshop()
        window = self.start()
        window.press(self.text("continue"))
        window.wait_for_label(self.text("agree_message"))
        behind = window.controls("push button", self.text("continue"))[0]
        for _ in range(2):
            behind.press()
        self.assertEqual(len(window.controls("alert")), 1)
        window.press(self.text("agree_button"))
        window.wait_for_label(self.text("select_host"))


if __name__ == "__main__":
    unittest.main(verbosity=2)
