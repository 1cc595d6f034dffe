# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""The dashboard while a refresh runs, which takes as long as git is held back."""

import unittest

import case
from dashboard import Dashboard
from desktop import Desktop
from repositories import Hold
from screen import Rectangle
from waiting import wait_until

def ink(screen, place):
    """How much stands out from the ground in a part of the screen; its first pixel is ground."""
    x, y, width, height = place
    pixels = screen.picture(Rectangle(x, y, x + width, y + height)).pixels()
    return sum(abs(value - ground) for pixel in pixels for value, ground in zip(pixel, pixels[0]))


def says_when(window):
    return any(text.startswith("Updated ") for text in window.texts())


class Refresh(unittest.TestCase):

    def button(self, dashboard):
        return dashboard.wait_for("Refresh")

    def wait_for_button(self, dashboard, enabled):
        def is_so():
            return ("enabled" in self.button(dashboard).states) == enabled
        wait_until(is_so, f"the button is {'on' if enabled else 'off'}")

    def assert_inert(self, dashboard):
        """A screen reader has nothing to press, and while the pointer does the one git goes on alone."""
        button = self.button(dashboard)
        self.assertFalse({"enabled", "sensitive"} & button.states)
        self.assertEqual(button.actions, [])
        git = wait_until(dashboard.program.children, "git")
        dashboard.click("Refresh")
        self.wait_until_clicked(dashboard)
        self.assertEqual(dashboard.program.children(), git)
        self.assertEqual(len(git), 1)
        self.assertIsNotNone(dashboard.window())

    def wait_until_clicked(self, dashboard):
        """Returns when the program has dealt with the clicks before: it does what a key asked for after them."""
        before = dashboard.focused_name()
        dashboard.press_key("Tab")
        wait_until(lambda: dashboard.focused_name() != before, "the focus moves on", state=dashboard.focused_name)

    def wait_for_ink(self, dashboard, place, wanted, tolerance=0):
        wait_until(lambda: abs(ink(dashboard.desktop.screen, place) - wanted) <= tolerance, f"{wanted} of ink",
                   state=lambda: ink(dashboard.desktop.screen, place))

    def test_its_button_is_half_transparent_and_inert(self):
        with Desktop(self.id()) as desktop:
            dashboard = Dashboard(desktop)
            dashboard.open()
            place = self.button(dashboard).place
            whole = wait_until(lambda: ink(desktop.screen, place), "the button is drawn")

            hold = Hold(dashboard.repositories["busy"])
            dashboard.press("Refresh")
            self.wait_for_button(dashboard, enabled=False)
            self.assertTrue(says_when(dashboard.window()))
            self.wait_for_ink(dashboard, place, whole / 2, whole / 20)
            self.assert_inert(dashboard)

            hold.release()
            self.wait_for_button(dashboard, enabled=True)
            desktop.screen.point(*desktop.screen.corner)
            self.wait_for_ink(dashboard, place, whole)
            self.assertEqual(dashboard.program.children(), [])
            self.assertEqual(dashboard.program.end(), 0)

    def test_before_the_first_has_ended_nothing_says_when_it_was(self):
        holds = []
        with Desktop(self.id()) as desktop:
            dashboard = Dashboard(desktop, prepare=lambda repositories: holds.append(Hold(repositories["busy"])),
                                  streak=None)
            self.assertFalse(says_when(dashboard.open()))
            self.assertEqual(dashboard.item.symbol(), "Syncing")
            self.assert_inert(dashboard)
            self.assertFalse(says_when(dashboard.window()))

            holds.pop().release()
            wait_until(lambda: says_when(dashboard.window()), "how long ago it was")
            self.wait_for_button(dashboard, enabled=True)
            self.assertIn("3 tracked", dashboard.window().texts())
            self.assertEqual(dashboard.program.end(), 0)


if __name__ == "__main__":
    case.main()
