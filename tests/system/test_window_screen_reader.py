"""What a real screen reader says on each page, from the first to the last.

docs/accessibility.md shows it. This file writes that page itself:

    INSTALLER_WRITE_SPEECH=1 tests/system/run-private "$PWD" python3 -B "$PWD/tests/system/test_window_screen_reader.py"
"""

import os
import pathlib
import re
import unittest

from screen_reader import ScreenReader
from walk import WindowTest

PAGE = pathlib.Path(__file__).parents[2] / "docs/accessibility.md"
WRITES = os.environ.get("INSTALLER_WRITE_SPEECH") == "1"
FOUND = "Adobe Photoshop CS6"

HEAD = """# What a screen reader says

This is what Orca says to somebody who installs the sample product with the keyboard, page by page. The window tells
the reader of each page by the window's name, so nobody has to look for the heading. The dot of the current step is
called "Current step". `System.window_screen_reader` plays this walk with Orca and compares every line; the command in
that test's head writes this page.
"""


class WindowScreenReader(WindowTest):
    def setUp(self):
        super().setUp()
        self.reader = ScreenReader(self.desktop)
        self.addCleanup(self.reader.end)
        self.spoken = []

    def heading(self, step, key):
        return self.text("page_name_fmt", str(step), "5", self.text(key),
                         self.text("main_wnd_title_fmt", self.product.name))

    def hears(self, what, *phrases):
        """Waits until the reader has said all of that since the last time."""
        lines = self.reader.wait_for(*phrases)
        # A page is spoken when it opens, or when its window becomes active: whichever is first.
        self.spoken.append(
            (what, [re.sub(r"^notification | frame(?=\.$)", "", line) for line in lines]))

    def press_key(self, window, what, key, *phrases):
        window.keys(key)
        self.hears(what, *phrases)

    def go_to(self, window, what, name, *phrases):
        window.tab_to(name)
        self.hears(what, *phrases)

    def open_page(self, window, what, step, key, *phrases):
        window.focus_front()
        self.hears(what, self.heading(step, key), *phrases)

    def test_every_page_is_spoken_from_the_first_to_the_last(self):
        self.photoshop(FOUND)
        window = self.start()
        window.wait_for_label(self.text("license_instructions"))
        self.open_page(window, "The window opens", 1, "license_instructions", "Continue push button")
        window.keys("Return")
        window.wait_for_label(self.text("agree_message"))
        window.focus_front()
        self.hears("Return: the question", self.text("agree_message"),
                   self.text("agree_information"), "Agree push button")
        window.keys("Return")
        self.open_page(window, "Return: the Photoshops", 2, "select_host")
        window.tab_into_list(FOUND)
        self.hears("Tab to the list", f"{FOUND} check box checked")
        self.press_key(window, "Space", "space", re.compile("not checked"))
        self.press_key(window, "Space again", "space", re.compile("checked"))
        window.press(self.text("custom_install_button"))
        self.open_page(window, "“Another Folder…”", 2, "browse_path_title")
        window.press(self.text("go_back"))
        self.open_page(window, "“Go Back”", 2, "select_host")
        window.press(self.text("continue"))
        window.wait_for_label(self.text("register_title"))
        self.open_page(window, "“Continue”: the last page", 5, "register_title")
        self.go_to(window, "Tab", self.text("launch_help_url_string"),
                   self.text("launch_help_url_string") + " check box checked")
        self.go_to(window, "Tab", self.text("finish"), "Finish push button")
        self.compare()

    def test_a_row_without_a_tick_is_read_with_not_checked(self):
        self.photoshop(FOUND)
        window = self.reach_hosts(self.start())
        window.set_row_checked(FOUND, False)
        window.focus_front()
        window.tab_into_list(FOUND)
        self.reader.wait_for(f"{FOUND} check box not checked")

    def test_going_back_is_spoken(self):
        self.photoshop(FOUND)
        window = self.reach_hosts(self.start())
        window.focus_front()
        self.reader.wait_for(self.heading(2, "select_host"))
        window.press(self.text("go_back"))
        self.reader.wait_for(self.heading(1, "license_instructions"))

    def test_alerts_have_the_products_title_and_numbers(self):
        path = self.photoshop(FOUND)[1]
        path.parent.mkdir(parents=True)
        self.cover_read_only(path.parent)
        window = self.reach_hosts(self.start())
        window.press(self.text("continue"))
        window.wait_for_label(self.text("install_error_title"))
        window.focus_front()
        self.reader.wait_for(
            self.text("alert_number_fmt", self.text("install_error_title"), "1"), str(path))

    def compare(self):
        page = HEAD + "".join(
            f"\n## {what}\n\n" + "".join(f"> {line}\n>\n" for line in lines).removesuffix(">\n")
            for what, lines in self.spoken)
        if WRITES:
            PAGE.write_text(page, "utf-8")
        self.assertEqual(PAGE.read_text("utf-8"), page)


if __name__ == "__main__":
    unittest.main(verbosity=2)
