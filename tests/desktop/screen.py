# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""What is on the screen: pictures, their differences, and a pointer."""

import subprocess
from typing import NamedTuple

from waiting import wait_until


class Rectangle(NamedTuple):
    """Whole pixels; right and bottom are the first column and row outside."""
    left: int
    top: int
    right: int
    bottom: int

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


class Screen:
    """The screen of one virtual desktop."""

    def __init__(self, environment, width, height):
        self._environment = environment
        self.width = width
        self.height = height

    @property
    def corner(self):
        """A place where nothing is pointed at."""
        return self.width - 1, self.height - 1

    def _run(self, *command):
        return subprocess.run(command, env=self._environment, check=True, stdout=subprocess.PIPE,
                              stdin=subprocess.DEVNULL, timeout=20).stdout

    def rows(self):
        """The picture as one string of bytes a row, three bytes a pixel."""
        pixels = self._run("import", "-silent", "-window", "root", "-depth", "8", "rgb:-")
        row = 3 * self.width
        return [pixels[start:start + row] for start in range(0, len(pixels), row)]

    def settled(self):
        """The picture as soon as two in a row are the same."""
        pictures = [self.rows()]

        def stands_still():
            pictures.append(self.rows())
            return pictures[-1] == pictures[-2]

        wait_until(stands_still, "the screen stands still")
        return pictures[-1]

    def change(self, before, after, top=0, bottom=None):
        """The smallest rectangle that holds every difference between the given rows, or None."""
        numbers = [y for y in range(top, bottom or self.height) if before[y] != after[y]]
        if not numbers:
            return None
        pairs = [(before[y], after[y]) for y in numbers]
        left = min(_first_difference(one, other) for one, other in pairs) // 3
        right = self.width - min(_first_difference(one[::-1], other[::-1]) for one, other in pairs) // 3
        return Rectangle(left, numbers[0], right, numbers[-1] + 1)

    def save(self, path):
        self._run("import", "-silent", "-window", "root", str(path))

    # With its option --sync xdotool waits for a movement, for ever so long where the pointer is there already.
    def point(self, x, y):
        self._run("xdotool", "mousemove", str(x), str(y))

    def click(self, x, y, button):
        self._run("xdotool", "mousemove", str(x), str(y), "click", str(button))

    def hold(self, x, y, button):
        """Presses a button, which stays down until release()."""
        self._run("xdotool", "mousemove", str(x), str(y), "mousedown", str(button))

    def release(self, button):
        self._run("xdotool", "mouseup", str(button))

    def press(self, key):
        self._run("xdotool", "key", key)

    def type(self, text):
        self._run("xdotool", "type", "--delay", "2", text)
