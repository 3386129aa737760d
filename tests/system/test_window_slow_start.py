"""A search for hosts that takes long: the person sees at once that something happens."""

import unittest

import display
from walk import WindowTest

# Each file that cannot be opened is tried four times, half a second apart.
PATHS_FILES = 8
FOUND = "Found path file"


class WindowSlowStart(WindowTest):
    def setUp(self):
        super().setUp()
        self.disk.add_photoshop("Adobe Photoshop CS6")
        preferences = self.disk.home / "Library/Preferences"
        for number in range(PATHS_FILES):
            (preferences / f"Adobe Photoshop CC 200{number} Paths").symlink_to("/nowhere")
        self.name = self.product.bundle.stem

    def found(self, window):
        """How many paths files the search has come to; one of them belongs to a host."""
        return window.messages.count(FOUND)

    def test_a_window_is_shown_before_the_search_has_ended_and_makes_room_for_the_wizard(self):
        window = self.start()
        window.wait_until(lambda: display.windows_of(window.process.pid), "a window")
        label = window.find("label", self.name)
        self.assertLess(self.found(window), PATHS_FILES + 1, "the search had ended")
        self.assertIn("showing", label.states)
        self.assertEqual(len(list(window.tops)), 1)

        window.wait_for_label(self.text("license_instructions"))
        self.assertEqual(self.found(window), PATHS_FILES + 1)
        window.wait_until(lambda: len(display.windows_of(window.process.pid)) == 1 and
                          len(list(window.tops)) == 1, "the first window to go")
        self.finish_walk(self.install(self.reach_hosts(window)))


if __name__ == "__main__":
    unittest.main(verbosity=2)
