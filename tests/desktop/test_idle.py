# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""While nothing is shown and no refresh is due, the program does not wake up at all, also where others look at what it
reads."""

import os
import unittest

import case
from desktop import Desktop
from item import StatusItem
from program import Program
from repositories import tracked_days_ago
from usage import proportional_kilobytes, wakings_within, wait_for_quiet, wakings

# How long it is watched: a minute says more, a third of it is what every run of the tests can spare.
SECONDS = float(os.environ.get("VELQUARIN_IDLE_SECONDS", "60" if case.IS_WHOLE else "20"))


class Idle(unittest.TestCase):

    def test_no_thread_wakes_up(self):
        now = case.now_in("UTC")
        with Desktop(self.id()) as desktop:
            repository = tracked_days_ago(desktop, now, 0, 1)
            desktop.start_panel()
            program = Program(desktop)
            StatusItem(desktop).wait_until_refreshed()
            wait_for_quiet(program.pid)
            self.assertEqual(wakings_within(program.pid, SECONDS), {})
            self.assertEqual(wakings_within(program.pid, SECONDS, repository.look_at_the_working_tree), {})
            print(f"{len(wakings(program.pid))} threads slept for {SECONDS:g} s; "
                  f"PSS {proportional_kilobytes(program.pid)} kB")
            self.assertEqual(program.end(), 0)


if __name__ == "__main__":
    case.main()
