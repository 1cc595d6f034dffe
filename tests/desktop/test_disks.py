# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""A repository on a disk that stops answering, or goes while it is watched: a file system of the user's own stands in."""

import os
import signal
import subprocess
import unittest

import accessibility
import case
import preferences
from dashboard import WINDOW
from desktop import Desktop
from item import PanelPlace, StatusItem, click_first_entry, click_last_entry, open_menu
from program import AT_ONCE, Program
from repositories import Repository
from waiting import wait_until


class Disk:
    """A folder that is shown in another place by a program, for as long as that program answers."""

    def __init__(self, desktop, source, place):
        place.mkdir()
        self.place = place
        self._process = desktop.start(f"disk at {place.name}", "bindfs", "-f", str(source), str(place))

    def is_there(self):
        """Whether it is mounted by now; RuntimeError where it never will be."""
        if self._process.poll() is not None:
            raise RuntimeError("no file system of one's own here")
        return os.path.ismount(self.place)

    def stop_answering(self):
        self._process.send_signal(signal.SIGSTOP)

    def pull_out(self):
        subprocess.run(["umount", "--lazy", str(self.place)], check=True)

    def end(self):
        self._process.send_signal(signal.SIGCONT)
        self._process.terminate()
        self._process.wait()
        subprocess.run(["umount", "--lazy", str(self.place)], check=False, stderr=subprocess.DEVNULL)


def can_mount(desktop):
    try:
        disk = Disk(desktop, desktop.folder, desktop.folder / "probe")
    except FileNotFoundError:
        return False
    try:
        return wait_until(disk.is_there, "a file system of one's own")
    except RuntimeError:
        return False
    finally:
        disk.end()


class Disks(unittest.TestCase):

    def run_on(self, fault):
        """Calls fault(desktop, disk, program, rectangle) once the repository's streak of two days is shown."""
        with Desktop(self.id()) as desktop:
            if not can_mount(desktop):
                self.skipTest("this user may not mount a file system of their own")
            repository = Repository(desktop.home / "behind")
            repository.commit_days_ago(case.now_in("UTC"), 0, 1)
            disk = Disk(desktop, repository.path, desktop.home / "disk")
            try:
                wait_until(disk.is_there, "the disk")
                preferences.write(desktop.config, [disk.place])
                accessibility.start(desktop)
                desktop.start_panel()
                place = PanelPlace(desktop.screen)
                program = Program(desktop)
                StatusItem(desktop).wait_for_label(" 2")
                fault(desktop, disk, program, place.find())
            finally:
                disk.end()

    def test_a_disk_that_stops_answering_holds_up_neither_the_dashboard_nor_the_end(self):
        def fault(desktop, disk, program, in_panel):
            disk.stop_answering()
            click_first_entry(desktop.screen, open_menu(desktop, in_panel))
            StatusItem(desktop).wait_for_symbol("Syncing")
            desktop.screen.click(*in_panel.centre, 1)
            reader = accessibility.Reader(desktop)
            self.assertIn("Refresh", reader.wait_for_window(WINDOW).texts())
            desktop.screen.press("Escape")
            reader.wait_without_window(WINDOW)
            program.terminate()
            self.assertEqual(program.wait_for_end(AT_ONCE), 0)
            disk.end()
            wait_until(lambda: not program.children(), "nothing that the program started is left")
        self.run_on(fault)

    def test_a_disk_that_is_pulled_out_leaves_no_streak_and_no_complaint(self):
        def fault(desktop, disk, program, in_panel):
            disk.pull_out()
            click_first_entry(desktop.screen, open_menu(desktop, in_panel))
            StatusItem(desktop).wait_for_label("")
            click_last_entry(desktop.screen, open_menu(desktop, in_panel))
            self.assertEqual(program.wait_for_end(AT_ONCE), 0)
            self.assertEqual((program.output(), program.errors()), ("", ""))
        self.run_on(fault)


if __name__ == "__main__":
    case.main()
