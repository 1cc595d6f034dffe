# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""A terminal without a screen: what runs in it, what is typed and what is to be read. It is a tmux of its own."""

import subprocess

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

    def type(self, line):
        """Types a line, with its end."""
        self._tell("send-keys", "-l", line)
        self._tell("send-keys", "Enter")
