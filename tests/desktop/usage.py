# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""What a process costs while it does nothing: wakings and memory."""

import pathlib
import time

from waiting import LIMIT_SECONDS, wait_until


def _number(text, name):
    return next(int(line.split()[1]) for line in text.splitlines() if line.startswith(name))


def wakings(pid):
    """How often each of the threads has gone to sleep so far, by thread id."""
    tasks = pathlib.Path(f"/proc/{pid}/task").iterdir()
    return {task.name: _number((task / "status").read_text(), "voluntary_ctxt_switches:") for task in tasks}


def wait_for_quiet(pid, seconds=1.0):
    """Returns when so many seconds have passed in sleep, without a waking of any thread. What is left to do after all
    that a test has waited for may take long on a busy machine, so there are several attempts."""
    attempts = []

    def sleeps():
        before = wakings(pid)
        time.sleep(seconds)
        attempts.append({name: count - before.get(name, 0) for name, count in wakings(pid).items()})
        return set(attempts[-1].values()) == {0}
    wait_until(sleeps, f"the program sleeps for {seconds:g} s", max(LIMIT_SECONDS, 4 * seconds),
               state=lambda: f"wakings by thread: {attempts}")


def main_thread_seconds(pid):
    """How long the main thread has worked so far. Source: sched-stats, the first number"""
    return int(pathlib.Path(f"/proc/{pid}/task/{pid}/schedstat").read_text().split()[0]) / 1e9


def _kilobytes(pid, *names):
    rollup = pathlib.Path(f"/proc/{pid}/smaps_rollup").read_text()
    return sum(_number(rollup, name) for name in names)


def proportional_kilobytes(pid):
    """All memory, what is shared by its share."""
    return _kilobytes(pid, "Pss:")


def own_kilobytes(pid):
    """The same without pages of files, whose share depends on who else has loaded the same libraries."""
    return _kilobytes(pid, "Pss_Anon:", "Pss_Shmem:")
