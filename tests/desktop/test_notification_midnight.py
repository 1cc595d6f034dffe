# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""The day is over, and the reminder of it goes by itself."""

import unittest

import case
from notifications import Dunst, XfceNotifyd
from reminding import evening

SECONDS_TO_MIDNIGHT = 5 * 3600


class Midnight(unittest.TestCase):

    def test_midnight_takes_the_reminder_back_in_every_server(self):
        for kind in (Dunst, XfceNotifyd):
            with self.subTest(kind.__name__), evening(self.id(), kind) as user:
                user.program.sleep(SECONDS_TO_MIDNIGHT - 3600)
                user.wait_until_heard()
                self.assertTrue(user.server.place())
                user.program.sleep(3600)
                user.wait_without_reminder()


if __name__ == "__main__":
    case.NEEDED.update(XfceNotifyd.NEEDED)
    case.main()
