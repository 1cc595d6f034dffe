# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""More repositories, commits and folders than anybody has: all are counted, and the program answers all the while."""

import math
import os
import shutil
import subprocess
import time
import unittest

import case
import preferences
from desktop import Desktop
from repositories import ENVIRONMENT, Repository
from settings import Session
from usage import main_thread_seconds, proportional_kilobytes, wait_for_quiet
from waiting import wait_until

# A hundredth of the whole load for each percent; the whole takes minutes.
PERCENT = int(os.environ.get("VELQUARIN_LOAD_PERCENT", "2"))
TRACKED = 10 * PERCENT
COMMITS = 10_000 * PERCENT
FOLDERS = 2_000 * PERCENT
FOUND = 100 * PERCENT
LIMIT_SECONDS = case.LIMIT_SECONDS + 18 * PERCENT

DAYS = 400
DEPTH = 5
# Far above what is measured, far below what a user would take for a standstill. It is the time that the main thread
# works before it answers: how long it had to wait for a processor is nothing that it could change.
ANSWER_SECONDS = 1.0
PAUSE_SECONDS = 0.02


def make_long(folder, now):
    """A repository with very many commits, on each of the last days as many."""
    repository = Repository(folder)
    noon = int(now.replace(hour=12, minute=0, second=0, microsecond=0).timestamp())

    def commits():
        for number in range(COMMITS):
            when = noon - (DAYS - 1 - number * DAYS // COMMITS) * 86400
            yield (f"commit refs/heads/main\nauthor A <a@example.org> {when} +0000\n"
                   f"committer A <a@example.org> {when} +0000\ndata 1\nx\n").encode()
    with subprocess.Popen(["git", "fast-import", "--quiet"], cwd=folder, env=ENVIRONMENT, stdin=subprocess.PIPE) as git:
        git.stdin.writelines(commits())
    return repository


def make_folders(folder, count):
    """Folders in folders, as deep as a search goes; in the outermost and in every hundredth a link back to it."""
    width = math.ceil(count ** (1 / (DEPTH - 1)))
    folder.mkdir()
    (folder / "circle").symlink_to(folder)
    places = [folder]
    for number in range(count):
        place = places[number // width] / f"folder{number}"
        place.mkdir()
        places.append(place)
        if number % 100 == 99:
            (place / "circle").symlink_to(folder)
    return places[:count // width]


def found_below(folder, depth=DEPTH, way=()):
    """How many repositories there are to be found, one that can be reached in several ways as often."""
    if depth == 0 or folder.resolve() in way:
        return 0
    if (folder / ".git").exists():
        return 1
    way = (*way, folder.resolve())
    return sum(found_below(entry, depth - 1, way) for entry in folder.iterdir() if entry.is_dir())


def copies(repository, places):
    for place in places:
        shutil.copytree(repository.path, place, copy_function=os.link)
    return places


class Load(unittest.TestCase):

    def prepare(self, desktop):
        now = case.now_in("UTC")
        long = make_long(desktop.home / "long", now)
        small = Repository(desktop.home / "small")
        small.commit_days_ago(now, 0, 1)
        tracked = copies(small, [desktop.home / "tracked" / str(number) for number in range(TRACKED - 1)])
        watched = desktop.home / "watched"
        places = make_folders(watched, FOLDERS)
        copies(small, [places[number * len(places) // FOUND] / f"found{number}" for number in range(FOUND)])
        preferences.write_defaults(desktop.config, [long.path, *tracked], [watched])
        return found_below(watched)

    def stored(self, desktop):
        return len(preferences.records(desktop.config, "trackedRepositories")[1])

    def slowest_answer_until_refreshed(self, session):
        """The most seconds of work of the main thread that came before an answer."""
        slowest = 0.0
        while True:
            asked = main_thread_seconds(session.program.pid)
            symbol = session.item.symbol()
            slowest = max(slowest, main_thread_seconds(session.program.pid) - asked)
            if symbol == "Velquarin":
                return slowest
            time.sleep(PAUSE_SECONDS)

    def test_everything_is_counted_while_the_program_goes_on_answering(self):
        with Desktop(self.id()) as desktop:
            found = self.prepare(desktop)
            session = Session(desktop, refreshed=False)
            began = time.monotonic()
            session.item.wait_for_symbol("Syncing")
            session.open_dashboard()
            session.close_dashboard()
            slowest = self.slowest_answer_until_refreshed(session)
            took = time.monotonic() - began
            self.assertEqual(session.item.label(), f" {DAYS}")
            wait_until(lambda: self.stored(desktop) == TRACKED + found, "all that is found on the disk",
                       state=lambda: self.stored(desktop))
            session.open("Repositories")
            session.close()
            wait_for_quiet(session.program.pid)
            print(f"{TRACKED} tracked, {COMMITS} commits in one, {FOLDERS} folders, {found} found: {took:.1f} s, "
                  f"PSS {proportional_kilobytes(session.program.pid)} kB, slowest answer {1000 * slowest:.0f} ms")
            self.assertLess(slowest, ANSWER_SECONDS)
            self.assertEqual(session.end(), (0, ""))


if __name__ == "__main__":
    case.main(limit=LIMIT_SECONDS)
