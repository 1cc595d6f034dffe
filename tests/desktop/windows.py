# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""The windows on the screen, as the X server and the window manager know them."""

import select
import time
from functools import cached_property

from Xlib import X, Xutil, display, protocol
from Xlib.error import BadDrawable, BadWindow
from Xlib.ext import xtest

from drawing import Drawings
from screen import Rectangle
from waiting import LIMIT_SECONDS, wait_until


class Windows:
    """A look at the windows of one desktop, over a connection of its own."""

    def __init__(self, name):
        self._titles = {}
        self.display = display.Display(name)
        self.root = self.display.screen().root

    def close(self):
        self.display.close()

    def _property(self, window, name):
        try:
            found = window.get_full_property(self.display.get_atom(name), X.AnyPropertyType)
        except BadWindow:
            return None
        return found.value if found else None

    def _window(self, number):
        return self.display.create_resource_object("window", number)

    def title(self, number):
        title = self._property(self._window(number), "_NET_WM_NAME") or b""
        return title.decode() if isinstance(title, bytes) else title

    def _is_dock(self, number):
        kinds = self._property(self._window(number), "_NET_WM_WINDOW_TYPE")
        return kinds is not None and self.display.get_atom("_NET_WM_WINDOW_TYPE_DOCK") in kinds

    def are_managed(self):
        """Whether a window manager is there."""
        return self._property(self.root, "_NET_SUPPORTING_WM_CHECK") is not None

    def managed(self):
        """The titles of the window manager's windows without panels, the undermost first."""
        numbers = self._property(self.root, "_NET_CLIENT_LIST_STACKING") or []
        return [self.title(number) for number in numbers if not self._is_dock(number)]

    def place_of(self, title):
        """The rectangle of the inside of the window manager's window of that title; None where there is none."""
        numbers = self._property(self.root, "_NET_CLIENT_LIST") or []
        window = next((self._window(number) for number in numbers if self.title(number) == title), None)
        if not window:
            return None
        try:
            corner, size = self.root.translate_coords(window, 0, 0), window.get_geometry()
        except (BadWindow, BadDrawable):  # gone between the two questions
            return None
        return Rectangle.of(corner.x, corner.y, size.width, size.height)

    def icons(self, title):
        """The pictures of the window of that title, by their width: rows of numbers 0xAARRGGBB."""
        numbers = [*(self._property(self.root, "_NET_CLIENT_LIST") or []),
                   *(window.id for window in self.root.query_tree().children)]
        window = next(self._window(number) for number in numbers if self.title(number) == title)
        data, icons = list(self._property(window, "_NET_WM_ICON") or []), {}
        while data:
            (width, height), data = data[:2], data[2:]
            icons[width] = [data[row * width:(row + 1) * width] for row in range(height)]
            data = data[width * height:]
        return icons

    def active(self):
        """The title of the window that has the keyboard, or an empty text."""
        numbers = self._property(self.root, "_NET_ACTIVE_WINDOW")
        return self.title(numbers[0]) if numbers is not None and numbers[0] else ""

    def has_tray(self):
        """Whether a tray of the older kind is there. Source: System Tray Protocol Specification"""
        return self.display.get_selection_owner(self.display.get_atom("_NET_SYSTEM_TRAY_S0")) != X.NONE

    def wait_for_folder(self, name):
        """A file manager's window for a folder: some put their own name behind."""
        wait_until(lambda: any(title.startswith(name) for title in self.managed()), f"a folder window of {name}")

    def unmanaged(self):
        """The rectangles of what stands on the screen without the window manager, by title; menus and the dashboard."""
        found = [(self.title(window.id), self._place(window)) for window in self.root.query_tree().children]
        return [(title, place) for title, place in found if place]

    def shown(self):
        """The rectangles of menus and dashboards on the screen; what only explains something is left out."""
        return {place for window, place in self._seen() if not self._only_explains(window)}

    def find(self, name):
        """The window of that plain old name, wherever it has been put; None where there is none."""
        waiting = [self.root]
        for window in waiting:
            try:
                if window.get_wm_name() == name:
                    return window
                waiting.extend(window.query_tree().children)
            except (BadWindow, BadDrawable):  # gone between the two questions
                pass
        return None

    def explanation(self):
        """The rectangle of the tooltip on the screen, or None."""
        return next((place for window, place in self._seen() if self._only_explains(window)), None)

    def _seen(self):
        return [(window, place) for window in self.root.query_tree().children if (place := self._place(window))
                and place.right > 0 and place.bottom > 0]

    def _only_explains(self, window):
        tooltip = self.display.get_atom("_NET_WM_WINDOW_TYPE_TOOLTIP")
        return tooltip in (self._property(window, "_NET_WM_WINDOW_TYPE") or ())

    @staticmethod
    def _place(window):
        try:
            state, place = window.get_attributes(), window.get_geometry()
        except (BadWindow, BadDrawable):  # gone between the two questions
            return None
        if not state.override_redirect or state.map_state != X.IsViewable:
            return None
        return Rectangle(place.x, place.y, place.x + place.width, place.y + place.height)

    def nobody_holds_the_pointer(self):
        """Whether the next click goes to what is under the pointer: a menu that has gone may still keep it for a while."""
        status = self.root.grab_pointer(False, 0, X.GrabModeAsync, X.GrabModeAsync, X.NONE, X.NONE, X.CurrentTime)
        self.display.ungrab_pointer(X.CurrentTime)
        self.display.sync()
        return status == X.GrabSuccess

    def point(self, x, y):
        xtest.fake_input(self.display, X.MotionNotify, x=x, y=y)
        self.display.sync()

    def button(self, kind, number=1):
        """Presses or releases a button of the pointer, by X.ButtonPress or X.ButtonRelease, with nothing in between."""
        xtest.fake_input(self.display, kind, number)
        self.display.sync()

    def cover(self, title):
        """Puts a window of our own over all others and gives it the keyboard."""
        screen = self.display.screen()
        window = self.root.create_window(50, 50, 900, 600, 0, screen.root_depth, background_pixel=screen.white_pixel)
        window.set_wm_name(title)
        window.change_text_property(self.display.get_atom("_NET_WM_NAME"), self.display.get_atom("UTF8_STRING"), title)
        window.set_wm_hints(flags=Xutil.InputHint, input=1)
        window.map()
        self.display.sync()
        wait_until(lambda: self.active() == title and self.managed()[-1:] == [title], f"the window {title!r} on top")

    def minimise(self, title):
        """Asks the window manager to put a window away, and waits until it is."""
        numbers = self._property(self.root, "_NET_CLIENT_LIST")
        window = next(self._window(number) for number in numbers if self.title(number) == title)
        message = protocol.event.ClientMessage(window=window, client_type=self.display.get_atom("WM_CHANGE_STATE"),
                                               data=(32, (Xutil.IconicState, 0, 0, 0, 0)))
        self.root.send_event(message, event_mask=X.SubstructureRedirectMask | X.SubstructureNotifyMask)
        self.display.sync()
        wait_until(lambda: window.get_attributes().map_state != X.IsViewable, f"the window {title!r} put away")

    def watch(self):
        """From now on, story(), wait_for_coming() and wait_for_going() tell what comes and goes."""
        # What goes may be gone for good: its title is asked for now.
        self._titles = {window.id: self.title(window.id) for window in self.root.query_tree().children}
        self.root.change_attributes(event_mask=X.SubstructureNotifyMask)
        self.display.sync()

    @cached_property
    def drawings(self):
        """What is drawn on the screen, from the first look on."""
        return Drawings(self)

    def next_event(self, is_wanted, seconds):
        """The next event of the wanted kind, all others passed over; None when none comes in that time."""
        end = time.monotonic() + seconds
        while (rest := end - time.monotonic()) > 0:
            if not self.display.pending_events():
                select.select([self.display], [], [], rest)
            elif is_wanted(event := self.display.next_event()):
                return event
        return None

    def wait_for_coming(self):
        """Waits for the next window that comes without the window manager; for watchers."""
        self._wait_for(X.MapNotify, "a window")

    def wait_for_going(self):
        self._wait_for(X.UnmapNotify, "no window")

    def _wait_for(self, kind, what, seconds=LIMIT_SECONDS):
        if not self.next_event(lambda event: event.type == kind and event.event == self.root, seconds):
            raise TimeoutError(f"waited {seconds:g} s in vain: {what}")

    def story(self):
        """What happened since the last time, in its order: whether a window came, and its title."""
        told = []
        while self.display.pending_events():
            event = self.display.next_event()
            if event.type in (X.MapNotify, X.UnmapNotify, X.ReparentNotify):
                title = self.title(event.window.id) or self._titles.get(event.window.id)
                told.append((event.type != X.UnmapNotify, title))
        return told
