"""Keys, clicks, pictures and messages: what goes through the X display. There is no window manager."""

import ctypes
import subprocess

# Long enough for a loaded machine.
TOOL_LIMIT = 60


def run_tool(*command):
    """Runs a program of the display; gives what it printed."""
    return subprocess.run(command, check=True, capture_output=True, timeout=TOOL_LIMIT).stdout


def windows_of(process):
    """The display's numbers of a process's visible windows, those in front last."""
    finished = subprocess.run(
        ["xdotool", "search", "--onlyvisible", "--all", "--pid", str(process), "--name", ""],
        capture_output=True, timeout=TOOL_LIMIT, check=False)
    return finished.stdout.decode().split()


def title_of(window):
    return run_tool("xdotool", "getwindowname", window).decode().rstrip("\n")


def give_focus(window):
    """Lets keys go to the window; whether that was possible."""
    if subprocess.run(["xdotool", "windowfocus", window], capture_output=True, check=False,
                      timeout=TOOL_LIMIT).returncode:
        return False
    return run_tool("xdotool", "getwindowfocus", "-f").decode().strip() == window


def take_focus_away():
    """Lets keys go nowhere."""
    root = run_tool("xdotool", "search", "--maxdepth", "0", ".*").split()[0].decode()
    run_tool("xdotool", "windowfocus", root)


def press_keys(*names):
    run_tool("xdotool", "key", *names)


def type_text(text):
    run_tool("xdotool", "type", "--delay", "2", text)


def click(left, top):
    run_tool("xdotool", "mousemove", str(left), str(top), "click", "1")


def clipboard():
    """The text in the clipboard; empty when there is none."""
    return subprocess.run(["xclip", "-selection", "clipboard", "-out"], capture_output=True,
                          timeout=TOOL_LIMIT, check=False).stdout.decode()


def picture(window, path):
    """Writes what the window looks like as a small PNG file."""
    run_tool("import", "-window", window, "-strip", "+dither", "-colors", "128", f"PNG8:{path}")


class ClientMessage(ctypes.Structure):
    _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("send_event", ctypes.c_int),
                ("display", ctypes.c_void_p), ("window", ctypes.c_ulong),
                ("message_type", ctypes.c_ulong), ("format", ctypes.c_int),
                ("data", ctypes.c_long * 5), ("rest", ctypes.c_long * 24)]


def ask_to_close(window):
    """Sends the message that the button in a window's title bar sends."""
    library = ctypes.CDLL("libX11.so.6")
    library.XOpenDisplay.restype = ctypes.c_void_p
    library.XInternAtom.restype = ctypes.c_ulong
    display = ctypes.c_void_p(library.XOpenDisplay(None))
    protocols, delete = (library.XInternAtom(display, name, False)
                         for name in (b"WM_PROTOCOLS", b"WM_DELETE_WINDOW"))
    client_message = 33
    event = ClientMessage(type=client_message, window=int(window), message_type=protocols,
                          format=32)
    event.data[0] = delete
    library.XSendEvent(display, ctypes.c_ulong(int(window)), False, ctypes.c_long(0),
                       ctypes.byref(event))
    library.XCloseDisplay(display)


def close_connection(window):
    """Cuts the display's connection to the program that has the window."""
    run_tool("xdotool", "windowkill", window)


class Screen:
    """The whole screen's pixels at one moment."""

    def __init__(self):
        size = run_tool("xdotool", "getdisplaygeometry").split()
        self.width, self.height = int(size[0]), int(size[1])
        self.pixels = run_tool("import", "-window", "root", "-depth", "8", "rgb:-")

    def colours(self, extents, margin=0):
        """How often each colour occurs in the rectangle, less the margin at its edges."""
        left, top, width, height = extents
        left, right = max(0, left + margin), min(self.width, left + width - margin)
        found = {}
        for row in range(max(0, top + margin), min(self.height, top + height - margin)):
            start = 3 * (row * self.width + left)
            part = self.pixels[start:start + 3 * max(0, right - left)]
            for colour in zip(part[0::3], part[1::3], part[2::3]):
                found[colour] = found.get(colour, 0) + 1
        return found


def luminance(colour):
    """How light a colour is to the eye, from 0 to 1."""
    linear = [part / 255 / 12.92 if part <= 10 else ((part / 255 + 0.055) / 1.055) ** 2.4
              for part in colour]
    return 0.2126 * linear[0] + 0.7152 * linear[1] + 0.0722 * linear[2]


def most_frequent(colours):
    return max(colours, key=colours.get)


def contrast(colours):
    """How well the colour that stands out most can be told from the ground, which is the most
    frequent one: from 1 to 21. Most people need 4.5 to read a text.
    """
    ground = luminance(most_frequent(colours)) + 0.05
    return max(max(ground, light) / min(ground, light)
               for light in (luminance(colour) + 0.05 for colour in colours))


def disconnect(window):
    """Takes the display away from the program that has the window."""
    library = ctypes.CDLL("libX11.so.6")
    library.XOpenDisplay.restype = ctypes.c_void_p
    display = ctypes.c_void_p(library.XOpenDisplay(None))
    library.XKillClient(display, ctypes.c_ulong(int(window)))
    library.XCloseDisplay(display)
