# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""The windows of the program on native Wayland, where no program places its own."""

import os
import pathlib
import re
import time
import unittest

from gi.repository import GLib

import case
import preferences
import wayland
from program import BUS_NAME, Program
from repositories import Repository
from waiting import wait_until
from wayland import WaylandDesktop

DASHBOARD = "Velquarin"
MENU = "Velquarin"
SETTINGS = "Settings"

case.NEEDED.update({"sway": "sway", "qt6-wayland": "/usr/share/doc/qt6-wayland",
                    "wtype": "wtype", "foot": "foot"})

# The compositor lists windows alone, and no surface that keeps to an edge.
IS_LAYER = b"zwlr_layer_shell_v1" in pathlib.Path(os.environ["VELQUARIN_PROGRAM"]).read_bytes()
as_window = unittest.skipIf(IS_LAYER, "built with layer surfaces")
as_layer = unittest.skipUnless(IS_LAYER, "built without layer surfaces")

# As the README has it.
RULE = f'for_window [app_id="{wayland.APPLICATION}" title="^Velquarin$"] floating enable, border none, ' \
       'move absolute position 970 30'


def scaled(points):
    """What sizes named for a font of 13 pixels become with the one of 12 pixels that is here."""
    return round(points * 12 / 13)


class Windows(unittest.TestCase):

    def start(self, desktop, **options):
        repository = Repository(desktop.home / "work")
        repository.commit_days_ago(case.now_in("UTC"), 0, 1)
        preferences.write(desktop.config, [repository.path])
        program = Program(desktop, **options)
        desktop.bus.wait_for(BUS_NAME)
        wait_until(lambda: self.registered(desktop), "the item")
        return program

    @staticmethod
    def registered(desktop):
        return desktop.bus.property("org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher",
                                    "org.kde.StatusNotifierWatcher", "RegisteredStatusNotifierItems")

    @staticmethod
    def click_item(desktop):
        desktop.bus.call(BUS_NAME, "/StatusNotifierItem", "org.kde.StatusNotifierItem", "Activate",
                         GLib.Variant("(ii)", (1270, 12)))

    # A click right after the dashboard went is the one that sent it away, for a quarter of a second.
    @staticmethod
    def take_a_breath():
        time.sleep(0.3)

    def open(self, desktop):
        self.click_item(desktop)
        return desktop.wait_for_window(DASHBOARD)

    @as_window
    def test_a_click_opens_the_dashboard_and_the_next_one_closes_it(self):
        with WaylandDesktop(self.id()) as desktop:
            program = self.start(desktop)
            for _ in range(3):
                window = self.open(desktop)
                self.assertEqual(window["type"], "floating_con")
                self.assertEqual(window["geometry"]["width"], scaled(300))
                self.assertGreaterEqual(window["geometry"]["height"], scaled(350))
                wait_until(lambda: desktop.window(DASHBOARD)["focused"], "the focus")
                self.click_item(desktop)
                desktop.wait_without_window(DASHBOARD)
                self.take_a_breath()
            self.assertEqual(program.end(), 0)

    @as_window
    def test_the_compositor_is_given_the_token_of_whoever_wants_the_dashboard(self):
        with WaylandDesktop(self.id()) as desktop:
            program = self.start(desktop, given={"WAYLAND_DEBUG": "client", "XDG_ACTIVATION_TOKEN": "of-the-login"})
            self.assertEqual(self.activations(program), [])
            self.activate(desktop, "token-1")
            wait_until(lambda: self.activations(program) == ["token-1"], "the token")
            desktop.wait_for_window(DASHBOARD)
            wait_until(lambda: desktop.window(DASHBOARD)["focused"], "the focus")
            self.assertEqual(Program(desktop, given={"XDG_ACTIVATION_TOKEN": "token-2"}).wait_for_end(), 0)
            wait_until(lambda: self.activations(program) == ["token-1", "token-2"], "the second start's token")
            self.assertNotIn("of-the-login", program.errors())
            self.assertEqual(program.end(), 0)

    @staticmethod
    def activate(desktop, token):
        desktop.bus.call(BUS_NAME, "/io/velquarin/Velquarin", "org.freedesktop.Application", "Activate",
                         GLib.Variant("(a{sv})", ({"activation-token": GLib.Variant("s", token)},)))

    @staticmethod
    def activations(program):
        """The tokens by which the program asked the compositor for the focus, as the protocol's log has them; without
        those that newer versions of the toolkit get for themselves."""
        log = program.errors()
        its_own = re.findall(r'xdg_activation_token_v1[@#][0-9]+\.done\("([^"]*)"', log)
        asked = re.findall(r'xdg_activation_v1[@#][0-9]+\.activate\("([^"]*)"', log)
        return [token for token in asked if token not in its_own]

    # Some versions of the toolkit wait for an answer of the compositor before they pass the focus on, and forget one that
    # is gone by then.
    @staticmethod
    def has_focus(program):
        """Whether the program has the keyboard's focus and knows it, as the protocol's log has it."""
        _, *entered = re.split(r"wl_keyboard[@#][0-9]+\.enter\(", program.errors())
        last = entered[-1] if entered else ""
        asked = re.findall(r"wl_display[@#]1\.sync\(new id (wl_callback[@#][0-9]+)\)", last)
        return ".modifiers(" in last and ".leave(" not in last and all(f" {name}.done(" in last for name in asked)

    @as_window
    def test_escape_closes_the_dashboard(self):
        with WaylandDesktop(self.id()) as desktop:
            program = self.start(desktop)
            self.open(desktop)
            typing = desktop.type("-s", "300", "-k", "Escape", "-s", "60000")
            desktop.wait_without_window(DASHBOARD)
            self.assertIsNone(typing.poll())
            self.assertEqual(program.end(), 0)

    @as_window
    def test_another_window_takes_its_place(self):
        with WaylandDesktop(self.id()) as desktop:
            program = self.start(desktop, given={"WAYLAND_DEBUG": "client"})
            desktop.start("foot", "foot", "sleep", "infinity")
            wait_until(lambda: b'"foot"' in desktop.tell("get_tree", "-t"), "another window")
            self.open(desktop)
            wait_until(lambda: self.has_focus(program), "the focus", state=program.errors)
            desktop.tell('[app_id="foot"] focus')
            desktop.wait_without_window(DASHBOARD)
            self.assertEqual(program.end(), 0)

    @as_window
    def test_the_gear_opens_the_settings_in_place_of_the_dashboard(self):
        with WaylandDesktop(self.id()) as desktop:
            program = self.start(desktop)
            self.open(desktop)
            desktop.type("-s", "300", "-M", "shift", "-k", "Tab", "-m", "shift", "-k", "Return")
            window = desktop.wait_for_window(SETTINGS)
            self.assertIsNone(desktop.window(DASHBOARD))
            self.assertEqual((window["geometry"]["width"], window["geometry"]["height"]), (scaled(450), scaled(380)))
            self.assertEqual(window["type"], "floating_con")
            self.take_a_breath()
            self.open(desktop)
            self.assertIsNotNone(desktop.window(SETTINGS))
            self.assertEqual(program.end(), 0)

    @staticmethod
    def layers(program):
        """How many surfaces at edges it has made, and has still."""
        log = program.errors()
        return log.count(".get_layer_surface(") - len(re.findall(r"zwlr_layer_surface_v1[@#][0-9]+\.destroy", log))

    @as_layer
    def test_at_the_bar_it_has_the_keyboard_and_goes_with_escape_or_the_next_click(self):
        with WaylandDesktop(self.id()) as desktop:
            program = self.start(desktop, given={"WAYLAND_DEBUG": "client"})
            desktop.start("foot", "foot", "sleep", "infinity")
            wait_until(lambda: b'"foot"' in desktop.tell("get_tree", "-t"), "another window")
            self.click_item(desktop)
            wait_until(lambda: self.layers(program) == 2, "the dashboard, and what catches clicks beside it")
            desktop.type("-s", "300", "-k", "Escape", "-s", "60000")
            wait_until(lambda: self.layers(program) == 0, "no dashboard")
            self.take_a_breath()
            for surfaces in (2, 0):
                self.click_item(desktop)
                wait_until(lambda: self.layers(program) == surfaces, f"{surfaces} surfaces")
            self.assertEqual(program.end(), 0)

    def ask_for_menu(self, desktop):
        """What a host that draws no menus itself says after a right click."""
        desktop.bus.call(BUS_NAME, "/StatusNotifierItem", "org.kde.StatusNotifierItem", "ContextMenu",
                         GLib.Variant("(ii)", (1270, 12)))

    def open_menu(self, desktop):
        self.ask_for_menu(desktop)
        wait_until(lambda: (desktop.window(MENU) or {}).get("focused"), "the menu with the focus")
        return desktop.window(MENU)

    def test_the_menu_is_a_small_window_that_escape_or_another_window_closes(self):
        with WaylandDesktop(self.id()) as desktop:
            program = self.start(desktop, given={"WAYLAND_DEBUG": "client"})
            desktop.start("foot", "foot", "sleep", "infinity")
            wait_until(lambda: b'"foot"' in desktop.tell("get_tree", "-t"), "another window")
            menu = self.open_menu(desktop)
            self.assertEqual(menu["type"], "floating_con")
            self.assertLess(menu["geometry"]["height"], 200)
            desktop.type("-s", "300", "-k", "Escape", "-s", "60000")
            desktop.wait_without_window(MENU)
            for close in (lambda: desktop.tell('[app_id="foot"] focus'), lambda: self.ask_for_menu(desktop)):
                self.open_menu(desktop)
                wait_until(lambda: self.has_focus(program), "the focus", state=program.errors)
                close()
                desktop.wait_without_window(MENU)
            self.assertEqual(program.end(), 0)

    def test_the_keys_beside_the_entries_work_in_the_menu(self):
        with WaylandDesktop(self.id()) as desktop:
            program = self.start(desktop)
            self.open_menu(desktop)
            desktop.type("-s", "300", "-M", "ctrl", "-k", "q", "-m", "ctrl", "-s", "60000")
            self.assertEqual(program.wait_for_end(), 0)

    @staticmethod
    def menu_instead_of(desktop, dashboard):
        """The menu, once the window of that id has gone."""
        window = desktop.window(MENU)
        return window if window and window["id"] != dashboard else None

    @as_window
    def test_the_menu_takes_the_place_of_the_dashboard(self):
        with WaylandDesktop(self.id()) as desktop:
            program = self.start(desktop)
            dashboard = self.open(desktop)["id"]
            wait_until(lambda: desktop.window(DASHBOARD)["focused"], "the focus")
            self.ask_for_menu(desktop)
            wait_until(lambda: self.menu_instead_of(desktop, dashboard), "the menu alone")
            self.assertEqual(program.end(), 0)

    @as_window
    def test_a_rule_of_the_compositor_places_dashboard_and_menu(self):
        def place(window):
            return window["rect"]["x"], window["rect"]["y"]
        with WaylandDesktop(self.id(), RULE) as desktop:
            program = self.start(desktop)
            dashboard = self.open(desktop)["id"]
            wait_until(lambda: place(desktop.window(DASHBOARD)) == (970, 30), "its place")
            self.ask_for_menu(desktop)
            menu = wait_until(lambda: self.menu_instead_of(desktop, dashboard), "the menu alone")
            self.assertEqual(place(menu), (970, 30))
            self.assertEqual(program.end(), 0)


if __name__ == "__main__":
    wayland.as_ordinary_user()
    case.main()
