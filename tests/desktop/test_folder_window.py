# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""A folder's window is told when the user asked for it, so that it comes before his eyes and not behind others."""

import contextlib
import re
import unittest

import case
from application import SomeFileManager
from dashboard import Dashboard
from desktop import Desktop
from startup import StartupMessages, server_time
from waiting import wait_until

FORM = re.compile(r"velquarin-.+_TIME([0-9]+)")


class FolderWindow(unittest.TestCase):

    def asked_for(self, dashboard, manager, act):
        """The startup id that comes with the folder of a row."""
        manager.calls.clear()
        dashboard.open()
        act(dashboard.row_name("busy"))
        (method, (folders, startup_id)), = manager.wait_for_call()
        self.assertEqual((method, folders), ("ShowFolders", [dashboard.repositories["busy"].path.as_uri()]))
        dashboard.wait_until_closed()
        return startup_id

    def test_each_click_has_an_id_of_its_own_with_its_time_and_a_screen_readers_press_has_none(self):
        with Desktop(self.id()) as desktop:
            dashboard = Dashboard(desktop)
            manager = SomeFileManager(desktop.bus)
            self.assertEqual(self.asked_for(dashboard, manager, dashboard.press), "")
            seen = []
            for _ in range(2):
                before = server_time(desktop)
                startup_id = self.asked_for(dashboard, manager, dashboard.click)
                self.assertRegex(startup_id, FORM)
                self.assertLessEqual(before, int(FORM.fullmatch(startup_id)[1]))
                self.assertLessEqual(int(FORM.fullmatch(startup_id)[1]), server_time(desktop))
                seen.append(startup_id)
            self.assertNotEqual(*seen)
            self.assertEqual(dashboard.program.end(), 0)

    def test_a_file_manager_takes_the_id_and_its_window_the_keyboard(self):
        with Desktop(self.id()) as desktop:
            dashboard = Dashboard(desktop)
            desktop.start_file_manager()
            desktop.windows.cover("what the user does meanwhile")
            dashboard.open()
            before = server_time(desktop)
            with contextlib.closing(StartupMessages(desktop)) as messages:
                dashboard.click(dashboard.row_name("busy"))
                wait_until(lambda: desktop.windows.active().startswith("busy"), "the folder's window has the keyboard",
                           state=desktop.windows.active)
                message, = wait_until(messages.texts, "the file manager's word that it is there")
            startup_id = message.removeprefix('remove: ID="').removesuffix('"')
            self.assertRegex(startup_id, FORM)
            self.assertLessEqual(before, int(FORM.fullmatch(startup_id)[1]))
            self.assertEqual(dashboard.program.end(), 0)

    def test_no_program_that_we_start_inherits_a_token(self):
        given = {"DESKTOP_STARTUP_ID": "menu-1_TIME42", "XDG_ACTIVATION_TOKEN": "token-7"}
        with Desktop(self.id()) as desktop:
            told = desktop.folder / "told"
            opener = self.make_opener(desktop, told)
            dashboard = Dashboard(desktop, given=given)
            dashboard.open()
            dashboard.click(dashboard.row_name("busy"))
            wait_until(lambda: told.exists() and told.read_text().endswith("end\n"), f"{opener} runs")
            inherited = dict(line.split("=", 1) for line in told.read_text().splitlines() if "=" in line)
            self.assertEqual(inherited["HOME"], str(desktop.home))
            self.assertEqual(given.keys() & inherited.keys(), set())
            self.assertEqual(dashboard.program.end(), 0)

    def make_opener(self, desktop, told):
        """What opens folders where no file manager is on the bus: writes down what it inherited."""
        folder = desktop.folder / "bin"
        folder.mkdir()
        opener = folder / "xdg-open"
        opener.write_text(f"#!/bin/sh\nexec > {told}\nenv\necho end\n")
        opener.chmod(0o755)
        desktop.environment["PATH"] = f"{folder}:{desktop.environment['PATH']}"
        return opener


if __name__ == "__main__":
    case.main()
