# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""The item on a real host: what is seen of it and what the buttons do: test_host.py HOST, as hosts.py names them."""

import itertools
import sys
import unittest

import case
import hosts
import panel
import wayland
from item import PanelPlace, StatusItem, click_first_entry, click_last_entry, tallest
from look import GREY, ORANGE, Look
from program import BUS_NAME, Program, wait_until_through
from repositories import Hold, tracked_days_ago
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


def is_high(place):
    """As flames are."""
    return place and place.height > place.width * 1.15


# A panel may move its items about before they stand: then what has changed is wider than the item.
def has_number(look, colour):
    is_wide = look.place.width > look.place.height * WIDE
    return look.where(colour) and look.number() and is_wide == HOST.is_wide


def is_round(place):
    return place and place.width > place.height * 0.9


class Item:
    """The item as it is seen on the screen; made while the host is there and the item is not."""

    def __init__(self, desktop):
        self._desktop = desktop
        wait_until(lambda: panel.is_empty(desktop.screen, HOST.ground), "the empty panel")
        self._place = PanelPlace(desktop.screen)

    def find(self):
        """What now is in the strip and was not; None where there is nothing."""
        place = self._place.now()
        return Look(self._desktop.screen.picture(place)) if place else None

    def where(self):
        return self._place.find()

    def wait_for(self, what, is_so):
        """The look of the item once it is as wanted, with nothing pointed at."""
        self._desktop.screen.point(*self._desktop.screen.corner)
        def found():
            look = self.find()
            return look if look and is_so(look) else None
        return wait_until(found, what)

    def wait_until_gone(self):
        wait_until(lambda: not self.find(), "no item")


class User:
    """Somebody at a desktop with the host, with a repository that was last committed to three days ago."""

    def __init__(self, desktop):
        self.desktop = desktop
        self._now = case.now_in("UTC")
        self.repository = tracked_days_ago(desktop, self._now, 3)
        HOST.start(desktop)
        self.item = Item(desktop)
        self._thirds = itertools.cycle((1, 2))

    def commit(self, *days):
        self.repository.commit_days_ago(self._now, *days)

    # Twice at one place is a double click, and the second half of one counts twice in a bar that asks for presses alone.
    def click(self, button):
        place = self.item.where()
        self.desktop.screen.click(place.left + place.width * next(self._thirds) // 3, place.centre[1], button)

    def open(self, button):
        """The rectangle of what a click opens, once it takes what is clicked next."""
        place = HOST.opened(self.desktop, lambda: self.click(button))
        wait_until_through(self.desktop.bus)
        return place

    def close(self, button):
        """Closes what is open by a click."""
        HOST.closed(self.desktop, lambda: self.click(button))

    def refresh(self):
        menu = self.open(3)
        HOST.closed(self.desktop, lambda: click_first_entry(self.desktop.screen, menu))

    def quit(self):
        click_last_entry(self.desktop.screen, self.open(3))


class OnHost(unittest.TestCase):

    def test_what_is_seen_and_what_the_buttons_do(self):
        with HOST.open(self.id()) as desktop:
            user = User(desktop)
            HOST.end(desktop)
            program = Program(desktop)
            desktop.bus.wait_for(BUS_NAME)
            HOST.start(desktop)
            self.see_the_three_faces(user)
            self.press_the_buttons(user)
            HOST.end(desktop)
            HOST.start(desktop)
            user.item.wait_for("the item back", lambda look: look.where(ORANGE) and look.number())
            self.toggle(user, 1)
            user.quit()
            self.assertEqual(program.wait_for_end(), 0)
            user.item.wait_until_gone()

    def see_the_three_faces(self, user):
        user.item.wait_for("a grey flame alone", lambda look: is_high(look.where(GREY)) and not look.number())
        user.commit(*range(1, 8))
        user.refresh()
        waiting = user.item.wait_for("a grey flame with a number", lambda look: has_number(look, GREY))
        user.commit(0, *range(8, 12))
        user.refresh()
        committed = user.item.wait_for("an orange flame with a number", lambda look: has_number(look, ORANGE))
        self.check_number(waiting, committed)
        hold = Hold(user.repository)
        user.refresh()
        user.item.wait_for("a grey circle alone", lambda look: is_round(look.where(GREY)) and not look.number())
        hold.release()
        user.item.wait_for("the flame back", lambda look: look.where(ORANGE) and look.number())

    def check_number(self, one_digit, two_digits):
        for look in (one_digit, two_digits):
            self.assertGreaterEqual(look.number().height, LEAST_DIGIT_HEIGHT)
        self.assertGreater(one_digit.number().height, one_digit.number().width)
        self.assertGreater(two_digits.number().width, one_digit.number().width)

    def press_the_buttons(self, user):
        if HOST.is_on_bus:
            self.assertEqual(StatusItem(user.desktop).entries(), ["Refresh", None, "Quit Velquarin"])
        for button in (1, 2):
            self.toggle(user, button)
        if user.desktop.lets_programs_place_windows:
            self.exchange_the_dashboard_for_the_menu(user)
        if isinstance(HOST, hosts.Waybar):
            self.leave_the_dashboard_for_the_menu(user)

    def exchange_the_dashboard_for_the_menu(self, user):
        windows = user.desktop.windows
        before, dashboard = windows.shown(), user.open(1)
        user.click(3)
        wait_until(lambda: dashboard not in windows.shown() and tallest(windows.shown() - before), "the menu alone",
                   state=windows.unmanaged)
        HOST.closed(user.desktop, lambda: user.desktop.screen.press("Escape"))

    # The bar never takes the keyboard: nothing but its menu tells that the dashboard is done with.
    def leave_the_dashboard_for_the_menu(self, user):
        user.open(1)
        user.click(3)
        wait_until(lambda: self.is_menu(HOST.what_is_open(user.desktop)), "the menu alone")
        HOST.closed(user.desktop, lambda: user.desktop.screen.click(*user.desktop.screen.corner, 1))

    @staticmethod
    def is_menu(place):
        return place and place.height < LEAST_DASHBOARD_HEIGHT

    def toggle(self, user, button):
        place = user.open(button)
        self.assertGreater(place.width, LEAST_DASHBOARD_WIDTH)
        self.assertGreater(place.height, LEAST_DASHBOARD_HEIGHT)
        if user.desktop.lets_programs_place_windows:
            self.assertIn(place.top, range(panel.HEIGHT, panel.HEIGHT + FARTHEST))
            self.assertIn(user.desktop.screen.width - place.right, range(FARTHEST))
        user.close(button)


if __name__ == "__main__":
    if issubclass(HOST.desktop, wayland.WaylandDesktop):
        wayland.as_ordinary_user()
    case.main([sys.argv[0], *sys.argv[2:]])
