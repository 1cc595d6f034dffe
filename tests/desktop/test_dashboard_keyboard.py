# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""The dashboard under the keyboard alone: real keys, and what has the focus as a screen reader hears it."""

import datetime
import unittest

import case
from dashboard import DAYS, SETTINGS, Dashboard, cell_name, counts_by_day
from desktop import Desktop
from waiting import wait_until

BUTTON = "push button"


def in_visual_order(controls):
    """Row by row; in a row from left to right."""
    return sorted(controls, key=lambda node: (node.centre[1], node.centre[0]))


class Keyboard(unittest.TestCase):

    def walk(self, dashboard, key, names):
        for name in names:
            dashboard.press_key(key)
            dashboard.wait_for_focus(name)

    def test_the_keyboard_alone(self):
        with Desktop(self.id()) as desktop:
            dashboard = Dashboard(desktop)
            for part in (self.tab_goes_through_all_controls_in_the_order_in_which_they_are_seen_and_back,
                         self.arrow_keys_go_from_day_to_day_in_the_year,
                         self.enter_on_the_gear_opens_the_settings,
                         self.space_and_enter_press_what_has_the_focus):
                part(dashboard)
                dashboard.close()
            self.assertEqual(dashboard.program.end(), 0)

    def tab_goes_through_all_controls_in_the_order_in_which_they_are_seen_and_back(self, dashboard):
        window = dashboard.open()
        self.assertIsNone(dashboard.focused_name())
        names = [node.name for node in in_visual_order(node for node in window.shown() if node.role == BUTTON)]
        rows = [dashboard.row_name(repository) for repository in DAYS]
        self.assertEqual(names, ["Show Year", *rows, "Refresh", "Settings"])
        self.walk(dashboard, "Tab", names)
        self.walk(dashboard, "shift+Tab", names[-2::-1])

        dashboard.press_key("Escape")
        dashboard.wait_until_closed()
        dashboard.open()
        self.assertIsNone(dashboard.focused_name())
        self.walk(dashboard, "Tab", names[:1])

    def space_and_enter_press_what_has_the_focus(self, dashboard):
        desktop = dashboard.desktop
        desktop.start_file_manager()
        dashboard.open()
        self.walk(dashboard, "Tab", ["Show Year"])
        for key in ("space", "Return"):
            dashboard.press_key(key)
            dashboard.wait_for_focus("Back")
            dashboard.press_key(key)
            dashboard.wait_for_focus("Show Year")

        dashboard.repositories["busy"].commit_unheard(dashboard.now.now)
        self.walk(dashboard, "Tab", [*(dashboard.row_name(name) for name in DAYS), "Refresh"])
        dashboard.press_key("space")
        wait_until(lambda: "4 today" in dashboard.row_name("busy"), "the new commit")
        dashboard.wait_for_focus("Refresh")

        self.walk(dashboard, "shift+Tab", [dashboard.row_name("empty"), dashboard.row_name("quiet one")])
        dashboard.press_key("Return")
        desktop.windows.wait_for_folder("quiet one")

    def enter_on_the_gear_opens_the_settings(self, dashboard):
        dashboard.open()
        self.walk(dashboard, "shift+Tab", ["Settings"])
        dashboard.press_key("Return")
        dashboard.reader.wait_for_window(SETTINGS)
        self.assertIsNone(dashboard.window())

    def arrow_keys_go_from_day_to_day_in_the_year(self, dashboard):
        today = dashboard.now.now

        def days_ago(number):
            return cell_name(today - datetime.timedelta(days=number), counts_by_day().get(number, 0))

        dashboard.open()
        dashboard.press("Show Year")
        self.walk(dashboard, "Tab", ["Back", days_ago(0)])
        for key, day in (("Left", 7), ("Up", 8), ("Right", 1), ("Down", 0), ("Home", 364), ("End", 0)):
            dashboard.press_key(key)
            dashboard.wait_for_focus(days_ago(day))
        self.walk(dashboard, "Tab", ["Refresh"])
        self.walk(dashboard, "shift+Tab", [days_ago(0), "Back"])
        dashboard.press_key("space")
        dashboard.wait_for("Last 7 Days")


if __name__ == "__main__":
    case.main()
