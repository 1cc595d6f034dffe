# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""What is on the screen: pictures, their differences, and a user's pointer and keys."""

import subprocess
from functools import cached_property
from typing import NamedTuple

from Xlib import XK, X, display
from Xlib.ext import xtest

from waiting import pause, wait_until

# As the server has them: blue, green, red and nothing.
BYTES_A_PIXEL = 4
MODIFIERS = {"ctrl": "Control_L", "shift": "Shift_L", "alt": "Alt_L"}


class Rectangle(NamedTuple):
    """Whole pixels; right and bottom are the first column and row outside."""
    left: int
    top: int
    right: int
    bottom: int

    @classmethod
    def of(cls, left, top, width, height):
        return cls(left, top, left + width, top + height)

    @property
    def width(self):
        return self.right - self.left

    @property
    def height(self):
        return self.bottom - self.top

    @property
    def centre(self):
        return (self.left + self.right) // 2, (self.top + self.bottom) // 2


def _first_difference(one, other):
    return next(i for i, (a, b) in enumerate(zip(one, other)) if a != b)


class Picture:
    """The pixels of a rectangle of the screen, asked for by their places on the screen."""

    def __init__(self, place, data):
        self.place, self.data = place, data

    def __eq__(self, other):
        return self.data == other.data

    def row(self, y):
        length = BYTES_A_PIXEL * self.place.width
        start = (y - self.place.top) * length
        return self.data[start:start + length]

    def pixel(self, x, y):
        """Red, green and blue."""
        start = BYTES_A_PIXEL * ((y - self.place.top) * self.place.width + x - self.place.left)
        return tuple(self.data[start:start + 3][::-1])

    def pixels(self):
        """All of them, row by row."""
        return [tuple(self.data[start:start + 3][::-1]) for start in range(0, len(self.data), BYTES_A_PIXEL)]

    def difference(self, other):
        """The smallest rectangle that holds every difference from another picture of the same place, or None."""
        lines = [y for y in range(self.place.top, self.place.bottom) if self.row(y) != other.row(y)]
        if not lines:
            return None
        pairs = [(self.row(y), other.row(y)) for y in lines]
        left = min(_first_difference(one, two) for one, two in pairs) // BYTES_A_PIXEL
        right = min(_first_difference(one[::-1], two[::-1]) for one, two in pairs) // BYTES_A_PIXEL
        return Rectangle(self.place.left + left, lines[0], self.place.right - right, lines[-1] + 1)


class Screen:
    """The screen of one virtual desktop, over a connection of its own."""

    def __init__(self, environment, width, height):
        self._environment = environment
        self.width = width
        self.height = height

    @cached_property
    def _display(self):
        return display.Display(self._environment["DISPLAY"])

    def close(self):
        if "_display" in vars(self):
            self._display.close()

    @property
    def whole(self):
        return Rectangle(0, 0, self.width, self.height)

    @property
    def corner(self):
        """A place where nothing is pointed at."""
        return self.width - 1, self.height - 1

    def picture(self, place=None):
        """What is there now; the whole screen where no rectangle is given."""
        place = place or self.whole
        image = self._display.screen().root.get_image(place.left, place.top, place.width, place.height, X.ZPixmap,
                                                      0xffffffff)
        return Picture(place, bytes(image.data))

    def settled(self, place=None):
        """The picture as soon as two in a row are the same. Whether more is to come it cannot tell."""
        pictures = [self.picture(place)]

        def stands_still():
            pause(0.1)
            pictures.append(self.picture(place))
            return pictures[-1] == pictures[-2]

        wait_until(stands_still, "the screen stands still")
        return pictures[-1]

    def save(self, path, place=None):
        """Writes a picture of the whole screen, or of a rectangle."""
        place = place or self.whole
        part = ["-crop", f"{place.width}x{place.height}+{place.left}+{place.top}", "+repage"]
        subprocess.run(["import", "-silent", "-window", "root", *part, "-define", "png:exclude-chunks=date,time",
                        str(path)], env=self._environment, check=True, stdin=subprocess.DEVNULL, timeout=60)

    def _fake(self, *events):
        """Does all of these, nothing else in between."""
        for kind, *details in events:
            if kind == X.MotionNotify:
                xtest.fake_input(self._display, kind, x=details[0], y=details[1])
            else:
                xtest.fake_input(self._display, kind, details[0])
        self._display.sync()

    def point(self, x, y):
        self._fake((X.MotionNotify, x, y))

    def click(self, x, y, button):
        self._fake((X.MotionNotify, x, y), (X.ButtonPress, button), (X.ButtonRelease, button))

    def hold(self, x, y, button):
        """Presses a button, which stays down until release()."""
        self._fake((X.MotionNotify, x, y), (X.ButtonPress, button))

    def release(self, button):
        self._fake((X.ButtonRelease, button))

    def _stroke(self, keysym):
        """The key of a symbol, and what has to be held with it."""
        code, level = next(iter(self._display.keysym_to_keycodes(keysym)))
        return code, ["shift"] if level % 2 else []

    def _press(self, keysym, modifiers=()):
        code, more = self._stroke(keysym)
        held = [self._stroke(XK.string_to_keysym(MODIFIERS[name]))[0] for name in (*modifiers, *more)]
        self._fake(*((X.KeyPress, key) for key in (*held, code)), *((X.KeyRelease, key) for key in (code, *held[::-1])))

    def press(self, key):
        """Presses a key by its name, with others held where it is "ctrl+shift+Tab"."""
        *modifiers, name = key.split("+")
        self._press(XK.string_to_keysym(name), modifiers)

    def type(self, text):
        for letter in text:
            self._press(ord(letter))
