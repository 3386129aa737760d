"""Bundles that lack something, machines without a display: the window walks or says why not."""

import os
import shutil
import unittest

import display
from walk import WindowTest


class DamagedBundle(WindowTest):
    def setUp(self):
        super().setUp()
        self.installed = self.photoshop()

    def resources_named(self, *patterns):
        found = [path for pattern in patterns for path in self.product.resources.rglob(pattern)
                 if self.product.files not in path.parents]
        self.assertTrue(found, f"the bundle has no {patterns}")
        return found

    def remove(self, *patterns):
        for path in self.resources_named(*patterns):
            path.unlink()

    def break_files(self, *patterns):
        for path in self.resources_named(*patterns):
            path.write_bytes(path.read_bytes()[:40] + b"\0\xff<")

    def assertEndsSaying(self, window, part):
        self.assertEqual(window.wait_for_end(), 1, window.messages)
        self.assertIn(part, window.messages)
        self.assertIn("Start it with -quiet", self.desktop.said())
        self.assertFalse(os.path.lexists(self.installed[0]))

    def assertWalks(self):
        self.finish_walk(self.install(self.reach_hosts(self.start())))
        for path in self.installed:
            self.assertInstalled(path)


class WindowFaultsOfTheMainDescription(DamagedBundle):
    def test_a_missing_description_is_said_and_ends_with_a_failure(self):
        self.remove("MainWindow.ui")
        self.assertEndsSaying(self.start(), "MainWindow")

    def test_a_broken_description_is_said_and_ends_with_a_failure(self):
        self.break_files("MainWindow.ui")
        self.assertEndsSaying(self.start(), "MainWindow")

    def test_an_empty_description_is_said_and_ends_with_a_failure(self):
        for path in self.resources_named("MainWindow.ui"):
            path.write_text("")
        self.assertEndsSaying(self.start(), "MainWindow")

    def test_a_description_of_something_else_is_said_and_ends_with_a_failure(self):
        for path in self.resources_named("MainWindow.ui"):
            path.write_text('<ui version="4.0"><class>X</class>'
                            '<widget class="QLabel" name="label"/></ui>')
        self.assertEndsSaying(self.start(), "MainWindow")

    def test_a_bundle_without_the_windows_module_says_so(self):
        shutil.rmtree(self.product.contents / "Frameworks")
        self.assertEndsSaying(self.start(), "Frameworks")


class WindowFaultsOfOtherResources(DamagedBundle):
    def test_without_the_custom_page_its_button_does_nothing(self):
        self.remove("CustomInstall.ui")
        window = self.reach_hosts(self.start())
        window.press(self.text("custom_install_button"))
        window.wait_until(lambda: "CustomInstall" in window.messages, "a word in the system log")
        window.find("label", self.text("select_host"))
        window.find("push button", self.text("custom_install_button"))
        window.wait_until_enabled("push button", self.text("continue"))

    def test_without_a_step_indicator_the_window_walks(self):
        self.remove("Step Indicator.ui")
        self.assertWalks()

    def test_without_pictures_the_window_walks(self):
        self.remove("*.tiff", "*.png")
        self.assertWalks()

    def test_with_broken_pictures_the_window_walks(self):
        self.break_files("*.tiff", "*.png")
        self.assertWalks()

    def test_without_pages_the_window_walks_and_shows_nil_where_they_were(self):
        self.remove("*.rtf")
        window = self.install(self.reach_hosts(self.start()))
        window.find("label", "nil")
        self.finish_walk(window)
        self.assertInstalled(self.installed[0])

    def test_with_broken_pages_the_window_walks(self):
        for path in self.resources_named("*.rtf"):
            path.write_bytes(b"{\\rtf1 {{{{\\'zz \\u99999999? \xff")
        self.assertWalks()

    def test_without_pages_a_running_host_is_still_waited_for(self):
        self.remove("*.rtf")
        program = self.run_program("Photoshop")
        window = self.reach_hosts(self.start())
        window.press(self.text("continue"))
        window.wait_for_label(self.text("host_running_title"))
        window.wait_for_text("nil")
        self.end_program(program)
        window.wait_for_label(self.text("thank_you"))

    def test_without_a_licence_its_text_is_nil_and_the_step_works(self):
        self.remove("license.txt")
        window = self.start()
        self.assertEqual(window.find("label", self.text("license_name")).text.strip(), "nil")
        self.finish_walk(self.install(self.reach_hosts(window)))

    def test_without_tables_of_texts_the_window_walks_under_the_fallbacks(self):
        self.remove("*.strings")
        window = self.start()
        window.press("can't find")
        window.wait_until(lambda: window.front_controls("alert"), "the licence's question")
        window.keys("Return")
        window.wait_until(lambda: window.controls("list item"), "the list of hosts")
        window.press("can't find")
        window.wait_until(lambda: os.path.lexists(self.installed[0]), "the installation")
        window.wait_until(lambda: not window.controls("push button", "can't find"), "the last page")
        window.ask_to_close()
        self.assertEqual(window.wait_for_end(), 0)


class WindowFaultsOfDisplays(WindowTest):
    def assertRefuses(self, **environment):
        window = self.start(**environment)
        self.assertEqual(window.wait_for_end(), 1, window.messages)
        self.assertIn("display", window.messages)
        self.assertIn("-quiet", window.messages)

    def test_the_installer_says_that_there_is_no_display_and_what_can_be_done(self):
        self.assertRefuses(DISPLAY="")

    def test_a_display_that_is_not_there_is_no_display(self):
        self.assertRefuses(DISPLAY=":4711")

    def test_a_display_that_goes_away_ends_the_installer(self):
        # The toolkit ends the process where it stands, so nothing is given back in order.
        window = self.start(ASAN_OPTIONS="detect_leaks=0")
        window.wait_for_label(self.text("license_instructions"))
        display.close_connection(window.front())
        self.assertNotEqual(window.wait_for_end(), 0)

    def test_a_quiet_run_shows_its_alert_where_there_is_a_display(self):
        item, plug_in = self.photoshop()
        item.parent.mkdir(parents=True)
        self.cover_read_only(item.parent)
        window = self.start(["-quiet"])
        window.wait_for_text(str(item))
        window.press(self.text("install_error_proceed"))
        self.assertEqual(window.wait_for_end(), 0)
        self.assertInstalled(plug_in)


if __name__ == "__main__":
    unittest.main(verbosity=2)
