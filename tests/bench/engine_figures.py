# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""What a refresh costs beside the git commands that it cannot do without, and what else the engine does."""

import contextlib
import statistics
import subprocess

from contenders import Command, Contender, growth, in_turns, ratio
from material import REPOSITORIES_IN_TREE, make_repositories, make_repository, make_tree

# The columns of bench_refresh.
TIME, OWN, GITS, SLEEPS, COUNT, COMMITS = range(6)
BYTES_OF_A_DAY = len("2026-11-20\n")


class Build:
    """The programs of a build."""

    def __init__(self, folder):
        self._folder = folder / "tests/bench"

    def engine(self, repositories, *options):
        return Contender(self._folder / "bench_refresh", *options, *repositories)

    def limits(self, repositories, record, *options):
        """The bare commands in the inherited environment, and in the program's own."""
        limit = self._folder / "bench_limit"
        subprocess.run([self._folder / "bench_refresh", *options, "--record", record, *repositories], check=True)
        return Contender(limit, record), Contender(limit, record, f"{record}.environment")

    def scan(self, folder):
        return Contender(self._folder / "bench_scan", folder)

    def walk(self, folder):
        return Contender(self._folder / "bench_walk", folder)

    def parse(self):
        return Contender(self._folder / "bench_parse")


def _spread(values, unit=""):
    return f"{statistics.median(values):.1f}{unit} ({min(values):.1f} to {max(values):.1f})"


def _demand(is_so, what):
    if not is_so:
        raise RuntimeError(what)


def _against_limits(build, repositories, commits, record, rounds, *options):
    bare, pinned = build.limits(repositories, record, *options)
    with build.engine(repositories, *options) as engine, bare, pinned:
        measured = in_turns(rounds, engine, bare, pinned)
    for ours, *theirs in measured:
        _demand(ours[COMMITS] == commits, f"{ours[COMMITS]:.0f} commits were counted in place of {commits}")
        _demand(all(bytes_read > commits * BYTES_OF_A_DAY for _, bytes_read in theirs), "a bare git did not tell all")
    return measured


def many_repositories(build, folder):
    rounds = _against_limits(build, make_repositories(folder, 100, 200), 20_000, folder / "commands", 15)
    engines = [engine for engine, _, _ in rounds]
    yield ("first refresh of 100 repositories of 200 commits, against the bare commands",
           ratio([(engine[TIME], bare[0]) for engine, bare, _ in rounds]), "0.95")
    yield ("the same, against the bare commands in our environment",
           ratio([(engine[TIME], pinned[0]) for engine, _, pinned in rounds]), "1.05")
    yield ("our own processor time in it",
           _spread([100 * engine[OWN] / (engine[OWN] + engine[GITS]) for engine in engines], " %"), "5 %")
    yield ("voluntary context switches of our threads, for each git",
           _spread([engine[SLEEPS] / engine[COUNT] for engine in engines]), "6")


def own_commits(build, folder):
    rounds = _against_limits(build, make_repositories(folder, 100, 200), 20_000, folder / "commands", 9, "--mine")
    yield ("first refresh of these where the user's own commits on all branches count, against the bare commands for these",
           ratio([(engine[TIME], bare[0]) for engine, bare, _ in rounds]), "1.50")


def remembered_repositories(build, folder):
    repositories = make_repositories(folder, 100, 200)
    bare, _ = build.limits(repositories, folder / "commands")
    with build.engine(repositories) as engine, bare:
        # The first refresh after one that asked lists the moments of the commits.
        rounds = [(engine.figures("again"), engine.figures("again"), engine.figures("changed"), bare.figures())
                  for _ in range(12)][1:]
        memory = [engine.figures("memory")[0] for _ in range(3)]
    for listing, unchanged, changed, _ in rounds:
        _demand(listing[COUNT] == 1 and unchanged[COUNT] == 0 and changed[COUNT] > 0,
                "what is known was asked, or what is new was not")
    yield ("refresh of 100 repositories that did not change, against the bare commands",
           ratio([(unchanged[TIME], limit[0]) for _, unchanged, _, limit in rounds]), "0.01")
    yield ("the same with a new commit in one of them",
           ratio([(changed[TIME], limit[0]) for *_, changed, limit in rounds]), "0.03")
    yield ("memory of what is remembered, a repository of 200 commits",
           _spread([size / 1024 for size in memory], " KiB"), "7.1 KiB")


