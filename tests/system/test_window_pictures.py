"""Each page looks as it did when its picture in docs/images was taken, roughly: a control that is
missing, cut off or in another place is seen, another rendering of the letters is not.

`scripts/make-screenshots docs/images Light Dark Arabic` renews the pictures after a wanted change.
"""

import os
import pathlib
import unittest

import display
import pictures

DOCUMENTED = pathlib.Path(__file__).resolve().parents[2] / "docs/images"
CELLS = (48, 33)
# In steps of grey, of which there are 256.
MEAN_DIFFERENCE = 6
CLEAR_DIFFERENCE = 48
# The share of cells that may differ clearly.
CLEARLY_DIFFERENT = 0.03
SIZE_TOLERANCE = 0.06


def size_of(path):
    return [int(number) for number in display.run_tool("identify", "-format", "%w %h", path).split()]


def cells_of(path):
    """How light each part of the picture is: a few large cells, in which letters are one grey."""
    width, height = CELLS
    return display.run_tool("convert", path, "-colorspace", "Gray", "-resize",
                            f"{width}x{height}!", "-depth", "8", "gray:-")


def differences(one, other):
    return [abs(a - b) for a, b in zip(cells_of(one), cells_of(other))]


class Compared:
    """Compares what it takes with the documented picture of the same name."""

    def setUp(self):
        os.environ["PICTURES"] = "/tmp"
        super().setUp()
        self.pictures = self.scratch

    def take(self, window, page):
        super().take(window, page)
        name = f"{self.name}-{page}.png"
        self.assertLooksAlike(self.pictures / name, DOCUMENTED / name)

    def assertLooksAlike(self, taken, documented):
        for now, before in zip(size_of(taken), size_of(documented)):
            self.assertLessEqual(abs(now - before), SIZE_TOLERANCE * before, documented.name)
        found = differences(taken, documented)
        self.assertEqual(len(found), CELLS[0] * CELLS[1])
        clear = sum(difference > CLEAR_DIFFERENCE for difference in found) / len(found)
        mean = sum(found) / len(found)
        self.assertTrue(mean <= MEAN_DIFFERENCE and clear <= CLEARLY_DIFFERENT,
                        f"{documented.name} looks different: {mean:.1f} on average, "
                        f"{clear:.1%} of its parts clearly")


class WindowPictures(Compared, pictures.Light):
    def test_a_picture_of_another_page_is_told_apart(self):
        with self.assertRaises(AssertionError):
            self.assertLooksAlike(DOCUMENTED / "light-hosts.png", DOCUMENTED / "light-licence.png")


class WindowPicturesDark(Compared, pictures.Dark):
    pass


class WindowPicturesArabic(Compared, pictures.Arabic):
    pass


if __name__ == "__main__":
    unittest.main(verbosity=2)
