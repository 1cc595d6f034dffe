# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""Starting and ending processes, so that nothing outlives a test."""

import os
import signal
import subprocess

from waiting import wait_until


def start(name, command, environment, logs, **more):
    """Starts a command whose words go to logs/NAME.log; it dies with us, however we end."""
    with open(logs / f"{name}.log", "ab") as log:
        streams = {"stdin": subprocess.DEVNULL, "stdout": log, "stderr": log, **more}
        return subprocess.Popen(["setpriv", "--pdeathsig", "KILL", "--", *command], env=environment, **streams)


def end(process, seconds=5.0):
    """Asks a process to end, and makes it end; nothing happens to one that has ended."""
    process.terminate()
    try:
        process.wait(seconds)
    except subprocess.TimeoutExpired:
        process.kill()
        process.wait()


def _environment_of(pid):
    try:
        with open(f"/proc/{pid}/environ", "rb") as file:
            return file.read().split(b"\0")
    except OSError:
        return []


def carrying(variable, value):
    """The ids of the living processes that were started with this in their environment, wherever they are now."""
    wanted = f"{variable}={value}".encode()
    return [int(pid) for pid in os.listdir("/proc") if pid.isdigit() and wanted in _environment_of(pid)]


def end_all(variable, value):
    """Ends what carries the mark, even where its parent has gone."""
    for pid in carrying(variable, value):
        try:
            os.kill(pid, signal.SIGKILL)
        except ProcessLookupError:
            pass
    wait_until(lambda: not carrying(variable, value), "the last processes end")
