# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""What docs/status-lines.md tells users of waybar to write works as it stands there."""

import unittest

import case
import wayland
from look import ORANGE, Look
from status_lines import Gardener, Waybar
from waiting import wait_until

# The desktop's own font says how much larger the dashboard is.
LEAST_DASHBOARD_WIDTH, LEAST_DASHBOARD_HEIGHT = 250, 300

case.NEEDED.update(Waybar.needed)


class StatusLine(unittest.TestCase):

    def setUp(self):
        self.bar = Waybar()

    def is_orange(self, desktop, text):
        """Whether the element with that text is, at least in parts."""
        place = self.bar.wait_for(text)
        return bool(Look(desktop.screen.settled(place)).where(ORANGE))

    def test_it_follows_a_commit_by_itself_and_changes_its_colour(self):
        with self.bar.open(self.id()) as desktop:
            gardener = Gardener(desktop, 11)
            self.bar.start(desktop, gardener)
            self.assertFalse(self.is_orange(desktop, "○ 11"))
            gardener.commit()
            wait_until(lambda: self.is_orange(desktop, "● 12"), "the colour")

    def test_without_a_streak_a_ring_alone_stands_there(self):
        with self.bar.open(self.id()) as desktop:
            gardener = Gardener(desktop, 0)
            self.bar.start(desktop, gardener)
            self.bar.wait_for("○ ")
            gardener.commit()
            self.bar.wait_for("● 1")

    def test_it_shows_what_the_program_says_and_a_click_opens_the_dashboard(self):
        with self.bar.open(self.id()) as desktop:
            gardener = Gardener(desktop, 11)
            program = gardener.start_program()
            self.bar.start(desktop, gardener)
            self.bar.wait_for("○ 11")
            gardener.commit()
            place = self.bar.wait_for("● 12").centre
            dashboard = self.bar.opened(desktop, lambda: desktop.screen.click(*place, 1))
            self.assertGreater(dashboard.width, LEAST_DASHBOARD_WIDTH)
            self.assertGreater(dashboard.height, LEAST_DASHBOARD_HEIGHT)
            wait_until(lambda: len(gardener.followers(self.bar.process)) == 1, "one who follows and nobody else")
            desktop.end(self.bar.process)
            wait_until(lambda: not gardener.followers(self.bar.process), "the end of who followed")
            self.assertEqual(program.end(), 0)


if __name__ == "__main__":
    wayland.as_ordinary_user("VELQUARIN_STATUS_LINES")
    case.main()
