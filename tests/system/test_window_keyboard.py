"""The window without a mouse: Tab, Space, Return, Escape and the menu's keys are enough."""

import os
import unittest

import display
from walk import WindowTest


class WindowKeyboard(WindowTest):
    def setUp(self):
        super().setUp()
        self.installed = self.photoshop("Adobe Photoshop CS6")
        self.unwanted = self.photoshop("Adobe Photoshop CC 2015")

    def test_the_whole_way_goes_with_tab_space_and_return(self):
        window = self.start()
        window.wait_for_label(self.text("license_instructions"))
        window.tab_to(self.text("license_name"))
        window.keys("Return")
        window.wait_for_label(self.text("agree_message"))
        window.keys("Return")

        window.wait_for_label(self.text("select_host"))
        row = window.tab_into_list("Adobe Photoshop CC 2015")
        window.keys("space")
        window.wait_until(lambda: not row.checked, "the tick to go")
        window.tab_to(self.text("continue"))
        window.keys("space")

        window.wait_for_label(self.text("register_title"))
        switch = window.tab_to(self.text("launch_help_url_string"))
        window.keys("space")
        window.wait_until(lambda: not switch.checked, "the tick to go")
        window.tab_to(self.text("finish"))
        window.keys("Return")
        self.assertEqual(window.wait_for_end(), 0)

        self.assertEqual(self.desktop.opened(), [])
        for path in self.installed:
            self.assertInstalled(path)
        for path in self.unwanted:
            self.assertFalse(os.path.lexists(path), path)

    def test_return_presses_the_default_button_wherever_the_focus_is(self):
        window = self.reach_hosts(self.start())
        window.tab_into_list("Adobe Photoshop CS6")
        window.keys("Return")
        window.wait_for_label(self.text("register_title"))
        window.tab_to(self.text("launch_help_url_string"))
        window.keys("Return")
        self.assertEqual(window.wait_for_end(), 0)

    def test_return_on_another_button_presses_that_one(self):
        window = self.reach_hosts(self.start())
        window.tab_to(self.text("custom_install_button"))
        window.keys("Return")
        self.custom_folder(window)

    def test_typing_into_the_licence_changes_nothing(self):
        window = self.start()
        view = window.find("label", self.text("license_name"))
        before = view.text
        window.tab_to(self.text("license_name"))
        window.type("x y")
        window.keys("BackSpace", "Delete", "ctrl+v", "ctrl+x")
        window.tab()
        self.assertEqual(view.text, before)
        window.find("label", self.text("license_instructions"))

    def test_the_licence_can_be_copied(self):
        window = self.start()
        view = window.tab_to(self.text("license_name"))
        window.keys("ctrl+a", "ctrl+c")
        window.wait_until(lambda: display.clipboard().split() == view.text.split(),
                          "the licence in the clipboard")
        window.find("label", self.text("license_instructions"))

    def test_shift_tab_goes_the_same_way_back(self):
        window = self.reach_hosts(self.start())
        forth = [str(control) for control in window.focus_order()]
        window.tab("shift+Tab")
        back = [str(control) for control in window.focus_order("shift+Tab")]
        start = back.index(forth[0])
        self.assertEqual((back[start:] + back[:start])[1:], forth[:0:-1])

    def test_a_folder_is_chosen_with_keys_alone(self):
        window = self.reach_hosts(self.start())
        window.tab_to(self.text("custom_install_button"))
        window.keys("space")
        self.custom_folder(window)
        window.tab_to(self.text("custom_install_browse_button"))
        window.keys("space")
        self.folder_panel(window)
        folder = self.scratch / "chosen"
        folder.mkdir()
        window.type(str(folder))
        window.keys("Return")
        window.wait_until_gone("dialog")
        self.assertEqual(self.custom_folder(window).text, str(folder))

    def test_the_quit_key_ends_the_installer(self):
        window = self.start()
        window.wait_for_label(self.text("license_instructions"))
        window.keys("ctrl+q")
        self.assertEqual(window.wait_for_end(), 0)

    def test_the_menu_key_opens_the_menu_and_escape_closes_it(self):
        window = self.start()
        window.wait_for_label(self.text("license_instructions"))
        window.keys("F10")
        window.find("menu item", self.text("about_menu_fmt"))
        window.keys("Escape")
        window.wait_until_gone("menu item", self.text("about_menu_fmt"))
        window.tab_to(self.text("menu_name"))
        window.keys("Return")
        window.find("menu item", self.text("quit_menu_fmt"))

    def test_alt_and_a_letter_press_a_button(self):
        window = self.start()
        window.wait_for_label(self.text("license_instructions"))
        window.keys("alt+c")
        window.wait_for_label(self.text("agree_message"))

    def test_a_new_page_does_not_leave_the_focus_on_a_control_that_has_gone(self):
        window = self.reach_hosts(self.start())
        window.tab_into_list("Adobe Photoshop CS6")
        window.press(self.text("continue"))
        window.wait_for_label(self.text("register_title"))
        window.keys("Tab")
        self.assertIn("showing", window.focused().states)


