#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""The figures of a refresh, worked out slowly and from scratch: raw commit objects, dates instead of instants,
day starts found by looking at the clock every five minutes. It shares nothing with the engine.

reference.py [--mine] [--all] ZONE MILLISECONDS REPOSITORY...    prints the figures as one line of JSON

--mine counts the commits of the user alone, --all those of all branches.
"""

import argparse
import functools
import json
import os
import pathlib
import subprocess
import tempfile
from collections import Counter
from dataclasses import dataclass
from datetime import datetime, timedelta, timezone
from zoneinfo import ZoneInfo

DAY = timedelta(days=1)
UTC = timezone.utc
EPOCH = datetime(1970, 1, 1, tzinfo=UTC)

# What surrounds the comparison, without anybody's git settings.
ENVIRONMENT = {name: value for name, value in os.environ.items() if not name.startswith("GIT_")}
ENVIRONMENT |= {"HOME": "/nonexistent", "XDG_CONFIG_HOME": "/nonexistent"}


class Place:
    """A time zone, seen through the clocks on its walls."""

    def __init__(self, name):
        self.name = name
        self.zone = ZoneInfo(name)

    def date_at(self, moment):
        return moment.astimezone(self.zone).date()

    @functools.lru_cache(maxsize=None)
    def start_of(self, day):
        """The first moment at which a clock here shows that date; None where none ever does."""
        moment = datetime(day.year, day.month, day.day, tzinfo=UTC) - timedelta(hours=16)
        for _ in range(40 * 12):
            if self.date_at(moment) == day:
                return moment
            moment += timedelta(minutes=5)
        return None

    def exists(self, day):
        return self.start_of(day) is not None


@functools.lru_cache(maxsize=None)
def place_named(name):
    """The same for all who ask, so that each day's start is looked for once."""
    return Place(name)


class Commit:
    """What a raw commit object says of its author, dates and parents."""

    def __init__(self, raw):
        self.parents = []
        encoding = "utf-8"
        for line in raw.split(b"\n\n", 1)[0].split(b"\n"):
            word, _, rest = line.partition(b" ")
            if word == b"parent":
                self.parents.append(rest.decode())
            elif word == b"author":
                self.author, offset = self.moment(rest)
                self.author_day = (self.author + offset).date()
                address = rest.split(b"<", 1)[1].split(b">", 1)[0]
            elif word == b"committer":
                self.committed, _ = self.moment(rest)
            elif word == b"encoding":
                encoding = rest.decode()
        self.address = address.decode(encoding, "replace")

    @staticmethod
    def moment(text):
        """The instant, and how far the person's clock was ahead of Greenwich."""
        seconds, offset = text.rsplit(b"> ", 1)[1].decode().split()
        sign = -1 if offset[0] == "-" else 1
        ahead = sign * timedelta(hours=int(offset[1:3]), minutes=int(offset[3:5]))
        return EPOCH + timedelta(seconds=int(seconds)), ahead


def git(repository, *arguments):
    """What git prints, or nothing where it fails."""
    done = subprocess.run(["git", *arguments], cwd=repository, env=ENVIRONMENT, stdout=subprocess.PIPE,
                          stderr=subprocess.DEVNULL)
    return done.stdout if done.returncode == 0 else b""


def tip(repository):
    """The commit that the history is read from, as a name; empty where there is none."""
    remote = git(repository, "symbolic-ref", "--quiet", "refs/remotes/origin/HEAD").decode().strip()
    local = ["refs/heads/main", "refs/heads/master", "HEAD"]
    names = [remote.removeprefix("refs/remotes/origin/")] if remote else local
    for name in names:
        if found := git(repository, "rev-parse", "--verify", "--quiet", name + "^{commit}"):
            return found.decode().strip()
    return ""


def all_commits(repository):
    """Every commit object of the repository, by its name."""
    stream = git(repository, "cat-file", "--batch", "--batch-all-objects", "--unordered")
    commits = {}
    while stream:
        header, _, rest = stream.partition(b"\n")
        name, kind, size = header.decode().split()
        if kind == "commit":
            commits[name] = Commit(rest[:int(size)])
        stream = rest[int(size) + 1:]
    return commits


def tips(repository, is_all):
    """The commits that the history is read from, by name."""
    if not is_all:
        return [tip(repository)]
    branches = git(repository, "for-each-ref", "--format=%(objectname)", "refs/heads").decode().split()
    return branches + git(repository, "rev-parse", "--verify", "--quiet", "HEAD^{commit}").decode().split()


def addresses(repository):
    """Those by which git knows the user there."""
    listed = git(repository, "config", "--list", "-z").decode("utf-8", "replace").split("\0")
    pairs = [entry.partition("\n") for entry in listed]
    return {value.casefold() for key, _, value in pairs
            if key in ("user.email", "author.email", "velquarin.email") and is_address(value)}


def is_address(text):
    return 0 < len(text.encode()) <= 320 and not set(text) & set("<>\r\n")


