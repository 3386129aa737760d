"""Uses the installer's window as a person does: by what is seen, pressed, typed and read aloud.

Controls are found by role and visible name on the accessibility bus, never by an inner name. Keys
and pictures go through the display. Every wait has an end and says what it waited for.
"""

import itertools
import operator
import os
import pathlib
import signal
import subprocess

import display
from control import TIME_LIMIT, CallFailed, application_of, poll

MOST_CONTROLS = 50
MOST_OF_A_TEXT = 300
# In the environment of everything that an installer starts.
MARK = "INSTALLER_TEST_RUN"


class Window:
    """An installer that was started on the desktop. `end` ends it, whatever it does."""

    def __init__(self, desktop, executable, environment, arguments=(), messages=None, **options):
        self.desktop = desktop
        self.messages_file = messages
        # What the installer starts inherits this, however it detaches itself.
        self._mark = f"{MARK}={messages}"
        environment = environment | {MARK: str(messages)}
        with open(messages, "wb") as stream:
            self.process = subprocess.Popen(
                [str(executable), *arguments], env=environment, stdin=subprocess.DEVNULL,
                stdout=stream, stderr=stream, start_new_session=True, **options)
        self._application = None

    # What it says and how it ends

    @property
    def messages(self):
        with open(self.messages_file, encoding="utf-8", errors="backslashreplace") as stream:
            return stream.read()

    @property
    def running(self):
        return self.process.poll() is None

    def processes(self):
        """What the installer has started and what runs still, itself included."""
        found = []
        for process in filter(str.isdigit, os.listdir("/proc")):
            try:
                variables = pathlib.Path(f"/proc/{process}/environ").read_bytes().split(b"\0")
            except OSError:
                continue
            if self._mark.encode() in variables:
                found.append(int(process))
        return found

    def wait_for_end(self):
        """Waits for the installer and for what it has started; gives the installer's status."""
        self.wait_until(lambda: not self.running and not self.processes(), "the installer to end")
        return self.process.returncode

    def end(self):
        for process in self.processes():
            os.kill(process, signal.SIGKILL)
        self.process.wait()

    # What is shown

    @property
    def application(self):
        if self._application is None:
            self._application = application_of(self.process.pid)
        return self._application

    @property
    def tops(self):
        """Its windows; none while the program has not yet told the accessibility bus of itself."""
        return [] if self.application is None else self.application.children

    def controls(self, role=None, name=None):
        """The controls that are shown, in the order of reading."""
        return [control for top in self.tops for control in top.shown()
                if role in (None, control.role) and name in (None, control.name)]

    def front_controls(self, role=None, name=None):
        """The same, without what lies behind a question that must be answered first."""
        tops = [top for top in self.tops if "showing" in top.states]
        questions = [top for top in tops if top.role in ("alert", "dialog")]
        return [control for top in questions[-1:] or tops for control in top.shown()
                if role in (None, control.role) and name in (None, control.name)]

    def wait_until(self, condition, what, limit=TIME_LIMIT):
        answer = poll(condition, limit)
        if answer is None:
            raise AssertionError(f"waited in vain for {what}\n{self.description()}")
        return answer

    def find(self, role, name=None):
        """The one control of that role and name, as soon as it is shown."""
        found = self.wait_until(lambda: self.front_controls(role, name), f'the {role} "{name}"')
        assert len(found) == 1 or role == "label", f'{len(found)} controls are a {role} "{name}"'
        return found[0]

    def frame(self):
        """The window itself; separators are frames to the accessibility bus as well."""
        return self.wait_until(
            lambda: next((control for control in self.controls("frame")), None), "the window")

    def title(self):
        """What its title bar says; to a screen reader it is called after its page."""
        return display.title_of(self.front())

    def shows(self, role, name=None):
        """Whether there is such a control now."""
        return poll(lambda: [self.controls(role, name)])[0] != []

    def wait_for_label(self, text):
        return self.find("label", text)

    def wait_until_gone(self, role, name=None):
        self.wait_until(lambda: not self.controls(role, name), f'the {role} "{name}" to go')

    def wait_for_text(self, part):
        """Waits until that is somewhere in a text that is shown; gives the control."""
        return self.wait_until(
            lambda: next((control for control in self.controls() if part in control.text), None),
            f'the text "{part}"')

    def texts(self):
        """All that can be read now."""
        return poll(lambda: [control.text for control in self.controls()])

    def wait_until_enabled(self, role, name, enabled=True):
        return self.wait_until(
            lambda: next((control for control in self.front_controls(role, name)
                          if control.enabled == enabled), None),
            f'the {role} "{name}" to be {"enabled" if enabled else "disabled"}')

    def press(self, name):
        """Presses the button as soon as that is possible."""
        self.wait_until_enabled("push button", name).press()

    def set_checked(self, name, checked, role="check box"):
        control = self.find(role, name)
        if control.checked != checked:
            control.toggle()
        self.wait_until(lambda: control.checked == checked, f'"{name}" to change')

    def set_row_checked(self, name, checked):
        """Ticks or unticks the list's row by a click. The toolkit offers the box of a row to nobody
        but mouse and keyboard.
        """
        row = self.find("list item", name)
        if row.checked != checked:
            self.click(row)
        self.wait_until(lambda: row.checked == checked, f'the row "{name}" to change')

    def choose_menu_item(self, name):
        """Opens the menu with its key and takes the item with the mouse: an item that asks a
        question would keep the accessibility bus waiting for the answer.
        """
        self.keys("F10")
        self.click(self.wait_until_enabled("menu item", name))

    # Keys, as they come from a keyboard

    def front(self):
        """The display's number of the program's window in front of its others."""
        return self.wait_until(lambda: display.windows_of(self.process.pid), "a window")[-1]

    def focus_front(self):
        """Does what a window manager does: gives the keyboard to the window in front."""
        patience = itertools.accumulate(itertools.repeat(2), operator.mul, initial=1)

        def focus():
            window = self.front()
            if not display.give_focus(window) or window != self.front():
                return False
            if poll(lambda: any("active" in top.states for top in self.tops),
                    next(patience)):
                return True
            # It came while a question was just going away, and so went to that question's window;
            # or the machine is slow, and deserves more time at the next attempt.
            display.take_focus_away()
            return False
        self.wait_until(focus, "the window in front to take keys")

    def keys(self, *names):
        """Presses keys in the window in front."""
        self.focus_front()
        display.press_keys(*names)

    def type(self, text):
        self.focus_front()
        display.type_text(text)

    def focused(self):
        """The control that keys go to."""
        def find():
            # To ask each control once more takes as long as to find them all.
            focused = [control for control in self.controls()
                       if "focused" in control.states_when_shown]
            # The current row says so even while its list has not got the focus.
            if not any(control.role == "list" for control in focused):
                focused = [control for control in focused if control.role != "list item"]
            # A row of a list has the focus together with the list, and so has the nameless area
            # in which a view scrolls.
            named = [control for control in focused if control.name]
            if not focused:
                # A question has gone, and no window manager gives the focus back.
                self.focus_front()
            return (named or focused or [None])[-1]
        return self.wait_until(find, "a control with the focus")

    def tab(self, key="Tab", before=None):
        """Moves the focus on, from where it is known to be; gives the control that has it then."""
        self.focus_front()
        before = before or self.focused()
        self.keys(key)

        def find():
            now = self.focused()
            return None if now.is_same_as(before) else now
        return self.wait_until(find, f"the focus to leave {before}")

    def tab_to(self, name):
        """Moves the focus on until the control of that name has it; gives the control."""
        control = None
        for _ in range(MOST_CONTROLS):
            if (control := self.tab(before=control)).name == name:
                return control
        raise AssertionError(f'the focus never comes to "{name}"\n{self.description()}')

    def tab_into_list(self, name):
        """Moves the focus into the list and on to the row of that name; gives the row."""
        for _ in range(MOST_CONTROLS):
            if self.tab().role in ("list", "list item"):
                break
        self.keys("Home")
        rows = [row.name for row in self.controls("list item")]
        self.keys(*["Down"] * rows.index(name), "Shift_L")
        return self.wait_until(
            lambda: next((row for row in self.controls("list item", name) if row.focused), None),
            f'the row "{name}" to have the focus')

    def focus_order(self, key="Tab"):
        """The controls that the key goes through, until it comes round."""
        stops = [control for control in self.front_controls()
                 if control.role != "label" and {"focusable", "enabled"} <= control.states]
        self.keys(key)
        order = [self.focused()]
        if len(stops) == 1:
            return order
        while not (control := self.tab(key, order[-1])).is_same_as(order[0]):
            order.append(control)
            assert len(order) < MOST_CONTROLS, f"never comes round: {[str(c) for c in order]}"
        return order

    @staticmethod
    def click(control):
        left, top, width, height = control.extents
        display.click(left + width // 2, top + height // 2)

    def ask_to_close(self):
        """What the button in a window's title bar does."""
        display.ask_to_close(self.front())

    def picture(self, path):
        """Writes what the window in front looks like as a PNG file."""
        display.picture(self.front(), path)

    def description(self):
        """What is shown and what was said, for whoever looks for the reason of a failure."""
        lines = [f"running: {self.running}, messages:", self.messages, "controls:"]
        try:
            for control in self.controls():
                lines.append(f"  {control} {sorted(control.states)} {control.text[:MOST_OF_A_TEXT]!r}")
        except CallFailed as error:
            lines.append(f"  (no answer: {error})")
        return "\n".join(lines)

