# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""What is drawn on the screen, and when, as the X server tells it."""

from Xlib import X
from Xlib.ext import damage

from waiting import LIMIT_SECONDS

QUIET_SECONDS = 0.3


def meets(drawing, place):
    """Whether something was drawn in a rectangle."""
    area = drawing.area
    return (area.x < place.right and area.x + area.width > place.left and
            area.y < place.bottom and area.y + area.height > place.top)


class Drawings:
    """Everything that is drawn on a desktop from now on."""

    def __init__(self, windows):
        self._windows = windows
        windows.display.damage_query_version()
        windows.root.damage_create(damage.DamageReportRawRectangles)

    def next(self, seconds=LIMIT_SECONDS):
        """The next word that something was drawn, or None when nothing is in that time."""
        def is_drawing(event):
            return event.type == self._windows.display.extension_event.DamageNotify
        return self._windows.next_event(is_drawing, seconds)

    def next_in(self, place, seconds=LIMIT_SECONDS):
        """The same, with what is drawn elsewhere passed over."""
        while drawing := self.next(seconds):
            if meets(drawing, place):
                return drawing
        return None

    def wait_for_quiet(self):
        while self.next(QUIET_SECONDS):
            pass

    def picture(self, place):
        """The pixels of a rectangle, to compare with another picture of it."""
        image = self._windows.root.get_image(place.left, place.top, place.width, place.height, X.ZPixmap, 0xffffffff)
        return bytes(image.data)
