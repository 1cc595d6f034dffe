# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""A terminal without a screen: what runs in it, what is typed and what is to be read. It is a tmux of its own."""

import subprocess

from waiting import wait_until

COLUMNS, LINES = 100, 12


class Terminal:
    """What the command shows, for as long as the desktop is there."""

    def __init__(self, desktop, *command):
        self._environment = {**desktop.environment, "TMUX_TMPDIR": desktop.environment["XDG_RUNTIME_DIR"]}
        # It is to know of no other tmux around it.
        self._tell("-f", "/dev/null", "new-session", "-d", "-x", str(COLUMNS), "-y", str(LINES),
                   "env", "-u", "TMUX", *command, ";", "set", "status", "off")

    def _tell(self, *words):
        return subprocess.run(["tmux", "-L", "terminal", *words], env=self._environment, stdin=subprocess.DEVNULL,
                              stdout=subprocess.PIPE, check=True, timeout=60).stdout.decode()

    def lines(self):
        """What there is to read, without the empty lines and without the blanks at the ends."""
        return [line for line in self._tell("capture-pane", "-p").splitlines() if line]

    def last_line(self):
        """The lowest of them; nothing where there is none."""
        return (self.lines() or [""])[-1]

    def attaching(self):
        """The command by which a terminal emulator shows it."""
        return "env", f"TMUX_TMPDIR={self._environment['TMUX_TMPDIR']}", "tmux", "-L", "terminal", "attach"

    def wait_for_size(self, columns, lines):
        """Returns when it is as large as who shows it."""
        wait_until(lambda: self._size() == f"{columns} {lines}\n", f"{columns} columns and {lines} lines", state=self._size)

    def _size(self):
        return self._tell("display-message", "-p", "#{window_width} #{window_height}")

    def type(self, line):
        """Types a line, with its end."""
        self._tell("send-keys", "-l", line)
        self._tell("send-keys", "Enter")
