# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""Clicks on the item: each button, long and short, and what is found again after another one."""

import unittest

import case
from dashboard import WINDOW, Dashboard
from desktop import Desktop
from item import click_first_entry, tallest
from program import Program
from waiting import wait_until


class Clicks(unittest.TestCase):

    def menu_after_right_click(self, dashboard, point):
        """The rectangle of the panel's menu, once it stands there instead of the dashboard."""
        windows = dashboard.desktop.windows
        before = windows.shown()
        dashboard.desktop.screen.click(*point, 3)
        dashboard.reader.wait_without_window(WINDOW)
        return wait_until(lambda: tallest(windows.shown() - before), "the menu", state=windows.unmanaged)

    def close_menu(self, dashboard, menu):
        dashboard.press_key("Escape")
        wait_until(lambda: menu not in dashboard.desktop.windows.shown(), "the menu goes")
        wait_until(dashboard.desktop.windows.nobody_holds_the_pointer, "the pointer is free")

    def assert_toggles(self, dashboard):
        dashboard.open()
        dashboard.click_item()
        dashboard.wait_until_closed()

    def a_right_click_shows_the_menu_in_place_of_the_dashboard(self, dashboard):
        desktop = dashboard.desktop
        item = dashboard.rectangle
        for point in (item.centre, (item.left + 1, item.centre[1]), (item.right - 2, item.centre[1])):
            dashboard.open()
            self.close_menu(dashboard, self.menu_after_right_click(dashboard, point))
            self.assert_toggles(dashboard)

        dashboard.open()
        dashboard.repositories["busy"].commit_days_ago(dashboard.now.now, 3, 4)
        click_first_entry(desktop.screen, self.menu_after_right_click(dashboard, item.centre))
        dashboard.item.wait_for_label(" 6")
        self.assert_toggles(dashboard)

    def test_a_right_click_shows_the_menu_of_a_dashboard_that_opened_elsewhere(self):
        with Desktop(self.id(), panel_plugins=("systray", "separator")) as desktop:
            dashboard = Dashboard(desktop)
            self.assertEqual(Program(desktop).wait_for_end(), 0)
            place = dashboard.reader.wait_for_window(WINDOW).place
            self.assertGreater(place[0], dashboard.rectangle.right)
            self.close_menu(dashboard, self.menu_after_right_click(dashboard, dashboard.rectangle.centre))
            self.assertEqual(dashboard.program.end(), 0)

    def test_clicks_on_the_item(self):
        with Desktop(self.id()) as desktop:
            dashboard = Dashboard(desktop)
            for part in (self.a_held_click_opens_it_for_good_and_closes_it_for_good,
                         self.it_opens_again_where_it_was_and_as_it_was,
                         self.a_right_click_shows_the_menu_in_place_of_the_dashboard):
                part(dashboard)
                dashboard.close()
            self.assertEqual(dashboard.program.end(), 0)

    def a_held_click_opens_it_for_good_and_closes_it_for_good(self, dashboard):
        desktop = dashboard.desktop
        for should_be_open in (True, False):
            desktop.screen.hold(*dashboard.rectangle.centre, 1)
            dashboard.item.wait_until_heard()
            self.assertEqual(dashboard.window() is None, should_be_open)
            desktop.screen.release(1)
            wait_until(lambda wanted=should_be_open: bool(dashboard.window()) == wanted, "the click's effect")
            dashboard.item.wait_until_heard()
            self.assertEqual(dashboard.window() is not None, should_be_open)

    def place_when_sized(self, dashboard, text, is_right):
        """The rectangle of the dashboard, once it shows that text and has the size for it."""
        dashboard.wait_for(text)
        def place():
            found = dashboard.window().place
            return found if is_right(found) else None
        return wait_until(place, f"the size for {text!r}", state=lambda: dashboard.window().place)

    def it_opens_again_where_it_was_and_as_it_was(self, dashboard):
        week = dashboard.open().place
        dashboard.press("Show Year")
        year = self.place_when_sized(dashboard, "Last 365 Days", lambda place: place != week)
        for close in (dashboard.click_item, lambda: dashboard.press_key("Escape")):
            close()
            dashboard.wait_until_closed()
            dashboard.open()
            dashboard.wait_for("Last 365 Days")
            self.assertEqual(dashboard.window().place, year)
        dashboard.press("Back")
        self.place_when_sized(dashboard, "Last 7 Days", lambda place: place == week)


if __name__ == "__main__":
    case.main()
