# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""The pictures of docs/status-lines.md, for tools/status-line-pictures: the snippets in use, on a screen in memory."""

import json
import os
import pathlib
import subprocess

import case
import panel
import wayland
from screen import Rectangle
from status_lines import SNIPPETS, Gardener, Waybar
from terminal import Terminal
from waiting import wait_until
from wayland import NestedWaylandDesktop

NEEDED = {**{package: case.NEEDED[package] for package in ("dbus-daemon", "fonts-dejavu-core", "git", "imagemagick",
                                                           "python3-xlib", "util-linux", "xvfb")},
          **Waybar.needed, "foot": "foot", "i3blocks": "i3blocks", "tmux": "tmux", "systemd": "busctl"}

LONGEST = 40
FOLDER = pathlib.Path(os.environ["VELQUARIN_DESKTOP_FAILURES"])

# Air before the first letter.
MARGIN = 14

BAR_STYLE = """@import url("{snippet}");
* {{ font-family: "DejaVu Sans"; font-size: 13px; }}
window#waybar {{ background: {background}; color: #ffffff; }}
#clock {{ padding: 0 10px; }}
"""
SWAYBAR = """
    font pango:DejaVu Sans 10
    workspace_buttons no
    status_command i3blocks -c {snippet}
"""
FOOT = """font=monospace:size=10
dpi-aware=no
pad=8x6

[colors]
{colors}
"""
DARK = "background=1d2126\nforeground=eef0f2\nregular2=3fab66\nbright0=6b737c"
LIGHT = "background=fcfcfb\nforeground=20252b\nregular2=17873f\nbright0=9aa0a6"


def _ink(screen, strip):
    """The part of a strip from its first letter to the edge of the screen; None where it is empty."""
    picture = screen.settled(strip)
    ground = picture.pixel(strip.left, strip.top)
    columns = [x for x in range(strip.left, strip.right)
               if any(picture.pixel(x, y) != ground for y in range(strip.top, strip.bottom))]
    return strip._replace(left=columns[0] - MARGIN) if columns else None


def _bar(screen):
    return Rectangle(0, 0, screen.width, panel.HEIGHT)


# A clock beside it shows how it stands among others.
def _write_bar(desktop):
    text = (SNIPPETS / "waybar.jsonc").read_text()
    settings = json.loads("".join(line for line in text.splitlines() if not line.startswith("//")))
    settings["modules-right"].append("clock")
    files = desktop.config / "waybar.json", desktop.config / "waybar.css"
    files[0].write_text(json.dumps({**settings, "height": panel.HEIGHT, "clock": {"format": "{:%H:%M}"}}))
    files[1].write_text(BAR_STYLE.format(snippet=SNIPPETS / "waybar.css", background=panel.BACKGROUND))
    return files


def waybar():
    bar = Waybar()
    with bar.open("pictures") as desktop:
        gardener = Gardener(desktop, 11, LONGEST)
        bar.start(desktop, gardener, *_write_bar(desktop))
        screen = desktop.screen
        bar.wait_for("○ 11")
        place = _ink(screen, _bar(screen))
        screen.save(FOLDER / "before.png", place)
        gardener.commit()
        bar.wait_for("● 12")
        screen.settled()
        screen.save(FOLDER / "after.png", place)
    subprocess.run(["convert", "before.png", "(", "-size", f"{place.width}x8", "xc:none", ")", "after.png", "-append",
                    "-define", "png:exclude-chunks=date,time", "status-line-waybar.png"], cwd=FOLDER, check=True)
    for name in ("before.png", "after.png"):
        (FOLDER / name).unlink()


def i3blocks():
    settings = SWAYBAR.format(snippet=SNIPPETS / "i3blocks.conf")
    with NestedWaylandDesktop("pictures", bar=settings) as desktop:
        Gardener(desktop, 11, LONGEST).commit()
        desktop.start("swaybar", "swaybar", "-b", "bar-0")
        screen = desktop.screen
        # An empty block comes first.
        place = wait_until(lambda: _ink(screen, _bar(screen)), "a text in the bar")
        screen.save(FOLDER / "status-line-i3blocks.png", place)


def _foot(node):
    """Where the terminal is, in the compositor's tree."""
    if node.get("app_id") == "foot":
        return Rectangle.of(*(node["rect"][side] for side in ("x", "y", "width", "height")))
    return next(filter(None, map(_foot, node["nodes"] + node["floating_nodes"])), None)


class Window:
    """A terminal emulator that shows a terminal."""

    def __init__(self, desktop, terminal, columns, lines, colors=DARK):
        self._desktop = desktop
        settings = desktop.config / "foot.ini"
        settings.write_text(FOOT.format(colors=colors))
        desktop.start("foot", "foot", f"--config={settings}", f"--window-size-chars={columns}x{lines}",
                      *terminal.attaching())
        wait_until(self._place, "the window")
        desktop.tell('[app_id="foot"] floating enable, border none')
        terminal.wait_for_size(columns, lines)

    def _place(self):
        return _foot(json.loads(self._desktop.tell("get_tree", "-t")))

    def save(self, name):
        self._desktop.screen.point(*self._desktop.screen.corner)
        self._desktop.screen.settled()
        self._desktop.screen.save(FOLDER / name, self._place())


def _shell(desktop, more=""):
    """The settings of a shell in the garden."""
    file = desktop.home / ".bashrc"
    file.write_text(f"PS1='\\w $ '\ncd ~/garden\n{more}")
    return "bash", "-i"


def tmux():
    with NestedWaylandDesktop("pictures") as desktop:
        gardener = Gardener(desktop, 11, LONGEST)
        gardener.commit()
        terminal = Terminal(desktop, "tmux", "-f", str(SNIPPETS / "tmux.conf"), "new-session", *_shell(desktop))
        window = Window(desktop, terminal, 72, 4)
        terminal.type("git status --short --branch")
        wait_until(lambda: "committed today | " in terminal.last_line(), "the streak", state=terminal.lines)
        window.save("status-line-tmux.png")


def prompt():
    with NestedWaylandDesktop("pictures") as desktop:
        gardener = Gardener(desktop, 11, LONGEST)
        gardener.begin("beans.txt")
        program = gardener.start_program()
        terminal = Terminal(desktop, *_shell(desktop, f". {SNIPPETS / 'prompt.bash'}\n"))
        window = Window(desktop, terminal, 48, 4)
        terminal.type("git commit -qm 'Sow beans'")
        wait_until(lambda: gardener.streak() == 12, "the commit in the program")
        terminal.type("git log -1 --format=%s")
        wait_until(lambda: terminal.last_line().startswith("● 12"), "the prompt", state=terminal.lines)
        window.save("status-line-prompt.png")
        program.end()


def year():
    for name, colors in (("light", LIGHT), ("dark", DARK)):
        with NestedWaylandDesktop("pictures") as desktop:
            gardener = Gardener(desktop, 0, 0)
            gardener.tend()
            terminal = Terminal(desktop, *_shell(desktop))
            window = Window(desktop, terminal, 64, 13, colors)
            # It has the size of the screen before it floats, which may come in between.
            desktop.screen.settled()
            terminal.wait_for_size(64, 13)
            terminal.type("velquarin year")
            wait_until(lambda: "more" in " ".join(terminal.lines()[-2:]), "the year", state=terminal.lines)
            window.save(f"status-line-year-{name}.png")


if __name__ == "__main__":
    case.stop_without(NEEDED)
    wayland.as_ordinary_user("VELQUARIN_STATUS_LINES")
    for take in (waybar, i3blocks, tmux, prompt, year):
        take()
