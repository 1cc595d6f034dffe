# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""A session bus of the test's own, on which nothing starts by itself but the services named here."""

from gi.repository import Gio, GLib

import processes
from waiting import LIMIT_SECONDS, wait_until

# The panel keeps its settings there.
ACTIVATABLE = ("org.xfce.Xfconf",)

CONFIGURATION = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-BUS Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>{address}</listen>
  <servicedir>{services}</servicedir>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
"""


class Bus:
    """A bus with a fixed address, and while it runs a connection to it."""

    def __init__(self, folder):
        self._folder = folder
        self._process = None
        self.connection = None
        self.address = f"unix:path={folder}/socket"
        (folder / "services").mkdir()
        for name in ACTIVATABLE:
            self.allow(name)
        self._configuration().write_text(CONFIGURATION.format(address=self.address, services=folder / "services"))

    def _configuration(self):
        return self._folder / "bus.conf"

    def allow(self, name):
        """Lets the bus start an installed service by itself. Comes before start()."""
        file = f"{name}.service"
        (self._folder / "services" / file).symlink_to(f"/usr/share/dbus-1/services/{file}")

    def start_service(self, name):
        """Starts one that it was allowed to start."""
        self._ask("StartServiceByName", name, 0, types="(su)")

    def offer(self, name, service):
        """Makes one more service known that the bus starts by itself. Comes before start()."""
        (self._folder / "services" / f"{name}.service").write_text(service)

    def start(self, environment, logs):
        """Returns when the bus answers."""
        command = ["dbus-daemon", "--nofork", "--nopidfile", f"--config-file={self._configuration()}"]
        self._process = processes.start("bus", command, environment, logs)
        self.connection = self.connect()

    def end(self):
        if self._process:
            processes.end(self._process)

    def connect(self):
        """A new connection, with a name of its own."""
        return wait_until(self._try_to_connect, "the session bus")

    # The socket is there before anybody listens on it.
    def _try_to_connect(self):
        flags = Gio.DBusConnectionFlags
        try:
            return Gio.DBusConnection.new_for_address_sync(
                self.address, flags.AUTHENTICATION_CLIENT | flags.MESSAGE_BUS_CONNECTION, None, None)
        except GLib.Error:
            return None

    def call(self, name, path, interface, method, arguments=None):
        """The results of a call, as a tuple."""
        answer = self.connection.call_sync(
            name, path, interface, method, arguments, None, Gio.DBusCallFlags.NO_AUTO_START,
            round(1000 * LIMIT_SECONDS), None)
        return answer.unpack()

    def send(self, name, path, interface, method, arguments=None):
        """A call that is on its way when this returns, and whose answer nobody waits for."""
        self.connection.call(
            name, path, interface, method, arguments, None, Gio.DBusCallFlags.NO_AUTO_START, 5000, None, None)
        self.connection.flush_sync(None)

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

    def _ask(self, method, *arguments, types="(s)"):
        return self.call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", method,
                         GLib.Variant(types, arguments))[0]

    def wait_for(self, name):
        wait_until(lambda: self.owner(name), f"{name} on the bus")

    def wait_without(self, name):
        wait_until(lambda: not self.owner(name), f"{name} gone from the bus")
