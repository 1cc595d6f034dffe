# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""Folders are watched by the settings, and what is found below them is tracked and told."""

import datetime
import unittest
import zoneinfo

import case
import preferences
from desktop import Desktop
from repositories import Repository
from settings import WATCH, Session, all_named
from waiting import wait_until

ZONE = "Asia/Kolkata"
NOW = case.ShiftedTime(21, 41, ZONE)
OFFSET = datetime.timedelta(seconds=NOW.offset)


def made(*paths):
    for path in paths:
        Repository(path).commit_days_ago(NOW.now, 0)


def last_scan(desktop):
    """The stored moment on the user's clock; None while there is none."""
    stored = preferences.read(desktop.config).get("lastAutoDiscoveryScan")
    if not stored:
        return None
    return datetime.datetime.fromisoformat(stored["date"].replace("Z", "+00:00")).astimezone(zoneinfo.ZoneInfo(ZONE))


def discovered(window):
    """The lines below "Recently discovered:"."""
    texts = [node.name for node in window.shown() if node.role == "label"]
    return texts[texts.index("Recently discovered:") + 1:]


class Folders(unittest.TestCase):

    def tracked(self, desktop):
        return [record["path"] for record in preferences.records(desktop.config, "trackedRepositories")[1]]

    def to_the_second(self):
        """The user's time, as it is stored."""
        return (case.now_in(ZONE) + OFFSET).replace(microsecond=0)

    def assert_folders(self, desktop, *expected):
        def stored():
            return preferences.records(desktop.config, "watchedFolders")[1] == list(expected)
        wait_until(stored, f"the folders on the disk: {expected}")

    def test_what_is_found_in_a_watched_folder_is_tracked_and_told(self):
        with Desktop(self.id()) as desktop:
            shelf = desktop.home / "shelf"
            made(*(shelf / f"book {number}" for number in range(5)))
            made(shelf / "1" / "2" / "3" / "4" / "5" / "6" / "deep")
            session = Session(desktop, zone=ZONE, clock_offset=NOW.offset)
            session.open("Auto-Discover")
            empty = session.texts()
            for text in ("No Watched Folders", "Add folders to automatically discover new git repositories"):
                self.assertIn(text, empty)
            self.assertNotIn("Scan Now", empty)

            before = self.to_the_second()
            session.choose("Add Folder", WATCH, shelf)
            window = session.wait_for_text("...and 2 more")
            found = wait_until(lambda: self.tracked(desktop), "the list on the disk")
            self.assertEqual(sorted(found), [str(shelf / f"book {number}") for number in range(5)])
            self.assertEqual(discovered(window),
                             [f"+ {path.rpartition('/')[2]}" for path in found[:3]] + ["...and 2 more"])
            self.assertTrue(before <= last_scan(desktop) <= case.now_in(ZONE) + OFFSET, last_scan(desktop))
            self.assertIn(f"Last scan: {last_scan(desktop).strftime('%-I:%M %p')}", window.texts())
            folder = {"path": str(shelf), "name": "shelf", "isEnabled": True, "maxDepth": 5}
            self.assert_folders(desktop, folder)

            session.choose("Add Folder", WATCH, shelf)
            session.wait_for_text("This folder is already being watched")

            session.choose_from("5", "10")
            self.assert_folders(desktop, {**folder, "maxDepth": 10})
            self.assertEqual(len(self.tracked(desktop)), 5)
            session.click("Scan Now")
            window = session.wait_for_text("+ deep")
            self.assertEqual(discovered(window)[0], "+ deep")
            wait_until(lambda: set(self.tracked(desktop)) - set(found) == {str(shelf / "1/2/3/4/5/6/deep")},
                       "the one that lies deep on the disk", state=lambda: self.tracked(desktop))

            self.assertEqual(session.end(), (0, ""))
            desktop.environment["LC_TIME"] = "de_DE.UTF-8"
            session.start()
            session.open("Auto-Discover")
            window = session.window()
            self.assertIn(f"Last scan: {last_scan(desktop).strftime('%H:%M')}", window.texts())
            self.assertNotIn("Recently discovered:", window.texts())
            self.assertTrue(all_named(window, "10", "combo box"))
            session.turn_to("Repositories")
            window = session.window()
            self.assertEqual(len([node for node in window.shown() if node.name == "Auto"]),
                             len([node for node in window.shown() if node.role == "check box"]))
            session.item.wait_for_label(" 1")
            self.assertEqual(session.end(), (0, ""))

    def test_folders_are_switched_off_and_removed_and_the_repositories_stay_for_the_time_being(self):
        with Desktop(self.id()) as desktop:
            first, second = desktop.home / "first", desktop.home / "second"
            made(first / "one", second / "two")
            session = Session(desktop, zone=ZONE, clock_offset=NOW.offset)
            session.open("Auto-Discover")
            session.choose("Add Folder", WATCH, first)
            session.wait_for_text("+ one")
            session.choose("Add Folder", WATCH, second)
            session.wait_for_text("+ two")

            session.click("Auto-discover repos")
            session.wait_for_state("Auto-discover repos", "checked", False)
            session.click("second", "check box")
            records = [{"path": str(path), "name": path.name, "isEnabled": path == first, "maxDepth": 5}
                       for path in (first, second)]
            self.assert_folders(desktop, *records)
            session.click("Remove")
            session.wait_without_text("first")
            self.assert_folders(desktop, records[1])

            _, tracked = preferences.records(desktop.config, "trackedRepositories")
            self.assertEqual([(record["path"], record["isAutoDiscovered"]) for record in tracked],
                             [(str(first / "one"), True), (str(second / "two"), True)])
            document = preferences.read(desktop.config)
            self.assertEqual(document.keys(), {"autoDiscoveryEnabled", "countedAuthors", "countedBranches",
                                               "lastAutoDiscoveryScan", "notifyOnStreakRisk", "refreshInterval",
                                               "showStreakInMenuBar", "trackedRepositories",
                                               "watchedFolders"})
            self.assertEqual([document[key] for key in ("autoDiscoveryEnabled", "notifyOnStreakRisk",
                                                        "refreshInterval", "showStreakInMenuBar")],
                             [False, True, 300, True])

            self.assertEqual(session.end(), (0, ""))
            session.start()
            session.open("Auto-Discover")
            window = session.window()
            self.assertNotIn("checked", window.find("Auto-discover repos").states)
            self.assertNotIn("checked", window.find("second", "check box").states)
            session.click("Remove")
            session.wait_for_text("No Watched Folders")
            self.assert_folders(desktop)
            self.assertEqual(session.end(), (0, ""))


if __name__ == "__main__":
    case.main()
