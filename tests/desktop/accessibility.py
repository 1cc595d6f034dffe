# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""What a screen reader hears of the program, and what it can do.

A reader asks the program itself, over the accessibility bus, at every look: nothing is remembered between two looks.
The program's words of what has changed only end the wait for the next one.
"""

from gi.repository import Gio, GLib

from waiting import LIMIT_SECONDS, wait_until

BUS = "org.a11y.Bus"
LAUNCHER = "/usr/libexec/at-spi-bus-launcher"
PROGRAM = "velquarin"

_REGISTRY = "org.a11y.atspi.Registry"
_ROOT = "/org/a11y/atspi/accessible/root"
_NOTHING = "/org/a11y/atspi/null"
_HEARD = ("Object", "Window")
_LABELLED_BY = 2

# Source: AtspiStateType, the number of each bit
_STATES = {"checked": 4, "enabled": 8, "focusable": 11, "focused": 12, "selected": 23, "sensitive": 24, "showing": 25,
           "visible": 30}
# What newer versions of the toolkit call it, and what older ones do.
_OLDER_ROLES = {"button": "push button"}


def start(desktop):
    """Turns accessibility on for the session; programs that start from now on take part."""
    desktop.start("accessibility", LAUNCHER, "--launch-immediately")
    desktop.bus.wait_for(BUS)
    for name in _switches(desktop):
        arguments = GLib.Variant("(ssv)", ("org.a11y.Status", name, GLib.Variant("b", True)))
        desktop.bus.call(BUS, "/org/a11y/bus", "org.freedesktop.DBus.Properties", "Set", arguments)


# Newer versions know no screen reader apart from all else.
def _switches(desktop):
    known, = desktop.bus.call(BUS, "/org/a11y/bus", "org.freedesktop.DBus.Properties", "GetAll",
                              GLib.Variant("(s)", ("org.a11y.Status",)))
    return [name for name in ("IsEnabled", "ScreenReaderEnabled") if name in known]


class _Objects:
    """The objects of programs on the accessibility bus. GLib.Error where one is not there, or no longer."""

    def __init__(self, desktop):
        address, = desktop.bus.call(BUS, "/org/a11y/bus", BUS, "GetAddress")
        flags = Gio.DBusConnectionFlags
        self._connection = Gio.DBusConnection.new_for_address_sync(
            address, flags.AUTHENTICATION_CLIENT | flags.MESSAGE_BUS_CONNECTION, None, None)
        for kind in _HEARD:
            self._connection.signal_subscribe(None, f"org.a11y.atspi.Event.{kind}", None, None, None,
                                              Gio.DBusSignalFlags.NONE, lambda *_: None)
            self.call((_REGISTRY, "/org/a11y/atspi/registry"), _REGISTRY, "RegisterEvent",
                      GLib.Variant("(sass)", (f"{kind.lower()}:", [], "")))

    def call(self, place, interface, method, arguments=None):
        """The results of one call, as a tuple."""
        return self.call_all([(place, interface, method, arguments)])[0]

    def call_all(self, calls):
        """The results of calls, all of them on their way at once."""
        results = [None] * len(calls)
        left = set(range(len(calls)))

        def take(connection, answer, number):
            left.discard(number)
            try:
                results[number] = connection.call_finish(answer).unpack()
            except GLib.Error as error:
                results[number] = error
        for number, ((name, path), interface, method, arguments) in enumerate(calls):
            self._connection.call(name, path, interface, method, arguments, None, Gio.DBusCallFlags.NONE,
                                  round(1000 * LIMIT_SECONDS), None, take, number)
        while left:
            GLib.MainContext.default().iteration(True)
        for result in results:
            if isinstance(result, GLib.Error):
                raise result
        return results

    def ask(self, place, method, arguments=None):
        return self.call(place, *_accessible(method), arguments)[0]

    def children(self, place):
        return [child for child in self.ask(place, "GetChildren") if child[1] != _NOTHING]

    def name(self, place):
        return self.call(place, *_property("Accessible", "Name"))[0]

    def implements(self, place, interface):
        return f"org.a11y.atspi.{interface}" in self.ask(place, "GetInterfaces")


def _accessible(method):
    return "org.a11y.atspi.Accessible", method


def _property(interface, name):
    arguments = GLib.Variant("(ss)", (f"org.a11y.atspi.{interface}", name))
    return "org.freedesktop.DBus.Properties", "Get", arguments


def _state_names(words):
    bits = words[0] | words[1] << 32
    return {name for name, number in _STATES.items() if bits >> number & 1}


class Node:
    """One element: role, name, states and children as they were when looked at, all else as it is when asked for."""

    _LOOKS = (_accessible("GetRoleName"), _property("Accessible", "Name"), _accessible("GetState"),
              _accessible("GetChildren"))

    def __init__(self, objects, place, looks):
        self._objects, self._place = objects, place
        (role,), (self.name,), (words,), (self._places,) = looks
        self.role = _OLDER_ROLES.get(role, role)
        self.states = _state_names(words)
        self.children = []

    @classmethod
    def look(cls, objects, places):
        """The nodes at these places, with what they hold. What is not shown is not gone into: it may be a year of days."""
        if not places:
            return []
        calls = [(place, *look, *(() if len(look) == 3 else (None,))) for place in places for look in cls._LOOKS]
        answers = objects.call_all(calls)
        count = len(cls._LOOKS)
        nodes = [cls(objects, place, answers[count * number:count * (number + 1)])
                 for number, place in enumerate(places)]
        inner = [(node, place) for node in nodes if "showing" in node.states
                 for place in node._places if place[1] != _NOTHING]
        found = cls.look(objects, [place for _, place in inner])
        for (node, _), child in zip(inner, found):
            node.children.append(child)
        return nodes

    @property
    def description(self):
        return self._objects.call(self._place, *_property("Accessible", "Description"))[0]

    @property
    def label(self):
        """The name of what stands beside an element to label it; empty where nothing does."""
        relations = dict(self._objects.ask(self._place, "GetRelationSet"))
        return self._objects.name(relations[_LABELLED_BY][0]) if _LABELLED_BY in relations else ""

    @property
    def actions(self):
        if not self._objects.implements(self._place, "Action"):
            return []
        found, = self._objects.call(self._place, "org.a11y.atspi.Action", "GetActions")
        return [name for name, _, _ in found]

    @property
    def place(self):
        """Left, top, width and height on the screen."""
        on_the_screen = GLib.Variant("(u)", (0,))
        return self._objects.call(self._place, "org.a11y.atspi.Component", "GetExtents", on_the_screen)[0]

    @property
    def centre(self):
        x, y, width, height = self.place
        return x + width // 2, y + height // 2

    def press(self):
        """Does the first of its actions."""
        self._objects.call(self._place, "org.a11y.atspi.Action", "DoAction", GLib.Variant("(i)", (0,)))

    def walk(self):
        yield self
        for child in self.children:
            yield from child.walk()

    def shown(self):
        """All elements on the screen, in reading order."""
        return [node for node in self.walk() if "showing" in node.states]

    def texts(self):
        """The names of all elements on the screen, in reading order."""
        return [node.name for node in self.shown() if node.name]

    def find(self, name, role=None):
        return next((node for node in self.shown() if node.name == name and role in (None, node.role)), None)

    def focused(self):
        """The name of what has the keyboard's focus inside of it, the innermost; None where nothing has."""
        for child in self.children:
            if "showing" in child.states and (inner := child.focused()):
                return inner
            if "focused" in child.states:
                return child.name
        return None


