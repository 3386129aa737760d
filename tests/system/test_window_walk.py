"""The way through the window, from the licence to the help page, and what it leaves on the disk."""

import os
import pathlib
import plistlib
import shutil
import subprocess
import unittest

from harness import TIME_LIMIT, tree
from walk import WindowTest

NOBODY = 65534
SOURCE = pathlib.Path(__file__).resolve().parents[2]


class WindowWalk(WindowTest):
    def help_address(self):
        return self.text("help_url_format", "tonewright2")

    def test_one_host_from_the_licence_to_the_help_page(self):
        installed = self.photoshop()
        window = self.start()
        window.wait_for_label(self.text("license_instructions"))
        licence = (self.product.resources / "en.lproj/license.txt").read_text("utf-8")
        view = window.find("label", self.text("license_name"))
        self.assertEqual(view.text.split(), licence.split())
        self.assertEqual(window.title(), self.text("main_wnd_title_fmt", self.product.name))
        window.find("push button", self.text("quit"))

        self.agree(window)
        window.wait_for_label(self.text("select_host"))
        row = window.find("list item", "Adobe Photoshop CS6")
        self.assertTrue(row.checked)
        window.find("push button", self.text("go_back"))

        self.install(window)
        window.wait_for_label(self.text("outcome_success_fmt"))
        self.assertFalse(window.find("push button", self.text("go_back")).enabled)
        self.finish_walk(window)

        for path in installed:
            self.assertInstalled(path)
        self.assertInstalled("/Applications/Tool.app/Contents/tool.txt", "tool")
        self.assertEqual(self.desktop.opened(), [self.help_address()])

    def test_a_host_without_its_tick_gets_nothing_and_the_others_all(self):
        wanted = self.photoshop("Adobe Photoshop CS6") + self.photoshop("Adobe Photoshop CC 2014")
        unwanted = self.photoshop("Adobe Photoshop CC 2015")
        window = self.reach_hosts(self.start())
        window.set_row_checked("Adobe Photoshop CC 2015", False)
        self.finish_walk(self.install(window))
        for path in wanted:
            self.assertInstalled(path)
        for path in unwanted:
            self.assertFalse(os.path.lexists(path), path)

    def test_a_photoshop_behind_a_link_of_another_user_says_so_and_costs_the_others_nothing(self):
        # Anybody may add to the folder, so root does not follow links there.
        os.chmod("/Applications", 0o1777)
        self.addCleanup(os.chmod, "/Applications", 0o755)
        linked = self.photoshop("Adobe Photoshop CC 2015")
        wanted = self.photoshop("Adobe Photoshop CC 2014")
        folder = pathlib.Path("/Applications/Adobe Photoshop CC 2015")
        shutil.move(folder, self.scratch / "real")
        folder.symlink_to(self.scratch / "real")
        os.lchown(folder, NOBODY, NOBODY)
        window = self.reach_hosts(self.start())
        row = window.find("list item", folder.name)
        self.assertFalse(row.checked)
        self.assertIn(self.text("host_link_of_another_fmt", str(folder)), row.description)
        warning = self.text("refused_host_selected_fmt", folder.name)
        window.set_row_checked(folder.name, True)
        window.wait_for_label(warning)
        window.set_row_checked(folder.name, False)
        window.wait_until_gone("label", warning)
        self.finish_walk(self.install(window))
        for path in wanted:
            self.assertInstalled(path)
        for path in linked:
            self.assertFalse(os.path.lexists(path), path)

    def test_a_tick_that_was_taken_away_and_set_again_counts(self):
        installed = self.photoshop()
        window = self.reach_hosts(self.start())
        window.set_row_checked("Adobe Photoshop CS6", False)
        window.set_row_checked("Adobe Photoshop CS6", True)
        self.finish_walk(self.install(window))
        self.assertInstalled(installed[0])

    def test_the_window_installs_what_the_quiet_run_installs_but_the_list_of_editors(self):
        disks = {}
        for name in ("window", "quiet"):
            disks[name] = self.scratch / name
            subprocess.run([SOURCE / "scripts/make-sample-disk", disks[name]], check=True,
                           timeout=TIME_LIMIT)
        self.product = type(self.product).as_shipped(self.scratch / "shipped")
        window = self.start(INSTALLER_TARGET_VOLUME=str(disks["window"]))
        self.finish_walk(self.install(self.reach_hosts(window)))
        quiet = self.start(["-quiet"], INSTALLER_TARGET_VOLUME=str(disks["quiet"]))
        self.assertEqual(quiet.wait_for_end(), 0)

        paths = {name: {os.path.relpath(path, disk) for path in tree(disk)}
                 for name, disk in disks.items()}
        editors = f"Library/Application Support/{self.product.company}/Prismor X"
        self.assertEqual(paths["quiet"] - paths["window"],
                         {editors, f"{editors}/ExternalEditors.csv"})
        settings = "Users/root/Library/Preferences/com.quarrytone.installer.plist"
        self.assertEqual(paths["window"] - paths["quiet"], {settings})

    def test_steps_are_listed_in_their_order_beside_every_page(self):
        self.photoshop()
        labels = [self.text(key) for key in (
            "license_blue_dot", "host_selection", "running_blue_dot", "copy_files_blue_dot",
            "register_blue_dot")]
        window = self.start()
        window.wait_for_label(self.text("license_instructions"))
        for reach in (lambda: None, lambda: self.reach_hosts(window), lambda: self.install(window)):
            reach()
            tops = [window.find("label", label).extents[1] for label in labels]
            self.assertEqual(tops, sorted(set(tops)))


