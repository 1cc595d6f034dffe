# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""What the program says on its standard output, and that it needs nobody to listen."""

import os
import unittest

import case
from desktop import Desktop
from item import StatusItem
from program import Program
from repositories import tracked_days_ago

ZONE = "UTC"


class Output(unittest.TestCase):

    def run_in_the_evening(self, desktop, output):
        """A run in which a reminder is sent, and with it a line."""
        evening = case.ShiftedTime(19, 10, ZONE)
        tracked_days_ago(desktop, evening.now, 1, 2)
        desktop.start_notifications()
        desktop.start_panel()
        program = Program(desktop, ZONE, evening.offset, output)
        StatusItem(desktop).wait_for_label(" 2")
        return program

    def test_an_ordinary_run_says_nothing(self):
        noon = case.ShiftedTime(12, 0, ZONE)
        with Desktop(self.id()) as desktop:
            tracked_days_ago(desktop, noon.now, 0, 1)
            desktop.start_panel()
            program = Program(desktop, ZONE, noon.offset)
            StatusItem(desktop).wait_for_label(" 2")
            self.assertEqual(program.end(), 0)
            self.assertEqual((program.output(), program.errors()), ("", ""))

    def test_the_line_about_the_reminder_is_there_at_once(self):
        with Desktop(self.id()) as desktop:
            program = self.run_in_the_evening(desktop, None)
            self.assertEqual(program.output(), "Streak risk notification sent\n")
            self.assertEqual(program.end(), 0)

    def test_a_reader_that_went_away_harms_nothing(self):
        reader, writer = os.pipe()
        os.close(reader)
        with Desktop(self.id()) as desktop:
            program = self.run_in_the_evening(desktop, writer)
            os.close(writer)
            self.assertTrue(program.is_running())
            self.assertEqual(program.end(), 0)

    def test_an_output_that_takes_nothing_harms_nothing(self):
        with Desktop(self.id()) as desktop, open("/dev/full", "wb") as full:
            program = self.run_in_the_evening(desktop, full)
            self.assertTrue(program.is_running())
            self.assertEqual(program.end(), 0)


if __name__ == "__main__":
    case.main()
