# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""What ctest prints while it runs."""

import re

# A test that ended by a signal has a word between the dots and the stars: "Subprocess aborted***Exception".
FAILED_LINE = re.compile(r"Test +#\d+: (\S+) [^*\n]*\*\*\*(?!Skipped)")


def first_failed(printed):
    """The name of the test that failed first, None where none did; skipped ones have not."""
    found = FAILED_LINE.search(printed)
    return found[1] if found else None
