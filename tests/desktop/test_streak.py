# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""The figure in the panel is the true streak of real repositories, and moves with them."""

import unittest

import case
import preferences
from desktop import Desktop
from item import PanelPlace, StatusItem, click_first_entry, open_menu
from program import Program
from repositories import Repository

ZONE = "Asia/Kolkata"


class Streak(unittest.TestCase):

    def test_the_streak_of_two_repositories_grows_with_a_commit_and_follows_a_refresh(self):
        noon = case.ShiftedTime(12, 0, ZONE)
        with Desktop(self.id()) as desktop:
            one, other = Repository(desktop.home / "one"), Repository(desktop.home / "other one")
            one.commit_days_ago(noon.now, 1, 2, 4)
            other.commit_days_ago(noon.now, 2, 3, 6)
            preferences.write(desktop.config, [one.path, other.path])
            desktop.start_panel()
            place = PanelPlace(desktop.screen)
            program = Program(desktop, ZONE, noon.offset)
            item = StatusItem(desktop)
            item.wait_for_label(" 4")
            self.assertIn("4", " ".join(item.tooltip()))
            self.assertEqual(item.entries(), ["Refresh", None, "Quit Velquarin"])

            yesterday = one.head()
            one.commit(noon.now)
            item.wait_for_label(" 5")
            self.assertIn("5", " ".join(item.tooltip()))

            one.write_head(yesterday)
            click_first_entry(desktop.screen, open_menu(desktop, place.find()))
            item.wait_for_label(" 4")
            self.assertEqual(program.end(), 0)

    def test_without_a_streak_only_the_flame_shows(self):
        noon = case.ShiftedTime(12, 0, "UTC")
        with Desktop(self.id()) as desktop:
            repository = Repository(desktop.home / "repository")
            repository.commit_days_ago(noon.now, 2)
            preferences.write(desktop.config, [repository.path])
            desktop.start_panel()
            program = Program(desktop, "UTC", noon.offset)
            item = StatusItem(desktop)
            item.wait_until_refreshed()
            self.assertEqual(item.label(), "")
            self.assertEqual(program.end(), 0)


if __name__ == "__main__":
    case.main()
