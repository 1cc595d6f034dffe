# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""A session bus of the test's own, on which nothing starts by itself but the services named here."""

import pathlib

import gi
from gi.repository import Gio, GLib

import processes
from waiting import wait_until

gi.require_version("Gio", "2.0")

# The panel keeps its settings in the first; the second leads screen readers to the programs.
ACTIVATABLE = ("org.xfce.Xfconf", "org.a11y.Bus")

CONFIGURATION = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-BUS Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:path={socket}</listen>
  <servicedir>{services}</servicedir>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
"""


class Bus:
    """The running bus, and a connection to it."""

    def __init__(self, folder, environment, logs):
        self.socket = folder / "bus"
        self.address = f"unix:path={self.socket}"
        self._process = self._start(folder, environment, logs)
        self.connection = self.connect()

    def _start(self, folder, environment, logs):
        services = folder / "services"
        services.mkdir()
        for name in ACTIVATABLE:
            (services / f"{name}.service").symlink_to(f"/usr/share/dbus-1/services/{name}.service")
        configuration = folder / "bus.conf"
        configuration.write_text(CONFIGURATION.format(socket=self.socket, services=services))
        environment = {**environment, "DBUS_SESSION_BUS_ADDRESS": self.address}
        command = ["dbus-daemon", "--nofork", "--nopidfile", f"--config-file={configuration}"]
        return processes.start("bus", command, environment, logs)

    def connect(self):
        """A new connection, with a name of its own."""
        wait_until(lambda: pathlib.Path(self.socket).exists(), "the session bus")
        flags = Gio.DBusConnectionFlags
        return Gio.DBusConnection.new_for_address_sync(
            self.address, flags.AUTHENTICATION_CLIENT | flags.MESSAGE_BUS_CONNECTION, None, None)

    def call(self, name, path, interface, method, arguments=None):
        """The results of a call, as a tuple."""
        answer = self.connection.call_sync(
            name, path, interface, method, arguments, None, Gio.DBusCallFlags.NO_AUTO_START, 5000, None)
        return answer.unpack()

    def properties(self, name, path, interface):
        """Everything that an object says of itself under one interface."""
        arguments = GLib.Variant("(s)", (interface,))
        return self.call(name, path, "org.freedesktop.DBus.Properties", "GetAll", arguments)[0]

    def property(self, name, path, interface, which):
        arguments = GLib.Variant("(ss)", (interface, which))
        return self.call(name, path, "org.freedesktop.DBus.Properties", "Get", arguments)[0]

    def owner(self, name):
        """The unique name behind a name, or None."""
        try:
            return self._ask("GetNameOwner", name)
        except GLib.Error:
            return None

    def process_of(self, name):
        return self._ask("GetConnectionUnixProcessID", name)

    def _ask(self, method, name):
        arguments = GLib.Variant("(s)", (name,))
        return self.call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", method, arguments)[0]

    def wait_for(self, name):
        wait_until(lambda: self.owner(name), f"{name} on the bus")

    def wait_without(self, name):
        wait_until(lambda: not self.owner(name), f"{name} gone from the bus")

    def end(self):
        processes.end(self._process)
