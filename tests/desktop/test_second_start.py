# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""There is one program a session, however often it is started."""

import unittest

import case
from desktop import Desktop
from item import StatusItem
from program import BUS_NAME, Program
from repositories import tracked_days_ago


class SecondStart(unittest.TestCase):

    def test_the_second_ends_and_the_first_stays(self):
        now = case.now_in("UTC")
        with Desktop(self.id()) as desktop:
            tracked_days_ago(desktop, now, 0, 1)
            desktop.start_panel()
            first = Program(desktop)
            item = StatusItem(desktop)
            item.wait_until_refreshed()
            owner, address = desktop.bus.owner(BUS_NAME), item.wait()

            second = Program(desktop)
            self.assertEqual(second.wait_for_end(), 0)
            self.assertTrue(first.is_running())
            self.assertEqual((desktop.bus.owner(BUS_NAME), item.wait()), (owner, address))
            self.assertEqual(desktop.bus.process_of(BUS_NAME), first.pid)
            self.assertEqual(first.end(), 0)


if __name__ == "__main__":
    case.main()
