# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""Midnight passes while the dashboard is open, and nothing else happens."""

import datetime
import unittest

import case
from dashboard import Dashboard, cell_name, expected_columns
from desktop import Desktop
from screen import Rectangle
from waiting import wait_until

DAY = datetime.timedelta(days=1)
SECONDS_TO_MIDNIGHT = 12 * 3600


def has_blue(screen, node):
    """Whether the lowest pixels of a day's column are blue, where today has its dot."""
    x, y, width, height = node.place
    lowest = screen.picture(Rectangle(x, y + height - 4, x + width, y + height))
    return any(blue > red + 60 and blue > green + 20 for red, green, blue in lowest.pixels())


class Midnight(unittest.TestCase):

    def days_with_dot(self, dashboard, columns):
        return [column.name for column in columns if has_blue(dashboard.desktop.screen, column)]

    def test_the_dot_leaves_a_week_that_does_not_hold_the_new_day_and_the_year_moves_on(self):
        with Desktop(self.id()) as desktop:
            dashboard = Dashboard(desktop)
            window = dashboard.open()
            names = expected_columns(dashboard.now.now)
            columns = [window.find(name) for name in names]
            wait_until(lambda: self.days_with_dot(dashboard, columns) == names[-1:], "the dot of today",
                       state=lambda: self.days_with_dot(dashboard, columns))

            dashboard.program.sleep(SECONDS_TO_MIDNIGHT)
            wait_until(lambda: self.days_with_dot(dashboard, columns) == [], "the dot goes",
                       state=lambda: self.days_with_dot(dashboard, columns))
            texts = dashboard.window().texts()
            self.assertEqual([text for text in texts if text in names], names)
            self.assertIn("Committed!", texts)
            self.see_the_year_move_on(dashboard, dashboard.now.now + DAY)
            self.assertEqual(dashboard.program.end(), 0)

    def see_the_year_move_on(self, dashboard, today):
        dashboard.press("Show Year")
        dashboard.wait_for("Last 365 Days")
        oldest, second = cell_name(today - 364 * DAY, 0), cell_name(today - 363 * DAY, 0)
        newest, coming = cell_name(today, 0), cell_name(today + DAY, 0)
        self.assertEqual(self.year(dashboard), (365, oldest, newest))
        dashboard.program.sleep(24 * 3600)
        wait_until(lambda: self.year(dashboard) == (365, second, coming), "the year moves on",
                   state=lambda: self.year(dashboard))

    def year(self, dashboard):
        """How many days the heat map has, the first and the last; read at midnight, a mixture of two years."""
        days = [node.name for node in dashboard.window().walk() if node.role == "list item" and node.name]
        return len(days), days[0], days[-1]


if __name__ == "__main__":
    case.main()
