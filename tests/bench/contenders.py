# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""Two programs that do the same, in turns: whatever else the machine does meets both alike."""

import math
import statistics
import subprocess
import sys
from typing import NamedTuple


class Ratio(NamedTuple):
    """Of neighbouring runs: the median and the extremes."""
    median: float
    least: float
    most: float

    def __str__(self):
        return f"{self.median:.3f} ({self.least:.3f} to {self.most:.3f})"


def ratio(pairs):
    ratios = sorted(one / other for one, other in pairs)
    return Ratio(statistics.median(ratios), ratios[0], ratios[-1])


class Contender:
    """A program that does its work once for each line it is sent, and answers with a line of figures."""

    def __init__(self, *command):
        self.process = subprocess.Popen(list(map(str, command)), stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.stdin.close()
        if self.process.wait() != 0:
            sys.exit(f"{self.process.args[0]} failed")

    def figures(self, task="go"):
        self.process.stdin.write(f"{task}\n")
        self.process.stdin.flush()
        return [float(word) for word in self.process.stdout.readline().split()]


class Command:
    """A program that is started anew for each run; its figure is the wall time."""

    def __init__(self, *command):
        self.command = command

    def __enter__(self):
        return self

    def __exit__(self, *_):
        pass

    def figures(self):
        script = 'import subprocess, sys, time; t = time.monotonic(); ' \
                 'subprocess.run(sys.argv[1:], check=True, stdout=subprocess.DEVNULL); print(1000 * (time.monotonic() - t))'
        output = subprocess.run([sys.executable, "-c", script, *map(str, self.command)], check=True,
                                stdout=subprocess.PIPE, text=True).stdout
        return [float(output)]


def in_turns(rounds, *contenders):
    """One list of figures for each contender and round; a first round, which finds everything cold, does not count."""
    return [[contender.figures() for contender in contenders] for _ in range(rounds + 1)][1:]


def growth(sizes, times):
    """The exponent with which the times grow: the slope of the straight line through the logarithms."""
    x, y = [math.log(size) for size in sizes], [math.log(time) for time in times]
    middle_x, middle_y = statistics.mean(x), statistics.mean(y)
    return (sum((a - middle_x) * (b - middle_y) for a, b in zip(x, y)) / sum((a - middle_x) ** 2 for a in x))
