# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""What the package holds, unpacked: the program and the ways in which a desktop starts it."""

import contextlib
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

from gi.repository import GLib

import case
from desktop import Desktop
from item import StatusItem
from program import BUS_NAME, Program
from waiting import wait_until

APPLICATION = ("/io/velquarin/Velquarin", "org.freedesktop.Application")
DASHBOARD = "Velquarin"

# What a desktop's menu does: it asks the bus where the entry says so. It has to stay, as a menu does, since the bus
# forgets what somebody wanted who is gone before the program has come.
MENU = """
import sys
from gi.repository import Gio, GLib
Gio.DesktopAppInfo.new_from_filename(sys.argv[1]).launch([], None)
GLib.MainLoop().run()
"""


class Installed(unittest.TestCase):

    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="velquarin-package-")
        self.addCleanup(folder.cleanup)
        self.usr = pathlib.Path(folder.name) / "usr"
        subprocess.run(["dpkg-deb", "-x", os.environ["VELQUARIN_PACKAGE"], folder.name], check=True)

    def service(self):
        """The bus's own file, with the path of the program as it is here."""
        text = (self.usr / f"share/dbus-1/services/{BUS_NAME}.service").read_text()
        self.assertIn("\nExec=\"/usr/bin/velquarin\"\n", text)
        return text.replace("/usr/bin", str(self.usr / "bin"))

    @contextlib.contextmanager
    def desktop(self):
        """A desktop on which the unpacked files are installed, with a panel."""
        with Desktop(self.id(), bus_comes_late=True) as desktop:
            desktop.environment["PATH"] = f"{self.usr}/bin:{desktop.environment['PATH']}"
            desktop.bus.offer(BUS_NAME, self.service())
            desktop.start_bus()
            desktop.start_panel()
            yield desktop

    def has_dashboard(self, desktop):
        return any(title == DASHBOARD for title, _ in desktop.windows.unmanaged())

    def test_the_program_registers_and_finds_its_icons(self):
        with self.desktop() as desktop:
            os.environ["VELQUARIN_PROGRAM"] = str(self.usr / "bin/velquarin")
            program = Program(desktop)
            item = StatusItem(desktop)
            item.wait_until_refreshed()
            icons = pathlib.Path(item.property("IconThemePath"))
            self.assertEqual(icons, self.usr / "share/velquarin/icons")
            for name in ("flame.svg", "flame-symbolic.svg", "hicolor/symbolic/apps/flame-symbolic.svg"):
                self.assertTrue((icons / name).is_file(), name)
            self.assertEqual(program.end(), 0)
            self.assertEqual(program.errors(), "")

    def test_a_start_by_the_bus_opens_nothing_until_it_is_activated(self):
        with self.desktop() as desktop:
            desktop.bus.call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                             "StartServiceByName", GLib.Variant("(su)", (BUS_NAME, 0)))
            StatusItem(desktop).wait_until_refreshed()
            self.assertFalse(self.has_dashboard(desktop))
            desktop.bus.call(BUS_NAME, *APPLICATION, "Activate", GLib.Variant("(a{sv})", ({},)))
            wait_until(lambda: self.has_dashboard(desktop), "the dashboard")

    def test_a_start_from_the_menu_opens_the_dashboard(self):
        with self.desktop() as desktop:
            desktop.start("menu", sys.executable, "-c", MENU, str(self.usr / f"share/applications/{BUS_NAME}.desktop"))
            StatusItem(desktop).wait_until_refreshed()
            wait_until(lambda: self.has_dashboard(desktop), "the dashboard")
            program = pathlib.Path(f"/proc/{desktop.bus.process_of(BUS_NAME)}/exe").readlink()
            self.assertEqual(program, self.usr / "bin/velquarin")


if __name__ == "__main__":
    case.main()
