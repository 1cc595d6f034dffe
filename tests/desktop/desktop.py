# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""A whole desktop of the test's own, on a screen that exists only in memory."""

import contextlib
import os
import pathlib
import select
import shutil
import tempfile
from functools import cached_property

from gi.repository import GLib

import appearance
import panel
import processes
from bus import Bus
from keeper import Keeper
from screen import Screen
from waiting import LIMIT_SECONDS, PATIENCE_SECONDS, wait_until
from windows import Windows

WATCHER = "org.kde.StatusNotifierWatcher"
NOTIFICATIONS = "org.freedesktop.Notifications"
FILE_MANAGER = "org.freedesktop.FileManager1"

# One start in a hundred never shows its window.
TRAYER_STARTS = 4

DUNST_SETTINGS = """[global]
    origin = bottom-right
    font = Sans 10
    history_length = 20
"""


class Desktop:
    """Use it in a with statement: it ends with the block, and a block that fails leaves pictures and logs.

    name           under which the remains of a failure are kept
    bus            without one there is neither panel nor notifications
    bus_comes_late the session knows the bus's address, and start_bus() is called later
    """
    lets_programs_place_windows = True

    def __init__(self, name, bus=True, bus_comes_late=False, panel_plugins=("separator", "systray"), width=1024,
                 height=768):
        self._name = name
        self._started = {}
        self._bus_runs_at_first = not bus_comes_late
        self._panel_plugins = panel_plugins
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="velquarin-desktop-"))
        self._keeper = Keeper(self.folder)
        self.logs = self._make("logs")
        self.home = self._make("home")
        self.config = self._make("config")
        self.environment = self._environment()
        self.screen = Screen(self.environment, width, height)
        self.bus = self._make_bus() if bus else None

    def __enter__(self):
        try:
            self._open()
        except BaseException as error:
            self.__exit__(type(error), error, None)
            raise
        return self

    def __exit__(self, kind, _error, _trace):
        try:
            if kind is not None:
                self._keep_remains()
        finally:
            self._end_everything()

    @cached_property
    def windows(self):
        """The windows on the screen."""
        return Windows(self.environment["DISPLAY"])

    def _make(self, name):
        folder = self.folder / name
        folder.mkdir(mode=0o700)
        return folder

    # Nothing of the real session leaks in: the environment is written from nothing.
    def _environment(self):
        return {
            **self._keeper.mark,
            "PATH": "/usr/local/bin:/usr/bin:/bin",
            "HOME": str(self.home),
            "XDG_CONFIG_HOME": str(self.config),
            "XDG_CONFIG_DIRS": str(self._make("system-config")),
            "XDG_DATA_HOME": str(self._make("data")),
            "XDG_CACHE_HOME": str(self._make("cache")),
            "XDG_STATE_HOME": str(self._make("state")),
            "XDG_RUNTIME_DIR": str(self._make("runtime")),
            # For most others the toolkit loads GTK's dialogs, where its plugin for that is installed.
            "XDG_CURRENT_DESKTOP": "none",
            "XDG_SESSION_TYPE": "x11",
            "LANG": "C.UTF-8",
            "TZ": "UTC",
            "GSETTINGS_BACKEND": "memory",
            "GIO_USE_VFS": "local",
            "NO_AT_BRIDGE": "1",
            **appearance.settle(self.config),
        }

    def _open(self):
        self._start_screen()
        self._start_window_manager()
        panel.write_settings(self.config, self._panel_plugins)
        if self.bus and self._bus_runs_at_first:
            self.start_bus()

    def _start_window_manager(self):
        self.start("openbox", "openbox", "--sm-disable")
        self.wait_for_window_manager()

    def wait_for_window_manager(self):
        wait_until(self.windows.are_managed, "the window manager")

    # The server itself picks a number that is free, so that two desktops never meet.
    def _start_screen(self):
        reader, writer = os.pipe()
        size = f"{self.screen.width}x{self.screen.height}x24"
        self.start("Xvfb", "Xvfb", "-displayfd", str(writer), "-screen", "0", size, "-dpi", "96", "-noreset",
                   "-nolisten", "tcp", pass_fds=(writer,))
        os.close(writer)
        with open(reader, encoding="ascii") as pipe:
            ready, _, _ = select.select([pipe], [], [], LIMIT_SECONDS)
            number = pipe.readline().strip() if ready else ""
        if not number:
            raise RuntimeError("Xvfb did not start: " + (self.logs / "Xvfb.log").read_text())
        self.environment["DISPLAY"] = f":{number}"

    def start(self, name, *command, **more):
        self._started[name] = processes.start(name, command, self.environment, self.logs, **more)
        return self._started[name]

    def end(self, name):
        processes.end(self._started.pop(name))

    def end_with_it(self, process):
        """Whatever was started on this desktop ends with it."""
        self._started[f"process {process.pid}"] = process

    def _make_bus(self):
        bus = Bus(self._make("bus"))
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = bus.address
        return bus

    def start_bus(self):
        self.bus.start(self.environment, self.logs)

    def end_bus(self):
        self.bus.end()

    def start_panel(self):
        """A panel that shows status items: it is there when this returns."""
        self.start("panel", "xfce4-panel", "--disable-wm-check")
        wait_until(lambda: self.takes_items() and panel.is_drawn(self.screen), "the panel")

    def end_panel(self):
        self.end("panel")
        self.bus.wait_without(WATCHER)

    def takes_items(self):
        """Whether somebody is there who collects status items and somebody who shows them."""
        try:
            return self.bus.property(WATCHER, "/StatusNotifierWatcher", WATCHER, "IsStatusNotifierHostRegistered")
        except GLib.Error:  # nobody yet, or nobody any more
            return False

    def start_notifications(self, more=""):
        """more: further lines of the server's settings."""
        settings = self.config / "dunstrc"
        settings.write_text(DUNST_SETTINGS + more)
        self.start("dunst", "dunst", "-conf", str(settings))
        self.bus.wait_for(NOTIFICATIONS)

    def start_file_manager(self):
        self.start("thunar", "thunar", "--daemon")
        self.bus.wait_for(FILE_MANAGER)

    def start_old_tray(self):
        """A tray of the kind that needs no session bus; it takes the upper edge of the screen."""
        without = panel.picture(self.screen)
        for _ in range(TRAYER_STARTS):
            self.start("trayer", "trayer", "--edge", "top", "--align", "right", "--widthtype", "pixel",
                       "--width", str(panel.NARROWEST), "--heighttype", "pixel", "--height", str(panel.HEIGHT),
                       "--transparent", "false", "--tint", panel.BACKGROUND.replace("#", "0x"))
            with contextlib.suppress(TimeoutError):
                wait_until(lambda: self.windows.has_tray() and panel.picture(self.screen) != without, "the tray",
                           PATIENCE_SECONDS)
                return
            self.end("trayer")
            print("once more: trayer")
        raise TimeoutError(f"trayer was started {TRAYER_STARTS} times and showed nothing")

    def _keep_remains(self):
        keep = os.environ.get("VELQUARIN_DESKTOP_FAILURES")
        if not keep:
            return
        folder = pathlib.Path(keep) / self._name.rpartition(".")[2]
        shutil.rmtree(folder, ignore_errors=True)
        shutil.copytree(self.logs, folder)
        if "DISPLAY" in self.environment:
            self.screen.save(folder / "screen.png")
        print(f"What was left is in {folder}")

    def _end_everything(self):
        if "windows" in vars(self):
            self.windows.close()
        self.screen.close()
        self._keeper.end()
        for process in self._started.values():
            process.wait()
        if self.bus:
            self.bus.end()
