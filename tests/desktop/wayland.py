# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""A desktop without X11: a compositor that draws to memory, with its own status bar."""

import json
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

import panel
from desktop import WATCHER, Desktop
from keeper import Keeper
from waiting import wait_until

APPLICATION = "io.velquarin.Velquarin"
OUTPUT = "HEADLESS-1"

SETTINGS = """
xwayland disable
output {output} resolution {width}x{height}
bar {{
    position top
    tray_output *
}}
{more}
"""

# The bar is started by the test.
BACKGROUND = "#31465c"
NESTED_SETTINGS = """
xwayland {xwayland}
output X11-1 resolution {width}x{height} background {background} solid_color
bar {{
    id bar-0
    swaybar_command true
    position top
    height {bar_height}
    tray_output *
    {bar}
    colors {{
        background {bar_background}
    }}
}}
"""

# sway runs for no administrator; this is nobody, on every Debian.
ORDINARY_USER = "65534"


def as_ordinary_user(*variables):
    """Goes on as an ordinary user, with copies of these files and the program in a folder that he can reach.

    variables  those of the environment that name more folders for him
    """
    if os.geteuid() != 0:
        return
    folder = pathlib.Path(tempfile.mkdtemp(prefix="velquarin-wayland-"))
    here = pathlib.Path(__file__).parent
    program = pathlib.Path(os.environ["VELQUARIN_PROGRAM"])
    shutil.copytree(here, folder / "tests")
    shutil.copy(program, folder / "velquarin")
    shutil.copytree(program.parent / "share", folder / "share")
    more = {name: shutil.copytree(os.environ[name], folder / name.lower()) for name in variables}
    subprocess.run(["chmod", "-R", "a+rX", folder], check=True)
    remains = folder / "remains"
    remains.mkdir()
    remains.chmod(0o777)
    keeper = Keeper(folder)
    environment = {**os.environ, **keeper.mark, **more, "VELQUARIN_PROGRAM": str(folder / "velquarin"),
                   "HOME": "/nonexistent", "VELQUARIN_DESKTOP_FAILURES": str(remains)}
    command = ["setpriv", f"--reuid={ORDINARY_USER}", f"--regid={ORDINARY_USER}", "--clear-groups", "--",
               sys.executable, "-B", str(folder / "tests" / pathlib.Path(sys.argv[0]).name), *sys.argv[1:]]
    try:
        sys.exit(subprocess.run(command, env=environment, check=False).returncode)
    finally:
        if keep := os.environ.get("VELQUARIN_DESKTOP_FAILURES"):
            subprocess.run(["cp", "--recursive", "--no-target-directory", remains, keep], check=True)
        keeper.end()


class WaylandDesktop(Desktop):
    """sway with its bar. more: further lines of its settings."""
    lets_programs_place_windows = False

    def __init__(self, name, more="", width=1280, height=800):
        super().__init__(name, width=width, height=height)
        self._settings = SETTINGS.format(output=OUTPUT, width=width, height=height, more=more)

    def _open(self):
        self.start_bus()
        self._start_compositor(WLR_BACKENDS="headless", WLR_LIBINPUT_NO_DEVICES="1")
        self.bus.wait_for(WATCHER)
        self.type("-s", str(3600 * 1000), name="keyboard")

    def _start_compositor(self, **environment):
        settings = self.config / "sway"
        settings.write_text(self._settings)
        # The same font as on X11: the toolkit's own for Wayland has another size in every version.
        self.environment.update(
            WLR_RENDERER="pixman", XDG_SESSION_TYPE="wayland", XDG_CURRENT_DESKTOP="sway", QT_QPA_PLATFORMTHEME="gnome",
            SWAYSOCK=str(self.folder / "runtime" / "sway.sock"), **environment)
        self.start("sway", "sway", "--config", str(settings))
        self.environment["WAYLAND_DISPLAY"] = wait_until(self._display, "the compositor")
        wait_until(lambda: self.tell("get_version", "-t"), "the compositor's answer")

    def _display(self):
        sockets = (self.folder / "runtime").glob("wayland-?")
        return next((socket.name for socket in sockets), None)

    def tell(self, command, *options):
        """What swaymsg prints; nothing where it fails."""
        answer = subprocess.run(["swaymsg", *options, command], env=self.environment, stdout=subprocess.PIPE,
                                stderr=subprocess.DEVNULL, check=False, timeout=20)
        return answer.stdout if answer.returncode == 0 else b""

    # Whoever only waits keeps a keyboard plugged in: without one no window has the keyboard's focus.
    def type(self, *arguments, name="typing"):
        """Starts to type, by the words of wtype(1)."""
        return self.start(name, "wtype", *arguments)

    def window(self, title):
        """The program's window of that title, as the compositor describes it; None where there is none."""
        return _find(json.loads(self.tell("get_tree", "-t")), APPLICATION, title)

    def wait_for_window(self, title):
        return wait_until(lambda: self.window(title), f"the window {title}")

    def wait_without_window(self, title):
        wait_until(lambda: not self.window(title), f"no window {title}", state=lambda: self.window(title))


class NestedWaylandDesktop(WaylandDesktop):
    """sway in a window that covers a screen in memory: pointer, keys and pictures are those of every other desktop.

    xwayland  whether programs that only know X11 find a server
    bar       further lines of the settings of its bar
    """

    def __init__(self, name, xwayland=False, bar="", width=1024, height=768):
        super().__init__(name, width=width, height=height)
        self._settings = NESTED_SETTINGS.format(
            width=width, height=height, bar_height=panel.HEIGHT, bar_background=panel.BACKGROUND,
            bar=bar, background=BACKGROUND, xwayland="enable" if xwayland else "disable")

    def _open(self):
        self._start_screen()
        self.start_bus()
        self._start_compositor(WLR_BACKENDS="x11")
        wait_until(lambda: panel.is_drawn(self.screen, BACKGROUND), "the compositor on the screen")

    def x11_display(self):
        """The name of the server for programs that only know X11. Only what the compositor starts is told of it."""
        file = self.folder / "x11-display"
        self.tell(f"exec echo $DISPLAY > {file}")
        return wait_until(lambda: file.exists() and file.read_text().strip(), "the X11 server")


def _find(node, application, title):
    if node.get("app_id") == application and node["name"] == title:
        return node
    return next(filter(None, (_find(child, application, title) for child in node["nodes"] + node["floating_nodes"])),
                None)
