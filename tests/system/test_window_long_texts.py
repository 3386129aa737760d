"""A licence and a last page of five megabytes: the window opens, within a fixed amount of memory."""

import os
import pathlib
import unittest

from walk import WindowTest

LENGTH = 5 << 20
SANITIZED = os.environ.get("INSTALLER_SANITIZED") == "1"
MEBIBYTE = 1 << 20
# More than the text that is shown needs, and a small part of what the whole text would need.
MOST_MEMORY = 64 * MEBIBYTE
LENGTH_OF_NOTE = 1000

SHAPES = {
    "lines": "You may use this software on one computer. You may not lend it to others.\n",
    "one line without an end": "You may use this software on one computer. ",
    "empty lines": "\n",
    "characters of three bytes": "許諾契約書の条項",
}
RTF_SHAPES = {
    "paragraphs": "Thank you for your patience.\\par\n",
    "styles": "\\b T\\b0 h",
    "empty paragraphs": "\\par ",
}


def repeated(piece, length=LENGTH):
    return piece * (length // len(piece.encode()) + 1)


def peak_memory(window):
    """The most memory that the installer ever had, in bytes."""
    status = pathlib.Path(f"/proc/{window.process.pid}/status").read_text("ascii")
    line = next(line for line in status.splitlines() if line.startswith("VmHWM"))
    return int(line.split()[1]) << 10


class WindowLongTexts(WindowTest):
    def setUp(self):
        super().setUp()
        self.photoshop()

    def page(self, name):
        return self.product.resources / "en.lproj" / name

    def open_window(self):
        window = self.start()
        window.wait_for_label(self.text("license_instructions"))
        return window

    def close_window(self, window):
        window.process.terminate()
        self.assertEqual(window.wait_for_end(), 0)

    def usual_memory(self):
        window = self.open_window()
        memory = peak_memory(window)
        self.close_window(window)
        return memory

    def assertCut(self, window, name, usual_memory):
        """The text that is shown ends with the note that names the file."""
        end = self.text("text_cut_fmt", str(self.page(name))).split("\n")
        window.wait_until(
            lambda: any(all(line in text[-LENGTH_OF_NOTE:] for line in end)
                        for text in window.texts()), "the note at the end of the text")
        # The sanitizers' own memory grows with everything that was ever freed.
        if not SANITIZED:
            self.assertLess(peak_memory(window) - usual_memory, MOST_MEMORY)

    def test_licences_of_five_megabytes_are_cut_and_say_where_all_of_it_is(self):
        usual = self.usual_memory()
        for shape, piece in SHAPES.items():
            with self.subTest(shape):
                self.page("license.txt").write_text(repeated(piece), "utf-8")
                window = self.open_window()
                self.assertCut(window, "license.txt", usual)
                self.close_window(window)

    def test_last_pages_of_five_megabytes_are_cut_and_say_where_all_of_it_is(self):
        usual = self.usual_memory()
        for shape, piece in RTF_SHAPES.items():
            with self.subTest(shape):
                self.page("register.rtf").write_text(
                    "{\\rtf1\\ansi " + repeated(piece) + "}", "ascii")
                window = self.install(self.reach_hosts(self.start()))
                self.assertCut(window, "register.rtf", usual)
                self.close_window(window)


if __name__ == "__main__":
    unittest.main(verbosity=2)
