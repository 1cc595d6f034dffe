# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""Repositories are added, scanned for, disabled and removed in the settings, and everything else follows."""

import json
import re
import unittest

import case
import preferences
from desktop import Desktop
from repositories import Repository
from settings import ADD, SCAN, Session, all_named
from waiting import wait_until

NOW = case.ShiftedTime(12, 0, "UTC")
ID = re.compile("[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}")


def record(path, **other):
    return {"path": str(path), "name": path.name, "isEnabled": True, "isAutoDiscovered": False, **other}


def made(path, *days):
    """A repository with a commit on each of these days, counted back from today."""
    Repository(path).commit_days_ago(NOW.now, *days)
    return path


def names_in(window):
    """The repositories of the list, as the names of their check boxes."""
    return [node.name for node in window.shown() if node.role == "check box"]


class Repositories(unittest.TestCase):

    def assert_stored(self, desktop, *expected):
        """The whole file is as it ought to be, but for ids that are new."""
        def stored():
            return preferences.records(desktop.config, "trackedRepositories")[1] == list(expected)
        wait_until(stored, "the list on the disk")
        ids, records = preferences.records(desktop.config, "trackedRepositories")
        self.assertTrue(all(ID.fullmatch(one) for one in ids), ids)
        self.assertEqual(len(set(ids)), len(expected))
        self.assertEqual(records, list(expected))
        document = preferences.read(desktop.config)
        self.assertEqual(json.loads(document.pop("trackedRepositories")["data"]),
                         [{"id": one, **rest} for one, rest in zip(ids, expected)])
        self.assertEqual(document, {"autoDiscoveryEnabled": True, "countedAuthors": "everyone",
                                    "countedBranches": "default", "notifyOnStreakRisk": True, "refreshInterval": 300,
                                    "showStreakInMenuBar": True, "watchedFolders": {"data": "[]"}})

    def assert_dashboard(self, session, *wanted, without=()):
        window = session.open_dashboard()
        for text in wanted:
            self.assertIn(text, window.texts())
        for text in without:
            self.assertFalse([found for found in window.texts() if found.startswith(text)])
        session.close_dashboard()

    def test_the_first_one_is_added_and_shown_everywhere(self):
        with Desktop(self.id()) as desktop:
            path = made(desktop.home / "work" / "first", 0, 1, 2)
            session = Session(desktop, clock_offset=NOW.offset)
            session.open()
            empty = session.texts()
            for text in ("0 repos", "No Repositories", "Add git repositories to track your commit streak"):
                self.assertIn(text, empty)
            self.assertNotIn("Refresh Now", empty)

            session.choose("Add Repository", ADD, path)
            window = session.wait_for_text("1 repos")
            self.assertEqual(names_in(window), ["first"])
            self.assertIn(str(path), window.texts())
            self.assertNotIn("No Repositories", window.texts())
            self.assert_stored(desktop, record(path))
            session.item.wait_for_label(" 3")
            self.assertIn("3", " ".join(session.item.tooltip()))
            self.assert_dashboard(session, "3", "1 tracked", "first, 1 today")

            self.assertEqual(session.end(), (0, ""))
            session.start()
            self.assert_stored(desktop, record(path))
            self.assertEqual(session.item.label(), " 3")
            session.open()
            self.assertEqual(names_in(session.window()), ["first"])
            self.assertEqual(session.end(), (0, ""))

    def test_a_scan_adds_what_is_not_yet_tracked_and_says_when_nothing_is(self):
        with Desktop(self.id()) as desktop:
            shelf = desktop.home / "shelf"
            known, other = made(shelf / "known", 0), made(shelf / "deeper" / "other", 0, 1)
            (desktop.home / "bare shelf").mkdir()
            session = Session(desktop, clock_offset=NOW.offset)
            session.open()
            session.choose("Add Repository", ADD, known)
            session.wait_for_text("1 repos")

            session.choose("Scan Folder", SCAN, shelf)
            window = session.wait_for_text("2 repos")
            self.assertEqual(names_in(window), ["known", "other"])
            self.assertNotIn("Auto", window.texts())
            session.item.wait_for_label(" 2")
            self.assert_stored(desktop, record(known), record(other))

            session.choose("Scan Folder", SCAN, shelf)
            session.wait_for_text("Found 2 repos, all already tracked")
            session.choose("Scan Folder", SCAN, desktop.home / "bare shelf")
            session.wait_for_text("No git repositories found in selected folder")
            self.assert_stored(desktop, record(known), record(other))
            self.assertEqual(session.end(), (0, ""))

    def test_one_that_is_disabled_or_removed_counts_no_longer_from_the_next_refresh_on(self):
        with Desktop(self.id()) as desktop:
            paths = [made(desktop.home / name, *days)
                     for name, days in (("long", (0, 1, 2, 3)), ("middle", (0, 1)), ("short", (0,)))]
            preferences.write_defaults(desktop.config, paths)
            session = Session(desktop, clock_offset=NOW.offset)
            session.open()
            self.assertEqual(session.item.label(), " 4")

            session.click("long", "check box")
            session.wait_for_state("long", "checked", False)
            self.assert_stored(desktop, record(paths[0], isEnabled=False), record(paths[1]), record(paths[2]))
            self.assertEqual(session.item.label(), " 4")
            session.click("Refresh Now")
            session.item.wait_for_label(" 2")
            self.assert_dashboard(session, "middle, 1 today", "short, 1 today", without=["long"])

            session.click("Remove", number=1)
            window = session.wait_for_text("2 repos")
            self.assertEqual(names_in(window), ["long", "short"])
            self.assert_stored(desktop, record(paths[0], isEnabled=False), record(paths[2]))
            self.assertEqual(session.item.label(), " 2")
            session.click("Refresh Now")
            session.item.wait_for_label(" 1")

            self.assertEqual(session.end(), (0, ""))
            session.start()
            session.open()
            window = session.window()
            self.assertEqual(["checked" in all_named(window, name, "check box")[0].states for name in ("long", "short")],
                             [False, True])
            self.assertEqual(session.item.label(), " 1")
            self.assertEqual(session.end(), (0, ""))


if __name__ == "__main__":
    case.main()
