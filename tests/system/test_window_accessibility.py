"""What a screen reader, a keyboard and tired eyes find on every page, light and dark."""

import unittest

import display
from walk import WindowTest

# What only holds other things together needs no name.
HOLDERS = ("filler", "layered pane", "panel", "scroll bar", "split pane", "separator", "menu bar",
           "popup menu")
READ = ("label", "push button", "check box", "list item", "text", "menu item")
FRAMED = ("push button", "text")
SUFFICIENT_CONTRAST = 4.5


class WindowAccessibilityOfEveryPage(WindowTest):
    mirrored = False
    appearance = None
    surroundings = {}
    pixels_per_unit = 1

    def setUp(self):
        super().setUp()
        self.desktop.prefer(self.appearance)
        self.addCleanup(self.desktop.prefer, None)
        self.paths = self.photoshop()

    def start(self, arguments=(), **environment):
        return super().start(arguments, **self.surroundings, **environment)

    # One walk goes through all pages; each is looked at in every respect.

    def test_pages_from_the_licence_to_the_last_one_can_be_read_aloud(self):
        window = self.start()
        window.wait_for_label(self.text("license_instructions"))
        self.look_at(window, "continue")
        window.press(self.text("continue"))
        window.wait_for_label(self.text("agree_message"))
        self.look_at(window, "agree_button")
        window.press(self.text("agree_button"))
        window.wait_for_label(self.text("select_host"))
        self.look_at(window, "continue")
        window.press(self.text("custom_install_button"))
        self.custom_folder(window)
        self.look_at(window, "continue")
        window.press(self.text("go_back"))
        window.wait_until(lambda: window.controls("list item"), "the list of hosts")
        self.install(window)
        self.look_at(window, "finish")

    def test_the_page_of_running_hosts_can_be_read_aloud(self):
        self.run_program("Photoshop")
        window = self.reach_hosts(self.start())
        window.press(self.text("continue"))
        window.wait_for_label(self.text("host_running_title"))
        self.look_at(window, "continue")

    def test_the_alert_and_the_last_page_after_a_failure_can_be_read_aloud(self):
        self.paths[0].parent.mkdir(parents=True)
        self.cover_read_only(self.paths[0].parent)
        window = self.reach_hosts(self.start())
        window.press(self.text("continue"))
        window.wait_for_label(self.text("install_error_title"))
        self.look_at(window, "install_error_proceed")
        window.press(self.text("install_error_proceed"))
        window.wait_for_label(self.text("register_title"))
        self.look_at(window, "finish")

    def look_at(self, window, default_button):
        self.assertNamesAndRoles(window)
        self.assertDefaultButton(window, self.text(default_button))
        self.assertContrast(window)
        self.assertFocusFollowsReading(window)

    def assertNamesAndRoles(self, window):
        for control in window.front_controls():
            self.assertNotIn(control.role, ("unknown", "invalid"), control)
            if control.role not in HOLDERS and not self.is_held(control):
                self.assertTrue(control.name or control.text, f"a {control.role} without a name")

    @staticmethod
    def is_held(control):
        """Whether it is an empty label, which shows nothing and is skipped by screen readers."""
        return control.role == "label" and not control.text

    def assertDefaultButton(self, window, name):
        defaults = [button.name for button in window.front_controls("push button")
                    if "is-default" in button.states]
        self.assertEqual(defaults, [name])

    def on_screen(self, extents):
        """The pixels of a place that the accessibility bus gives in the window's own units."""
        return tuple(round(value * self.pixels_per_unit) for value in extents)

    def assertContrast(self, window):
        screen = display.Screen()
        seen = 0
        for control in window.front_controls():
            if control.role not in READ or not control.enabled or not control.text:
                continue
            margin = 4 if control.role in FRAMED or control.text != control.name else 0
            colours = screen.colours(self.on_screen(control.extents), margin)
            self.assertGreaterEqual(display.contrast(colours), SUFFICIENT_CONTRAST, control)
            seen += 1
        self.assertGreater(seen, 2)

    def assertFocusFollowsReading(self, window):
        order = window.focus_order()
        first = order.index(min(order, key=lambda control: self.place(control)))
        order = order[first:] + order[:first]
        pressable = {control.name for role in ("push button", "check box")
                     for control in window.front_controls(role) if control.enabled}
        self.assertLessEqual(pressable, {control.name for control in order})
        for before, after in zip(order, order[1:]):
            self.assertTrue(self.comes_before(before, after),
                            f"{after} at {after.extents} has the focus after "
                            f"{before} at {before.extents}")

    def place(self, control):
        left, top, width, _ = control.extents
        return top, -(left + width) if self.mirrored else left

    def comes_before(self, before, after):
        """Above it, or in the same row and nearer to where reading starts."""
        _, top, _, height = before.extents
        if after.extents[1] >= top + height:
            return True
        in_one_row = after.extents[1] + after.extents[3] > top
        return in_one_row and self.place(before)[1] < self.place(after)[1]


