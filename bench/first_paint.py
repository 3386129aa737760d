"""first_paint.py ROUNDS NAME=PROGRAM... prints, as JSON, how long each program takes until its window paints.

Started by bench/run. The display is one of its own. A damage report of the root window tells of what
is drawn in any window; the first one that is as large as a window counts.
"""

import json
import os
import subprocess
import sys
import tempfile
import time

from Xlib import display
from Xlib.ext import damage

LARGE = 200 * 200
PATIENCE = 30


class Screen:
    """An X server without a screen, and what is drawn on it."""

    def __init__(self):
        reading, writing = os.pipe()
        self.server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writing), "-screen", "0", "1280x800x24", "-nolisten", "tcp"],
            pass_fds=[writing], stderr=subprocess.DEVNULL)
        os.close(writing)
        with os.fdopen(reading) as number:
            self.name = ":" + number.readline().strip()
        self.client = display.Display(self.name)
        self.client.damage_query_version()
        self.client.screen().root.damage_create(damage.DamageReportRawRectangles)
        self.client.sync()

    def close(self):
        self.client.close()
        self.server.terminate()
        self.server.wait()

    def forget(self):
        self.client.sync()
        while self.client.pending_events():
            self.client.next_event()

    def is_painted(self):
        while self.client.pending_events():
            event = self.client.next_event()
            if event.__class__.__name__ == "DamageNotify":
                area = event.area
                if area.width * area.height >= LARGE:
                    return True
        return False


def first_paint(screen, program, environment):
    screen.forget()
    start = time.perf_counter()
    process = subprocess.Popen([program], env=environment, stdout=subprocess.DEVNULL,
                               stderr=subprocess.DEVNULL)
    try:
        while not screen.is_painted():
            if process.poll() is not None or time.perf_counter() - start > PATIENCE:
                sys.exit(f"{program} shows no window")
            time.sleep(0.0005)
        return time.perf_counter() - start
    finally:
        process.kill()
        process.wait()


def main():
    programs = dict(argument.split("=", 1) for argument in sys.argv[2:])
    found = {name: [] for name in programs}
    screen = Screen()
    with tempfile.TemporaryDirectory() as home:
        environment = {"PATH": os.environ["PATH"], "DISPLAY": screen.name, "HOME": home,
                       "XDG_RUNTIME_DIR": home, "LC_ALL": "C.UTF-8"}
        environment.update({key: value for key, value in os.environ.items()
                            if key == "INSTALLER_TARGET_VOLUME"})
        # The first round warms the caches.
        for number in range(int(sys.argv[1]) + 1):
            for name, program in programs.items():
                seconds = first_paint(screen, program, environment)
                if number > 0:
                    found[name].append(seconds)
    screen.close()
    print(json.dumps(found))


if __name__ == "__main__":
    main()
