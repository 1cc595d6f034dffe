# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""The options of the tab General are written as they are chosen, and kept."""

import unittest

import case
import preferences
from desktop import Desktop
from repositories import Repository
from settings import Session, all_named
from waiting import wait_until

COUNT = "Show streak count in menu bar"
REMINDER = "Remind me if streak is at risk"


class General(unittest.TestCase):

    def assert_options(self, desktop, **changed):
        """The whole file is as at first, but for what has changed."""
        expected = {"autoDiscoveryEnabled": True, "countedAuthors": "everyone", "countedBranches": "default",
                    "notifyOnStreakRisk": True, "refreshInterval": 300, "showStreakInMenuBar": True,
                    "watchedFolders": {"data": "[]"}, **changed}

        def stored():
            document = preferences.read(desktop.config)
            document.pop("trackedRepositories")
            return document == expected
        wait_until(stored, f"on the disk: {expected}")

    def test_every_option_is_written_at_once_and_kept(self):
        now = case.now_in("UTC")
        with Desktop(self.id()) as desktop:
            repository = Repository(desktop.home / "one")
            repository.commit_days_ago(now, 0, 1)
            preferences.write_defaults(desktop.config, [repository.path])
            session = Session(desktop)
            session.open("General")
            texts = session.texts()
            for text in ("Startup", "Launch at login", "Display", "Notifications", "Refresh", "Check for new commits",
                         "Count commits", "About", "Version", "1.0.0"):
                self.assertIn(text, texts)
            self.assert_options(desktop)

            session.click(COUNT)
            session.wait_for_state(COUNT, "checked", False)
            self.assert_options(desktop, showStreakInMenuBar=False)
            session.click(REMINDER)
            session.wait_for_state(REMINDER, "checked", False)
            changed = {"showStreakInMenuBar": False, "notifyOnStreakRisk": False}
            self.assert_options(desktop, **changed)
            session.choose_from("Every 5 minutes", "Every hour")
            self.assert_options(desktop, **changed, refreshInterval=3600)
            self.assertEqual(session.item.label(), " 2")

            self.assertEqual(session.end(), (0, ""))
            session.start()
            self.assertEqual(session.item.label(), " 2")
            session.open("General")
            window = session.window()
            states = {name: "checked" in window.find(name).states for name in ("Launch at login", COUNT, REMINDER)}
            self.assertEqual(states, {"Launch at login": False, COUNT: False, REMINDER: False})
            self.assertTrue(all_named(window, "Every hour", "combo box"))
            self.assert_options(desktop, **changed, refreshInterval=3600)
            self.assertEqual(session.end(), (0, ""))

    def test_other_commits_count_as_soon_as_they_are_chosen(self):
        now = case.now_in("UTC")
        with Desktop(self.id()) as desktop:
            repository = Repository(desktop.home / "one")
            repository.commit_days_ago(now, 0, 1)
            repository.run("checkout", "--quiet", "-b", "side", "HEAD~1")
            repository.commit_days_ago(now, 2)
            repository.run("checkout", "--quiet", "main")
            repository.run("config", "user.email", "ADA@example.org")
            repository.commit_days_ago(now, 3, options=["--author=Bob <bob@example.org>"])
            other = Repository(desktop.home / "other")
            other.commit_days_ago(now, 4)
            preferences.write_defaults(desktop.config, [repository.path, other.path])
            session = Session(desktop)
            self.assertEqual(session.item.label(), " 2")
            session.open("General")

            session.choose_from("By everyone, default branch", "By everyone, all branches")
            session.item.wait_for_label(" 5")
            other.run("checkout", "--quiet", "-b", "feature/late")
            other.commit_days_ago(now, 5)
            session.item.wait_for_label(" 6")
            session.press("alt+o", "Down")
            session.item.wait_for_label(" 3")
            self.assert_options(desktop, countedAuthors="me", countedBranches="all")
            self.assertIn("Everyone's commits count in other: git knows no address of yours there",
                          session.item.tooltip()[1])
            session.press("Home")
            session.item.wait_for_label(" 2")
            self.assertNotIn("address", session.item.tooltip()[1])
            self.assertEqual(session.end(), (0, ""))


if __name__ == "__main__":
    case.main()