class WindowWalkLicence(WindowTest):
    def test_a_refused_licence_stays_and_is_asked_for_again(self):
        window = self.start()
        for _ in range(2):
            window.press(self.text("continue"))
            window.wait_for_label(self.text("agree_message"))
            window.find("label", self.text("agree_information"))
            window.press(self.text("disagree_button"))
            window.wait_until_gone("label", self.text("agree_message"))
            window.find("label", self.text("license_instructions"))
        self.agree(window)
        window.wait_until_gone("label", self.text("license_instructions"))

    def test_escape_in_the_question_does_not_agree(self):
        window = self.start()
        window.press(self.text("continue"))
        window.wait_for_label(self.text("agree_message"))
        window.keys("Escape")
        window.wait_until_gone("label", self.text("agree_message"))
        window.find("label", self.text("license_instructions"))

    def test_an_agreement_holds_for_the_rest_of_the_run(self):
        self.photoshop()
        window = self.reach_hosts(self.start())
        window.press(self.text("go_back"))
        window.wait_for_label(self.text("license_instructions"))
        window.press(self.text("continue"))
        window.wait_for_label(self.text("select_host"))

    def test_backward_on_the_licence_ends_with_success_and_opens_nothing(self):
        self.photoshop()
        window = self.start()
        window.press(self.text("quit"))
        self.assertEqual(window.wait_for_end(), 0)
        self.assertEqual(self.desktop.opened(), [])
        self.assertEqual(os.listdir("/Library"), [])

    def test_the_window_is_in_the_middle_of_the_screen(self):
        window = self.start()
        window.wait_for_label(self.text("license_instructions"))
        left, top, width, height = window.frame().extents
        self.assertAlmostEqual(left + width / 2, 800, delta=40)
        self.assertAlmostEqual(top + height / 2, 600, delta=40)


class WindowWalkMenus(WindowTest):
    def test_the_menus_about_item_names_product_and_version(self):
        information = plistlib.loads((self.product.contents / "Info.plist").read_bytes())
        window = self.start()
        window.choose_menu_item(self.text("about_menu_fmt", self.product.name))
        version = information.get("CFBundleShortVersionString", information["CFBundleVersion"])
        window.wait_for_text(self.text("about_version_fmt", version))
        window.wait_for_text(self.product.name)
        window.press(self.text("ok_button"))
        window.wait_for_label(self.text("license_instructions"))

    def test_the_menus_quit_item_ends_the_installer(self):
        window = self.start()
        window.choose_menu_item(self.text("quit_menu_fmt", self.product.name))
        self.assertEqual(window.wait_for_end(), 0)

    def test_the_window_that_is_closed_ends_the_installer_with_success(self):
        window = self.start()
        window.frame()
        window.ask_to_close()
        self.assertEqual(window.wait_for_end(), 0)
        self.assertEqual(self.desktop.opened(), [])


class WindowWalkLastPage(WindowTest):
    def setUp(self):
        super().setUp()
        self.photoshop()

    def reach_last_page(self):
        return self.install(self.reach_hosts(self.start()))

    def test_without_its_tick_the_help_page_stays_closed_now_and_in_the_next_run(self):
        window = self.reach_last_page()
        switch = self.text("launch_help_url_string")
        self.assertTrue(window.find("check box", switch).checked)
        window.set_checked(switch, False)
        self.finish_walk(window)
        self.assertEqual(self.desktop.opened(), [])
        settings = plistlib.loads(self.defaults_file().read_bytes())
        self.assertIs(settings["launch_help_url"], False)

        window = self.reach_last_page()
        self.assertFalse(window.find("check box", switch).checked)
        self.finish_walk(window)
        self.assertEqual(self.desktop.opened(), [])

    def test_a_run_that_leaves_the_switch_alone_writes_the_value_that_it_read(self):
        self.write_defaults(plistlib.dumps({"launch_help_url": False, "another": "kept"}))
        window = self.start()
        window.press(self.text("quit"))
        self.assertEqual(window.wait_for_end(), 0)
        self.assertEqual(plistlib.loads(self.defaults_file().read_bytes()),
                         {"launch_help_url": False, "another": "kept"})

    def test_the_makers_page_opens_and_the_wizard_stays(self):
        window = self.reach_last_page()
        window.press(self.text("register_now"))
        window.wait_until(self.desktop.opened, "the page to open")
        self.assertEqual(self.desktop.opened(), [self.text("register_url")])
        window.wait_for_label(self.text("register_title"))

    def test_a_page_that_the_browser_cannot_open_is_named(self):
        self.desktop.break_browser()
        window = self.reach_last_page()
        window.press(self.text("register_now"))
        window.wait_for_text(self.text("could_not_open_title"))
        window.wait_for_text(self.text("register_url"))
        self.assertEqual(self.desktop.opened(), [self.text("register_url")])
        window.press(self.text("ok_button"))
        window.wait_until_enabled("push button", self.text("register_now"))

    def test_success_is_told_without_a_list_of_failures_and_without_the_log(self):
        window = self.reach_last_page()
        window.wait_for_label(self.text("outcome_success_fmt"))
        texts = window.texts()
        self.assertIn(self.text("success_picture_name"), texts)
        for key in ("failure_picture_name", "failed_items", "open_log", "copy_log"):
            self.assertNotIn(self.text(key), texts)


if __name__ == "__main__":
    unittest.main(verbosity=2)
