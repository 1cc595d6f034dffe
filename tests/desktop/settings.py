# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""The settings window, opened and used as a user does: by pointer, by keys, and read as a screen reader reads it."""

import accessibility
from item import PanelPlace, StatusItem
from program import Program
from screen import Rectangle
from waiting import act_until, wait_until

WINDOW = "Settings"
DASHBOARD = "Velquarin"
ADD = "Select a git repository folder"
SCAN = "Select a folder to scan for git repositories"
WATCH = "Select a folder to watch for git repositories"
TABS = ("Repositories", "Auto-Discover", "General")


class Session:
    """A desktop on which the program runs, and its user.

    refreshed  whether a start waits for the end of the first refresh
    options    of each run of the program: its zone, its clock, what starts it
    """

    def __init__(self, desktop, refreshed=True, **options):
        self.desktop = desktop
        self.screen = desktop.screen
        self._refreshed = refreshed
        self._options = options
        accessibility.start(desktop)
        desktop.start_panel()
        self.reader = accessibility.Reader(desktop)
        self.item = StatusItem(desktop)
        self._place = PanelPlace(self.screen)
        self.start()

    def start(self):
        """Returns when the item is in the panel."""
        self.program = Program(self.desktop, **self._options)
        if self._refreshed:
            self.item.wait_until_refreshed()
        self._in_panel = self._place.find()

    def end(self):
        """The program's exit status, and what it said meanwhile on its standard error."""
        status = self.program.end()
        wait_until(lambda: not self.item.is_there(), "the item goes with the program")
        wait_until(lambda: not self._place.now(), "the panel without the item", state=self._place.now)
        return status, _of_its_own(self.program.errors())

    def click_item(self):
        self.screen.click(*self._in_panel.centre, 1)

    def open_dashboard(self):
        return act_until(self.click_item, lambda: self.reader.window(DASHBOARD), f"the window {DASHBOARD!r}",
                         state=self.reader.texts)

    def close_dashboard(self):
        self.screen.press("Escape")
        self.reader.wait_without_window(DASHBOARD)

    def open(self, tab=None):
        """Opens the settings by the gear in the dashboard; they show the tab."""
        self.open_dashboard()
        self.screen.click(*self.reader.wait_for(DASHBOARD, "Settings").centre, 1)
        self.wait(lambda window: Rectangle.of(*window.place) == self.desktop.windows.place_of(WINDOW),
                  "the place that the window manager gives")
        if tab:
            self.turn_to(tab)

    def close(self):
        self.screen.press("Escape")
        self.reader.wait_without_window(WINDOW)

    def window(self):
        return self.reader.window(WINDOW)

    def texts(self):
        return self.window().texts()

    def turn_to(self, tab):
        self.click(tab, "page tab")
        self.wait_for_tab(tab)

    def wait_for_tab(self, tab):
        self.wait(lambda window: current_tab(window) == tab, f"the tab {tab!r}")

    def wait_for_keyboard(self, window=WINDOW):
        """Returns when what is pressed goes to that window."""
        wait_until(lambda: self.desktop.windows.active() == window, f"{window!r} has the keyboard",
                   state=self.desktop.windows.active)

    def wait(self, condition, what):
        """The settings window as soon as the condition holds for it."""
        return self.reader.wait(WINDOW, lambda window: condition(window) and window, what)

    def wait_for_text(self, text):
        return self.wait(lambda window: text in window.texts(), f"the text {text!r}")

    def wait_without_text(self, text):
        return self.wait(lambda window: text not in window.texts(), f"no text {text!r}")

    def wait_for_focus(self, name):
        return self.wait(lambda window: focused(window) == name, f"the focus on {name!r}")

    def wait_for_state(self, name, state, is_set=True):
        """Returns when the control of that name has that state, or has it no longer."""
        def has(window):
            control = window.find(name)
            return control and (state in control.states) == is_set
        return self.wait(has, f"{name!r} {'' if is_set else 'not '}{state}")

    def click(self, name, role=None, number=0):
        """Clicks the control of that name, of several the one with that number from above."""
        window = self.wait(lambda window: len(all_named(window, name, role)) > number, f"{name!r}")
        self.screen.click(*all_named(window, name, role)[number].centre, 1)

    def press(self, *keys):
        for key in keys:
            self.screen.press(key)

    def choose_from(self, value, other):
        """Chooses another value in the pop-up that shows this one."""
        self.click(value, "combo box")
        window = self.wait(lambda window: all_named(window, other, "list item"), f"{other!r} in the pop-up")
        self.screen.click(*_where_the_text_begins(all_named(window, other, "list item")[-1]), 1)
        self.wait(lambda window: all_named(window, other, "combo box"), f"{other!r} chosen")

    def ask(self, button, question):
        """Opens a folder dialog by one of the buttons; it has the keyboard."""
        self.click(button, "push button")
        self.reader.wait_for_window(question)
        self.reader.wait(question, lambda window: focused(window) == "Directory:", "the keyboard")

    def choose(self, button, question, path):
        """Types a path into the folder dialog that the button opens, and confirms it."""
        self.ask(button, question)
        self.screen.type(str(path))
        self.screen.press("Return")
        self.reader.wait_without_window(question)


# The toolkit's folder dialog complains when it is read while its list is empty, and the toolkit itself where a key waits
# long for the answer of a busy screen reader or the answer comes after all, where one asks for what has just gone, or
# where nobody has generated the language of the session.
OF_THE_TOOLKIT = ("QAccessibleTable::child:", "QSpiApplication::",
                  "qt.accessibility.atspi: Could not find accessible on path:",
                  'Detected locale "C"', "Qt depends on a UTF-8 locale", "If this causes problems, reconfigure your locale",
                  "for more information.")


def _of_its_own(errors):
    return "".join(line for line in errors.splitlines(True) if not line.startswith(OF_THE_TOOLKIT))


def all_named(window, name, role=None):
    return [node for node in window.shown() if node.name == name and role in (None, node.role)]


# A pop-up may be narrower than the toolkit says of its entries.
def _where_the_text_begins(node):
    x, y, _, height = node.place
    return x + height // 2, y + height // 2


def current_tab(window):
    """The title of the tab that is selected; None while the window turns from one to the next."""
    tabs = (node for node in window.shown() if node.role == "page tab" and "selected" in node.states)
    return next((tab.name for tab in tabs), None)


# The toolkit calls the window and the current entry of a pop-up focused, whatever has the keyboard; of tabs the current
# one says it for all of them.
ALWAYS_FOCUSED = ("filler", "frame", "list item", "page tab list")


def focused_control(window):
    """The control that has the keyboard, or None."""
    found = (node for node in window.shown() if "focused" in node.states and node.role not in ALWAYS_FOCUSED)
    return next(found, None)


def focused(window):
    """The name of the control that has the keyboard, or None."""
    control = window and focused_control(window)
    return control and control.name
