# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""Whatever becomes of a test, nothing of it stays: keeper.py FOLDER MARK, a process beside each desktop.

It waits until nobody holds the other end of its standard input, which comes with the end of a test however it ends.
Then it ends all processes that were started with the mark in their environment, takes away what is mounted below the
folder, and removes the folder.
"""

import os
import pathlib
import shutil
import signal
import subprocess
import sys
import time
import uuid

MARK = "VELQUARIN_TEST_DESKTOP"

# Time for a program to tidy up, such as a screen its socket.
GRACE_SECONDS = 3.0


class Keeper:
    """Keeps a folder, and all processes that have its mark in their environment."""

    def __init__(self, folder):
        self.mark = {MARK: uuid.uuid4().hex}
        command = [sys.executable, "-I", "-S", "-B", __file__, str(folder), self.mark[MARK]]
        # One that is kept itself would end too soon.
        self._process = subprocess.Popen(command, stdin=subprocess.PIPE, start_new_session=True,
                                         env={"PATH": "/usr/sbin:/usr/bin:/sbin:/bin"})

    def end(self):
        """Returns when nothing is left."""
        self._process.stdin.close()
        self._process.wait()


def _environment_of(pid):
    try:
        return pathlib.Path(f"/proc/{pid}/environ").read_bytes().split(b"\0")
    except OSError:
        return []


def carrying(variable, value):
    """The ids of the living processes that were started with this in their environment, wherever they are now."""
    wanted = f"{variable}={value}".encode()
    return [int(pid) for pid in os.listdir("/proc") if pid.isdigit() and wanted in _environment_of(pid)]


def _send(number, pids):
    for pid in pids:
        try:
            os.kill(pid, number)
        except ProcessLookupError:
            pass


def _end_all(mark):
    _send(signal.SIGTERM, carrying(MARK, mark))
    end = time.monotonic() + GRACE_SECONDS
    while left := carrying(MARK, mark):
        if time.monotonic() > end:
            _send(signal.SIGKILL, left)
        time.sleep(0.01)


def _mounted_below(folder):
    places = [line.split()[4] for line in pathlib.Path("/proc/self/mountinfo").read_text().splitlines()]
    return [place for place in places if place.startswith(f"{folder}/")]


def _main(folder, mark):
    sys.stdin.buffer.read()
    _end_all(mark)
    for place in _mounted_below(folder):
        subprocess.run(["umount", "--lazy", place], check=False, stderr=subprocess.DEVNULL)
    shutil.rmtree(folder, ignore_errors=True)


if __name__ == "__main__":
    _main(*sys.argv[1:])
