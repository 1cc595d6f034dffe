# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""The item on a real host: what is seen of it and what the buttons do: test_host.py HOST, as hosts.py names them."""

import sys
import unittest

import case
import hosts
import panel
import wayland
from item import StatusItem, click_first_entry, click_last_entry
from look import GREY, ORANGE, Look
from program import BUS_NAME, Program
from repositories import tracked_days_ago
from waiting import wait_until

HOST = hosts.BY_NAME[sys.argv[1]]()
case.NEEDED.update(HOST.needed)

# What it takes to read a digit from where one sits.
LEAST_DIGIT_HEIGHT = 7

# No menu is as large; the desktop's own font says how much larger the dashboard is.
LEAST_DASHBOARD_WIDTH, LEAST_DASHBOARD_HEIGHT = 250, 300

# The dashboard leaves a little air between itself and the edges.
FARTHEST = 16

# A number beside the flame makes the picture that much wider than high.
WIDE = 1.2


class Item:
    """The item as it is seen on the screen; made while the host is there and the item is not."""

    def __init__(self, desktop):
        self._desktop = desktop
        self._empty = desktop.screen.settled()

    def find(self):
        """What now is in the strip and was not; None where there is nothing."""
        now = self._desktop.screen.settled()
        place = self._desktop.screen.change(self._empty, now, bottom=panel.HEIGHT)
        return Look(now, place) if place else None

    def wait_for(self, what, is_so):
        """The look of the item once it is as wanted, with nothing pointed at."""
        self._desktop.screen.point(*self._desktop.screen.corner)
        def found():
            look = self.find()
            return look if look and is_so(look) else None
        return wait_until(found, what)

    def wait_until_gone(self):
        wait_until(lambda: not self.find(), "no item")

    def click(self, place, button):
        """Clicks in the middle of the item."""
        self._desktop.screen.click(*place.centre, button)


class OnHost(unittest.TestCase):

    def setUp(self):
        self.now = case.now_in("UTC")
        self.desktop = self.enterContext(HOST.open(self.id()))
        self.repository = tracked_days_ago(self.desktop, self.now, 3)
        HOST.start(self.desktop)
        self.item = Item(self.desktop)

    def click(self, button):
        self.item.click(self.item.find().place, button)

    def open(self, button):
        """The rectangle of what a click opens."""
        return HOST.opened(self.desktop, lambda: self.click(button))

    def refresh(self):
        click_first_entry(self.desktop.screen, self.open(3))

    def test_what_is_seen_and_what_the_buttons_do(self):
        HOST.end(self.desktop)
        program = Program(self.desktop)
        self.desktop.bus.wait_for(BUS_NAME)
        HOST.start(self.desktop)
        self.see_the_three_faces()
        if HOST.is_on_bus:
            self.assertEqual(StatusItem(self.desktop).entries(), ["Refresh", None, "Quit Velquarin"])
        for button in (1, 2):
            self.toggle(button)
        HOST.end(self.desktop)
        HOST.start(self.desktop)
        self.item.wait_for("the item back", lambda look: look.has(ORANGE) and look.number())
        self.toggle(1)
        click_last_entry(self.desktop.screen, self.open(3))
        self.assertEqual(program.wait_for_end(), 0)
        self.item.wait_until_gone()

    def see_the_three_faces(self):
        self.item.wait_for("a grey flame alone", lambda look: look.has(GREY) and not look.number())
        self.repository.commit_days_ago(self.now, *range(1, 8))
        self.refresh()
        waiting = self.item.wait_for("a grey flame with a number", lambda look: look.has(GREY) and look.number())
        self.repository.commit_days_ago(self.now, 0, *range(8, 12))
        self.refresh()
        committed = self.item.wait_for("an orange flame with a number", lambda look: look.has(ORANGE) and look.number())
        self.check(waiting, committed)

    def check(self, waiting, committed):
        for look in (waiting, committed):
            self.assertEqual(look.place.width > look.place.height * WIDE, HOST.is_wide)
        one_digit, two_digits = waiting.number(), committed.number()
        self.assertGreaterEqual(one_digit.height, LEAST_DIGIT_HEIGHT)
        self.assertGreaterEqual(two_digits.height, LEAST_DIGIT_HEIGHT)
        self.assertGreater(one_digit.height, one_digit.width)
        self.assertGreater(two_digits.width, two_digits.height)

    def toggle(self, button):
        place = self.open(button)
        self.assertGreater(place.width, LEAST_DASHBOARD_WIDTH)
        self.assertGreater(place.height, LEAST_DASHBOARD_HEIGHT)
        if HOST.desktop.lets_programs_place_windows:
            self.assertIn(place.top, range(panel.HEIGHT, panel.HEIGHT + FARTHEST))
            self.assertIn(self.desktop.screen.width - place.right, range(FARTHEST))
        HOST.closed(self.desktop, lambda: self.click(button))


if __name__ == "__main__":
    if issubclass(HOST.desktop, wayland.WaylandDesktop):
        wayland.as_ordinary_user()
    case.main([sys.argv[0], *sys.argv[2:]])
