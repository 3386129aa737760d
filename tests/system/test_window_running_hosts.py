"""The page that waits for programs which must not run while the installer replaces their files."""

import plistlib
import unittest

from walk import WindowTest


class WindowRunningHosts(WindowTest):
    def setUp(self):
        super().setUp()
        self.installed = self.photoshop()

    def leave_hosts(self, window):
        window.press(self.text("continue"))
        return window

    def wait_for_page(self, window, name):
        window.wait_for_label(self.text("host_running_title"))
        window.wait_for_text(f"quit {name}.")

    def test_a_running_host_is_named_and_the_way_on_is_closed(self):
        self.run_program("Photoshop")
        window = self.leave_hosts(self.reach_hosts(self.start()))
        self.wait_for_page(window, "Photoshop")
        self.assertFalse(window.find("push button", self.text("continue")).enabled)
        self.assertTrue(window.find("push button", self.text("go_back")).enabled)

    def test_the_program_has_its_picture_and_the_name_of_who_has_started_it(self):
        self.run_program("Photoshop")
        # As it is for somebody who has become root.
        window = self.leave_hosts(self.reach_hosts(self.start(SUDO_UID="65534")))
        window.wait_for_label(self.text("waiting_for_program_of_fmt", "Photoshop", "root"))
        picture = window.wait_until(
            lambda: next((control for control in window.controls(name="Photoshop")
                          if control.role in ("label", "icon", "image")), None),
            "the program's picture")
        self.assertGreater(picture.extents[2], 16)

    def test_the_end_of_the_host_enables_continue_and_the_user_presses_it(self):
        program = self.run_program("Photoshop")
        window = self.leave_hosts(self.reach_hosts(self.start()))
        self.wait_for_page(window, "Photoshop")
        self.end_program(program)
        window.wait_for_label(self.text("thank_you"))
        window.wait_for_text("All the programs concerned are closed.")
        self.assertIn("terminated Photoshop", window.messages)
        self.finish_walk(self.install(window))
        self.assertInstalled(self.installed[0])

    def test_while_another_still_runs_the_way_stays_closed(self):
        first, second = self.run_program("Photoshop"), self.run_program("Photoshop Beta")
        window = self.leave_hosts(self.reach_hosts(self.start()))
        self.wait_for_page(window, "Photoshop")
        self.end_program(first)
        window.wait_until(lambda: "terminated Photoshop\n" in window.messages, "the first's end")
        self.wait_for_page(window, "Photoshop")
        self.assertFalse(window.find("push button", self.text("continue")).enabled)
        self.end_program(second)
        window.wait_for_label(self.text("thank_you"))

    def test_a_program_that_the_installer_brings_counts_too(self):
        program = self.run_program("Tool")
        window = self.leave_hosts(self.reach_hosts(self.start()))
        self.wait_for_page(window, "Tool")
        self.end_program(program)
        window.wait_for_label(self.text("thank_you"))

    def test_neither_the_installer_nor_another_run_of_it_counts(self):
        path = self.product.contents / "Info.plist"
        information = plistlib.loads(path.read_bytes())
        # A part of it is the name of an application that the installer brings.
        path.write_bytes(plistlib.dumps(information | {"CFBundleName": "Tool Setup"}))
        other = self.start()
        other.wait_for_label(self.text("license_instructions"))
        window = self.reach_hosts(self.start())
        self.finish_walk(self.install(window))
        other.press(self.text("quit"))
        self.assertEqual(other.wait_for_end(), 0)

    def test_a_program_whose_name_only_contains_the_word_does_not_count(self):
        self.run_program("Adobe Photoshop")
        window = self.reach_hosts(self.start())
        self.finish_walk(self.install(window))
        self.assertInstalled(self.installed[0])

    def test_back_leads_to_the_hosts_and_the_check_is_made_anew(self):
        program = self.run_program("Photoshop")
        window = self.leave_hosts(self.reach_hosts(self.start()))
        self.wait_for_page(window, "Photoshop")
        window.press(self.text("go_back"))
        window.wait_for_label(self.text("select_host"))
        self.leave_hosts(window)
        self.wait_for_page(window, "Photoshop")
        window.press(self.text("go_back"))
        window.wait_for_label(self.text("select_host"))
        self.end_program(program)
        self.finish_walk(self.install(window))

    def test_a_host_that_is_not_wanted_may_run(self):
        self.run_program("Photoshop")
        window = self.reach_hosts(self.start())
        window.set_row_checked("Adobe Photoshop CS6", False)
        self.finish_walk(self.install(window))


if __name__ == "__main__":
    unittest.main(verbosity=2)
