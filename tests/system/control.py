"""A control of a window, as a screen reader knows it, and waiting for what it says."""

import time
import warnings

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402  (the version comes first)

# Long enough for a loaded machine, short enough that a hang is told apart from work.
TIME_LIMIT = 60
# How soon a busy program counts as not answering, in milliseconds; whoever waits asks again.
ANSWER_LIMIT = 2000
PAUSE_BETWEEN_LOOKS = 0.02

CallFailed = GLib.Error


def connect():
    """Once, when this process belongs to the desktop whose programs it will look at."""
    Atspi.init()
    Atspi.set_timeout(ANSWER_LIMIT, 5 * ANSWER_LIMIT)


def poll(condition, limit=TIME_LIMIT):
    """The condition's first true answer, or None when there was none in time. A control that is
    just going away, or a program that is busy, is no answer yet.
    """
    deadline = time.monotonic() + limit
    while True:
        while GLib.MainContext.default().iteration(False):
            pass
        try:
            if answer := condition():
                return answer
        except CallFailed:
            pass
        if time.monotonic() > deadline:
            return None
        time.sleep(PAUSE_BETWEEN_LOOKS)


class Control:
    """Something in the window, as a screen reader knows it."""

    def __init__(self, accessible):
        self.accessible = accessible
        self.states_when_shown = set()

    @property
    def role(self):
        role = self.accessible.get_role_name()
        if role == "check box" and self.accessible.get_parent().get_role_name() == "list":
            return "list item"  # with a box, which a screen reader is told of by this role alone
        return role

    @property
    def name(self):
        return self.accessible.get_name()

    @property
    def description(self):
        return self.accessible.get_description()

    @property
    def states(self):
        return {state.value_nick for state in self.accessible.get_state_set().get_states()}

    @property
    def enabled(self):
        return "sensitive" in self.states

    @property
    def checked(self):
        return "checked" in self.states

    @property
    def focused(self):
        return "focused" in self.states

    @property
    def text(self):
        """What can be read in it: the whole text of a text view or field, else the name."""
        if "Text" in self.accessible.get_interfaces():
            return Atspi.Text.get_text(self.accessible, 0, -1)
        return self.name

    @property
    def value(self):
        return Atspi.Value.get_current_value(self.accessible)

    @property
    def extents(self):
        """Left, top, width and height on the screen."""
        found = Atspi.Component.get_extents(self.accessible, Atspi.CoordType.SCREEN)
        return found.x, found.y, found.width, found.height

    @property
    def children(self):
        for index in range(self.accessible.get_child_count()):
            child = self.accessible.get_child_at_index(index)
            if child is not None:
                yield Control(child)

    def first_child(self):
        return next(self.children)

    def shown(self):
        """This control and those in it, in the order of reading, without what is hidden."""
        self.states_when_shown = self.states
        if not {"showing", "visible"} <= self.states_when_shown:
            return
        yield self
        for child in self.children:
            yield from child.shown()

    @property
    def actions(self):
        if "Action" not in self.accessible.get_interfaces():
            return []
        number = Atspi.Action.get_n_actions(self.accessible)
        with warnings.catch_warnings():
            # The bindings give the current function the name, and so the warning, of an older one.
            warnings.simplefilter("ignore", DeprecationWarning)
            return [Atspi.Action.get_action_name(self.accessible, index)
                    for index in range(number)]

    def act(self, action):
        actions = self.actions
        assert action in actions, f"{self} cannot {action}; it can {actions}"
        assert self.enabled, f"{self} is disabled"
        Atspi.Action.do_action(self.accessible, actions.index(action))

    def press(self):
        self.act("Press")

    def toggle(self):
        self.act("Toggle")

    def replace_text(self, text):
        Atspi.EditableText.set_text_contents(self.accessible, text)

    def is_same_as(self, other):
        return self.accessible == other.accessible

    def __str__(self):
        return f'{self.role} "{self.name}"'


def application_of(process):
    """The whole of what the process shows, or None while the accessibility bus does not know it."""
    desktop = Atspi.get_desktop(0)
    for index in range(desktop.get_child_count()):
        found = desktop.get_child_at_index(index)
        if found is not None and found.get_process_id() == process:
            # Texts change while they are shown, so nothing that was read is kept.
            found.set_cache_mask(Atspi.Cache.NONE)
            return Control(found)
    return None
