# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""The program as one of X11 on a Wayland desktop, which its user can ask for."""

import unittest

import case
import hosts
import panel
import wayland
from item import PanelPlace
from program import BUS_NAME, Program
from repositories import tracked_days_ago

HOST = hosts.Swaybar()
case.NEEDED.update({**HOST.needed, "xwayland": "Xwayland"})

FARTHEST = 16


class OnXwayland(unittest.TestCase):

    def start(self, desktop):
        """The rectangle of the item; the program only knows the X11 server of the compositor."""
        tracked_days_ago(desktop, case.now_in("UTC"), 0, 1)
        HOST.start(desktop)
        place = PanelPlace(desktop.screen)
        outside = desktop.environment["DISPLAY"]
        desktop.environment.update(QT_QPA_PLATFORM="xcb", DISPLAY=desktop.x11_display())
        program = Program(desktop)
        desktop.environment["DISPLAY"] = outside
        desktop.bus.wait_for(BUS_NAME)
        return program, place.find()

    def test_the_dashboard_opens_at_the_item_and_closes_by_click_anywhere_and_key(self):
        with HOST.open(self.id(), xwayland=True) as desktop:
            program, item = self.start(desktop)
            def click():
                desktop.screen.click(*item.centre, 1)
            def click_elsewhere():
                desktop.screen.click(desktop.screen.width // 4, desktop.screen.height * 3 // 4, 1)
            for close in (click, click_elsewhere, lambda: desktop.screen.press("Escape"), click_elsewhere):
                place = HOST.opened(desktop, click)
                self.assertIn(place.top, range(panel.HEIGHT, panel.HEIGHT + FARTHEST))
                self.assertIn(desktop.screen.width - place.right, range(FARTHEST))
                HOST.closed(desktop, close)
            self.assertEqual(program.end(), 0)


if __name__ == "__main__":
    wayland.as_ordinary_user()
    case.main()
