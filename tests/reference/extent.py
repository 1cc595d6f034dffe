# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""How much is compared: a fixed sample with one of each kind, or, with VELQUARIN_WHOLE=1, many random histories."""

import os
import random
from datetime import datetime, timezone

WHOLE = os.environ.get("VELQUARIN_WHOLE") == "1"

# One history for each of the anchors; with this seed every kind occurs among them.
EVERYDAY_HISTORIES = 17
EVERYDAY_SEED = "102"
WHOLE_HISTORIES = 204


def histories():
    return WHOLE_HISTORIES if WHOLE else EVERYDAY_HISTORIES


def seed():
    """Every day the same; in the whole run a fresh one, or that of VELQUARIN_SEED."""
    fresh = os.environ.get("VELQUARIN_SEED") or str(random.SystemRandom().randrange(2**32))
    return fresh if WHOLE else EVERYDAY_SEED


def git_time():
    """What git takes for the present, which decides on the bounds of a period: every day the same moment."""
    return datetime.now(timezone.utc) if WHOLE else datetime(2026, 11, 20, 12, tzinfo=timezone.utc)
