# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""The item follows what git does by itself: nobody asks for a refresh."""

import datetime
import os
import random
import subprocess
import unittest

import case
import preferences
from desktop import Desktop
from item import StatusItem
from program import Program
from repositories import Repository
from waiting import wait_until

ZONE = "UTC"
STEPS = int(os.environ.get("VELQUARIN_STEPS", "200" if case.IS_WHOLE else "20"))
SEED = int(os.environ.get("VELQUARIN_SEED", "0")) or (random.randrange(1, 2**32) if case.IS_WHOLE else 20261122)
LIMIT_SECONDS = case.LIMIT_SECONDS + 5 * STEPS

# A name space of its own, in which the kernel gives out no watch.
WITHOUT_WATCHES = ("unshare", "--user", "--map-current-user", "--keep-caps", "sh", "-ec",
                   'echo 0 > /proc/sys/user/max_inotify_watches; exec "$0" "$@"')


class Village:
    """Repositories in which anything may happen, and the streak that git tells of them."""

    def __init__(self, folder, now):
        self._random = random.Random(SEED)
        self._now = now
        self.repositories = []
        # Their days interlock: each that comes or goes changes the streak of all.
        for name, days in (("one", (6, 3, 0)), ("two", (5, 2)), ("three", (4, 1))):
            repository = Repository(folder / name)
            repository.commit_days_ago(now, 20)
            repository.first = repository.head()
            repository.commit_days_ago(now, *days)
            repository.run("branch", "side")
            self.repositories.append(repository)
        self._linked = folder / "linked"
        self.repositories[0].run("worktree", "add", "--quiet", str(self._linked), "side")
        clone = Repository(folder / "clone")
        clone.run("remote", "add", "origin", str(self.repositories[0].path))
        clone.run("fetch", "--quiet", "--update-head-ok", "origin", "main:main")
        clone.first = self.repositories[0].first
        clone.run("reset", "--quiet", "--hard", clone.first)
        self.repositories.append(clone)

    # Mostly of a day that makes the streak longer.
    def _noon(self):
        day = self._now - datetime.timedelta(days=self._random.choice((0, self._streak(), self._streak() + 1)))
        return day.replace(hour=12, minute=0, second=0, microsecond=0)

    def happen(self):
        """Does something somewhere, and says what."""
        repository = self._random.choice(self.repositories)
        name, act = self._random.choice((
            ("a commit", lambda: repository.commit(self._noon())),
            ("a commit", lambda: repository.commit(self._noon())),
            ("an amended commit", lambda: repository.commit(self._noon(), "--amend", "--no-edit")),
            ("a reset", lambda: repository.run("reset", "--quiet", "--hard", "HEAD~1")),
            ("the beginning", lambda: repository.run("reset", "--quiet", "--hard", repository.first)),
            ("the beginning", lambda: repository.run("reset", "--quiet", "--hard", repository.first)),
            ("a merge", lambda: self._merge(repository)),
            ("a rebase", lambda: repository.run("rebase", "--quiet", "--force-rebase", "HEAD~1")),
            ("a detached head", lambda: self._detach(repository)),
            ("a moved branch", lambda: repository.run("update-ref", "refs/heads/main", "HEAD~2")),
            ("a fetch into the branch",
             lambda: self.repositories[-1].run("fetch", "--quiet", "--update-head-ok", "--force", "origin", "main:main")),
            ("packing", lambda: repository.run("pack-refs", "--all")),
            ("a commit after packing",
             lambda: (repository.run("pack-refs", "--all"), repository.commit(self._noon()))),
            ("tidying", lambda: repository.run("gc", "--quiet")),
            ("a look", repository.look_at_the_working_tree)))
        try:
            act()
        except subprocess.CalledProcessError:
            pass  # Not everything is possible everywhere: then nothing has changed.
        return f"{name} in {repository.path.name}"

    def _merge(self, repository):
        repository.run("checkout", "--quiet", "--detach")
        repository.commit(self._noon())
        head = repository.head()
        repository.run("checkout", "--quiet", "main")
        repository.run("merge", "--quiet", "--no-ff", "--no-edit", head)

    # What is committed there does not count, and what is done next is done on the branch again.
    def _detach(self, repository):
        repository.run("checkout", "--quiet", "--detach")
        repository.commit(self._noon())
        repository.run("checkout", "--quiet", "main")

    def _days(self):
        for repository in self.repositories:
            for line in repository.run("log", "main", "--format=%ad", "--date=short").splitlines():
                yield datetime.date.fromisoformat(line)

    def label(self):
        """What the item shows."""
        streak = self._streak()
        return f" {streak}" if streak else ""

    def _streak(self):
        days = set(self._days())
        last = self._now.date()
        if last not in days:
            last -= datetime.timedelta(days=1)
        count = 0
        while last - datetime.timedelta(days=count) in days:
            count += 1
        return count


class Watch(unittest.TestCase):

    def test_whatever_git_does_shows_at_once(self):
        noon = case.ShiftedTime(12, 0, ZONE)
        print(f"the same again: VELQUARIN_SEED={SEED} VELQUARIN_STEPS={STEPS}")
        with Desktop(self.id()) as desktop:
            village = Village(desktop.home, noon.now)
            preferences.write(desktop.config, [repository.path for repository in village.repositories])
            desktop.start_panel()
            program = Program(desktop, ZONE, noon.offset)
            item = StatusItem(desktop)
            item.wait_until_refreshed()
            shown = []
            for step in range(STEPS):
                happened = village.happen()
                label = village.label()
                shown.append(label)
                wait_until(lambda: item.label() == label, f"{label!r} after step {step}, {happened}", state=item.label)
            self.assertGreater(len(set(shown)), 3, shown)
            self.assertEqual(program.end(), 0)
            self.assertEqual(program.errors(), "")

    def test_where_the_system_has_no_watch_left_a_refresh_finds_it(self):
        if subprocess.run([*WITHOUT_WATCHES, "true"], check=False, stderr=subprocess.DEVNULL).returncode:
            self.skipTest("this system gives nobody a name space of his own")
        noon = case.ShiftedTime(12, 0, ZONE)
        with Desktop(self.id()) as desktop:
            one, other = Repository(desktop.home / "one"), Repository(desktop.home / "other")
            one.commit_days_ago(noon.now, 1)
            other.commit_days_ago(noon.now, 1)
            preferences.write(desktop.config, [one.path, other.path])
            desktop.start_panel()
            program = Program(desktop, ZONE, noon.offset, wrapper=WITHOUT_WATCHES)
            item = StatusItem(desktop)
            item.wait_for_label(" 1")
            other.commit(noon.now)
            item.choose("Refresh")
            item.wait_for_label(" 2")
            self.assertEqual(program.end(), 0)
            self.assertEqual(len(program.errors().splitlines()), 1, program.errors())
            self.assertIn(str(one.path), program.errors())


if __name__ == "__main__":
    case.main(limit=LIMIT_SECONDS)
