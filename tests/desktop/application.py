# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""Objects on the session bus that write down what they are asked, in the place of real ones."""

from gi.repository import Gio, GLib

from waiting import wait_until


class Recorder:
    """Owns a name with one object behind it, and answers every call with nothing. It answers while somebody waits."""

    def __init__(self, bus, name, path, interface, methods):
        self.calls = []
        self._connection = bus.connect()
        texts = "".join(f'<method name="{method}">{_arguments(types)}</method>' for method, types in methods.items())
        node = Gio.DBusNodeInfo.new_for_xml(f'<node><interface name="{interface}">{texts}</interface></node>')
        self._connection.register_object(path, node.interfaces[0], self._take, None, None)
        flags = GLib.Variant("(su)", (name, 4))
        self._connection.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                                   "RequestName", flags, None, Gio.DBusCallFlags.NONE, 5000, None)

    def _take(self, _connection, _sender, _path, _interface, method, arguments, invocation):
        self.calls.append((method, arguments.unpack()))
        invocation.return_value(None)

    def wait_for_call(self):
        return wait_until(lambda: self.calls, "a call")


class SomeApplication(Recorder):
    """Stands where the first start of a program would."""

    def __init__(self, bus, name):
        super().__init__(bus, name, "/" + name.replace(".", "/"), "org.freedesktop.Application",
                         {"Activate": ("a{sv}",)})

    def answer(self, program):
        """What the program handed over, call by call, until it ended."""
        wait_until(lambda: not program.is_running(), "the second start's end")
        return [arguments[0] for method, arguments in self.calls if method == "Activate"]


class SomeFileManager(Recorder):
    """A file manager that opens nothing."""

    def __init__(self, bus):
        super().__init__(bus, "org.freedesktop.FileManager1", "/org/freedesktop/FileManager1",
                         "org.freedesktop.FileManager1", {"ShowFolders": ("as", "s")})


def _arguments(types):
    return "".join(f'<arg type="{kind}" direction="in"/>' for kind in types)
