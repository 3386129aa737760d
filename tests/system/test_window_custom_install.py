"""The folder that the user picks instead of a Photoshop, and how it is remembered."""

import os
import plistlib
import unittest

from walk import WindowTest


class WindowCustomInstall:
    """What holds for the custom page, however it was reached."""

    def setUp(self):
        super().setUp()
        self.folder = self.scratch / "My Plug-ins ü"
        self.folder.mkdir()

    def plug_in(self, folder=None):
        return (folder or self.folder) / self.product.company / "filter.8bf"

    def test_a_custom_folder_gets_the_plug_in_and_no_scripts(self):
        window = self.start_at_custom_page()
        self.choose_folder(window, self.folder)
        self.finish_walk(self.install(window))
        found = {name for _, folders, files in os.walk(self.folder) for name in folders + files}
        self.assertEqual(found, {self.product.company, "filter.8bf"})

    def test_the_folder_is_remembered_on_the_disk_and_offered_by_the_next_run(self):
        window = self.start_at_custom_page()
        self.choose_folder(window, self.folder)
        self.finish_walk(self.install(window))
        settings = plistlib.loads(self.defaults_file().read_bytes())
        self.assertEqual(settings["customPath"], str(self.folder))

        window = self.start_at_custom_page()
        self.assertEqual(self.custom_folder(window).text, str(self.folder))
        window.wait_until_enabled("push button", self.text("continue"))

    def test_without_the_plug_in_there_is_nothing_to_continue_with(self):
        window = self.start_at_custom_page()
        self.choose_folder(window, self.folder)
        box = self.text("custom_install_plugin_checkbox")
        window.set_checked(box, False)
        window.wait_until_enabled("push button", self.text("continue"), enabled=False)
        window.wait_until(lambda: self.custom_folder(window).text == "", "the path to go")
        window.set_checked(box, True)
        window.wait_until_enabled("push button", self.text("continue"))
        self.assertEqual(self.custom_folder(window).text, str(self.folder))

    def test_the_path_cannot_be_typed(self):
        window = self.start_at_custom_page()
        self.assertIn("read-only", self.custom_folder(window).states)


class WindowCustomInstallWithoutHosts(WindowCustomInstall, WindowTest):
    def start_at_custom_page(self):
        window = self.agree(self.start())
        self.custom_folder(window)
        return window

    def test_without_a_host_the_custom_folder_is_asked_for_at_once(self):
        window = self.start_at_custom_page()
        self.assertEqual(self.custom_folder(window).text, "")
        window.wait_until_enabled("push button", self.text("continue"), enabled=False)
        self.choose_folder(window, self.folder)
        self.assertEqual(self.custom_folder(window).text, str(self.folder))
        self.finish_walk(self.install(window))
        self.assertInstalled(self.plug_in(), "filter")


class WindowCustomInstallBesideHosts(WindowCustomInstall, WindowTest):
    """Where there are hosts a button leads to the custom page, and Back leads to the list again."""

    def setUp(self):
        super().setUp()
        self.in_photoshop = self.photoshop()

    def start_at_custom_page(self):
        window = self.reach_hosts(self.start())
        window.press(self.text("custom_install_button"))
        self.custom_folder(window)
        return window

    def test_the_hosts_get_nothing_when_a_folder_is_chosen_instead(self):
        window = self.start_at_custom_page()
        self.choose_folder(window, self.folder)
        self.finish_walk(self.install(window))
        self.assertInstalled(self.plug_in(), "filter")
        for path in self.in_photoshop:
            self.assertFalse(os.path.lexists(path), path)

    def test_back_leads_to_the_list_with_every_host_ticked_and_the_folder_forgotten(self):
        window = self.reach_hosts(self.start())
        window.set_row_checked("Adobe Photoshop CS6", False)
        window.press(self.text("custom_install_button"))
        self.choose_folder(window, self.folder)
        window.press(self.text("go_back"))
        rows = window.wait_until(lambda: window.controls("list item"), "the list of hosts")
        self.assertEqual([(row.name, row.checked) for row in rows], [("Adobe Photoshop CS6", True)])
        self.finish_walk(self.install(window))
        self.assertInstalled(self.in_photoshop[0])
        self.assertFalse(os.path.lexists(self.plug_in()))


class WindowCustomInstallFolderPanel(WindowTest):
    def setUp(self):
        super().setUp()
        self.shown = self.disk.home / "Plug-ins"
        self.shown.mkdir()
        (self.disk.home / "Photoshop.app/Contents").mkdir(parents=True)
        (self.disk.home / "Package without a suffix/Contents").mkdir(parents=True)
        (self.disk.home / "a file.txt").write_text("")
        self.window = self.agree(self.start())
        self.custom_folder(self.window)

    def names(self):
        return {control.name for control in self.folder_panel(self.window).shown()}

    def open(self):
        self.window.press(self.text("custom_install_browse_button"))
        self.window.wait_until(lambda: "Plug-ins" in self.names(), "the folder's items")

    def test_the_panel_starts_at_home_and_hides_packages_and_plain_files(self):
        self.open()
        names = self.names()
        for name in ("Photoshop.app", "Package without a suffix", "a file.txt"):
            self.assertNotIn(name, names)

    def test_the_panel_says_what_it_is_for(self):
        self.open()
        self.assertIn(self.text("browse_path_msg"), self.names())
        self.assertIn(self.text("browse_path_prompt"), self.names())

    def test_cancelling_the_panel_changes_nothing(self):
        self.choose_folder(self.window, self.shown)
        self.window.press(self.text("custom_install_browse_button"))
        self.folder_panel(self.window)
        self.window.keys("Escape")
        self.window.wait_until_gone("dialog")
        self.assertEqual(self.custom_folder(self.window).text, str(self.shown))

    def test_a_package_and_a_file_are_not_taken_by_their_paths_either(self):
        self.open()
        for name in ("Photoshop.app", "Package without a suffix", "a file.txt"):
            self.type_path(self.disk.home / name)
            button = self.window.find("push button", self.text("browse_path_prompt"))
            if button.enabled:
                button.press()
        # The panel is still there, and takes a folder.
        self.type_path(self.shown)
        self.window.press(self.text("browse_path_prompt"))
        self.window.wait_until_gone("dialog")
        self.assertEqual(self.custom_folder(self.window).text, str(self.shown))

    def type_path(self, path):
        field = next(control for control in self.folder_panel(self.window).shown()
                     if control.role == "text")
        field.replace_text(str(path))

    def test_the_panel_starts_in_the_folder_chosen_before(self):
        (self.shown / "inner").mkdir()
        self.choose_folder(self.window, self.shown)
        self.window.press(self.text("custom_install_browse_button"))
        self.window.wait_until(lambda: "inner" in self.names(), "the chosen folder's items")


if __name__ == "__main__":
    unittest.main(verbosity=2)
