# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""There is one program a session, however often it is started."""

import contextlib
import unittest

from gi.repository import GLib

import case
import preferences
from application import SomeApplication
from desktop import Desktop
from item import PanelPlace, StatusItem, click_last_entry, open_menu
from program import BUS_NAME, Program
from repositories import tracked_days_ago
from startup import StartupMessages
from waiting import wait_until

APPLICATION = ("/io/velquarin/Velquarin", "org.freedesktop.Application")
DASHBOARD = "Velquarin"
STARTUP_ID = "menu-1_TIME42"


def end_of(startup_id):
    return f'remove: ID="{startup_id}"'


class SecondStart(unittest.TestCase):

    def start_first(self, desktop, **options):
        tracked_days_ago(desktop, case.now_in("UTC"), 0, 1)
        desktop.start_panel()
        first = Program(desktop, **options)
        StatusItem(desktop).wait_until_refreshed()
        return first

    def has_dashboard(self, desktop):
        return any(title == DASHBOARD for title, _ in desktop.windows.unmanaged())

    def wait_for_dashboard(self, desktop):
        wait_until(lambda: self.has_dashboard(desktop), "the dashboard")

    def close_dashboard(self, desktop):
        desktop.screen.press("Escape")
        wait_until(lambda: not self.has_dashboard(desktop), "the dashboard goes")

    @contextlib.contextmanager
    def launchers(self, desktop):
        messages = StartupMessages(desktop)
        try:
            yield messages
        finally:
            messages.close()

    def test_the_second_ends_and_the_first_stays(self):
        with Desktop(self.id()) as desktop:
            first = self.start_first(desktop)
            item = StatusItem(desktop)
            owner, address = desktop.bus.owner(BUS_NAME), item.wait()

            second = Program(desktop)
            self.assertEqual(second.wait_for_end(), 0)
            self.assertTrue(first.is_running())
            self.assertEqual((desktop.bus.owner(BUS_NAME), item.wait()), (owner, address))
            self.assertEqual(desktop.bus.process_of(BUS_NAME), first.pid)
            self.assertEqual(first.end(), 0)

    def test_the_second_opens_the_dashboard_of_the_first(self):
        with Desktop(self.id()) as desktop:
            first = self.start_first(desktop)
            for _ in range(2):
                self.assertFalse(self.has_dashboard(desktop))
                self.assertEqual(Program(desktop).wait_for_end(), 0)
                self.wait_for_dashboard(desktop)
                self.close_dashboard(desktop)
            self.assertEqual(first.end(), 0)
            self.assertEqual((first.output(), first.errors()), ("", ""))

    def test_the_desktop_opens_the_dashboard_in_each_of_its_ways(self):
        ways = (("Activate", GLib.Variant("(a{sv})", ({},))),
                ("Open", GLib.Variant("(asa{sv})", (["file:///tmp"], {}))),
                ("ActivateAction", GLib.Variant("(sava{sv})", ("anything", [], {}))))
        with Desktop(self.id()) as desktop:
            first = self.start_first(desktop)
            for method, arguments in ways:
                with self.subTest(method):
                    desktop.bus.call(BUS_NAME, *APPLICATION, method, arguments)
                    self.wait_for_dashboard(desktop)
                    self.close_dashboard(desktop)
            self.assertEqual(first.end(), 0)

    def test_the_second_hands_its_tokens_over(self):
        given = {"XDG_ACTIVATION_TOKEN": "token-7", "DESKTOP_STARTUP_ID": STARTUP_ID}
        with Desktop(self.id()) as desktop:
            some = SomeApplication(desktop.bus, BUS_NAME)
            second = Program(desktop, given=given)
            self.assertEqual(some.answer(second), [{"activation-token": "token-7", "desktop-startup-id": STARTUP_ID}])
            self.assertEqual(second.wait_for_end(), 0)

    def test_a_launcher_hears_of_the_end_of_each_start(self):
        with Desktop(self.id()) as desktop, self.launchers(desktop) as launchers:
            first = self.start_first(desktop, given={"DESKTOP_STARTUP_ID": "login-1_TIME1"})
            launchers.wait_for(end_of("login-1_TIME1"))
            self.assertEqual(Program(desktop, given={"DESKTOP_STARTUP_ID": STARTUP_ID}).wait_for_end(), 0)
            launchers.wait_for(end_of(STARTUP_ID))
            self.wait_for_dashboard(desktop)
            self.close_dashboard(desktop)
            token = GLib.Variant("(a{sv})", ({"desktop-startup-id": GLib.Variant("s", "menu \"2\"_TIME43")},))
            desktop.bus.call(BUS_NAME, *APPLICATION, "Activate", token)
            launchers.wait_for(end_of('menu \\"2\\"_TIME43'))
            self.wait_for_dashboard(desktop)
            self.assertEqual(first.end(), 0)

    @case.needs("trayer")
    def test_without_a_session_bus_the_second_ends_and_the_first_stays(self):
        with Desktop(self.id(), bus=False) as desktop, self.launchers(desktop) as launchers:
            preferences.write(desktop.config, [])
            desktop.start_old_tray()
            place = PanelPlace(desktop.screen)
            first = Program(desktop)
            in_tray = place.find()
            second = Program(desktop, given={"DESKTOP_STARTUP_ID": STARTUP_ID})
            self.assertEqual(second.wait_for_end(), 0)
            self.assertEqual((second.output(), second.errors()), ("", ""))
            launchers.wait_for(end_of(STARTUP_ID))
            self.assertTrue(first.is_running())
            click_last_entry(desktop.screen, open_menu(desktop, in_tray))
            self.assertEqual(first.wait_for_end(), 0)

    @case.needs("trayer")
    def test_a_program_that_was_killed_keeps_nobody_from_starting(self):
        with Desktop(self.id(), bus=False) as desktop:
            preferences.write(desktop.config, [])
            desktop.start_old_tray()
            for _ in range(2):
                place = PanelPlace(desktop.screen)
                program = Program(desktop)
                place.find()
                program.kill()
                wait_until(lambda place=place: not place.now(), "the tray is empty")

    def test_a_bus_that_restarts_finds_the_program_again(self):
        with Desktop(self.id()) as desktop:
            repository = tracked_days_ago(desktop, case.now_in("UTC"), 0, 1)
            preferences.write(desktop.config, [repository.path], refresh_seconds=1)
            first = Program(desktop)
            desktop.bus.wait_for(BUS_NAME)
            desktop.end_bus()
            self.assertEqual(Program(desktop).wait_for_end(), 0)
            self.assertTrue(first.is_running())
            desktop.start_bus()
            # A streak that grows makes the item look for a panel anew, and with it for the bus.
            repository.commit_days_ago(case.now_in("UTC"), 2)
            desktop.bus.wait_for(BUS_NAME)
            self.assertEqual(desktop.bus.process_of(BUS_NAME), first.pid)
            self.assertEqual(Program(desktop).wait_for_end(), 0)
            self.wait_for_dashboard(desktop)
            self.assertEqual(first.end(), 0)


if __name__ == "__main__":
    case.main()
