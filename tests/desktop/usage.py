# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""What a process costs while it does nothing: wakings and memory."""

import pathlib
import time

from waiting import wait_until


def _number(text, name):
    return next(int(line.split()[1]) for line in text.splitlines() if line.startswith(name))


def wakings(pid):
    """How often each of the threads has gone to sleep so far, by thread id."""
    tasks = pathlib.Path(f"/proc/{pid}/task").iterdir()
    return {task.name: _number((task / "status").read_text(), "voluntary_ctxt_switches:") for task in tasks}


def wakings_within(pid, seconds, each_second=None):
    """The threads that wake up while so many seconds pass, and how often each does.

    each_second  what is done meanwhile, at the beginning of each
    """
    before = wakings(pid)
    end = time.monotonic() + seconds
    while (left := end - time.monotonic()) > 0:
        if each_second:
            each_second()
        time.sleep(min(left, 1.0) if each_second else left)
    return {name: count - before.get(name, 0) for name, count in wakings(pid).items() if count != before.get(name, 0)}


def wait_for_quiet(pid):
    """Returns when a second has passed without a waking of any thread: what is left to do after all that a test has
    waited for may take long on a busy machine."""
    wait_until(lambda: not wakings_within(pid, 1.0), "the program sleeps for a second",
               state=lambda: f"wakings by thread: {wakings_within(pid, 1.0)}")


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
