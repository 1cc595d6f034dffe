# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""Starting and ending processes."""

import subprocess


def start(name, command, environment, logs, **more):
    """Starts a command whose words go to logs/NAME.log."""
    with open(logs / f"{name}.log", "ab") as log:
        streams = {"stdin": subprocess.DEVNULL, "stdout": log, "stderr": log, **more}
        return subprocess.Popen(command, env=environment, **streams)


def end(process, seconds=5.0):
    """Asks a process to end, and makes it end; nothing happens to one that has ended."""
    process.terminate()
    try:
        process.wait(seconds)
    except subprocess.TimeoutExpired:
        process.kill()
        process.wait()
