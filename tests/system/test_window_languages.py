"""The window in languages other than English, from left to right and from right to left."""

import unittest

from walk import WindowTest


class WindowLanguagesGerman(WindowTest):
    language = "de"
    mirrored = False

    def setUp(self):
        super().setUp()
        self.photoshop()

    def step_labels(self, window):
        return [window.find("label", self.text(key)) for key in (
            "license_blue_dot", "host_selection", "running_blue_dot", "copy_files_blue_dot",
            "register_blue_dot")]

    def assertBefore(self, first, second):
        """The first comes before the second in the direction of reading."""
        first, second = first.extents, second.extents
        if self.mirrored:
            first, second = second, first
        self.assertLessEqual(first[0] + first[2], second[0])

    def assertInsideTheWindow(self, window):
        left, top, width, height = window.frame().extents
        for control in window.controls():
            if control.role in ("label", "push button", "check box", "progress bar", "list"):
                x, y, w, h = control.extents
                self.assertTrue(left <= x and top <= y and x + w <= left + width and
                                y + h <= top + height, f"{control} at {control.extents}")

    def assertLaidOut(self, window, heading, forward, backward):
        heading = window.wait_for_label(heading)
        for label in self.step_labels(window):
            self.assertBefore(label, heading)
        self.assertBefore(window.find("push button", backward),
                          window.find("push button", forward))
        self.assertInsideTheWindow(window)

    def test_every_page_speaks_the_language_and_is_laid_out_for_it(self):
        window = self.start()
        self.assertEqual(window.title(), self.text("main_wnd_title_fmt", self.product.name))
        self.assertLaidOut(window, self.text("license_instructions"), self.text("continue"),
                           self.text("quit"))
        licence = self.product.resources / f"{self.language}.lproj/license.txt"
        self.assertEqual(window.find("label", self.text("license_name")).text.split(),
                         licence.read_text("utf-8").split())
        self.reach_hosts(window)
        window.wait_for_text(self.text("select_host_instructions", self.product.name,
                                       self.product.name))
        self.assertLaidOut(window, self.text("select_host"), self.text("continue"),
                           self.text("go_back"))
        window.press(self.text("custom_install_button"))
        field = self.custom_folder(window)
        self.assertBefore(field, window.find("push button",
                                             self.text("custom_install_browse_button")))
        self.assertInsideTheWindow(window)
        window.press(self.text("go_back"))
        window.wait_until(lambda: window.controls("list item"), "the list of hosts")
        self.install(window)
        self.assertLaidOut(window, self.text("register_title"), self.text("finish"),
                           self.text("go_back"))
        self.finish_walk(window)
        self.assertEqual(self.desktop.opened(), [self.text("help_url_format", "tonewright2")])

    def test_the_first_of_the_preferred_languages_that_the_bundle_has_is_spoken(self):
        window = self.start(LANGUAGE=f"eo:{self.language}:en")
        window.wait_for_label(self.text("license_instructions"))

    def test_a_running_host_is_named(self):
        self.run_program("Photoshop")
        window = self.reach_hosts(self.start())
        window.press(self.text("continue"))
        window.wait_for_label(self.text("host_running_title"))
        window.wait_for_text("Photoshop")
        self.assertNotIn("%HOSTNAME%", " ".join(window.texts()))


class WindowLanguagesJapanese(WindowLanguagesGerman):
    language = "ja"


class WindowLanguagesArabic(WindowLanguagesGerman):
    language = "ar"
    mirrored = True


class WindowLanguagesThatAreMissing(WindowTest):
    def test_a_language_that_the_bundle_lacks_gives_english(self):
        window = self.start(LANG="eo.UTF-8")
        window.wait_for_label(self.text("license_instructions"))

    def test_no_language_at_all_gives_english(self):
        window = self.start(LANG="C")
        window.wait_for_label(self.text("license_instructions"))


class WindowLanguagesOfBritain(WindowTest):
    """Another spelling of English, and the same texts otherwise."""

    language = "en_GB"

    def test_the_licence_is_spelled_as_in_britain(self):
        window = self.start()
        window.wait_for_label("Please read the licence agreement")
        self.assertIn("Licence Agreement", window.find("label", "Licence agreement").text)

    def test_only_the_spelling_differs(self):
        for british in (self.product.resources / "en_GB.lproj").iterdir():
            american = self.product.resources / "en.lproj" / british.name
            texts = [path.read_text("utf-8") for path in (american, british)]
            self.assertEqual(texts[0].replace("icense", "icence"),
                             texts[1].replace("icense", "icence"))
        names = {path.name for path in (self.product.resources / "en.lproj").iterdir()}
        self.assertEqual(
            names, {path.name for path in (self.product.resources / "en_GB.lproj").iterdir()})


if __name__ == "__main__":
    unittest.main(verbosity=2)
