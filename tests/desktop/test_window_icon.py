# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""Every window brings the program's icon along, for title bars and switchers that look nowhere else."""

import unittest

import case
import settings
from desktop import Desktop
from repositories import tracked_days_ago

SMALLEST, LARGE = 16, 64


class WindowIcon(unittest.TestCase):

    def assert_has_icon(self, desktop, title):
        icons = desktop.windows.icons(title)
        self.assertIn(SMALLEST, icons, title)
        picture = icons[LARGE]
        self.assertEqual(picture[0][0] >> 24, 0, "the corner is empty")
        fire = picture[LARGE * 3 // 8][LARGE // 2]
        alpha, red, green, blue = (fire >> shift & 0xff for shift in (24, 16, 8, 0))
        self.assertEqual(alpha, 255)
        self.assertTrue(red > 200 > green > 80 > blue, f"{fire:x} is no orange")

    def test_dashboard_settings_and_dialogs_have_the_programs_icon(self):
        with Desktop(self.id()) as desktop:
            tracked_days_ago(desktop, case.now_in("UTC"), 0)
            session = settings.Session(desktop)
            session.open_dashboard()
            self.assert_has_icon(desktop, settings.DASHBOARD)
            session.close_dashboard()
            session.open()
            self.assert_has_icon(desktop, settings.WINDOW)
            session.ask("Add Repository", settings.ADD)
            self.assert_has_icon(desktop, settings.ADD)
            session.press("Escape", "Escape")
            self.assertEqual(session.program.end(), 0)


if __name__ == "__main__":
    case.main()
