# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""While nothing is shown and no refresh is due, the program does not wake up at all."""

import os
import pathlib
import time
import unittest

import case
from desktop import Desktop
from item import StatusItem
from program import Program
from repositories import tracked_days_ago
from waiting import wait_until

# How long it is watched: a minute says more, a third of it is what every run of the tests can spare.
SECONDS = float(os.environ.get("VELQUARIN_IDLE_SECONDS", "20"))


def _number(text, name):
    return next(int(line.split()[1]) for line in text.splitlines() if line.startswith(name))


def wakings(pid):
    """How often each of the threads has gone to sleep so far, by thread id."""
    tasks = pathlib.Path(f"/proc/{pid}/task").iterdir()
    return {task.name: _number((task / "status").read_text(), "voluntary_ctxt_switches:") for task in tasks}


def proportional_kilobytes(pid):
    return _number(pathlib.Path(f"/proc/{pid}/smaps_rollup").read_text(), "Pss:")


class Idle(unittest.TestCase):

    def wait_for_quiet(self, pid):
        """The starting is over when a whole second has passed in sleep."""
        def sleeps_for_a_second():
            before = wakings(pid)
            time.sleep(1)
            return wakings(pid) == before
        wait_until(sleeps_for_a_second, "the program comes to rest")

    def test_no_thread_wakes_up(self):
        now = case.now_in("UTC")
        with Desktop(self.id()) as desktop:
            tracked_days_ago(desktop, now, 0, 1)
            desktop.start_panel()
            program = Program(desktop)
            StatusItem(desktop).wait_until_refreshed()
            self.wait_for_quiet(program.pid)
            before = wakings(program.pid)
            time.sleep(SECONDS)
            self.assertEqual(wakings(program.pid), before)
            print(f"{len(before)} threads slept for {SECONDS:g} s; "
                  f"PSS {proportional_kilobytes(program.pid)} kB")
            self.assertEqual(program.end(), 0)


if __name__ == "__main__":
    case.main()
