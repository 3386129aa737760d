"""Holds a copy in its middle, for as long as a test wants."""

import ctypes
import os
import struct
import threading

CLASS_CONTENT, CLOEXEC = 0x04, 0x01
ADD = 0x01
OPEN_PERM, EVENT_ON_CHILD = 0x10000, 0x08000000
ALLOW = 0x01
EVENT = struct.Struct("=IBBHQii")
ANSWER = struct.Struct("=iI")
AT_FDCWD = -100


class HeldFiles:
    """The files of a folder, of which each process may open the first few only until release().

    The kernel asks this object before it opens one (see fanotify(7)); a process that waits for the
    answer can still be killed.
    """

    def __init__(self, folder, passing):
        self.passing = passing
        self.held = threading.Event()
        self.released = threading.Event()
        library = ctypes.CDLL(None, use_errno=True)
        self.descriptor = library.fanotify_init(CLASS_CONTENT | CLOEXEC, os.O_RDONLY | os.O_CLOEXEC)
        if self.descriptor < 0 or library.fanotify_mark(
                self.descriptor, ADD, ctypes.c_uint64(OPEN_PERM | EVENT_ON_CHILD), AT_FDCWD,
                os.fsencode(folder)) < 0:
            raise OSError(ctypes.get_errno(), "cannot hold files", str(folder))
        threading.Thread(target=self.answer, daemon=True).start()

    def answer(self):
        while True:
            events = os.read(self.descriptor, 4096)
            while events:
                length, _, _, _, _, file, _ = EVENT.unpack_from(events)
                events = events[length:]
                if self.passing == 0 and not self.released.is_set():
                    self.held.set()
                    self.released.wait()
                self.passing = max(self.passing - 1, 0)
                os.write(self.descriptor, ANSWER.pack(file, ALLOW))
                os.close(file)

    def wait(self, limit):
        """Until a process waits for the file after the first ones."""
        if not self.held.wait(limit):
            raise AssertionError("nobody has opened so many of the files")

    def release(self):
        self.released.set()