class WindowAccessibilityOfEveryPageInTheDark(WindowAccessibilityOfEveryPage):
    appearance = "dark"

    def test_the_window_is_dark(self):
        self.assertLess(self.ground(), 0.2)

    def test_the_window_is_light_where_the_user_wants_that(self):
        self.desktop.prefer("light")
        self.assertGreater(self.ground(), 0.7)

    def test_the_window_is_light_where_nobody_says_anything(self):
        self.desktop.prefer(None)
        self.assertGreater(self.ground(), 0.7)

    def test_a_change_of_mind_is_followed_while_the_window_is_shown(self):
        window = self.start()
        self.assertLess(self.ground_of(window), 0.2)
        self.desktop.change_preference("light")
        window.wait_until(lambda: self.ground_of(window) > 0.7, "the window to be light")
        self.desktop.change_preference("dark")
        window.wait_until(lambda: self.ground_of(window) < 0.2, "the window to be dark")

    def ground(self):
        return self.ground_of(self.start())

    def ground_of(self, window):
        """How light most of the page is."""
        heading = window.wait_for_label(self.text("license_instructions"))
        return display.luminance(display.most_frequent(display.Screen().colours(heading.extents)))


class WindowAccessibilityOfEveryPageFromRightToLeft(WindowAccessibilityOfEveryPage):
    language = "ar"
    mirrored = True


class WindowAccessibilityOfEveryPageInLargeText(WindowAccessibilityOfEveryPage):
    # The toolkit enlarges everything together with the text.
    surroundings = {"QT_FONT_DPI": "144"}
    pixels_per_unit = 1.5

    def test_the_window_fits_on_a_small_screen(self):
        window = self.start()
        window.wait_for_label(self.text("license_instructions"))
        _, _, width, height = window.frame().extents
        _, _, width, height = self.on_screen((0, 0, width, height))
        self.assertLessEqual(width, 1280)
        self.assertLessEqual(height, 800)


class WindowAccessibilityOfValues(WindowTest):
    def test_the_picture_of_the_last_page_has_a_name_that_says_how_it_went(self):
        self.photoshop()
        window = self.install(self.reach_hosts(self.start()))
        picture = next(control for control in window.controls()
                       if control.name == self.text("success_picture_name"))
        self.assertIn(picture.role, ("label", "icon", "image"))

    def test_the_rows_of_hosts_say_whether_they_are_ticked_and_where_they_lie(self):
        self.photoshop()
        window = self.reach_hosts(self.start())
        window.find("list", self.text("hosts_name"))
        row = window.find("list item", "Adobe Photoshop CS6")
        self.assertTrue(row.checked)
        self.assertIn("/Applications/Adobe Photoshop CS6", row.description)


if __name__ == "__main__":
    unittest.main(verbosity=2)
