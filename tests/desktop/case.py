# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""What the test files share: the way they start, and the clock of their user."""

import datetime
import os
import pathlib
import shutil
import signal
import sys
import unittest
import zoneinfo

# By what each Debian package is known to be there.
NEEDED = {
    "adwaita-icon-theme": "/usr/share/icons/Adwaita/index.theme",
    "at-spi2-core": "/usr/libexec/at-spi-bus-launcher",
    "dbus-daemon": "dbus-daemon",
    "dunst": "dunst",
    "fonts-dejavu-core": "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf",
    "git": "git",
    "imagemagick": "import",
    "openbox": "openbox",
    "python3-xlib": "/usr/lib/python3/dist-packages/Xlib/display.py",
    "thunar": "thunar",
    "util-linux": "setpriv",
    "xfce4-panel": "xfce4-panel",
    "xfconf": "/usr/share/dbus-1/services/org.xfce.Xfconf.service",
    "xvfb": "Xvfb",
}

# Whether the long check asks for all of what every run does a part of.
IS_WHOLE = os.environ.get("VELQUARIN_WHOLE") == "1"

# Ends a test that hangs while it can still clean up after itself; ctest's own limit is later.
LIMIT_SECONDS = 280
SKIPPED = 77


class ShiftedTime:
    """A user's clock that shows a time of our choice on the present day in a zone."""

    def __init__(self, hour, minute, zone, second=0):
        real = datetime.datetime.now(zoneinfo.ZoneInfo(zone))
        self.now = real.replace(hour=hour, minute=minute, second=second, microsecond=0)
        self.offset = round(self.now.timestamp() - real.timestamp())


def now_in(zone):
    return datetime.datetime.now(zoneinfo.ZoneInfo(zone))


def _is_there(sign):
    return pathlib.Path(sign).exists() if sign.startswith("/") else shutil.which(sign)


def _missing(needed):
    return [package for package, sign in needed.items() if not _is_there(sign)]


def needs(package, sign=None):
    """For a test that alone needs a Debian package, which not every suite has."""
    return unittest.skipUnless(_is_there(sign or package), f"this Debian package is not installed: {package}")


def stop_without(needed):
    """Ends the process, as skipped, where a Debian package is missing; told by its sign, as in NEEDED."""
    if missing := _missing(needed):
        print("skipped: these Debian packages are not installed:", *missing)
        sys.exit(SKIPPED)


def main(arguments=None, limit=LIMIT_SECONDS):
    """Runs the tests of the calling file; skips them by name where a Debian package is missing.

    arguments  the command line, where it is not the one that the file was called with
    limit      the seconds that they may take together
    """
    def give_up(_signal, _frame):
        raise TimeoutError(f"the test took longer than {limit} s")

    stop_without(NEEDED)
    signal.signal(signal.SIGALRM, give_up)
    signal.signal(signal.SIGTERM, signal.default_int_handler)
    signal.alarm(limit)
    unittest.main(verbosity=2, argv=arguments)
