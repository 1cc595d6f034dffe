#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""Compares the engine's figures with those of the reference over random histories: every day over a fixed few in which
each kind occurs, with VELQUARIN_WHOLE=1 over many whose seed is printed.

compare.py FIGURES [--histories N] [--seed S]    FIGURES is the program that refreshes the engine
compare.py FIGURES --selftest                    takes the newest commit from the reference: it has to find fault
"""

import argparse
import json
import os
import subprocess
import sys
import tempfile
import time

import extent
import histories
import reference


def differences(ours, theirs):
    for name, expected in theirs.items():
        if ours[name] != expected:
            yield f"  {name}: the engine says {ours[name]},\n    the reference {expected}"


def without_newest(repository, counted):
    return reference.history(repository, counted)[1:]


class Engine:
    """The engine's program, asked one task after another."""

    def __init__(self, program):
        self.process = subprocess.Popen([program], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True,
                                        env=reference.ENVIRONMENT)

    def ask(self, task):
        print(json.dumps(task), file=self.process.stdin, flush=True)

    def answer(self):
        return json.loads(self.process.stdout.readline())

    def end(self):
        self.process.stdin.close()
        return self.process.wait()


def compare(engine, writer, number, read):
    """The history, the reference's figures, and the lines that tell in what the engine differs."""
    git_time = extent.git_time()
    history = writer.write(number, git_time)
    engine.ask(history.task(git_time))
    theirs = reference.figures(history.repositories, reference.place_named(history.zone), history.now, git_time,
                               history.counted, read)
    return history, theirs, list(differences(engine.answer(), theirs))


def report(history, lines):
    print(f"history {history.number}: {history.zone} at {history.now}, {history.commits} commits in "
          f"{len(history.repositories)} repositories, {history.counted}\n" + "\n".join(lines))


def quickest_folder():
    """Where files cost no disk access, if there is such a place; else where they always go."""
    return "/dev/shm" if os.access("/dev/shm", os.W_OK) else None


def compare_all(options, folder):
    engine, writer = Engine(options.figures), histories.Writer(folder, options.seed)
    read = without_newest if options.selftest else reference.history
    kinds = set()
    commits = streaks = faults = 0
    for number in range(options.histories):
        history, theirs, lines = compare(engine, writer, number, read)
        kinds |= history.kinds
        commits += history.commits
        streaks += theirs["currentStreak"] > 0
        faults += bool(lines)
        if lines and not options.selftest and faults <= 5:
            report(history, lines)
    if engine.end() != 0:
        sys.exit("the engine's program failed")
    if not options.selftest:
        check_kinds(kinds)
    print(f"seed {options.seed}: {options.histories} histories with {commits} commits, "
          f"{streaks} with a running streak; {faults} differ")
    if streaks < options.histories / 3:
        sys.exit("these histories are too dull to prove anything")
    return faults


def check_kinds(found):
    print("\n".join(["kinds:", *(f"  {kind}" for kind in sorted(found))]))
    if missing := histories.KINDS - found:
        sys.exit("no history has: " + ", ".join(sorted(missing)))


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("figures")
    parser.add_argument("--histories", type=int, default=extent.histories())
    parser.add_argument("--seed", default=extent.seed())
    parser.add_argument("--selftest", action="store_true")
    options = parser.parse_args()
    start = time.monotonic()
    with tempfile.TemporaryDirectory(dir=quickest_folder()) as folder:
        faults = compare_all(options, folder)
    print(f"{time.monotonic() - start:.1f} s")
    sys.exit(0 if bool(faults) == options.selftest else 1)


if __name__ == "__main__":
    main()