class Reader:
    """Looks at a program's windows, and acts on them like a screen reader."""

    def __init__(self, desktop, program=PROGRAM):
        self._objects = _Objects(desktop)
        self._program = program

    # The registry lists a program that has ended for a while.
    def _is_program(self, place):
        try:
            return self._objects.name(place).lower() == self._program
        except GLib.Error:
            return False

    def _windows(self):
        programs = filter(self._is_program, self._objects.children((_REGISTRY, _ROOT)))
        return [(place, self._objects.name(place)) for program in programs for place in self._objects.children(program)]

    # Where something goes away while it is looked at, only another look tells whether it was the window.
    def shown_windows(self, name=None):
        """The windows on the screen, or those of a name."""
        return wait_until(lambda: self._look_at_windows(name), "a look in which nothing goes away")[0]

    def _look_at_windows(self, name):
        try:
            places = [place for place, its_name in self._windows() if name in (None, its_name)]
            return [[window for window in Node.look(self._objects, places) if "showing" in window.states]]
        except GLib.Error:
            return None

    def window(self, name):
        """The window of that name, or None."""
        return next(iter(self.shown_windows(name)), None)

    def texts(self):
        """All that there is to read in all windows, by window."""
        return {window.name: window.texts() for window in self.shown_windows()}

    def wait(self, window, condition, what):
        """The first true answer of condition() to the window of that name."""
        def fulfilled():
            found = self.window(window)
            return condition(found) if found else None
        return wait_until(fulfilled, f"{what} in {window!r}", state=self.texts)

    def wait_for_window(self, name):
        return wait_until(lambda: self.window(name), f"the window {name!r}", state=self.texts)

    def wait_without_window(self, name):
        wait_until(lambda: not self.window(name), f"no window {name!r}", state=self.texts)

    def wait_for(self, window, name):
        """The element of that name in that window."""
        return self.wait(window, lambda found: found.find(name), repr(name))

    def focused(self, window):
        """The name of what has the keyboard's focus inside of that window, the innermost; None where nothing has."""
        found = self.window(window)
        return found and found.focused()

    def press(self, window, name):
        """Does the first action of the element of that name."""
        def node(found):
            return next((node for node in found.walk() if node.name == name and node.actions), None)
        self.wait(window, node, f"{name!r} with an action").press()
