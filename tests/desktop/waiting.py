# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""Waiting for something to become true, with an end."""

import time


def wait_until(condition, what, seconds=20.0):
    """The first true answer of condition(); TimeoutError, with what was waited for, when none comes in time."""
    end = time.monotonic() + seconds
    while not (answer := condition()):
        if time.monotonic() > end:
            raise TimeoutError(f"waited {seconds:g} s in vain: {what}")
        time.sleep(0.02)
    return answer
