# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""An evening with a streak at risk, and the reminder of it on the screen."""

import contextlib

import case
from desktop import NOTIFICATIONS, Desktop
from item import StatusItem
from program import Program
from repositories import tracked_days_ago
from waiting import wait_until

ZONE = "UTC"
SENT = "Streak risk notification sent\n"
DASHBOARD = "Velquarin"
BODY = "You haven't committed today. Your 3-day streak will reset at midnight!"


class Evening:
    """The program at seven, whose reminder a server of that kind shows."""

    def __init__(self, desktop, make_server):
        self.desktop = desktop
        self.time = case.ShiftedTime(19, 0, ZONE)
        self.repository = tracked_days_ago(desktop, self.time.now, 1, 2, 3)
        desktop.start_panel()
        self.server = make_server(desktop)
        self.program = Program(desktop, ZONE, self.time.offset)
        self.item = StatusItem(desktop)
        wait_until(self.server.place, "the reminder")

    def has_dashboard(self):
        return any(title == DASHBOARD for title, _ in self.desktop.windows.unmanaged())

    def wait_until_heard(self):
        """Returns when the server has dealt with what its user did before, and then the program with what it was told."""
        for _ in range(2):
            self.desktop.bus.call(NOTIFICATIONS, "/org/freedesktop/Notifications", NOTIFICATIONS, "GetCapabilities")
        self.item.symbol()

    def wait_without_reminder(self):
        wait_until(lambda: not self.server.place(), "the reminder goes")


@contextlib.contextmanager
def evening(name, make_server):
    """On a desktop of its own. Afterwards the program has said its one line, and ended well."""
    with Desktop(name) as desktop:
        new = Evening(desktop, make_server)
        yield new
        assert new.program.end() == 0
        assert (new.program.output(), new.program.errors()) == (SENT, "")
