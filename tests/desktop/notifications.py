# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""What the notification server holds, asked of the server itself."""

from typing import NamedTuple

from desktop import NOTIFICATIONS

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
