# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""A watcher over status items that shows none itself, as a desktop's service does beside somebody else's bar."""

from gi.repository import Gio, GLib

from desktop import WATCHER

PATH = "/StatusNotifierWatcher"
INTERFACE = f"""<node><interface name="{WATCHER}">
<method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
<property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
<signal name="StatusNotifierHostRegistered"/><signal name="StatusNotifierHostUnregistered"/>
</interface></node>"""


class Watcher:
    """It answers while somebody waits."""

    def __init__(self, bus):
        self.items = []
        self._has_host = False
        self._connection = bus.connect()
        interface = Gio.DBusNodeInfo.new_for_xml(INTERFACE).interfaces[0]
        self._connection.register_object(PATH, interface, self._register, self._property, None)
        Gio.bus_own_name_on_connection(self._connection, WATCHER, Gio.BusNameOwnerFlags.NONE, None, None)

    def host_comes(self):
        self._tell(True, "StatusNotifierHostRegistered")

    def host_goes(self):
        self._tell(False, "StatusNotifierHostUnregistered")

    def _tell(self, has_host, signal):
        self._has_host = has_host
        self._connection.emit_signal(None, PATH, WATCHER, signal, None)

    def _register(self, _connection, sender, _path, _interface, _method, arguments, invocation):
        self.items.append(sender + arguments.unpack()[0])
        invocation.return_value(None)

    def _property(self, _connection, _sender, _path, _interface, _name):
        return GLib.Variant("b", self._has_host)
