# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""Waiting for something to become true, with an end."""

import time

from gi.repository import GLib

# Only what never comes takes that long: a busy machine is slow, and no failure.
LIMIT_SECONDS = 60.0
PAUSE_SECONDS = 0.02


def pause(seconds=PAUSE_SECONDS):
    """Returns when something is heard on a bus that somebody listens on; otherwise after that time."""
    context = GLib.MainContext.default()
    over = []
    timer = GLib.timeout_add(max(1, round(1000 * seconds)), lambda: over.append(True))
    context.iteration(True)
    while context.pending():
        context.iteration(False)
    if not over:
        GLib.source_remove(timer)


PATIENCE_SECONDS = 15.0

_repeated = []


def act_until(act, condition, what, state=None):
    """The first true answer of condition() after act(), which is done a second time where nothing has come of it: a panel
    that is busy with itself lets a click pass, and its user clicks again. Once in a test is chance, twice is a fault."""
    act()
    try:
        return wait_until(condition, what, LIMIT_SECONDS if _repeated else PATIENCE_SECONDS, state)
    except TimeoutError:
        if _repeated:
            raise
    print(f"once more: {what}")
    _repeated.append(what)
    act()
    return wait_until(condition, what, state=state)


def wait_until(condition, what, seconds=LIMIT_SECONDS, state=None):
    """The first true answer of condition(). TimeoutError when none comes in time: it names what was waited for, and
    tells what state() finds instead."""
    end = time.monotonic() + seconds
    while True:
        asked = time.monotonic()
        if answer := condition():
            return answer
        if asked > end:
            raise TimeoutError(f"waited {seconds:g} s in vain: {what}" + (f"; there is {state()}" if state else ""))
        # Who looks takes no more than half of the time from who is looked at.
        pause(max(PAUSE_SECONDS, time.monotonic() - asked))
