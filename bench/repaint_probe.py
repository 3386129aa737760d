"""Measures from outside how long a window goes without painting.

The probe is an ordinary client of the display: it tells the window every few milliseconds that a part
of it was uncovered, and notes when the window draws. A window that is alive answers at once.
"""

import threading
import time

from Xlib import X, display
from Xlib.ext import damage
from Xlib.protocol import event

ASK_EVERY = 0.005


class RepaintProbe:
    """Watches the window with that id until `stop`; `longest_gap` is then the longest time between
    two paints, in seconds."""

    def __init__(self, display_name, window_id):
        self._display = display.Display(display_name)
        self._window = self._display.create_resource_object("window", window_id)
        self._display.damage_query_version()
        self._window.damage_create(damage.DamageReportRawRectangles)
        self._paints = []
        self._stopped = threading.Event()
        self._thread = threading.Thread(target=self._watch, daemon=True)
        self._thread.start()

    def stop(self):
        self._stopped.set()
        self._thread.join()
        self._display.close()

    @property
    def paints(self):
        return len(self._paints)

    def gaps(self, since=0.0, until=float("inf")):
        """The times between paints, longest first, and when each began."""
        times = [at for at in self._paints if since <= at <= until]
        return sorted(((later - at, at) for at, later in zip(times, times[1:])), reverse=True)

    def _watch(self):
        next_ask = 0.0
        while not self._stopped.is_set():
            now = time.monotonic()
            if now >= next_ask:
                self._ask_for_paint()
                next_ask = now + ASK_EVERY
            painted = False
            while self._display.pending_events():
                painted |= self._display.next_event().__class__.__name__ == "DamageNotify"
            if painted:
                self._paints.append(time.monotonic())
            time.sleep(0.001)

    def _ask_for_paint(self):
        exposed = event.Expose(window=self._window, x=0, y=0, width=4, height=4, count=0)
        self._window.send_event(exposed, event_mask=X.ExposureMask)
        self._display.flush()
