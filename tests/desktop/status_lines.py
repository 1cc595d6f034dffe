# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""The snippets of docs/status-lines, and a session in which somebody uses them."""

import datetime
import json
import os
import pathlib
import subprocess
import zoneinfo

from gi.repository import GLib

import accessibility
import hosts
import preferences
from keeper import carrying
from program import BUS_NAME, Program
from repositories import Repository
from screen import Rectangle
from waiting import wait_until

SNIPPETS = pathlib.Path(os.environ["VELQUARIN_STATUS_LINES"])

MARK = "VELQUARIN_TEST_STATUS_LINE"


def _zone_at_noon():
    """One in which no day ends while a test runs. Such names count westwards."""
    return f"Etc/GMT{datetime.datetime.now(datetime.timezone.utc).hour - 12:+d}"


class Gardener:
    """Somebody who has the program in the PATH, and a repository with a commit on each of so many days up to yesterday,
    and with a longer streak before."""

    def __init__(self, desktop, days, longest=14):
        self._desktop = desktop
        self._program = pathlib.Path(os.environ["VELQUARIN_PROGRAM"])
        zone = _zone_at_noon()
        self._now = datetime.datetime.now(zoneinfo.ZoneInfo(zone))
        desktop.environment.update(TZ=zone, PATH=f"{self._program.parent}:{desktop.environment['PATH']}")
        self._garden = Repository(desktop.home / "garden")
        before = days + 2
        self._garden.commit_days_ago(self._now, *range(1, days + 1), *range(before, before + longest))
        preferences.write(desktop.config, [self._garden.path])

    def commit(self):
        """The first commit of today."""
        self._garden.commit(self._now)

    def tend(self):
        """A year of commits of every number, the same each time."""
        stream = []
        for day in range(364, -1, -1):
            moment = round((self._now - datetime.timedelta(days=day)).timestamp())
            who = f"Ada <ada@example.org> {moment} +0000"
            count = (0, 1, 2, 0, 4, 7, 1, 12, 0, 3, 2)[(day * day + 3 * day) % 11]
            stream += [f"commit refs/heads/main\nauthor {who}\ncommitter {who}\ndata 4\nWork\n"] * count
        subprocess.run(["git", "fast-import", "--quiet", "--force"], input="".join(stream).encode(), check=True,
                       cwd=self._garden.path, timeout=60)

    def begin(self, name):
        """Adds an empty file that is still to be committed, by whoever does so in that repository."""
        (self._garden.path / name).touch()
        self._garden.run("add", name)
        self._garden.run("config", "user.name", "dev")
        self._garden.run("config", "user.email", "dev@example.org")

    def start_program(self):
        """The program, once it has figures. It alone knows the repository from now on: who reads himself finds none."""
        its_config = self._desktop.folder / "config-of-the-program"
        preferences.write(its_config, [self._garden.path])
        preferences.write(self._desktop.config, [])
        program = Program(self._desktop, self._desktop.environment["TZ"],
                          given={"XDG_CONFIG_HOME": str(its_config)})
        wait_until(lambda: self.streak() is not None, "the program's figures")
        return program

    def streak(self):
        """What the program says of it; None before it does."""
        try:
            return self._desktop.bus.property(BUS_NAME, "/io/velquarin/Velquarin", "io.velquarin.Velquarin1",
                                              "CurrentStreak")
        except GLib.Error:
            return None

    def ask(self, *words):
        """What the command line prints."""
        return self.run(self._program, *words)

    def run(self, *command):
        """What a command prints."""
        return subprocess.run(command, env=self._desktop.environment, stdin=subprocess.DEVNULL, check=True, timeout=60,
                              stdout=subprocess.PIPE).stdout.decode()

    def start(self, name, *command, **more):
        """Starts what shows a status line, with a mark that whatever it starts has too."""
        self._desktop.start(name, *self.marked(name, *command), **more)

    def marked(self, name, *command):
        """The command with that mark."""
        return "env", f"{MARK}={self._mark(name)}", *command

    def _mark(self, name):
        return f"{self._desktop.folder.name}-{name}"

    def followers(self, name):
        """The ids of the command lines that run for it."""
        return [pid for pid in carrying(MARK, self._mark(name)) if _is_command_line(pid)]


def _is_command_line(pid):
    try:
        return pathlib.Path(f"/proc/{pid}/cmdline").read_bytes().startswith(b"velquarin\0")
    except OSError:  # it has ended meanwhile
        return False


class I3blocks:
    """It prints what a bar is to show."""

    def __init__(self, desktop, gardener):
        self._file = desktop.logs / "i3blocks.out"
        with open(self._file, "wb") as output:
            # It listens to clicks, and there are none.
            gardener.start("i3blocks", "i3blocks", "-c", str(SNIPPETS / "i3blocks.conf"), stdin=subprocess.PIPE,
                           stdout=output)

    # Source: the i3bar protocol, an endless array with the blocks in a line each time
    def text(self):
        """What all blocks together show now."""
        *whole, _ = self._file.read_text().split("\n")
        lines = [line.lstrip(",") for line in whole if line.startswith((",[", "[{"))]
        return "".join(block["full_text"] for block in json.loads(lines[-1])) if lines else ""


class Waybar(hosts.OnSway):
    """The bar with a module of ours. A screen reader reads it."""
    needed = hosts.Waybar.needed
    process = "waybar"

    def start(self, desktop, gardener, settings=SNIPPETS / "waybar.jsonc", style=SNIPPETS / "waybar.css"):
        accessibility.start(desktop)
        desktop.environment.pop("NO_AT_BRIDGE")
        self._reader = accessibility.Reader(desktop, self.process)
        gardener.start(self.process, "waybar", "--config", str(settings), "--style", str(style))

    def wait_for(self, text):
        """The rectangle of the element with that text."""
        return Rectangle.of(*self._reader.wait_for(self.process, text).place)