def history(repository, counted):
    """The commits that count, in the order in which git tells of them: of all whose children it has told of, the one that
    was committed last. Of those committed in one second, the one that it heard of first."""
    commits = all_commits(repository)
    known = addresses(repository) if counted.mine else set()
    seen = {name: None for name in tips(repository, counted.all) if name}
    waiting, told = list(seen), []
    while waiting:
        name = max(waiting, key=lambda name: commits[name].committed)
        waiting.remove(name)
        told.append(commits[name])
        new = {parent: None for parent in commits[name].parents if parent not in seen}
        seen |= new
        waiting += new
    return [commit for commit in told if not known or commit.address.casefold() in known]


@functools.lru_cache(maxsize=None)
def empty_repository():
    """A repository to ask git questions in that are about none."""
    folder = tempfile.TemporaryDirectory()
    subprocess.run(["git", "init", "--quiet"], cwd=folder.name, env=ENVIRONMENT, check=True)
    return folder


@functools.lru_cache(maxsize=None)
def git_reads_dates_as(dates, zone, wall_clock):
    """The moments that git takes such --since= and --until= texts for, asked of git itself: the day at the present time
    of day, and its own guess for a day that was left out. None where it sees no bound at all."""
    clock = {**ENVIRONMENT, "TZ": zone, "GIT_TEST_DATE_NOW": str(milliseconds(wall_clock) // 1000)}
    done = subprocess.run(["git", "rev-parse", *(f"--since={day}" for day in dates)], env=clock, check=True,
                          cwd=empty_repository().name, stdout=subprocess.PIPE, text=True)
    ages = [int(line.removeprefix("--max-age=")) for line in done.stdout.split()]
    return [EPOCH + timedelta(seconds=age) if age < 2**63 else None for age in ages]


def period(place, now, days_back):
    """The two dates that git is asked for; None where the first day does not exist."""
    start = place.start_of(place.date_at(now) - days_back * DAY)
    if start is None:
        return None
    here = now.astimezone(place.zone)
    tomorrow = (here.replace(tzinfo=None, fold=0) + DAY).replace(tzinfo=place.zone)
    until = tomorrow if place.exists(tomorrow.date()) else now
    return start.astimezone(UTC).date(), until.astimezone(UTC).date()


def author_days(commits, place, dates, wall_clock):
    """How many commits of the period were written on each day that exists here."""
    since, until = git_reads_dates_as(dates, place.name, wall_clock)
    return Counter(commit.author_day for commit in commits
                   if (since is None or since <= commit.committed) and (until is None or commit.committed <= until)
                   and place.exists(commit.author_day))


def streaks(days, place, today):
    if not days:
        return 0, 0
    day = today
    if today not in days:
        day = today - DAY
        if not place.exists(day):
            return 0, 0
    current = 0
    while day in days:
        current += 1
        day -= DAY
    longest = run = 0
    for day in sorted(days):
        run = run + 1 if day - DAY in days else 1
        longest = max(longest, run)
    return current, longest


@dataclass
class Counted:
    """Which commits count."""

    mine: bool = False
    all: bool = False


NOTHING = {"currentStreak": 0, "longestStreak": 0, "hasCommittedToday": False, "totalCommitsThisWeek": 0,
           "commitHistory": [], "yearHistory": [], "repositoryStats": [], "withoutAddress": []}


def figures(repositories, place, now, wall_clock, counted, read=history):
    """All that a refresh publishes. Days and moments are milliseconds; commit counts go with the day's start."""
    today = place.date_at(now)
    year_dates, week_dates = period(place, now, 730), period(place, now, 6)
    if not repositories or year_dates is None:
        return NOTHING
    week, year, stats = Counter(), Counter(), []
    for repository in repositories:
        if not pathlib.Path(repository).is_dir():
            continue
        commits = read(repository, counted)
        own_week = author_days(commits, place, week_dates, wall_clock) if week_dates else Counter()
        week += own_week
        year += author_days(commits, place, year_dates, wall_clock)
        last = milliseconds(commits[0].author) if commits else None
        stats.append([repository, own_week[today], sum(own_week.values()), last])
    current, longest = streaks(set(year), place, today)
    seven_days = [today - back * DAY for back in range(6, -1, -1)]
    return {
        "currentStreak": current,
        "longestStreak": longest,
        "hasCommittedToday": week[today] > 0,
        "totalCommitsThisWeek": sum(week.values()),
        "commitHistory": by_start({day: week[day] for day in seven_days if place.exists(day)}, place),
        "yearHistory": by_start(year, place),
        "repositoryStats": sorted(stats, key=lambda entry: (entry[3] is None, -(entry[3] or 0))),
        "withoutAddress": [pathlib.Path(entry[0]).name for entry in stats if counted.mine and not addresses(entry[0])],
    }


def by_start(counts, place):
    return [[milliseconds(place.start_of(day)), counts[day]] for day in sorted(counts)]


def milliseconds(moment):
    return (moment - EPOCH) // timedelta(milliseconds=1)


if __name__ == "__main__":
    parser = argparse.ArgumentParser()
    parser.add_argument("--mine", action="store_true")
    parser.add_argument("--all", action="store_true")
    parser.add_argument("zone")
    parser.add_argument("moment", type=int)
    parser.add_argument("paths", nargs="*")
    wanted = parser.parse_args()
    instant = EPOCH + timedelta(milliseconds=wanted.moment)
    counted = Counted(wanted.mine, wanted.all)
    print(json.dumps(figures(wanted.paths, place_named(wanted.zone), instant, datetime.now(UTC), counted)))
