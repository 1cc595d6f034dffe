# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""The dashboard, opened by a real click and read as a screen reader does."""

import datetime
import subprocess
import unittest

import accessibility
import case
import preferences
from desktop import Desktop
from item import PanelPlace, StatusItem
from program import Program
from repositories import Repository
from waiting import wait_until

WINDOW = "Velquarin"
FILE_MANAGER = "org.freedesktop.FileManager1"
DAYS = {"busy": (0, 0, 0, 1, 2, 5), "quiet one": (1, 3)}


class Opened:
    """The program on a desktop with two repositories and one without a commit, its dashboard not yet open."""

    def __init__(self, desktop):
        self.now = case.ShiftedTime(12, 0, "UTC")
        self.desktop = desktop
        self.repositories = {name: Repository(desktop.home / name) for name in (*DAYS, "empty")}
        for name, days in DAYS.items():
            self.repositories[name].commit_days_ago(self.now.now, *days)
        preferences.write(desktop.config, [repository.path for repository in self.repositories.values()])
        accessibility.start(desktop)
        desktop.start_panel()
        self.place = PanelPlace(desktop.screen)
        self.program = Program(desktop, "UTC", self.now.offset)
        self.item = StatusItem(desktop)
        self.item.wait_for_label(" 4")
        self.rectangle = self.place.find()
        self.reader = accessibility.Reader(desktop)

    def click_item(self):
        self.desktop.screen.click(*self.rectangle.centre, 1)

    def open(self):
        self.click_item()
        return self.reader.wait_for_window(WINDOW)

    def click(self, name):
        self.desktop.screen.click(*self.reader.wait_for(WINDOW, name).centre, 1)


def counts_by_day():
    """Commits of all repositories together, by the number of days ago."""
    all_days = [day for days in DAYS.values() for day in days]
    return {day: all_days.count(day) for day in set(all_days)}


def expected_columns(now):
    columns = []
    for ago in range(6, -1, -1):
        weekday = (now - datetime.timedelta(days=ago)).strftime("%a")
        columns.append(f"{weekday}, {counts_by_day().get(ago, 0)}")
    return columns


def position_of(texts, wanted):
    """Where the wanted texts stand in that order among the others."""
    positions, start = [], 0
    for text in wanted:
        start = texts.index(text, start)
        positions.append(start)
    return positions


class Dashboard(unittest.TestCase):

    def test_all_figures_are_shown_and_right(self):
        with Desktop(self.id()) as desktop:
            opened = Opened(desktop)
            texts = opened.open().texts()
            total = sum(counts_by_day().values())
            position_of(texts, ["4", "day streak", "Longest", "4 days", "This week", f"{total} commits", "Repos",
                                "3 tracked", "Today", "Committed!", "Last 7 Days", "Show Year",
                                *expected_columns(opened.now.now), "Repositories"])
            for name, last in (("busy", "3 today"), ("quiet one", "1 day ago"), ("empty", "No commits")):
                self.assertTrue(any(name in text and last in text for text in texts) or
                                position_of(texts, [name, last]), texts)
            self.assertTrue(any(text.startswith("Updated ") and text.endswith(" ago") for text in texts), texts)
            self.assertEqual(opened.program.end(), 0)

    def test_a_second_click_a_click_outside_and_escape_close_it(self):
        with Desktop(self.id()) as desktop:
            opened = Opened(desktop)
            for close in (opened.click_item, lambda: desktop.screen.click(100, 600, 1),
                          lambda: desktop.screen.press("Escape")):
                opened.open()
                close()
                opened.reader.wait_without_window(WINDOW)
                desktop.screen.settled()
                self.assertIsNone(opened.reader.window(WINDOW))
            self.assertEqual(opened.program.end(), 0)

    def test_the_year_is_shown_and_left_by_pointer_and_by_action(self):
        with Desktop(self.id()) as desktop:
            opened = Opened(desktop)
            opened.open()
            for act in (opened.click, lambda name: opened.reader.press(WINDOW, name)):
                act("Show Year")
                opened.reader.wait_for(WINDOW, "Last 365 Days")
                texts = opened.reader.window(WINDOW).texts()
                total, active = sum(counts_by_day().values()), len(counts_by_day())
                position_of(texts, ["Back", "Last 365 Days", f"{total} commits", f"{active} active days"])
                self.assertNotIn("Repositories", texts)
                act("Back")
                opened.reader.wait_for(WINDOW, "Last 7 Days")
            self.assertEqual(opened.program.end(), 0)

    def test_the_heat_map_tells_every_day(self):
        with Desktop(self.id()) as desktop:
            opened = Opened(desktop)
            opened.open()
            opened.reader.press(WINDOW, "Show Year")
            opened.reader.wait_for(WINDOW, "Last 365 Days")
            names = [node.name for node in opened.reader.window(WINDOW).walk()]
            for ago in range(365):
                day = opened.now.now - datetime.timedelta(days=ago)
                count = counts_by_day().get(ago, 0)
                text = f"{day.strftime('%b')} {day.day}, {day.year}: {count} commit{'' if count == 1 else 's'}"
                self.assertIn(text, names)
            self.assertEqual(opened.program.end(), 0)

    def test_refresh_reads_anew_and_the_view_follows(self):
        with Desktop(self.id()) as desktop:
            opened = Opened(desktop)
            opened.open()
            for count, act in ((4, opened.click), (5, lambda name: opened.reader.press(WINDOW, name))):
                opened.repositories["busy"].commit(opened.now.now)
                act("Refresh")
                wait_until(lambda count=count: any(f"{count} today" in text
                                                   for text in opened.reader.window(WINDOW).texts()), "the new commit")
            self.assertEqual(opened.program.end(), 0)

    def test_a_repository_opens_in_the_file_manager_and_the_dashboard_makes_way(self):
        with Desktop(self.id()) as desktop:
            opened = Opened(desktop)
            desktop.start("thunar", "thunar", "--daemon")
            desktop.bus.wait_for(FILE_MANAGER)
            for name, act in (("busy", self._click_row), ("quiet one", self._press_row)):
                opened.open()
                act(opened, name)
                opened.reader.wait_without_window(WINDOW)
                wait_until(lambda name=name: window_titled(desktop, name), f"a folder window of {name}")
            self.assertEqual(opened.program.end(), 0)

    @staticmethod
    def _row_name(opened, name):
        return next(node.name for node in opened.reader.window(WINDOW).shown()
                    if node.actions and node.name.startswith(name))

    def _click_row(self, opened, name):
        opened.click(self._row_name(opened, name))

    def _press_row(self, opened, name):
        opened.reader.press(WINDOW, self._row_name(opened, name))


def window_titled(desktop, text):
    return subprocess.run(["xdotool", "search", "--onlyvisible", "--name", f"^{text}"], env=desktop.environment,
                          stdout=subprocess.PIPE, check=False, timeout=20).stdout


if __name__ == "__main__":
    case.main()
