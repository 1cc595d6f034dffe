# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""Runs work in a process of its own, which ends everything it started, however the one in front of it ends."""

import ctypes
import os
import pathlib
import signal
import subprocess
import sys
import time
import traceback

SET_PARENT_DEATH_SIGNAL = 1
SET_CHILD_SUBREAPER = 36
PATIENCE = 1.0
LIBC = ctypes.CDLL(None, use_errno=True)


def control(option, value):
    if LIBC.prctl(option, value, 0, 0, 0) != 0:
        raise OSError(ctypes.get_errno(), "prctl")


def die_with_parent():
    control(SET_PARENT_DEATH_SIGNAL, signal.SIGKILL)


def parents():
    """The parent of each process of this machine."""
    found = {}
    for status in pathlib.Path("/proc").glob("[0-9]*/stat"):
        try:
            found[int(status.parent.name)] = int(status.read_text(errors="replace").rpartition(")")[2].split()[1])
        except OSError:
            pass  # It has just ended.
    return found


def descendants():
    known = parents()
    found, unseen = [], [os.getpid()]
    while unseen:
        children = [pid for pid, parent in known.items() if parent in unseen]
        found += children
        unseen = children
    return found


def reap():
    try:
        while os.waitpid(-1, os.WNOHANG)[0]:
            pass
    except ChildProcessError:
        pass


def send(signal_number):
    for pid in descendants():
        try:
            os.kill(pid, signal_number)
        except ProcessLookupError:
            pass


def wait_for_descendants(seconds):
    end = time.monotonic() + seconds
    reap()
    while descendants() and time.monotonic() < end:
        time.sleep(0.02)
        reap()


def end_descendants():
    """Nothing can hide in a session or a group of its own: orphans become children of the process that keeps them."""
    while descendants():
        send(signal.SIGKILL)
        wait_for_descendants(0.2)


# Tests that are asked to end put away the folders they made.
def ask_then_end_descendants():
    send(signal.SIGINT)
    wait_for_descendants(PATIENCE)
    end_descendants()


def start(command, prepare=lambda: None, **streams):
    """A child that dies with this process; its group is its own, so that Ctrl+C reaches nobody but the one in front."""

    def before():
        die_with_parent()
        prepare()

    return subprocess.Popen(command, stdin=subprocess.DEVNULL, preexec_fn=before, process_group=0, **streams)


def start_function(function, *arguments):
    """Calls a function in a child that dies with this process."""
    parent = os.getpid()
    if os.fork() == 0:
        for number in (signal.SIGINT, signal.SIGTERM):
            signal.signal(number, signal.SIG_DFL)
        die_with_parent()
        if os.getppid() == parent:
            function(*arguments)
        os._exit(0)


def interrupt(*_):
    raise KeyboardInterrupt


def result_of(work):
    try:
        return work()
    except KeyboardInterrupt:
        return 130
    except BaseException:
        traceback.print_exc()
        return 2


def keep(work, parent):
    os.setpgid(0, 0)
    for number in (signal.SIGINT, signal.SIGTERM):
        signal.signal(number, interrupt)
    signal.signal(signal.SIGTTOU, signal.SIG_IGN)
    control(SET_CHILD_SUBREAPER, 1)
    control(SET_PARENT_DEATH_SIGNAL, signal.SIGTERM)
    result = result_of(work) if os.getppid() == parent else 2
    for number in (signal.SIGINT, signal.SIGTERM):
        signal.signal(number, signal.SIG_IGN)
    ask_then_end_descendants()
    return result


def run_kept(work):
    """What work() returns, an exit status; 130 where it was interrupted."""
    sys.stdout.flush()
    parent, keeper = os.getpid(), os.fork()
    if keeper == 0:
        result = keep(work, parent)
        sys.stdout.flush()
        os._exit(result)
    for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
        signal.signal(number, lambda *_: os.kill(keeper, signal.SIGTERM))
    return os.waitstatus_to_exitcode(os.waitpid(keeper, 0)[1])
