# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""The dashboard, opened by a real click and read as a screen reader does."""

import datetime
import unittest

import case
from dashboard import Dashboard, cell_name, counts_by_day, expected_columns
from desktop import Desktop
from waiting import wait_until


def position_of(texts, wanted):
    """Where the wanted texts stand in that order among the others."""
    positions, start = [], 0
    for text in wanted:
        start = texts.index(text, start)
        positions.append(start)
    return positions


class Shown(unittest.TestCase):

    def test_what_the_dashboard_shows_and_does(self):
        with Desktop(self.id()) as desktop:
            dashboard = Dashboard(desktop)
            for part in (self.all_figures_are_shown_and_right,
                         self.a_second_click_a_click_outside_and_escape_close_it,
                         self.the_heat_map_tells_every_day,
                         self.the_year_is_shown_and_left_by_pointer_and_by_action,
                         self.a_repository_opens_in_the_file_manager_and_the_dashboard_makes_way,
                         self.refresh_reads_anew_and_the_view_follows):
                part(dashboard)
                dashboard.close()
            self.assertEqual(dashboard.program.end(), 0)

    def all_figures_are_shown_and_right(self, dashboard):
        texts = dashboard.open().texts()
        total = sum(counts_by_day().values())
        position_of(texts, ["4", "day streak", "Longest", "4 days", "This week", f"{total} commits", "Repos",
                            "3 tracked", "Today", "Committed!", "Last 7 Days", "Show Year",
                            *expected_columns(dashboard.now.now), "Repositories"])
        for name, last in (("busy", "3 today"), ("quiet one", "1 day ago"), ("empty", "No commits")):
            self.assertTrue(any(name in text and last in text for text in texts) or
                            position_of(texts, [name, last]), texts)
        self.assertTrue(any(text.startswith("Updated ") and text.endswith(" ago") for text in texts), texts)

    def a_second_click_a_click_outside_and_escape_close_it(self, dashboard):
        desktop = dashboard.desktop
        for close in (dashboard.click_item, lambda: desktop.screen.click(100, 600, 1),
                      lambda: desktop.screen.press("Escape")):
            dashboard.open()
            close()
            dashboard.wait_until_closed()
            dashboard.item.wait_until_heard()
            self.assertIsNone(dashboard.window())

    def the_year_is_shown_and_left_by_pointer_and_by_action(self, dashboard):
        dashboard.open()
        for act in (dashboard.click, dashboard.press):
            act("Show Year")
            dashboard.wait_for("Last 365 Days")
            texts = dashboard.window().texts()
            total, active = sum(counts_by_day().values()), len(counts_by_day())
            position_of(texts, ["Back", "Last 365 Days", f"{total} commits", f"{active} active days"])
            self.assertNotIn("Repositories", texts)
            act("Back")
            dashboard.wait_for("Last 7 Days")

    def the_heat_map_tells_every_day(self, dashboard):
        dashboard.open()
        dashboard.press("Show Year")
        dashboard.wait_for("Last 365 Days")
        names = [node.name for node in dashboard.window().walk()]
        for ago in range(365):
            day = dashboard.now.now - datetime.timedelta(days=ago)
            count = counts_by_day().get(ago, 0)
            self.assertIn(cell_name(day, count), names)
        dashboard.press("Back")
        dashboard.wait_for("Last 7 Days")

    def refresh_reads_anew_and_the_view_follows(self, dashboard):
        dashboard.open()
        for count, act in ((4, dashboard.click), (5, dashboard.press)):
            dashboard.repositories["busy"].commit_unheard(dashboard.now.now)
            act("Refresh")
            wait_until(lambda count=count: any(f"{count} today" in text
                                               for text in dashboard.window().texts()), "the new commit")

    def a_repository_opens_in_the_file_manager_and_the_dashboard_makes_way(self, dashboard):
        desktop = dashboard.desktop
        desktop.start_file_manager()
        for name, act in (("busy", dashboard.click), ("quiet one", dashboard.press)):
            dashboard.open()
            act(dashboard.row_name(name))
            dashboard.wait_until_closed()
            desktop.windows.wait_for_folder(name)


if __name__ == "__main__":
    case.main()
