# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""The day is over, and the reminder of it goes by itself."""

import datetime
import unittest

import case
from notifications import Dunst, XfceNotifyd
from reminding import ZONE, evening

# Room for the program to start and for its reminder to come, on a machine that does other things meanwhile.
SECONDS_BEFORE = 15
PATIENCE = 30.0


def shortly_before_midnight():
    return case.ShiftedTime(23, 59, ZONE, second=60 - SECONDS_BEFORE)


class Midnight(unittest.TestCase):

    def test_midnight_takes_the_reminder_back_in_every_server(self):
        for kind in (Dunst, XfceNotifyd):
            with self.subTest(kind.__name__), evening(self.id(), kind, shortly_before_midnight) as user:
                self.assertLess(self.user_time(user), self.midnight(user), "the reminder came too late for this test")
                user.wait_without_reminder(PATIENCE)
                self.assertGreaterEqual(self.user_time(user), self.midnight(user))

    def user_time(self, user):
        return case.now_in(ZONE) + datetime.timedelta(seconds=user.time.offset)

    def midnight(self, user):
        tomorrow = user.time.now + datetime.timedelta(days=1)
        return tomorrow.replace(hour=0, minute=0, second=0, microsecond=0)


if __name__ == "__main__":
    case.NEEDED.update(XfceNotifyd.NEEDED)
    case.main()
