# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""The gear in the dashboard opens the window for settings: one, and in front."""

import unittest

import case
from dashboard import SETTINGS, WINDOW, Dashboard
from desktop import Desktop
from waiting import wait_until

# The desktop's own way to write a window's title: whose it is stands behind it.
TITLE = "Settings"


class Gear(unittest.TestCase):

    def wait_until_in_front(self, windows):
        wait_until(lambda: windows.managed()[-1:] == [TITLE] and windows.active() == TITLE,
                   "the settings in front of all others")

    def test_the_gear_and_the_window_that_it_opens(self):
        with Desktop(self.id()) as desktop:
            dashboard = Dashboard(desktop)
            for part in (self.the_gear_opens_one_window_by_the_name_of_settings,
                         self.the_dashboard_is_gone_before_the_settings_come,
                         self.escape_closes_the_settings_and_the_gear_opens_them_again):
                part(dashboard)
                dashboard.close()
            self.assertEqual(dashboard.program.end(), 0)

    def the_gear_opens_one_window_by_the_name_of_settings(self, dashboard):
        windows = dashboard.desktop.windows
        dashboard.open()
        self.assertNotIn(TITLE, windows.managed())
        dashboard.click("Settings")
        self.assertIn(dashboard.reader.wait_for_window(SETTINGS).role, ("window", "frame"))
        self.wait_until_in_front(windows)
        self.assertIsNone(dashboard.window())

        for cover in (lambda: windows.cover("Something else"), lambda: windows.minimise(TITLE)):
            cover()
            dashboard.open()
            dashboard.click("Settings")
            self.wait_until_in_front(windows)
            self.assertEqual(windows.managed().count(TITLE), 1)

    def the_dashboard_is_gone_before_the_settings_come(self, dashboard):
        windows = dashboard.desktop.windows
        dashboard.open()
        windows.watch()
        dashboard.press("Settings")
        story = []

        def settings_came():
            story.extend(windows.story())
            return (True, TITLE) in story
        wait_until(settings_came, "the settings")
        self.assertIn((False, WINDOW), story[:story.index((True, TITLE))])

    def escape_closes_the_settings_and_the_gear_opens_them_again(self, dashboard):
        windows = dashboard.desktop.windows
        for _ in range(2):
            dashboard.open()
            dashboard.click("Settings")
            self.wait_until_in_front(windows)
            dashboard.press_key("Escape")
            wait_until(lambda: TITLE not in windows.managed(), "the settings are closed")
            dashboard.reader.wait_without_window(SETTINGS)
        self.assertTrue(dashboard.program.is_running())


if __name__ == "__main__":
    case.main()
