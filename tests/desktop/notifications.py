# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""Real notification servers: what they hold and show, and their user's clicks."""

from typing import NamedTuple

import accessibility
from desktop import NOTIFICATIONS
from waiting import wait_until

_PATH = "/org/freedesktop/Notifications"
_CONTROL = "org.dunstproject.cmd0"


class Notification(NamedTuple):
    """What a user reads."""
    title: str
    body: str
    application: str


class NotificationServer:
    """The running dunst. What it shows can only be counted; its texts are told once it is closed."""

    def __init__(self, bus):
        self._bus = bus

    def shown(self):
        """How many notifications are on the screen or wait for their place there."""
        return self._count("displayedLength") + self._count("waitingLength")

    def _count(self, which):
        return self._bus.property(NOTIFICATIONS, _PATH, _CONTROL, which)

    def closed(self):
        """Every notification that was closed, the newest first."""
        records = self._bus.call(NOTIFICATIONS, _PATH, _CONTROL, "NotificationListHistory")[0]
        return [Notification(record["summary"], record["body"], record["appname"]) for record in records]


class Dunst:
    """One notification on the screen, under a pointer. Its buttons are entries of a menu, which a script stands for."""

    _MENU = "#!/bin/sh\nexec grep --max-count=1 --fixed-strings --file={wish}\n"

    def __init__(self, desktop):
        self._desktop = desktop
        self._wish = desktop.folder / "wish"
        menu = desktop.folder / "menu"
        menu.write_text(self._MENU.format(wish=self._wish))
        menu.chmod(0o755)
        desktop.start_notifications(f"    dmenu = {menu}\n    mouse_right_click = context\n")

    def place(self):
        """The rectangle of the notification, or None."""
        return dict(self._desktop.windows.unmanaged()).get("Dunst")

    def _click(self, button):
        self._desktop.screen.click(*wait_until(self.place, "the notification").centre, button)

    def click_body(self):
        self._click(2)

    def choose(self, text):
        self._wish.write_text(f"#{text} ")
        self._click(3)


class XfceNotifyd:
    """One notification on the screen, under a pointer."""

    PROGRAM = "/usr/lib/x86_64-linux-gnu/xfce4/notifyd/xfce4-notifyd"
    NEEDED = {"xfce4-notifyd": PROGRAM}

    def __init__(self, desktop):
        self._desktop = desktop
        accessibility.start(desktop)
        desktop.start("notifyd", "env", "--unset=NO_AT_BRIDGE", self.PROGRAM)
        desktop.bus.wait_for(NOTIFICATIONS)
        self._reader = accessibility.Reader(desktop, "xfce4-notifyd")

    def place(self):
        """The rectangle of the notification, or None. From Debian 13 on the window manager knows of it."""
        windows = self._desktop.windows
        return dict(windows.unmanaged()).get("xfce4-notifyd") or windows.place_of("xfce4-notifyd")

    def _find(self, text):
        return next(filter(None, (window.find(text) for window in self._reader.shown_windows())), None)

    def texts(self):
        return [text for window in self._reader.shown_windows() for text in window.texts()]

    def _click(self, text):
        found = wait_until(lambda: self._find(text), f"{text!r} in the notification")
        self._desktop.screen.click(*found.centre, 1)

    def click_body(self):
        self._click("Streak at Risk!")

    def choose(self, text):
        self._click(text)
