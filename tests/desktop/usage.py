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


def wait_for_quiet(pid):
    """Returns when a whole second has passed in sleep."""
    def sleeps_for_a_second():
        before = wakings(pid)
        time.sleep(1)
        return wakings(pid) == before
    wait_until(sleeps_for_a_second, "the program comes to rest")


def _kilobytes(pid, *names):
    rollup = pathlib.Path(f"/proc/{pid}/smaps_rollup").read_text()
    return sum(_number(rollup, name) for name in names)


def proportional_kilobytes(pid):
    """All memory, what is shared by its share."""
    return _kilobytes(pid, "Pss:")


def own_kilobytes(pid):
    """The same without pages of files, whose share depends on who else has loaded the same libraries."""
    return _kilobytes(pid, "Pss_Anon:", "Pss_Shmem:")