def many_remembered(build, folder):
    with build.engine(make_repositories(folder, 1000, 20)) as engine:
        rounds = [engine.figures("again") for _ in range(12)][1:]
    _demand(all(figures[COUNT] == 0 for figures in rounds), "what is known was asked")
    yield ("processor time of a refresh of 1,000 repositories that did not change",
           _spread([figures[OWN] for figures in rounds], " ms"), "60 ms")


def long_history(build, folder):
    long = make_repository(folder / "long", 200_000)
    rounds = _against_limits(build, [long], 200_000, folder / "commands", 9)
    yield ("refresh of a repository of 200,000 commits, against the bare commands",
           ratio([(engine[TIME], bare[0]) for engine, bare, _ in rounds]), "0.80")


def _quickest(build, sets, rounds=5):
    """For each set of repositories, the time of the refresh that was disturbed least. The sets take turns."""
    with contextlib.ExitStack() as stack:
        engines = [stack.enter_context(build.engine(repositories)) for repositories in sets]
        measured = in_turns(rounds, *engines)
    return [min(figures[TIME] for figures in of_one_set) for of_one_set in zip(*measured)]


def growth_in_repositories(build, folder):
    repositories = make_repositories(folder, 300, 200)
    sizes = [10, 100, 300]
    exponent = growth(sizes, _quickest(build, [repositories[:size] for size in sizes]))
    yield "growth with repositories (10, 100, 300), exponent", f"{exponent:.2f}", "1.03"
    with build.engine(repositories) as engine:
        gaps = [engine.figures("gap")[0] for _ in range(5)]
    yield ("longest stall of the main thread, refresh of 300 repositories",
           f"{statistics.median(gaps):.0f} ms ({min(gaps):.0f} to {max(gaps):.0f})", "4 ms")


def growth_in_commits(build, folder):
    sizes = [2_000, 20_000, 200_000]
    sets = [[make_repository(folder / f"commits{size}", size)] for size in sizes]
    yield "growth with commits (2,000 to 200,000), exponent", f"{growth(sizes, _quickest(build, sets)):.2f}", "1.03"


def log(build, _folder):
    with build.parse() as parse:
        pairs, mixed = ([parse.figures(order) for _ in range(22)][1:] for order in ("in order", "mixed"))
    _demand(min(min(pair) for pair in pairs + mixed) > 0, "the days were counted wrongly")
    yield "200,000 lines of a log to counts, against from_chars and a table", ratio(pairs), "1.00"
    yield "the same, the days thoroughly mixed, as in no log", ratio(mixed), ""


def search(build, folder):
    tree = make_tree(folder / "tree")
    find = Command("find", tree, "-name", ".git")
    with build.scan(tree) as scan, build.walk(tree) as walk, find:
        rounds = in_turns(9, scan, walk, find)
    found = {figures[1] for scan, walk, _ in rounds for figures in (scan, walk)}
    _demand(found == {REPOSITORIES_IN_TREE}, f"a search found {found} repositories")
    yield ("search of 50,000 folders, against find",
           ratio([(scan[0], find[0]) for scan, _, find in rounds]), "0.25")
    yield "the same, against a bare walk", ratio([(scan[0], walk[0]) for scan, walk, _ in rounds]), "1.00"
    with build.scan(tree) as scan:
        again = [(scan.figures(), scan.figures("again")) for _ in range(10)][1:]
    _demand(all(second[1] == REPOSITORIES_IN_TREE for _, second in again), "what was known was not found")
    yield ("the same search again, of folders that did not change, against one that knows nothing",
           ratio([(second[0], first[0]) for first, second in again]), "0.50")


def rows(build_folder, folder):
    build = Build(build_folder)
    measured = (many_repositories, own_commits, remembered_repositories, many_remembered, long_history,
                growth_in_repositories, growth_in_commits, log, search)
    for number, figures in enumerate(measured):
        place = folder / str(number)
        place.mkdir()
        yield from figures(build, place)
