# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""Refreshes back to back: the last costs no more memory, descriptors or threads than an early one."""

import os
import pathlib
import unittest

import case
import preferences
from desktop import Desktop
from item import StatusItem
from program import Program
from repositories import Alternation
from usage import own_kilobytes, wait_for_quiet

# A day has 288 refreshes; a part of it is what every run of the tests can spare.
REFRESHES = int(os.environ.get("VELQUARIN_REFRESHES", "288" if case.IS_WHOLE else "40"))
FIRST = max(REFRESHES // 6, 15)
GROWTH_KILOBYTES = 256


def belongings(program):
    """How many descriptors, threads and children the program has."""
    process = pathlib.Path(f"/proc/{program.pid}")
    return len(list((process / "fd").iterdir())), len(list((process / "task").iterdir())), len(program.children())


class Day(unittest.TestCase):

    def test_a_day_of_refreshes_leaves_nothing_behind(self):
        now = case.now_in("UTC")
        with Desktop(self.id()) as desktop:
            alternation = Alternation(desktop.home / "repository", now)
            preferences.write(desktop.config, [alternation.repository.path])
            desktop.start_panel()
            program, item = Program(desktop), StatusItem(desktop)
            item.wait_for_label(" 2")

            def refresh(times):
                for _ in range(times):
                    label = alternation.turn()
                    item.choose("Refresh")
                    item.wait_for_label(label)
                wait_for_quiet(program.pid)
                return own_kilobytes(program.pid), belongings(program)

            before, had = refresh(FIRST)
            after, has = refresh(REFRESHES - FIRST)
            print(f"after {FIRST} refreshes {before} kB of its own, after {REFRESHES} {after} kB; "
                  f"{has[0]} descriptors, {has[1]} threads")
            self.assertLessEqual(after - before, GROWTH_KILOBYTES)
            self.assertEqual(has, had)
            self.assertEqual(program.end(), 0)


if __name__ == "__main__":
    case.main()
