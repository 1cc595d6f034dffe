# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""The program with its dashboard, opened by a real click and read as a screen reader does."""

import datetime

import accessibility
import case
import preferences
from item import PanelPlace, StatusItem
from program import Program, wait_until_through
from repositories import Repository
from waiting import act_until, wait_until

WINDOW = "Velquarin"
SETTINGS = "Settings"

# By name, the days with commits, counted back from today.
DAYS = {"busy": (0, 0, 0, 1, 2, 5), "quiet one": (1, 3), "empty": ()}
STREAK = " 4"


def counts_by_day():
    """Commits of all repositories together, by the number of days ago."""
    all_days = [day for days in DAYS.values() for day in days]
    return {day: all_days.count(day) for day in set(all_days)}


def expected_columns(now):
    """What a screen reader says for the week that ends on the day of now, the oldest day first."""
    columns = []
    for ago in range(6, -1, -1):
        weekday = (now - datetime.timedelta(days=ago)).strftime("%a")
        columns.append(f"{weekday}, {counts_by_day().get(ago, 0)}")
    return columns


def cell_name(day, count):
    """What a screen reader says for a day of the heat map."""
    return f"{day.strftime('%b')} {day.day}, {day.year}: {count} commit{'' if count == 1 else 's'}"


class Dashboard:
    """The program on a desktop with two repositories and one without a commit, its dashboard not yet open.

    prepare  is called with the repositories by name before the program starts
    given    further environment variables of the program
    streak   the item's label for which it waits; None where the first refresh is to be met while it runs
    """

    def __init__(self, desktop, prepare=lambda _: None, streak=STREAK,
                 given=None):
        self.desktop = desktop
        self.now = case.ShiftedTime(12, 0, "UTC")
        self.repositories = self._make_repositories(self.now.now)
        preferences.write(desktop.config, [repository.path for repository in self.repositories.values()])
        prepare(self.repositories)
        accessibility.start(desktop)
        desktop.start_panel()
        place = PanelPlace(desktop.screen)
        self.program = Program(desktop, "UTC", self.now.offset, given=given)
        self.item = StatusItem(desktop)
        if streak is not None:
            self.item.wait_for_label(streak)
        self.rectangle = place.find()
        self.reader = accessibility.Reader(desktop)

    def _make_repositories(self, now):
        repositories = {name: Repository(self.desktop.home / name) for name in DAYS}
        for name, days in DAYS.items():
            repositories[name].commit_days_ago(now, *days)
        return repositories

    def click_item(self, button=1):
        self.desktop.screen.click(*self.rectangle.centre, button)

    def window(self):
        return self.reader.window(WINDOW)

    def open(self):
        window = act_until(self.click_item, self.window, f"the window {WINDOW!r}", state=self.reader.texts)
        wait_until_through(self.desktop.bus)
        return window

    def close(self):
        """Closes whatever of the program is open, by the key that does it."""
        for name in (SETTINGS, WINDOW):
            if self.reader.window(name):
                self.press_key("Escape")
                self.reader.wait_without_window(name)
        self._wait_for_the_pointer()

    def wait_until_closed(self):
        self.reader.wait_without_window(WINDOW)
        self._wait_for_the_pointer()

    def _wait_for_the_pointer(self):
        wait_until(self.desktop.windows.nobody_holds_the_pointer, "the pointer is free")

    def wait_for(self, name):
        return self.reader.wait_for(WINDOW, name)

    def click(self, name):
        self.desktop.screen.click(*self.wait_for(name).centre, 1)

    def press(self, name):
        """As a screen reader does, without the pointer."""
        self.reader.press(WINDOW, name)

    def press_key(self, key):
        self.desktop.screen.press(key)

    def row_name(self, repository):
        """The whole name of a repository's row."""
        return next(node.name for node in self.window().shown() if node.actions and node.name.startswith(repository))

    def focused_name(self):
        """What has the keyboard's focus: a control, or a day of the heat map; None where it is on nothing."""
        return self.reader.focused(WINDOW)

    def wait_for_focus(self, name):
        wait_until(lambda: self.focused_name() == name, f"the focus on {name!r}", state=self.focused_name)