class WindowKeyboardGerman(WindowTest):
    """From the first page to the last with a key and Alt, and without Tab."""

    language = "de"
    mnemonics = {"continue": "w", "go_back": "z", "custom_install_button": "a", "finish": "f"}

    def press_mnemonic(self, window, key):
        """Holds Alt as a person does: the marks appear while it is held."""
        window.wait_until_enabled("push button", self.text(key))
        window.keys(f"alt+{self.mnemonics[key]}")

    def assertFocusIsShown(self, window):
        window.focus_front()
        self.assertLessEqual({"showing", "enabled"}, window.focused().states)

    def test_the_whole_way_goes_with_mnemonics_escape_and_return(self):
        installed = self.photoshop("Adobe Photoshop CS6")
        program = self.run_program("Photoshop")
        window = self.start()
        window.wait_for_label(self.text("license_instructions"))
        self.assertFocusIsShown(window)
        self.press_mnemonic(window, "continue")
        window.wait_for_label(self.text("agree_message"))
        self.assertFocusIsShown(window)
        window.keys("Escape")
        window.wait_until_gone("label", self.text("agree_message"))
        window.find("label", self.text("license_instructions"))
        self.assertFocusIsShown(window)
        self.press_mnemonic(window, "continue")
        window.wait_for_label(self.text("agree_message"))
        window.keys("Return")

        window.wait_for_label(self.text("select_host"))
        self.assertFocusIsShown(window)
        self.press_mnemonic(window, "custom_install_button")
        self.custom_folder(window)
        self.assertFocusIsShown(window)
        self.press_mnemonic(window, "go_back")
        window.wait_until(lambda: window.controls("list item"), "the list of hosts")
        self.assertFocusIsShown(window)
        window.keys("F10")
        window.find("menu item", self.text("about_menu_fmt"))
        display.press_keys("Escape")
        window.wait_until_gone("menu item", self.text("about_menu_fmt"))
        self.assertFocusIsShown(window)
        self.press_mnemonic(window, "continue")

        window.wait_for_label(self.text("host_running_title"))
        self.assertFocusIsShown(window)
        self.end_program(program)
        window.wait_for_label(self.text("thank_you"))
        self.press_mnemonic(window, "continue")
        window.wait_for_label(self.text("register_title"))
        self.assertFocusIsShown(window)
        self.press_mnemonic(window, "finish")
        self.assertEqual(window.wait_for_end(), 0)
        for path in installed:
            self.assertInstalled(path)


class WindowKeyboardJapanese(WindowKeyboardGerman):
    # No keyboard has keys for these letters: a Latin one in brackets stands for each button.
    language = "ja"
    mnemonics = {"continue": "b", "go_back": "a", "custom_install_button": "c", "finish": "a"}


if __name__ == "__main__":
    unittest.main(verbosity=2)
