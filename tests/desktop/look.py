# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""What a user sees of the item: its colours and its number, whatever the host makes of the picture."""

from screen import Rectangle

ORANGE = (0xf5, 0x7c, 0x00)
GREY = (0x80, 0x86, 0x8b)

# Hosts scale, and colours mix along the edges.
TOLERANCE = 24
FEWEST_PIXELS = 12
WHITE = 240


def _is_near(pixel, colour):
    return all(abs(one - other) <= TOLERANCE for one, other in zip(pixel, colour))


def _is_white(pixel):
    return min(pixel) >= WHITE


class Look:
    """The picture of a rectangle on the screen.

    place  where; all of it belongs to the item
    """

    def __init__(self, picture):
        self.place = picture.place
        self._pixels = {(x, y): picture.pixel(x, y) for y in range(self.place.top, self.place.bottom)
                        for x in range(self.place.left, self.place.right)}

    def _where(self, is_wanted):
        """The rectangle of the pixels of a kind; None where there are too few for somebody to name it."""
        places = [place for place, pixel in self._pixels.items() if is_wanted(pixel)]
        if len(places) < FEWEST_PIXELS:
            return None
        columns, lines = zip(*places)
        return Rectangle(min(columns), min(lines), max(columns) + 1, max(lines) + 1)

    def where(self, colour):
        """The rectangle of what has this colour, or None."""
        return self._where(lambda pixel: _is_near(pixel, colour))

    def number(self):
        """The rectangle of the white digits, or None."""
        return self._where(_is_white)
