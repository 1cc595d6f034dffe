#!/usr/bin/python3 -B
# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""How long it takes from a click on the item to the whole dashboard on the screen. A figure, not a verdict.

opening.py [BUILD [TIMES]]   BUILD: a release build of everything, as ./bench makes it

The screen is one in memory, with a panel. A click counts from the release of the button, which is what the panel takes
for one; the same is told for an Activate on the session bus, which leaves the panel out. It ends when the X server says
that something was drawn after which the dashboard looks as it does at rest, the line of the last refresh left out: that
is a text that counts on.
"""

import os
import pathlib
import statistics
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "desktop"))

from gi.repository import GLib
from Xlib import X

import case
import preferences
from desktop import Desktop
from item import ITEM, PanelPlace, StatusItem
from program import Program
from repositories import Repository
from waiting import wait_until

REPOSITORIES = 10
FOOTER_HEIGHT = 40


class Opening:
    """One program, opened and closed again and again."""

    def __init__(self, desktop, place):
        self.desktop, self.windows, self.place = desktop, desktop.windows, place
        self.drawings = desktop.windows.drawings
        self.item = StatusItem(desktop).wait()
        self.click()
        self.dashboard = wait_until(self.dashboard_place, "the dashboard")
        self.drawings.wait_for_quiet()
        self.whole = self.drawings.picture(self.above_footer())
        self.close()

    def dashboard_place(self):
        places = [place for title, place in self.windows.unmanaged() if title == "Velquarin"]
        return places[0] if places else None

    def above_footer(self):
        return self.dashboard._replace(bottom=self.dashboard.bottom - FOOTER_HEIGHT)

    def click(self):
        """The moment before the button goes up again."""
        self.windows.point(*self.place.centre)
        self.windows.button(X.ButtonPress)
        self.drawings.wait_for_quiet()
        start = time.monotonic()
        self.windows.button(X.ButtonRelease)
        return start

    def activate(self):
        start = time.monotonic()
        self.desktop.bus.send(*self.item, ITEM, "Activate", GLib.Variant("(ii)", self.place.centre))
        return start

    def close(self):
        self.click()
        wait_until(lambda: not self.dashboard_place(), "no dashboard")
        self.drawings.wait_for_quiet()

    def milliseconds(self, act):
        """From act() to the drawing after which all is there; the server says how much later the last one came."""
        start = act()
        while first := self.drawings.next_in(self.dashboard):
            heard = time.monotonic()
            if self.drawings.picture(self.above_footer()) != self.whole:
                continue
            last = first
            while more := self.drawings.next_in(self.dashboard, 0.001):
                last = more
            return 1000 * (heard - start) + (last.timestamp - first.timestamp)
        raise TimeoutError("the dashboard does not come")


def prepare(desktop, now):
    repositories = [Repository(desktop.home / f"repository {number}") for number in range(REPOSITORIES)]
    for repository in repositories:
        repository.commit_days_ago(now, 0, 1, 2)
    preferences.write(desktop.config, [repository.path for repository in repositories])


def figures(desktop, times):
    """Yields each way of opening it and the milliseconds of all its times."""
    now = case.ShiftedTime(12, 0, "UTC")
    prepare(desktop, now.now)
    desktop.start_panel()
    in_panel = PanelPlace(desktop.screen)
    program = Program(desktop)
    StatusItem(desktop).wait_until_refreshed()
    opening = Opening(desktop, in_panel.find())
    for what, act in (("release on the item", opening.click), ("Activate on the bus", opening.activate)):
        measured = []
        for _ in range(times):
            measured.append(opening.milliseconds(act))
            opening.drawings.wait_for_quiet()
            opening.close()
        yield what, measured
    program.end()
    yield "the first release after a start", [_first(desktop, opening) for _ in range(5)]


def _first(desktop, opening):
    """A program makes its dashboard when it is first wanted."""
    program = Program(desktop)
    StatusItem(desktop).wait_until_refreshed()
    opening.drawings.wait_for_quiet()
    measured = opening.milliseconds(opening.click)
    program.end()
    return measured


def main(arguments):
    build = pathlib.Path(arguments[0] if arguments else "build/bench").resolve()
    os.environ["VELQUARIN_PROGRAM"] = str(build / "velquarin")
    with Desktop("opening") as desktop:
        for what, measured in figures(desktop, int(arguments[1]) if len(arguments) > 1 else 20):
            print(f"from {what} to the painted dashboard: median {statistics.median(measured):.1f} ms, "
                  f"from {min(measured):.1f} to {max(measured):.1f} ms, {len(measured)} times")


if __name__ == "__main__":
    main(sys.argv[1:])
