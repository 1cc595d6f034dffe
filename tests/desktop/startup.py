# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""What launchers on X11 hear of the starts that they wait for."""

from Xlib import X, display

from waiting import wait_until

_BEGIN, _MORE = "_NET_STARTUP_INFO_BEGIN", "_NET_STARTUP_INFO"


def server_time(desktop):
    """The time of the X server's clock, in milliseconds."""
    server = display.Display(desktop.environment["DISPLAY"])
    try:
        window = server.screen().root.create_window(-1, -1, 1, 1, 0, X.CopyFromParent, event_mask=X.PropertyChangeMask)
        window.set_wm_name("clock")
        while (event := server.next_event()).type != X.PropertyNotify:
            pass
        return event.time
    finally:
        server.close()


class StartupMessages:
    """Listens from now on, over a connection of its own."""

    def __init__(self, desktop):
        self._display = display.Display(desktop.environment["DISPLAY"])
        self._kinds = {self._display.get_atom(name): name for name in (_BEGIN, _MORE)}
        self._parts = {}
        self._texts = []
        self._display.screen().root.change_attributes(event_mask=X.PropertyChangeMask)
        self._display.sync()

    def close(self):
        self._display.close()

    def _read(self):
        while self._display.pending_events():
            event = self._display.next_event()
            kind = self._kinds.get(event.client_type) if event.type == X.ClientMessage else None
            if kind:
                self._add(event.window.id, kind, bytes(event.data[1]))

    def _add(self, sender, kind, part):
        text = (b"" if kind == _BEGIN else self._parts.get(sender, b"")) + part
        self._parts[sender] = text
        if b"\0" in part:
            self._texts.append(text.partition(b"\0")[0].decode())

    def texts(self):
        """Every message so far, in the order of their ends."""
        self._read()
        return list(self._texts)

    def wait_for(self, text):
        wait_until(lambda: text in self.texts(), f"the message {text!r}")
