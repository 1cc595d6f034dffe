# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""Midnight passes while the dashboard is open, and nothing else happens."""

import datetime
import unittest

import case
from dashboard import Dashboard, cell_name, counts_by_day, expected_columns
from desktop import Desktop
from waiting import wait_until

BYTES_A_PIXEL = 3
DAY = datetime.timedelta(days=1)

# Room for the program to start and to be opened, on a machine that does other things meanwhile.
SECONDS_BEFORE = 20
PATIENCE = 40.0


def shortly_before_midnight():
    return case.ShiftedTime(23, 59, "UTC", second=60 - SECONDS_BEFORE)


def has_blue(rows, node):
    """Whether the lowest pixels of a day's column are blue, where today has its dot."""
    x, y, width, height = node.place
    for row in rows[y + height - 4:y + height]:
        part = row[BYTES_A_PIXEL * x:BYTES_A_PIXEL * (x + width)]
        if any(blue > red + 60 and blue > green + 20 for red, green, blue in zip(part[0::3], part[1::3], part[2::3])):
            return True
    return False


class Midnight(unittest.TestCase):

    def assert_before_midnight(self, dashboard):
        self.assertEqual(dashboard.user_time().date(), dashboard.now.now.date(), "opened too late for this test")

    def days_with_dot(self, dashboard, columns):
        rows = dashboard.desktop.screen.rows()
        return [column.name for column in columns if has_blue(rows, column)]

    def test_the_dot_leaves_a_week_that_does_not_hold_the_new_day(self):
        with Desktop(self.id()) as desktop:
            dashboard = Dashboard(desktop, now=shortly_before_midnight)
            window = dashboard.open()
            desktop.screen.settled()
            names = expected_columns(dashboard.now.now)
            columns = [window.find(name) for name in names]
            self.assertEqual(self.days_with_dot(dashboard, columns), names[-1:])
            self.assert_before_midnight(dashboard)

            wait_until(lambda: self.days_with_dot(dashboard, columns) == [], "the dot goes", PATIENCE)
            self.assertEqual(dashboard.user_time().date(), dashboard.now.now.date() + DAY)
            texts = dashboard.window().texts()
            self.assertEqual([text for text in texts if text in names], names)
            self.assertIn("Committed!", texts)
            self.assertEqual(dashboard.program.end(), 0)

    def test_the_year_moves_on_a_day(self):
        with Desktop(self.id()) as desktop:
            dashboard = Dashboard(desktop, now=shortly_before_midnight)
            today = dashboard.now.now
            oldest, newest = cell_name(today - 364 * DAY, 0), cell_name(today, counts_by_day()[0])
            second, coming = cell_name(today - 363 * DAY, 0), cell_name(today + DAY, 0)
            dashboard.open()
            dashboard.press("Show Year")
            dashboard.wait_for("Last 365 Days")
            self.assertEqual(self.year(dashboard), (365, oldest, newest))
            self.assert_before_midnight(dashboard)

            wait_until(lambda: self.year(dashboard) == (365, second, coming), "the year moves on", PATIENCE)
            self.assertEqual(dashboard.program.end(), 0)

    def year(self, dashboard):
        """How many days the heat map has, the first and the last; read at midnight, a mixture of two years."""
        days = [node.name for node in dashboard.window().walk() if node.role == "list item" and node.name]
        return len(days), days[0], days[-1]


if __name__ == "__main__":
    case.main()
