# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""The reminder in real notification servers, under its user's pointer."""

import unittest

import case
from notifications import Dunst, XfceNotifyd
from reminding import BODY, evening
from waiting import wait_until


class Server:
    """What holds with every server."""

    def test_the_button_opens_the_dashboard(self):
        with evening(self.id(), self.KIND) as user:
            user.server.choose("Open Velquarin")
            wait_until(user.has_dashboard, "the dashboard")
            user.wait_without_reminder()
            user.desktop.screen.press("Escape")
            wait_until(lambda: not user.has_dashboard(), "the dashboard goes, and once is enough")
            user.wait_until_heard()
            self.assertFalse(user.has_dashboard())

    def test_dismiss_closes_it_and_opens_nothing(self):
        with evening(self.id(), self.KIND) as user:
            user.server.choose("Dismiss")
            user.wait_without_reminder()
            user.wait_until_heard()
            self.assertFalse(user.has_dashboard())

    def test_todays_commit_takes_it_back(self):
        with evening(self.id(), self.KIND) as user:
            user.item.wait_for_label(" 3")
            user.repository.commit(user.time.now)
            user.item.choose("Refresh")
            user.item.wait_for_label(" 4")
            user.wait_without_reminder()


class InDunst(Server, unittest.TestCase):

    KIND = Dunst

    def test_a_click_on_the_body_opens_the_dashboard(self):
        with evening(self.id(), Dunst) as user:
            user.server.click_body()
            wait_until(user.has_dashboard, "the dashboard")
            user.wait_without_reminder()


class InXfceNotifyd(Server, unittest.TestCase):

    KIND = XfceNotifyd

    def test_it_has_its_texts_and_two_buttons(self):
        with evening(self.id(), XfceNotifyd) as user:
            self.assertEqual(user.server.texts(), ["Streak at Risk!", BODY, "Open Velquarin", "Dismiss"])

    # A click that opens would be a third button there.
    def test_a_click_on_the_body_closes_it(self):
        with evening(self.id(), XfceNotifyd) as user:
            user.server.click_body()
            user.wait_without_reminder()
            user.wait_until_heard()
            self.assertFalse(user.has_dashboard())


if __name__ == "__main__":
    case.NEEDED.update(XfceNotifyd.NEEDED)
    case.main()
