# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""Real repositories, made by the real git, with authors and dates of our own."""

import contextlib
import datetime
import os
import subprocess

import preferences
from waiting import wait_until

ENVIRONMENT = {
    "PATH": "/usr/bin:/bin",
    "GIT_CONFIG_GLOBAL": "/dev/null",
    "GIT_CONFIG_SYSTEM": "/dev/null",
    # It would tidy up behind our back.
    "GIT_CONFIG_COUNT": "1",
    "GIT_CONFIG_KEY_0": "maintenance.auto",
    "GIT_CONFIG_VALUE_0": "false",
    "GIT_AUTHOR_NAME": "Ada",
    "GIT_AUTHOR_EMAIL": "ada@example.org",
    "GIT_COMMITTER_NAME": "Ada",
    "GIT_COMMITTER_EMAIL": "ada@example.org",
}


class Repository:
    """A new repository with a branch "main" and no commit."""

    def __init__(self, folder):
        self.path = folder
        folder.mkdir(parents=True)
        # Without the samples that git brings along, many files that nobody reads.
        self._git("init", "--quiet", "--initial-branch=main", "--template=")

    def _git(self, *arguments, stdout=None, **environment):
        return subprocess.run(["git", *arguments], cwd=self.path, env={**ENVIRONMENT, **environment}, check=True,
                              stdin=subprocess.DEVNULL, stdout=stdout, timeout=60)

    def head(self):
        """The id of the newest commit."""
        return self.run("rev-parse", "HEAD").strip()

    def move_to(self, commit):
        """Makes an older or a newer commit the newest of the branch."""
        self._git("update-ref", "refs/heads/main", commit)

    def write_head(self, commit):
        """The same behind git's back: nothing on disk tells the program of it before it looks."""
        (self.path / ".git/refs/heads/main").write_text(f"{commit}\n")

    def run(self, *arguments):
        """What git prints."""
        return self._git(*arguments, stdout=subprocess.PIPE).stdout.decode()

    def commit(self, when, *options):
        """An empty commit of this moment, which knows its zone."""
        date = when.isoformat(timespec="seconds")
        self._git("commit", "--quiet", "--allow-empty", "--message=Work", f"--date={date}", *options,
                  GIT_COMMITTER_DATE=date)

    def commit_unheard(self, when):
        """The same behind git's back: nothing on disk tells the program of it before it looks."""
        date = when.isoformat(timespec="seconds")
        made = self._git("commit-tree", "-p", "HEAD", "-m", "Work", "HEAD^{tree}", stdout=subprocess.PIPE,
                         GIT_AUTHOR_DATE=date, GIT_COMMITTER_DATE=date)
        self.write_head(made.stdout.decode().strip())

    def look_at_the_working_tree(self):
        """What a prompt or an editor asks git all the time; there is always something that it writes down."""
        (self.path / "file").touch()
        self._git("add", "file")
        self._git("status", stdout=subprocess.DEVNULL)

    def commit_days_ago(self, now, *days, options=()):
        """A commit at noon of each of these days, counted back from the day of now."""
        noon = now.replace(hour=12, minute=0, second=0, microsecond=0)
        for day in sorted(days, reverse=True):
            self.commit(noon - datetime.timedelta(days=day), *options)


class Alternation:
    """A repository with a streak of two days, which each turn loses its newest commit or gets it back: there is always
    something new to show, and never more than before."""

    def __init__(self, path, now):
        self.repository = Repository(path)
        self._states = []
        for label, day in ((" 1", 1), (" 2", 0)):
            self.repository.commit_days_ago(now, day)
            self._states.append((label, self.repository.head()))

    def turn(self):
        """The label that the item has once the change is seen."""
        self._states.reverse()
        label, commit = self._states[-1]
        self.repository.move_to(commit)
        return label


# Only while somebody reads can it be opened like that.
def _try_to_write(fifo):
    try:
        return os.open(fifo, os.O_WRONLY | os.O_NONBLOCK)
    except OSError:
        return None


class HangingRepository:
    """A repository whose HEAD is a fifo that nobody writes to: whoever reads it waits for ever."""

    def __init__(self, folder):
        self.path = folder
        for name in ("objects", "refs"):
            (folder / ".git" / name).mkdir(parents=True)
        self._head = folder / ".git" / "HEAD"
        os.mkfifo(self._head)

    @contextlib.contextmanager
    def with_a_reader(self):
        """Waits for a git that reads it, which hangs until the block ends."""
        writer = wait_until(lambda: _try_to_write(self._head), "a git that hangs")
        try:
            yield
        finally:
            os.close(writer)


class Hold:
    """Holds back every git that reads a repository, until it is released."""

    def __init__(self, repository):
        self._head = repository.path / ".git" / "HEAD"
        self._kept = self._head.with_name("kept-HEAD")
        self._head.rename(self._kept)
        os.mkfifo(self._head)

    def release(self):
        """Waits for the git that is held, and lets it and all that come after it go on."""
        writer = wait_until(lambda: _try_to_write(self._head), "a git that is held back")
        content = self._kept.read_bytes()
        self._kept.rename(self._head)
        os.write(writer, content)
        os.close(writer)


def tracked_days_ago(desktop, now, *days):
    """A repository with a commit on each of these days, which the program finds tracked when it starts."""
    repository = Repository(desktop.home / "repository")
    repository.commit_days_ago(now, *days)
    preferences.write(desktop.config, [repository.path])
    return repository
