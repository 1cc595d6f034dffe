# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""Where somebody composes the windows of X11 the dashboard is round and casts a shadow; elsewhere it does neither."""

import subprocess
import unittest

import case
from dashboard import WINDOW, Dashboard
from desktop import Desktop
from screen import Rectangle
from waiting import wait_until

COMPOSITOR = "xcompmgr"
SHADOW = 22
BACKGROUND = "#c8d2dc"
FAR_AWAY = 100, 600


class Shadow(unittest.TestCase):

    def start_compositor(self, desktop):
        windows = desktop.windows
        selection = windows.display.get_atom("_NET_WM_CM_S0")
        desktop.start(COMPOSITOR, COMPOSITOR)
        wait_until(lambda: windows.display.get_selection_owner(selection), "the compositor")

    def paint_background(self, desktop):
        subprocess.run(["xsetroot", "-solid", BACKGROUND], env=desktop.environment, check=True)

    def is_square(self, dashboard):
        """Whether it is that and fills its window, with nothing around."""
        left, top, right, bottom = place = Rectangle.of(*dashboard.window().place)
        picture = dashboard.desktop.screen.picture()
        edge = picture.pixel(left, place.centre[1])
        return (dict(dashboard.desktop.windows.unmanaged())[WINDOW] == place
                and all(picture.pixel(x, y) == edge for x in (left, right - 1) for y in (top, bottom - 1))
                and picture.pixel(left - 1, place.centre[1]) == picture.pixel(*FAR_AWAY) != edge)

    def is_round_with_a_shadow(self, dashboard):
        """Whether it is that, the shadow darker below than beside and weaker with the distance."""
        left, _top, _right, bottom = place = Rectangle.of(*dashboard.window().place)
        picture = dashboard.desktop.screen.picture()
        middle = place.centre[1]
        ground, *beside = (sum(picture.pixel(left - away, middle)) for away in (SHADOW + 1, 12, 6, 1))
        below = sum(picture.pixel(place.centre[0], bottom))
        return (picture.pixel(left, bottom - 1) != picture.pixel(left, middle)
                and 0.6 * ground < below < beside[2] < beside[1] < beside[0] < ground == sum(picture.pixel(*FAR_AWAY)))

    def assert_becomes(self, look, dashboard):
        dashboard.open()
        wait_until(lambda: look(dashboard), look.__name__.replace("_", " "), state=dashboard.desktop.windows.unmanaged)

    def a_click_on_the_shadow_closes_it(self, dashboard):
        left, top, _width, height = dashboard.window().place
        dashboard.desktop.screen.click(left - SHADOW // 4, top + height // 2, 1)
        dashboard.wait_until_closed()

    @case.needs(COMPOSITOR)
    def test_the_shadow_comes_and_goes_with_the_compositor(self):
        with Desktop(self.id()) as desktop:
            self.paint_background(desktop)
            dashboard = Dashboard(desktop)
            self.assert_becomes(self.is_square, dashboard)
            dashboard.close()
            self.start_compositor(desktop)
            self.assert_becomes(self.is_round_with_a_shadow, dashboard)
            self.a_click_on_the_shadow_closes_it(dashboard)
            desktop.end(COMPOSITOR)
            self.paint_background(desktop)
            self.assert_becomes(self.is_square, dashboard)
            self.assertEqual(dashboard.program.end(), 0)


if __name__ == "__main__":
    case.main()
