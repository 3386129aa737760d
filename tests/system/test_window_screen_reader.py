"""What a real screen reader says on each page, from the first to the last.

docs/accessibility.md shows it. This file writes that page itself:

    INSTALLER_WRITE_SPEECH=1 tests/system/run-private "$PWD" python3 -B "$PWD/tests/system/test_window_screen_reader.py"
"""

import os
import pathlib
import re
import unittest

import display
from screen_reader import ScreenReader
from walk import WindowTest

PAGE = pathlib.Path(__file__).parents[2] / "docs/accessibility.md"
WRITES = os.environ.get("INSTALLER_WRITE_SPEECH") == "1"
FOUND = "Adobe Photoshop CS6"

SUCCEEDS = "An installation that succeeds"
FAILS = "A program that is still open, and items that fail"


class WindowScreenReader(WindowTest):
    def setUp(self):
        super().setUp()
        self.reader = ScreenReader(self.desktop)
        self.addCleanup(self.reader.end)
        self.spoken = []

    def heading(self, step, key, *arguments):
        return self.text("page_name_fmt", str(step), "5", self.text(key, *arguments),
                         self.text("main_wnd_title_fmt", self.product.name))

    def hears(self, what, *phrases):
        """Waits until the reader has said all of that since the last time."""
        lines = self.reader.wait_for(*phrases)
        # A page is spoken when it opens, or when its window becomes active: whichever is first.
        lines = [re.sub(r"^notification | frame(?=\.$)", "", line) for line in lines]
        self.spoken.append((what, [re.sub(r"^\d+ percent", "… percent", line) for line in lines]))

    def press_key(self, window, what, key, *phrases):
        window.keys(key)
        self.hears(what, *phrases)

    def press_menu_key(self, what, key, *phrases):
        """The open menu has the keyboard; giving it to the window would close the menu."""
        display.press_keys(key)
        self.hears(what, *phrases)

    def go_to(self, window, what, name, *phrases):
        window.tab_to(name)
        self.hears(what, *phrases)

    def open_page(self, window, what, step, key, *phrases):
        window.focus_front()
        self.hears(what, self.heading(step, key), *phrases)

    def open_alert(self, window, what, path, *numbers):
        window.wait_for_text(str(path))
        window.focus_front()
        title = self.text("alert_item_fmt", self.text("install_error_title"), *numbers)
        self.hears(what, title, str(path), "Continue push button")

    def reach_hosts(self, window):
        """As somebody goes who listens: a page that goes before it was spoken may never be."""
        window.wait_for_label(self.text("license_instructions"))
        window.focus_front()
        self.reader.wait_for(self.heading(1, "license_instructions"))
        window.press(self.text("continue"))
        window.wait_for_label(self.text("agree_message"))
        window.focus_front()
        self.reader.wait_for(self.text("agree_message"))
        window.press(self.text("agree_button"))
        window.wait_for_label(self.text("select_host"))
        window.focus_front()
        self.reader.wait_for(self.heading(2, "select_host"))
        return window

    def test_every_page_is_spoken_from_the_first_to_the_last(self):
        self.photoshop(FOUND)
        window = self.start()
        window.wait_for_label(self.text("license_instructions"))
        self.open_page(window, "The window opens", 1, "license_instructions", "Continue push button")
        self.press_key(window, "F10", "F10", self.text("about_menu_fmt"))
        self.press_menu_key("Down", "Down", self.text("allow_custom"))
        self.press_menu_key("Down", "Down", self.text("hide_window_menu_fmt"))
        self.press_menu_key("Down", "Down", self.text("quit_menu_fmt"))
        self.press_menu_key("Escape", "Escape", "Continue push button")
        window.keys("Return")
        window.wait_for_label(self.text("agree_message"))
        window.focus_front()
        self.hears("Return: the question", self.text("agree_message"),
                   self.text("agree_information"), "Agree push button")
        window.keys("Return")
        self.open_page(window, "Return: the Photoshops", 2, "select_host")
        window.tab_into_list(FOUND)
        self.hears("Tab to the list", f"{FOUND} check box checked", f"/Applications/{FOUND}")
        self.press_key(window, "Space", "space", re.compile("not checked"))
        self.press_key(window, "Space again", "space", re.compile("checked"))
        window.press(self.text("custom_install_button"))
        self.open_page(window, "“Another Folder…”", 2, "browse_path_title")
        window.press(self.text("go_back"))
        self.open_page(window, "“Go Back”", 2, "select_host")
        window.press(self.text("continue"))
        window.wait_for_label(self.text("register_title"))
        self.open_page(window, "“Continue”: the last page", 5, "outcome_success_fmt")
        self.go_to(window, "Tab", self.text("launch_help_url_string"),
                   self.text("launch_help_url_string") + " check box checked")
        self.go_to(window, "Tab", self.text("finish"), "Finish push button")
        self.compare(SUCCEEDS)

    def test_an_open_program_and_items_that_fail_are_spoken(self):
        scripts, plug_in = self.photoshop(FOUND)
        for path in (scripts, plug_in):
            path.parent.mkdir(parents=True)
            self.cover_read_only(path.parent)
        program = self.run_program("Photoshop")
        window = self.reach_hosts(self.start())
        window.press(self.text("continue"))
        window.wait_for_label(self.text("host_running_title"))
        self.open_page(window, "A Photoshop is open", 3, "host_running_title")
        self.go_to(window, "Tab", self.text("go_back"), "Go Back push button")
        self.end_program(program)
        self.open_page(window, "It has been closed", 3, "thank_you")
        # Each alert holds the installation, however fast it is.
        window.press(self.text("continue"))
        self.hears("“Continue”: the installation",
                   self.heading(4, "copy_files_title", self.product.company),
                   re.compile(r"\d+ percent\."))
        self.open_alert(window, "An item fails", scripts, "1", "3", "4")
        window.keys("Return")
        self.open_alert(window, "Return: another item fails", plug_in, "2", "4", "4")
        window.keys("Return")
        window.wait_for_label(self.text("register_title"))
        self.open_page(window, "Return: the last page", 5, "outcome_failure_fmt")
        self.hears("The focus is on the message", self.text("install_failed", self.product.company))
        window.tab_into_list(scripts.name)
        self.hears("Tab to the list", scripts.name, str(scripts.parent))
        self.press_key(window, "Down", "Down", plug_in.name, str(plug_in.parent))
        for key in ("open_log", "copy_log", "copy_report"):
            self.go_to(window, "Tab", self.text(key), self.text(key) + " push button")
        self.compare(FAILS)

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
        window.press(self.text("go_back"))
        window.focus_front()
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
            self.text("alert_item_fmt", self.text("install_error_title"), "1", "4", "4"), str(path))

    def compare(self, walk):
        """Compares what was spoken with that walk's part of the page."""
        part = f"## {walk}\n" + "".join(
            f"\n### {what}\n\n" + "".join(f"> {line}\n>\n" for line in lines).removesuffix(">\n")
            for what, lines in self.spoken)
        page = PAGE.read_text("utf-8")
        if WRITES:
            before, found, rest = page.partition(f"## {walk}\n")
            after = re.search(r"^## ", rest, re.MULTILINE)
            rest = "\n" + rest[after.start():] if after else ""
            page = (before if found else page + "\n") + part + rest
            PAGE.write_text(page, "utf-8")
        self.assertIn(part, page)


if __name__ == "__main__":
    unittest.main(verbosity=2)
