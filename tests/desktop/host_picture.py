# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""Two pictures of the item on a real host: host_picture.py HOST [late|again], for tools/host-picture; without one it
names them. With "late" the host starts after the program, with "again" it is ended and started once more."""

import os
import pathlib
import subprocess
import sys

from gi.repository import GLib

import case
import heavy_hosts
import hosts
import wayland
from item import ITEM
from look import ORANGE, Look
from program import BUS_NAME, Program
from repositories import tracked_days_ago
from screen import Rectangle
from usage import wait_for_quiet
from waiting import wait_until

HOSTS = {**hosts.BY_NAME, **heavy_hosts.BY_NAME}

# What every desktop here is made of.
BASE = ("dbus-daemon", "fonts-dejavu-core", "git", "imagemagick", "openbox", "python3-xlib", "util-linux", "xvfb")

# What stands around the item belongs to the picture.
MARGIN_LEFT = 24
MARGIN_RIGHT = 60
THICKEST_PANEL = 48


def _crop(picture, place, output):
    subprocess.run(["convert", picture, "-crop", f"{place.width}x{place.height}+{place.left}+{place.top}", "+repage",
                    "-define", "png:exclude-chunks=date,time", output], check=True)


def _around(screen, flame):
    return Rectangle(max(0, flame.left - MARGIN_LEFT), max(0, flame.top - 8),
                     min(screen.width, flame.right + MARGIN_RIGHT), min(screen.height, flame.bottom + 8))


# Not every host names its items in the same way.
def _tooltip(desktop):
    try:
        return desktop.bus.property(BUS_NAME, "/StatusNotifierItem", ITEM, "ToolTip")[2]
    except GLib.Error:  # not yet there
        return ""


def _flame(desktop, before):
    """Where the flame of a day with a commit has come since, along an edge of the screen; None before it has."""
    for edge in before:
        place = edge.difference(desktop.screen.settled(edge.place))
        if place and (flame := Look(desktop.screen.picture(place)).where(ORANGE)):
            return flame
    return None


def _start_both(host, desktop, is_late):
    """The program, and the upper and the lower edge of the screen without it."""
    host.surround(desktop)
    if not is_late:
        host.start(desktop)
    screen = desktop.screen
    before = [screen.settled(screen.whole._replace(bottom=THICKEST_PANEL)),
              screen.settled(screen.whole._replace(top=screen.height - THICKEST_PANEL))]
    program = Program(desktop)
    if is_late:
        wait_for_quiet(program.pid)
        host.start(desktop)
    return program, before


def _wait_for_flame(host, desktop, before):
    if host.is_on_bus:
        desktop.bus.wait_for(BUS_NAME)
        wait_until(lambda: "12" in _tooltip(desktop), "the streak in the tooltip")
    return wait_until(lambda: _flame(desktop, before), "an orange flame")


def take(host, folder, way):
    """Leaves screen.png and item.png in the folder."""
    with host.open("host-picture", width=1280, height=800) as desktop:
        tracked_days_ago(desktop, case.now_in("UTC"), *range(12))
        program, before = _start_both(host, desktop, way == "late")
        flame = _wait_for_flame(host, desktop, before)
        if way == "again":
            host.end(desktop)
            wait_until(lambda: not _flame(desktop, before), "no flame")
            host.start(desktop)
            flame = _wait_for_flame(host, desktop, before)
        desktop.screen.save(folder / "screen.png")
        _crop(folder / "screen.png", _around(desktop.screen, flame), folder / "item.png")
        program.end()


def main(arguments):
    if not arguments:
        print(*HOSTS)
        return
    host = HOSTS[arguments[0]]()
    case.stop_without({**{package: case.NEEDED[package] for package in BASE}, **host.needed})
    if issubclass(host.desktop, wayland.WaylandDesktop):
        wayland.as_ordinary_user()
    take(host, pathlib.Path(os.environ["VELQUARIN_DESKTOP_FAILURES"]), "".join(arguments[1:]))


if __name__ == "__main__":
    main(sys.argv[1:])
