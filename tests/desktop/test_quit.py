# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""The program ends when it is told to, at once, and takes everything it started with it."""

import contextlib
import shutil
import unittest

import case
import preferences
from desktop import Desktop
from item import PanelPlace, StatusItem, click_last_entry, open_menu
from program import AT_ONCE, Program
from repositories import HangingRepository, Repository, tracked_days_ago
from settings import Session
from waiting import wait_until


def many_repositories(desktop, now, count=80):
    """So many repositories that a refresh takes a while."""
    first = Repository(desktop.home / "first")
    first.commit_days_ago(now, 1, 2)
    paths = [desktop.home / f"repository {number}" for number in range(count)]
    for path in paths:
        shutil.copytree(first.path, path)
    return paths


class Quit(unittest.TestCase):

    def assert_ended_whole(self, program):
        self.assertEqual(program.wait_for_end(AT_ONCE), 0)
        self.assert_nothing_left(program)

    def assert_nothing_left(self, program):
        wait_until(lambda: not program.children(), "nothing that the program started is left", state=program.children)

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
            desktop.start_panel()
            place = PanelPlace(desktop.screen)
            with self.started_while_git_hangs(desktop) as program:
                click_last_entry(desktop.screen, open_menu(desktop, place.find()))
                self.assert_ended_whole(program)

    @contextlib.contextmanager
    def started_while_git_hangs(self, desktop):
        """The program, whose git hangs as long as the block lasts: who waits for it does not come to an end in there."""
        repository = HangingRepository(desktop.home / "hanging")
        preferences.write(desktop.config, [repository.path])
        program = Program(desktop)
        with repository.with_a_reader():
            yield program

    def test_a_request_to_terminate_is_met_while_git_hangs(self):
        with Desktop(self.id()) as desktop, self.started_while_git_hangs(desktop) as program:
            program.terminate()
            self.assert_ended_whole(program)

    def test_a_request_to_terminate_is_met_while_windows_are_open(self):
        with Desktop(self.id()) as desktop:
            session = Session(desktop)
            session.open()
            session.open_dashboard()
            self.assertEqual(session.end(), (0, ""))

    def test_a_kill_takes_the_git_that_hangs_along(self):
        with Desktop(self.id()) as desktop, self.started_while_git_hangs(desktop) as program:
            program.kill()
            self.assert_nothing_left(program)

    def test_a_request_to_terminate_is_met_during_a_refresh_whatever_is_left_of_it(self):
        with Desktop(self.id()) as desktop:
            paths = many_repositories(desktop, case.now_in("UTC"))
            preferences.write(desktop.config, [*paths, HangingRepository(desktop.home / "hanging").path])
            program = Program(desktop)
            program.wait_for_child()
            program.terminate()
            self.assert_ended_whole(program)


if __name__ == "__main__":
    case.main()
