"""A real screen reader on the tests' desktop, whose speech is written down in place of a voice."""

import re
import shutil

from control import poll

# What the screen reader reads at its start. It speaks through these functions only.
CUSTOMIZATIONS = """
import os
from orca import settings, speech

settings.enableKeyEcho = settings.enableEchoByWord = False
settings.progressBarUpdateInterval = 0
_log = open(os.environ["SPEECH_LOG"], "a", buffering=1, encoding="utf-8")


def _say(text, acss=None, interrupt=True):
    _log.write(" ".join(str(text).split()) + "\\n")


speech._speak = speech.speakCharacter = _say
speech.sayAll = lambda utterances, progress: [_say(what.utterance) for what, _ in utterances]
"""
READY = "Screen reader on."


def find(phrase, lines):
    """The place of the first line that the phrase is in, or that the pattern matches."""
    if isinstance(phrase, re.Pattern):
        return next((place for place, line in enumerate(lines) if phrase.fullmatch(line)), None)
    return next((place for place, line in enumerate(lines) if phrase in line), None)


class ScreenReader:
    """Reads aloud what gets the focus on the desktop. The desktop's end is its end."""

    def __init__(self, desktop):
        self.folder = desktop.folder / "screen reader"
        shutil.rmtree(self.folder, ignore_errors=True)
        self.folder.mkdir()
        (self.folder / "orca-customizations.py").write_text(CUSTOMIZATIONS)
        self.log = self.folder / "speech"
        self.log.touch()
        self.heard = 0
        self.process = desktop.start(
            ["env", f"SPEECH_LOG={self.log}", "LC_ALL=C.UTF-8", "orca", "--disable", "braille",
             "--user-prefs", str(self.folder)])
        self.wait_for(READY)

    def lines(self):
        """What it has said and nobody has waited for yet."""
        return self.log.read_text("utf-8").splitlines()[self.heard:]

    def wait_for(self, *phrases):
        """Waits until it has said something that holds each of the phrases, or that a pattern
        matches as a whole. Gives these lines, and forgets them and what was said before them.
        """
        def places():
            found = [find(phrase, self.lines()) for phrase in phrases]
            return None if None in found else found
        if (found := poll(places)) is None:
            raise AssertionError(f"the screen reader has not said all of {phrases}, only:\n  " +
                                 "\n  ".join(self.lines()))
        said = self.lines()
        self.heard += max(found) + 1
        return [said[place] for place in sorted(set(found))]

    def end(self):
        self.process.kill()
        self.process.wait()
