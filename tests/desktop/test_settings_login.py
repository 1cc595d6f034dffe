# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""The switch "Launch at login", and what it does to the files from which a session starts its programs."""

import configparser
import os
import pathlib
import subprocess
import unittest

import case
from desktop import Desktop
from gi.repository import Gio
from settings import Session
from waiting import wait_until

SWITCH = "Launch at login"
OTHER = "Show streak count in menu bar"
ENTRY = "autostart/io.velquarin.Velquarin.desktop"


def entry_of_everybody(desktop):
    return pathlib.Path(desktop.environment["XDG_CONFIG_DIRS"]) / ENTRY


def values_in(path):
    """The values of a desktop entry, as a reader of such files reads them."""
    parser = configparser.RawConfigParser(delimiters=("=",), comment_prefixes=("#",), strict=True)
    parser.optionxform = str
    parser.read(path)
    return dict(parser["Desktop Entry"])


def read_only_for_the_program(folder):
    """What starts the program so that it cannot write into that folder; skips the test where that is not to be had."""
    if os.geteuid() != 0:
        folder.chmod(0o500)
        return ()
    script = 'mount --bind "$1" "$1" && mount -o remount,ro,bind "$1" && shift && exec "$@"'
    wrapper = ("unshare", "--mount", "sh", "-c", script, "read-only", str(folder))
    if subprocess.run([*wrapper, "true"], check=False, stderr=subprocess.DEVNULL, timeout=20).returncode != 0:
        raise unittest.SkipTest("no read-only folders for root here")
    return wrapper


class Login(unittest.TestCase):

    def switch(self, session, to):
        session.click(SWITCH)
        session.wait_for_state(SWITCH, "checked", to)

    def assert_switch(self, session, is_on):
        self.assertEqual("checked" in session.window().find(SWITCH).states, is_on)

    def test_on_has_the_program_started_and_off_takes_it_back(self):
        with Desktop(self.id()) as desktop:
            entry = desktop.config / ENTRY
            session = Session(desktop)
            session.open("General")
            self.assert_switch(session, False)
            self.switch(session, True)
            wait_until(entry.exists, "the entry")
            subprocess.run(["desktop-file-validate", str(entry)], check=True, timeout=20)
            self.assertEqual(Gio.DesktopAppInfo.new_from_filename(str(entry)).get_commandline(),
                             os.environ["VELQUARIN_PROGRAM"])

            self.assertEqual(session.end(), (0, ""))
            session.start()
            session.open("General")
            self.assert_switch(session, True)
            self.switch(session, False)
            wait_until(lambda: not entry.exists(), "no entry")
            self.assertEqual(list(entry.parent.iterdir()), [])
            self.assertEqual(session.end(), (0, ""))

    def test_off_hides_the_entry_of_everybody_and_leaves_it_alone(self):
        with Desktop(self.id()) as desktop:
            own, others = desktop.config / ENTRY, entry_of_everybody(desktop)
            others.parent.mkdir()
            others.write_text("[Desktop Entry]\nType=Application\nName=Velquarin\nExec=/bin/true\n")
            before = (others.read_bytes(), others.stat().st_mtime_ns)
            session = Session(desktop)
            session.open("General")
            self.assert_switch(session, True)
            self.switch(session, False)
            wait_until(own.exists, "an entry of the user's own")
            subprocess.run(["desktop-file-validate", str(own)], check=True, timeout=20)
            self.assertEqual(values_in(own)["Hidden"], "true")

            self.switch(session, True)
            wait_until(lambda: "Hidden" not in values_in(own), "it is hidden no longer")
            self.assertEqual(values_in(own)["Exec"], os.environ["VELQUARIN_PROGRAM"])
            self.assertEqual((others.read_bytes(), others.stat().st_mtime_ns), before)
            self.assertEqual(list(others.parent.iterdir()), [others])
            self.assertEqual(session.end(), (0, ""))

    def test_where_nothing_can_be_written_the_switch_goes_back_to_off(self):
        with Desktop(self.id()) as desktop:
            folder = (desktop.config / ENTRY).parent
            folder.mkdir()
            session = Session(desktop, wrapper=read_only_for_the_program(folder))
            session.open("General")
            for other_is_on in (False, True):
                session.click(SWITCH)
                session.click(OTHER)
                session.wait_for_state(OTHER, "checked", other_is_on)
                session.wait_for_state(SWITCH, "checked", False)
            self.assertEqual(list(folder.iterdir()), [])
            self.assertEqual(session.end(), (0, ""))


if __name__ == "__main__":
    case.main()
