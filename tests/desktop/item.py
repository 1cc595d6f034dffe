# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""The program's item in the panel: what it says on the bus, and its menu under a real pointer."""

import itertools

from gi.repository import Gio, GLib

import panel
from desktop import WATCHER
from screen import Rectangle
from waiting import wait_until

ITEM = "org.kde.StatusNotifierItem"
MENU = "com.canonical.dbusmenu"
NO_SUCH_PROPERTY = "org.freedesktop.DBus.Error.UnknownProperty"


class StatusItem:
    """The only item on this desktop; it may come later, and go and come again."""

    def __init__(self, desktop):
        self._bus = desktop.bus

    def _address(self):
        """The item's bus name and path, or None."""
        if not self._bus.owner(WATCHER):
            return None
        items = self._bus.property(WATCHER, "/StatusNotifierWatcher", WATCHER, "RegisteredStatusNotifierItems")
        if not items:
            return None
        name, slash, path = items[0].partition("/")
        return name, slash + path if path else "/StatusNotifierItem"

    def is_there(self):
        return self._address() is not None

    def wait(self):
        return wait_until(self._address, "the item in the panel")

    # One at a time: all of them would bring the pictures along.
    def property(self, which):
        name, path = self.wait()
        return self._bus.property(name, path, ITEM, which)

    def label(self):
        """The title beside the symbol; an item without a title has no such property."""
        try:
            return self.property("XAyatanaLabel")
        except GLib.Error as error:
            if Gio.DBusError.get_remote_error(error) != NO_SUCH_PROPERTY:
                raise
            return ""

    def tooltip(self):
        """Title and text of the tooltip."""
        return self.property("ToolTip")[2:]

    def symbol(self):
        """What a screen reader says for the symbol."""
        return self.property("IconAccessibleDesc")

    def wait_for_label(self, text):
        wait_until(lambda: self.label() == text, f"the item's label becomes {text!r}", state=self.label)

    def wait_until_refreshed(self):
        """Returns when the symbol of a refresh has given way to the flame."""
        wait_until(lambda: self.symbol() == "Velquarin", "the end of the refresh", state=self.symbol)

    def wait_for_symbol(self, text):
        wait_until(lambda: self.symbol() == text, f"the item's symbol becomes {text!r}", state=self.symbol)

    def wait_until_heard(self):
        """Returns when the panel has dealt with what its user did before, and then the program with what it was told."""
        for _ in range(2):
            self._bus.property(WATCHER, "/StatusNotifierWatcher", WATCHER, "IsStatusNotifierHostRegistered")
        self.symbol()

    def activate(self, x, y):
        """Tells the item of a click, as a panel does: nobody waits for the answer."""
        name, path = self.wait()
        arguments = GLib.Variant("(ii)", (x, y))
        self._bus.send(name, path, ITEM, "Activate", arguments)

    def _layout(self):
        name, _ = self.wait()
        arguments = GLib.Variant("(iias)", (0, -1, []))
        _, (_, _, children) = self._bus.call(name, self.property("Menu"), MENU, "GetLayout", arguments)
        return children

    def entries(self):
        """The texts of the menu from top to bottom, None for a separator."""
        return [None if values.get("type") == "separator" else values["label"] for _, values, _ in self._layout()]

    def choose(self, text):
        """Tells the item that an entry of its menu was clicked, as a panel does that draws the menu by itself."""
        name, _ = self.wait()
        entry = next(entry for entry, values, _ in self._layout() if values.get("label") == text)
        arguments = GLib.Variant("(isvu)", (entry, "clicked", GLib.Variant("i", 0), 0))
        self._bus.send(name, self.property("Menu"), MENU, "Event", arguments)


class PanelPlace:
    """Where something shows in the strip along the upper edge: made before it appears, asked afterwards."""

    def __init__(self, screen):
        self._screen = screen
        self._strip = Rectangle(0, 0, screen.width, panel.HEIGHT)
        self._before = screen.picture(self._strip)

    def now(self):
        """The rectangle in which the strip now differs from what it was, or None."""
        return self._before.difference(self._screen.picture(self._strip))

    def find(self):
        """The rectangle once it is an item's: where a panel paints itself anew, or moves its items about, more changes."""
        return wait_until(self._of_an_item, "something new in the panel", state=self.now)

    def _of_an_item(self):
        place = self.now()
        return place if place and place.width < panel.NARROWEST else None


def open_menu(desktop, place, button=3):
    """Clicks at a place in the panel and returns the rectangle of the menu that opens."""
    before = desktop.windows.shown()
    desktop.screen.click(*place.centre, button)
    return wait_until(lambda: tallest(desktop.windows.shown() - before), "a menu", state=desktop.windows.unmanaged)


# Half a line from the edge is well inside the first or the last entry with every theme.
HALF_A_LINE = 14


def tallest(places):
    """The rectangle of what is open, or None. A menu may stand there before it has its entries."""
    return max((place for place in places if place.height > 3 * HALF_A_LINE), key=lambda place: place.height,
               default=None)


def click_first_entry(screen, menu):
    _click_entry(screen, menu, menu.top + HALF_A_LINE)


def click_last_entry(screen, menu):
    _click_entry(screen, menu, menu.bottom - HALF_A_LINE)


# Ground and edge alone are no entries yet: a menu that is painted only now would pass for one in which an entry lights up.
def _painted(screen, menu):
    picture = screen.picture(menu)
    return picture if len(set(picture.pixels())) > 2 else None


# Some menus take a click for the one that opened them, until the pointer has moved about in them as a hand does.
def _click_entry(screen, menu, height):
    before = wait_until(lambda: _painted(screen, menu), "the entries of the menu")
    steps = itertools.cycle((menu.centre[0], menu.centre[0] + 1))

    def lights_up():
        screen.point(next(steps), height)
        return screen.picture(menu) != before

    wait_until(lights_up, "an entry lights up")
    screen.click(menu.centre[0], height, 1)
