# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""The evening's one reminder, in a real notification server, with the user's clock set to that evening."""

import unittest

import case
import preferences
from desktop import Desktop
from item import PanelPlace, StatusItem, click_first_entry, open_menu
from notifications import NotificationServer
from program import Program
from repositories import tracked_days_ago
from waiting import wait_until

ZONE = "Asia/Kolkata"
TITLE = "Streak at Risk!"
BODY = "You haven't committed today. Your 3-day streak will reset at midnight!"
SENT = "Streak risk notification sent\n"


def prepare(desktop, time):
    """A notification server, a panel and a streak of three days, to which today has not yet been added."""
    repository = tracked_days_ago(desktop, time.now, 1, 2, 3)
    desktop.start_notifications()
    desktop.start_panel()
    return repository


class Reminder(unittest.TestCase):

    def test_nothing_comes_before_six_in_the_evening(self):
        with Desktop(self.id()) as desktop:
            repository = prepare(desktop, case.ShiftedTime(17, 59, ZONE))
            place = PanelPlace(desktop.screen)
            time = case.ShiftedTime(17, 59, ZONE)
            program = Program(desktop, ZONE, time.offset)
            StatusItem(desktop).wait_for_label(" 3")
            self.refresh_once_more(desktop, place, repository, time)
            server = NotificationServer(desktop.bus)
            self.assertEqual((server.shown(), server.closed()), (0, []))
            self.assertEqual(program.end(), 0)
            self.assertEqual(program.output(), "")
            self.assertIsNone(preferences.last_reminder(desktop.config))

    def test_one_reminder_comes_at_six_and_goes_with_the_commit(self):
        time = case.ShiftedTime(18, 0, ZONE)
        with Desktop(self.id()) as desktop:
            repository = prepare(desktop, time)
            place = PanelPlace(desktop.screen)
            program = Program(desktop, ZONE, time.offset)
            item, server = StatusItem(desktop), NotificationServer(desktop.bus)
            item.wait_for_label(" 3")
            wait_until(lambda: server.shown() == 1, "the reminder")
            in_panel = place.find()

            repository.commit_days_ago(time.now, 4)
            click_first_entry(desktop.screen, open_menu(desktop, in_panel))
            item.wait_for_label(" 4")
            self.assertEqual((server.shown(), server.closed()), (1, []))

            repository.commit(time.now)
            click_first_entry(desktop.screen, open_menu(desktop, in_panel))
            item.wait_for_label(" 5")
            wait_until(lambda: server.shown() == 0, "the reminder is withdrawn")
            self.assertEqual([(told.title, told.body) for told in server.closed()], [(TITLE, BODY)])
            self.assertEqual(program.end(), 0)
            self.assertEqual(program.output(), SENT)

    def test_a_second_start_in_the_same_evening_does_not_remind_again(self):
        early, late = case.ShiftedTime(18, 0, ZONE), case.ShiftedTime(22, 30, ZONE)
        with Desktop(self.id()) as desktop:
            repository = prepare(desktop, early)
            place = PanelPlace(desktop.screen)
            item = StatusItem(desktop)
            first = Program(desktop, ZONE, early.offset)
            item.wait_for_label(" 3")
            wait_until(lambda: first.output() == SENT, "the first start reminds")
            server = NotificationServer(desktop.bus)
            self.assertEqual(server.shown(), 1)
            self.assertEqual(first.end(), 0)
            self.assertEqual(server.shown(), 0, "a reminder whose buttons nobody would answer")
            self.assertEqual(first.output(), SENT)
            stored = preferences.last_reminder(desktop.config)
            self.assertLess(abs((stored - early.now).total_seconds()), 60)

            wait_until(lambda: not item.is_there(), "the item goes with the program")
            second = Program(desktop, ZONE, late.offset)
            item.wait_for_label(" 3")
            self.refresh_once_more(desktop, place, repository, early)
            self.assertEqual(second.end(), 0)
            self.assertEqual(second.output(), "")
            self.assertEqual(preferences.last_reminder(desktop.config), stored)

    def refresh_once_more(self, desktop, place, repository, time):
        """Afterwards everything that the first refresh brings about has been done."""
        repository.commit_days_ago(time.now, 4)
        click_first_entry(desktop.screen, open_menu(desktop, place.find()))
        StatusItem(desktop).wait_for_label(" 4")


if __name__ == "__main__":
    case.main()
