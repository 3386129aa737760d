"""What the window says and offers when an item cannot be installed, and while it installs."""

import os
import signal
import unittest

import display
from walk import WindowTest

ITEMS = 9000


class WindowFailuresOfItems(WindowTest):
    def setUp(self):
        super().setUp()
        self.item, self.plug_in = self.photoshop()
        self.item.parent.mkdir(parents=True)
        self.cover_read_only(self.item.parent)

    def reach_alert(self):
        window = self.reach_hosts(self.start())
        window.press(self.text("continue"))
        window.wait_for_label(self.text("install_error_title"))
        window.wait_for_text(str(self.item))
        return window

    def reach_last_page(self):
        window = self.reach_alert()
        window.press(self.text("install_error_proceed"))
        window.wait_for_label(self.text("register_title"))
        return window

    def test_the_alert_names_the_item_and_the_last_page_tells_of_the_failure(self):
        window = self.reach_last_page()
        window.wait_for_text(self.text("install_failed", self.product.company))
        texts = window.texts()
        for key in ("failed_items", "failure_picture_name", "open_log", "copy_log"):
            self.assertIn(self.text(key), texts)
        self.assertNotIn(self.text("rights_refused"), texts)
        row = window.find("list item")
        self.assertIn(self.item.name, row.name)
        self.finish_walk(window)

    def test_what_comes_after_the_failed_item_in_its_host_is_still_installed(self):
        self.finish_walk(self.reach_last_page())
        self.assertInstalled(self.plug_in, "filter")
        self.assertFalse(self.item.exists())

    def test_the_log_can_be_copied(self):
        window = self.reach_last_page()
        window.press(self.text("copy_log"))
        log = self.disk.installer_log(self.product).read_text("utf-8")
        window.wait_until(lambda: display.clipboard() == log, "the log in the clipboard")
        self.assertIn(str(self.plug_in), log)

    def test_the_log_can_be_opened(self):
        window = self.reach_last_page()
        window.press(self.text("open_log"))
        window.wait_until(self.desktop.opened, "the log to open")
        opened = self.desktop.opened()[0].removeprefix("file://").replace("%20", " ")
        self.assertEqual(opened, str(self.disk.installer_log(self.product)))

    def test_a_second_host_gets_nothing_once_an_item_has_failed(self):
        # The newer release stands above the older one in the list.
        first = self.photoshop("Adobe Photoshop CC")
        second = self.photoshop("Adobe Photoshop CC 2015")
        first[0].parent.mkdir(parents=True)
        self.cover_read_only(first[0].parent)
        window = self.reach_hosts(self.start())
        rows = [row.name for row in window.controls("list item")]
        self.assertLess(rows.index("Adobe Photoshop CC"), rows.index("Adobe Photoshop CC 2015"))
        window.set_row_checked("Adobe Photoshop CS6", False)
        window.press(self.text("continue"))
        window.wait_for_text(str(first[0]))
        window.press(self.text("install_error_proceed"))
        window.wait_for_label(self.text("register_title"))
        self.finish_walk(window)
        self.assertInstalled(first[1], "filter")
        self.assertFalse(os.path.lexists(second[0]))

    def test_two_failed_items_are_two_alerts_and_two_rows(self):
        self.plug_in.parent.mkdir(parents=True)
        self.cover_read_only(self.plug_in.parent)
        window = self.reach_hosts(self.start())
        window.press(self.text("continue"))
        for path in (self.item, self.plug_in):
            window.wait_for_text(str(path))
            window.press(self.text("install_error_proceed"))
        window.wait_for_label(self.text("register_title"))
        self.assertEqual(len(window.controls("list item")), 2)


class WindowFailuresWhileInstalling(WindowTest):
    """The installer is stopped in the middle of its work, asked to end, and let go on."""

    def setUp(self):
        super().setUp()
        self.folder = self.disk.support(self.product.company, self.product.name)
        for number in range(ITEMS):
            self.product.add(f"HD{self.folder}/{number}.txt", "x")
        self.photoshop()
        self.window = self.reach_hosts(self.start())
        self.window.press(self.text("continue"))
        self.window.wait_until(lambda: self.folder.is_dir() and len(os.listdir(self.folder)) > 100,
                               "the first items")

    def in_the_middle(self, ask):
        self.window.focus_front()
        os.kill(self.window.process.pid, signal.SIGSTOP)
        try:
            self.assertLess(len(os.listdir(self.folder)), ITEMS)
            ask()
        finally:
            os.kill(self.window.process.pid, signal.SIGCONT)
        self.window.wait_for_label(self.text("register_title"))
        self.assertEqual(len(os.listdir(self.folder)), ITEMS + 1)

    def test_the_window_does_not_close_while_installing(self):
        front = self.window.front()
        self.in_the_middle(lambda: display.ask_to_close(front))

    def test_the_quit_key_does_nothing_while_installing(self):
        self.in_the_middle(lambda: display.press_keys("ctrl+q"))

    def test_progress_is_shown_and_both_buttons_are_disabled(self):
        heading = self.text("copy_files_title", self.product.company)
        window = self.window
        window.wait_until(lambda: window.controls("progress bar", self.text("progress_name")),
                          "the progress")
        window.wait_for_label(heading)
        buttons = [window.find("push button", self.text(key)) for key in ("continue", "go_back")]
        states = [button.enabled for button in buttons]
        still_installing = bool(window.controls("label", heading))
        self.assertTrue(still_installing, "the installation was over before its page was read")
        self.assertEqual(states, [False, False])
        window.wait_for_label(self.text("register_title"))


if __name__ == "__main__":
    unittest.main(verbosity=2)
