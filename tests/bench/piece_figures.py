# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""What each piece of a refresh takes by itself. These have no aim: they tell where the time of a refresh goes."""

import csv
import subprocess

WHAT = {
    "parse": "the log of a repository of 200 commits to days",
    "streak": "the streaks in a commit on each of 730 days",
    "merge": "the days of 100 repositories to all figures",
    "grid": "the year's figures to the 371 squares",
    "preferencesRead": "the settings with 100 repositories, read",
    "preferencesWritten": "the same, from a change to the disk",
}


def rows(build, _folder):
    output = subprocess.run([build / "tests/bench/bench_pieces", "-o", "-,csv"], stdout=subprocess.PIPE, text=True,
                            check=True).stdout
    milliseconds = {row[0]: float(row[3]) for row in csv.reader(output.splitlines()) if row}
    for piece, what in WHAT.items():
        yield what, f"{milliseconds[piece]:.2f} ms", ""
