# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""What a screen reader hears of the program, and what it can do.

The library behind it keeps one bus for the life of a process and remembers what it saw, so every look is a process of
its own: this file run as a script.
"""

import json
import os
import pathlib
import subprocess
import sys

from gi.repository import GLib

from waiting import wait_until

BUS = "org.a11y.Bus"
LAUNCHER = "/usr/libexec/at-spi-bus-launcher"
PROGRAM = "velquarin"
WHOSE = "VELQUARIN_TEST_READ_PROGRAM"


def start(desktop):
    """Turns accessibility on for the session; programs that start from now on take part."""
    desktop.start("accessibility", LAUNCHER, "--launch-immediately")
    desktop.bus.wait_for(BUS)
    for name in ("IsEnabled", "ScreenReaderEnabled"):
        arguments = GLib.Variant("(ssv)", ("org.a11y.Status", name, GLib.Variant("b", True)))
        desktop.bus.call(BUS, "/org/a11y/bus", "org.freedesktop.DBus.Properties", "Set", arguments)


class Node:
    """One element as it was when looked at."""

    def __init__(self, data):
        self.role, self.name, self.value = data["role"], data["name"], data["value"]
        self.description, self.label = data["description"], data["label"]
        self.states, self.actions = set(data["states"]), data["actions"]
        self.place = data["place"]
        self.children = [Node(child) for child in data["children"]]

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

    @property
    def centre(self):
        x, y, width, height = self.place
        return x + width // 2, y + height // 2


class Reader:
    """Looks at a program's windows, and acts on them like a screen reader."""

    def __init__(self, desktop, program=PROGRAM):
        self._environment = {**desktop.environment, WHOSE: program}

    def _run(self, *arguments):
        command = [sys.executable, "-B", "-W", "ignore::DeprecationWarning", str(pathlib.Path(__file__).resolve()), *arguments]
        return subprocess.run(command, env=self._environment, stdout=subprocess.PIPE, check=True, timeout=30).stdout

    def shown_windows(self):
        return [window for window in map(Node, json.loads(self._run("look"))) if "showing" in window.states]

    def window(self, name):
        """The window of that name, or None."""
        return next((window for window in self.shown_windows() if window.name == name), None)

    def wait_for_window(self, name):
        return wait_until(lambda: self.window(name), f"the window {name!r}")

    def wait_without_window(self, name):
        wait_until(lambda: not self.window(name), f"no window {name!r}")

    def wait_for(self, window, name):
        """The element of that name in that window."""
        def element():
            found = self.window(window)
            return found and found.find(name)
        return wait_until(element, f"{name!r} in {window!r}")

    def focused(self, window):
        """The name of what has the keyboard's focus inside of that window, the innermost; None where nothing has."""
        return json.loads(self._run("focused", window))

    def press(self, window, name):
        """Does the first action of the element of that name."""
        self._run("press", window, name)


def _program():
    from gi.repository import Atspi
    Atspi.init()
    desktop = Atspi.get_desktop(0)
    for index in range(desktop.get_child_count()):
        application = desktop.get_child_at_index(index)
        if application and application.get_name().lower() == os.environ[WHOSE]:
            return application
    return None


def _children(element):
    return filter(None, (element.get_child_at_index(index) for index in range(element.get_child_count())))


# A closed window keeps its parts, hundreds of them in a year of days.
def _is_put_away(element):
    from gi.repository import Atspi
    if element.get_state_set().contains(Atspi.StateType.SHOWING):
        return False
    return element.get_parent().get_role() == Atspi.Role.APPLICATION


def _label(element):
    """The name of what stands beside an element to label it; empty where nothing does."""
    from gi.repository import Atspi
    relations = [relation for relation in element.get_relation_set()
                 if relation.get_relation_type() == Atspi.RelationType.LABELLED_BY]
    return next((relation.get_target(0).get_name() for relation in relations), "")


def _described(element):
    from gi.repository import Atspi
    action, component, value = element.get_action_iface(), element.get_component_iface(), element.get_value_iface()
    extents = component.get_extents(Atspi.CoordType.SCREEN) if component else None
    return {
        "role": element.get_role_name(),
        "name": element.get_name(),
        "description": element.get_description(),
        "label": _label(element),
        "value": value.get_current_value() if value else None,
        "states": [state.value_nick for state in element.get_state_set().get_states()],
        "actions": [action.get_action_name(index) for index in range(action.get_n_actions())] if action else [],
        "place": [extents.x, extents.y, extents.width, extents.height] if extents else [0, 0, 0, 0],
        "children": [] if _is_put_away(element) else [_described(child) for child in _children(element)],
    }


def _find(element, name):
    if element.get_name() == name and element.get_action_iface() and element.get_action_iface().get_n_actions():
        return element
    return next(filter(None, (_find(child, name) for child in _children(element))), None)


def _windows():
    """The windows of the program, while there is one."""
    program = _program()
    return _children(program) if program else []


# Parts of what is not shown are passed over: there are many.
def _focused(element):
    from gi.repository import Atspi
    for child in _children(element):
        states = child.get_state_set()
        if states.contains(Atspi.StateType.SHOWING) and (inner := _focused(child)):
            return inner
        if states.contains(Atspi.StateType.FOCUSED):
            return child.get_name()
    return None


def _focused_in(window_name):
    try:
        return next(filter(None, (_focused(window) for window in _windows() if window.get_name() == window_name)), None)
    except GLib.Error:
        return None


def _press(window_name, name):
    for window in _windows():
        element = _find(window, name) if window.get_name() == window_name else None
        if element:
            element.get_action_iface().do_action(0)
            return
    sys.exit(f"nothing to press is called {name!r}")


# What goes away while it is looked at is not there.
def _look():
    try:
        return [_described(window) for window in _windows()]
    except GLib.Error:
        return []


def _main(arguments):
    import gi
    gi.require_version("Atspi", "2.0")
    if arguments[0] == "press":
        _press(*arguments[1:])
        return
    print(json.dumps(_focused_in(*arguments[1:]) if arguments[0] == "focused" else _look()))


if __name__ == "__main__":
    _main(sys.argv[1:])
