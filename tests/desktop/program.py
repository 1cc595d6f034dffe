# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""The program under test: started like any program of a session, watched and ended."""

import ctypes
import os
import signal
import uuid

import processes
from keeper import carrying
from waiting import LIMIT_SECONDS, wait_until

MARK = "VELQUARIN_TEST_PROGRAM"
BUS_NAME = "io.velquarin.Velquarin"

# Any machine does in that time what shall be done at once, and no library gives up so soon.
AT_ONCE = 20.0


class Program:
    """One run of the program.

    zone          the time zone of its user
    clock_offset  seconds by which its clock, and that of the git it starts, is ahead; None leaves it the machine's
    output        where its standard output goes; a file of its own where nothing is given
    wrapper       a command that starts it, and becomes it
    given         further environment variables, as a launcher adds them
    """

    def __init__(self, desktop, zone="UTC", clock_offset=None, output=None, wrapper=(), given=None):
        self._mark = uuid.uuid4().hex
        self.output_file = desktop.logs / f"program-{self._mark[:8]}.out"
        self.error_file = desktop.logs / f"program-{self._mark[:8]}.err"
        environment = {**desktop.environment, "TZ": zone, MARK: self._mark, **_clock(clock_offset),
                       **(given or {})}
        with open(self.output_file, "wb") as own_output, open(self.error_file, "wb") as errors:
            command = [*wrapper, os.environ["VELQUARIN_PROGRAM"]]
            self._process = processes.start("program", command, environment, desktop.logs,
                                            stdout=own_output if output is None else output, stderr=errors)
        desktop.end_with_it(self._process)

    @property
    def pid(self):
        return self._process.pid

    def is_running(self):
        return self._process.poll() is None

    def output(self):
        return self.output_file.read_text()

    def errors(self):
        return self.error_file.read_text()

    def children(self):
        """The ids of what it started and still lives."""
        return [pid for pid in carrying(MARK, self._mark) if pid != self.pid]

    def wait_for_child(self):
        wait_until(self.children, "the program starts git")

    def sleep(self, seconds):
        """So much of its user's time passes at once. Needs a clock of its user's own."""
        ctypes.CDLL(None, use_errno=True).sigqueue(self.pid, signal.SIGRTMIN + 5, ctypes.c_void_p(seconds))

    def terminate(self):
        self._process.send_signal(signal.SIGTERM)

    def kill(self):
        """Ends it as a crash does: it gets to tidy nothing up."""
        self._process.kill()
        self._process.wait()

    def wait_for_end(self, seconds=LIMIT_SECONDS):
        """The exit status."""
        wait_until(lambda: not self.is_running(), "the program ends", seconds)
        return self._process.returncode

    def end(self):
        """Asks it to end, and returns the exit status."""
        self.terminate()
        return self.wait_for_end()


def wait_until_through(bus):
    """Returns when the program is through with what it is about: a window that it shows takes no click before that."""
    bus.call(BUS_NAME, "/io/velquarin/Velquarin", "org.freedesktop.DBus.Introspectable", "Introspect")


def _clock(offset):
    if offset is None:
        return {}
    return {"LD_PRELOAD": os.environ["VELQUARIN_TEST_CLOCK"], "VELQUARIN_TEST_CLOCK_OFFSET": str(offset)}
