# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""The item follows the panel, wherever it comes from and however often it goes."""

import unittest

import case
import preferences
from desktop import Desktop
from item import PanelPlace, StatusItem, click_last_entry, open_menu
from program import BUS_NAME, Program
from repositories import tracked_days_ago
from waiting import wait_until
from watcher import Watcher


class Hosts(unittest.TestCase):

    def test_the_item_comes_with_a_panel_that_starts_later_and_comes_back_with_one_that_restarts(self):
        noon = case.ShiftedTime(12, 0, "UTC")
        with Desktop(self.id()) as desktop:
            tracked_days_ago(desktop, noon.now, 0, 1)
            program = Program(desktop, clock_offset=noon.offset)
            desktop.bus.wait_for(BUS_NAME)
            item = StatusItem(desktop)
            for _ in range(3):
                desktop.start_panel()
                item.wait_for_label(" 2")
                desktop.end_panel()
            self.assertEqual(program.end(), 0)

    @case.needs("trayer")
    def test_without_a_session_bus_the_icon_is_in_the_old_tray(self):
        with Desktop(self.id(), bus=False) as desktop:
            preferences.write(desktop.config, [])
            desktop.start_old_tray()
            place = PanelPlace(desktop.screen)
            program = Program(desktop)
            click_last_entry(desktop.screen, open_menu(desktop, place.find()))
            self.assertEqual(program.wait_for_end(), 0)

    @case.needs("trayer")
    def test_while_nobody_shows_what_a_watcher_collects_the_icon_is_in_the_old_tray(self):
        with Desktop(self.id()) as desktop:
            preferences.write(desktop.config, [])
            desktop.start_old_tray()
            place = PanelPlace(desktop.screen)
            watcher = Watcher(desktop.bus)
            program = Program(desktop)
            place.find()
            for _ in range(2):
                watcher.host_comes()
                wait_until(lambda: not place.now(), "the tray is empty")
                watcher.host_goes()
                place.find()
            self.assertEqual(len(watcher.items), 1)
            self.assertEqual(program.end(), 0)

    @case.needs("trayer")
    def test_an_icon_whose_window_the_old_tray_lost_comes_back(self):
        with Desktop(self.id(), bus=False) as desktop:
            preferences.write(desktop.config, [])
            desktop.start_old_tray()
            place = PanelPlace(desktop.screen)
            program = Program(desktop)
            place.find()
            lost = desktop.windows.find("Velquarin")
            lost.destroy()
            wait_until(lambda: (found := desktop.windows.find("Velquarin")) and found.id != lost.id, "another window")
            place.find()
            self.assertEqual((program.end(), program.errors()), (0, ""))

    @case.needs("trayer")
    def test_the_icon_in_the_old_tray_explains_itself(self):
        with Desktop(self.id(), bus=False) as desktop:
            preferences.write(desktop.config, [])
            desktop.start_old_tray()
            place = PanelPlace(desktop.screen)
            program = Program(desktop)
            desktop.screen.point(*place.find().centre)
            wait_until(desktop.windows.explanation, "a tooltip")
            desktop.screen.point(*desktop.screen.corner)
            wait_until(lambda: not desktop.windows.explanation(), "no tooltip")
            self.assertEqual(program.end(), 0)

    @case.needs("trayer")
    def test_the_program_outlives_the_session_bus(self):
        with Desktop(self.id()) as desktop:
            preferences.write(desktop.config, [])
            desktop.start_old_tray()
            place = PanelPlace(desktop.screen)
            program = Program(desktop)
            in_tray = place.find()
            desktop.end_bus()
            click_last_entry(desktop.screen, open_menu(desktop, in_tray))
            self.assertEqual(program.wait_for_end(), 0)

    @case.needs("trayer")
    def test_the_item_comes_with_the_next_figure_when_the_session_bus_starts_late(self):
        self.assert_found_by_a_bus(lambda desktop: None, bus_comes_late=True)

    @case.needs("trayer")
    def test_the_item_comes_with_the_next_figure_when_the_session_bus_has_restarted(self):
        self.assert_found_by_a_bus(Desktop.end_bus)

    def assert_found_by_a_bus(self, lose_bus, **options):
        noon = case.ShiftedTime(12, 0, "UTC")
        with Desktop(self.id(), **options) as desktop:
            repository = tracked_days_ago(desktop, noon.now, 0, 1)
            preferences.write(desktop.config, [repository.path], refresh_seconds=1)
            desktop.start_old_tray()
            place = PanelPlace(desktop.screen)
            program = Program(desktop, clock_offset=noon.offset)
            place.find()
            lose_bus(desktop)
            desktop.start_bus()
            desktop.end("trayer")
            desktop.start_panel()
            repository.commit_days_ago(noon.now, 2)
            StatusItem(desktop).wait_for_label(" 3")
            self.assertEqual(program.end(), 0)


if __name__ == "__main__":
    case.main()
