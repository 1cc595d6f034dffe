# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""A dashboard that is opened and closed for months takes no more memory than one that is new, and closed it sleeps."""

import os
import time
import unittest

import case
from dashboard import WINDOW
from desktop import Desktop
from item import PanelPlace, StatusItem
from program import Program
from repositories import tracked_days_ago
from usage import own_kilobytes, proportional_kilobytes, wait_for_quiet, wakings_within
from waiting import wait_until

# A few months of use; a part of it is what every run of the tests can spare.
ALL = int(os.environ.get("VELQUARIN_OPENINGS", "1000" if case.IS_WHOLE else "200"))
FIRST = max(ALL // 10, 50)
GROWTH_KILOBYTES = 128 if ALL >= 1000 else 64
SECONDS_ASLEEP = 5.0


class Openings:
    """Opens and closes the dashboard as fast as it goes, each time painted and gone before the next."""

    def __init__(self, desktop, place):
        self._windows, self._place = desktop.windows, place
        self._item, self._drawings = StatusItem(desktop), desktop.windows.drawings
        self._windows.watch()
        self._toggle()
        self._dashboard = wait_until(lambda: dict(self._windows.unmanaged()).get(WINDOW), "the dashboard")
        self._drawings.wait_for_quiet()
        self._toggle()
        self._windows.wait_for_going()
        self._drawings.wait_for_quiet()

    def _toggle(self):
        self._item.activate(*self._place.centre)

    def repeat(self, times):
        for _ in range(times):
            self._toggle()
            self._windows.wait_for_coming()
            if not self._drawings.next_in(self._dashboard):
                raise TimeoutError("the dashboard is not painted")
            self._toggle()
            self._windows.wait_for_going()


class Memory(unittest.TestCase):

    def test_many_openings_leave_nothing_behind(self):
        with Desktop(self.id()) as desktop:
            tracked_days_ago(desktop, case.now_in("UTC"), 0, 1)
            desktop.start_panel()
            place = PanelPlace(desktop.screen)
            program = Program(desktop)
            StatusItem(desktop).wait_until_refreshed()
            openings = Openings(desktop, place.find())

            openings.repeat(FIRST)
            wait_for_quiet(program.pid)
            before = own_kilobytes(program.pid)
            began = time.monotonic()
            openings.repeat(ALL - FIRST)
            took = time.monotonic() - began
            wait_for_quiet(program.pid)
            after = own_kilobytes(program.pid)
            print(f"after {FIRST} openings {before} kB of its own, after {ALL} {after} kB; PSS "
                  f"{proportional_kilobytes(program.pid)} kB; {1000 * took / (ALL - FIRST):.1f} ms for one")
            self.assertLessEqual(after - before, GROWTH_KILOBYTES)

            self.assertEqual(wakings_within(program.pid, SECONDS_ASLEEP), {})
            self.assertEqual(program.end(), 0)


if __name__ == "__main__":
    case.main()
