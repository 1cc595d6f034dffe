# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""The program ends when it is told to, at once, and takes everything it started with it."""

import shutil
import unittest

import case
import preferences
from desktop import Desktop
from item import PanelPlace, StatusItem, click_last_entry, open_menu
from program import Program
from repositories import HangingRepository, Repository, tracked_days_ago
from waiting import wait_until

PROMPTLY = 1.0


def many_repositories(desktop, now, count=80):
    """So many repositories that a refresh takes a while."""
    first = Repository(desktop.home / "first")
    first.commit_days_ago(now, 1, 2)
    paths = [desktop.home / f"repository {number}" for number in range(count)]
    for path in paths:
        shutil.copytree(first.path, path)
    return paths


class Quit(unittest.TestCase):

    def assert_ended_whole(self, program, seconds=10.0):
        self.assertEqual(program.wait_for_end(seconds), 0)
        wait_until(lambda: not program.children(), "nothing that the program started is left", PROMPTLY)

    def test_quit_in_the_menu_ends_the_program(self):
        now = case.now_in("UTC")
        with Desktop(self.id()) as desktop:
            tracked_days_ago(desktop, now, 0, 1)
            desktop.start_panel()
            place = PanelPlace(desktop.screen)
            program = Program(desktop)
            StatusItem(desktop).wait_until_refreshed()
            click_last_entry(desktop.screen, open_menu(desktop, place.find()))
            self.assert_ended_whole(program)

    def test_quit_in_the_menu_ends_the_program_while_git_hangs(self):
        with Desktop(self.id()) as desktop:
            preferences.write(desktop.config, [HangingRepository(desktop.home / "hanging").path])
            desktop.start_panel()
            place = PanelPlace(desktop.screen)
            program = Program(desktop)
            program.wait_for_hanging_child()
            StatusItem(desktop).wait()
            click_last_entry(desktop.screen, open_menu(desktop, place.find()))
            self.assert_ended_whole(program)

    def start_while_git_hangs(self, desktop):
        preferences.write(desktop.config, [HangingRepository(desktop.home / "hanging").path])
        desktop.start_panel()
        program = Program(desktop)
        program.wait_for_hanging_child()
        return program

    def test_a_request_to_terminate_is_met_at_once_while_git_hangs(self):
        with Desktop(self.id()) as desktop:
            program = self.start_while_git_hangs(desktop)
            program.terminate()
            self.assert_ended_whole(program, PROMPTLY)

    def test_a_kill_takes_the_git_that_hangs_along(self):
        with Desktop(self.id()) as desktop:
            program = self.start_while_git_hangs(desktop)
            program.kill()
            wait_until(lambda: not program.children(), "nothing that the program started is left", PROMPTLY)

    def test_a_request_to_terminate_is_met_at_once_during_a_refresh(self):
        with Desktop(self.id()) as desktop:
            preferences.write(desktop.config, many_repositories(desktop, case.now_in("UTC")))
            desktop.start_panel()
            program = Program(desktop)
            program.wait_for_child()
            program.terminate()
            self.assert_ended_whole(program, PROMPTLY)


if __name__ == "__main__":
    case.main()
