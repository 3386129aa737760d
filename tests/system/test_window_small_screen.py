"""Every page on the smallest screen that people still use: nothing lies outside."""

import os
import unittest

os.environ["INSTALLER_TEST_SCREEN"] = "1024x600x24"

from walk import WindowTest  # noqa: E402  (the screen comes first)

SCREEN = (1024, 600)


class WindowSmallScreen(WindowTest):
    surroundings = {}
    pixels_per_unit = 1

    def setUp(self):
        super().setUp()
        self.paths = [path for name in ("CS6", "CC", "CC 2019", "CC 2015", "CC 2014")
                      for path in self.photoshop(f"Adobe Photoshop {name}")]

    def start(self, arguments=(), **environment):
        return super().start(arguments, **self.surroundings, **environment)

    def assertAllOfItIsSeen(self, window):
        outer = (0, 0, *(length / self.pixels_per_unit for length in SCREEN))
        frame = window.frame().extents
        self.assertInside(window.frame(), outer)
        seen = 0
        for control in window.front_controls():
            if control.role in ("push button", "check box", "label", "text", "progress bar"):
                self.assertInside(control, frame)
                seen += 1
        self.assertGreater(seen, 3)

    def assertInside(self, control, outer):
        left, top, width, height = control.extents
        # A screen that is no whole number of units is rounded.
        self.assertTrue(left >= outer[0] and top >= outer[1] and
                        left + width <= outer[0] + outer[2] + 1 and
                        top + height <= outer[1] + outer[3] + 1,
                        f"{control} at {control.extents} is not inside {outer}")

    def test_no_control_of_a_page_lies_outside_the_screen(self):
        program = self.run_program("Photoshop")
        window = self.start()
        window.wait_for_label(self.text("license_instructions"))
        self.assertAllOfItIsSeen(window)
        self.reach_hosts(window)
        self.assertAllOfItIsSeen(window)
        window.press(self.text("custom_install_button"))
        self.custom_folder(window)
        self.assertAllOfItIsSeen(window)
        window.press(self.text("go_back"))
        window.wait_until(lambda: window.controls("list item"), "the list of hosts")
        window.press(self.text("continue"))
        window.wait_for_label(self.text("host_running_title"))
        self.assertAllOfItIsSeen(window)
        self.end_program(program)
        window.wait_for_label(self.text("thank_you"))
        self.install(window)
        self.assertAllOfItIsSeen(window)

    def test_no_control_of_the_page_after_a_failure_lies_outside_the_screen(self):
        self.paths[0].parent.mkdir(parents=True)
        self.cover_read_only(self.paths[0].parent)
        window = self.reach_hosts(self.start())
        window.press(self.text("continue"))
        window.wait_for_label(self.text("install_error_title"))
        window.press(self.text("install_error_proceed"))
        window.wait_for_label(self.text("register_title"))
        self.assertAllOfItIsSeen(window)


class WindowSmallScreenLargeText(WindowSmallScreen):
    # The toolkit enlarges everything together with the text.
    surroundings = {"QT_FONT_DPI": "120"}
    pixels_per_unit = 1.25


class WindowSmallScreenGerman(WindowSmallScreen):
    language = "de"


if __name__ == "__main__":
    unittest.main(verbosity=2)
