# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""What a refresh costs beside the git commands that it cannot do without, and what else the engine does."""

import statistics
import subprocess

from contenders import Command, Contender, growth, in_turns, ratio
from material import make_repositories, make_repository, make_tree

# The columns of bench_refresh.
TIME, OWN, GITS, SLEEPS, COUNT, GAP = range(6)


class Build:
    """The programs of a build."""

    def __init__(self, folder):
        self._folder = folder / "tests/bench"

    def engine(self, repositories):
        return Contender(self._folder / "bench_refresh", *repositories)

    def limits(self, repositories, record):
        """The bare commands in the inherited environment, and in the program's own."""
        limit = self._folder / "bench_limit"
        subprocess.run([self._folder / "bench_refresh", "--record", record, *repositories], check=True)
        return Contender(limit, record), Contender(limit, record, f"{record}.environment")

    def scan(self, folder):
        return Contender(self._folder / "bench_scan", folder)

    def walk(self, folder):
        return Contender(self._folder / "bench_walk", folder)

    def parse(self):
        return Contender(self._folder / "bench_parse")


def _median(rounds, column):
    return statistics.median(figures[0][column] for figures in rounds)


def _against_limits(build, repositories, record, rounds):
    bare, pinned = build.limits(repositories, record)
    with build.engine(repositories) as engine, bare, pinned:
        return in_turns(rounds, engine, bare, pinned)


def many_repositories(build, folder):
    rounds = _against_limits(build, make_repositories(folder, 100, 200), folder / "commands", 9)
    own, gits = _median(rounds, OWN), _median(rounds, GITS)
    yield ("refresh of 100 repositories of 200 commits, against the bare commands",
           ratio([(engine[TIME], bare[0]) for engine, bare, _ in rounds]), "0.95")
    yield ("the same, against the bare commands in our environment",
           ratio([(engine[TIME], pinned[0]) for engine, _, pinned in rounds]), "1.05")
    yield "our own processor time in it", f"{100 * own / (own + gits):.1f} %", "5 %"
    yield ("voluntary context switches of our threads, for each git",
           f"{_median(rounds, SLEEPS) / _median(rounds, COUNT):.1f}", "6")


def long_history(build, folder):
    rounds = _against_limits(build, [make_repository(folder / "long", 200_000)], folder / "commands", 5)
    yield ("refresh of a repository of 200,000 commits, against the bare commands",
           ratio([(engine[TIME], bare[0]) for engine, bare, _ in rounds]), "0.80")


def _refreshes(build, repositories):
    with build.engine(repositories) as engine:
        return [figures[0] for figures in in_turns(3, engine)]


def _quickest(refreshes):
    """The time of the one that was disturbed least."""
    return min(figures[TIME] for figures in refreshes)


def growth_in_repositories(build, folder):
    repositories = make_repositories(folder, 300, 200)
    sizes = [10, 100, 300]
    refreshes = [_refreshes(build, repositories[:size]) for size in sizes]
    exponent = growth(sizes, [_quickest(some) for some in refreshes])
    yield "growth with repositories (10, 100, 300), exponent", f"{exponent:.2f}", "1.03"
    gaps = [figures[GAP] for figures in refreshes[-1]]
    yield ("longest stall of the main thread, refresh of 300 repositories",
           f"{statistics.median(gaps):.0f} ms ({min(gaps):.0f} to {max(gaps):.0f})", "4 ms")


def growth_in_commits(build, folder):
    sizes = [2_000, 20_000, 200_000]
    times = [_quickest(_refreshes(build, [make_repository(folder / f"commits{size}", size)])) for size in sizes]
    yield "growth with commits (2,000 to 200,000), exponent", f"{growth(sizes, times):.2f}", "1.03"


def log(build, _folder):
    with build.parse() as parse:
        pairs = [figures[0] for figures in in_turns(21, parse)]
    yield "200,000 lines of a log to counts, against from_chars and a table", ratio(pairs), "1.00"


def search(build, folder):
    tree = make_tree(folder / "tree")
    find = Command("find", tree, "-name", ".git")
    with build.scan(tree) as scan, build.walk(tree) as walk, find:
        rounds = in_turns(9, scan, walk, find)
    if any(scan[1] != walk[1] for scan, walk, _ in rounds):
        raise RuntimeError("the searches find different repositories")
    yield ("search of 50,000 folders, against find",
           ratio([(scan[0], find[0]) for scan, _, find in rounds]), "0.25")
    yield "the same, against a bare walk", ratio([(scan[0], walk[0]) for scan, walk, _ in rounds]), "1.00"


def rows(build_folder, folder):
    build = Build(build_folder)
    for number, figures in enumerate((many_repositories, long_history, growth_in_repositories, growth_in_commits, log,
                                      search)):
        place = folder / str(number)
        place.mkdir()
        yield from figures(build, place)
