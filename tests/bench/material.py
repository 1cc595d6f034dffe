# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""Repositories and folders to measure with: the same on every machine, but for the day on which they end."""

import os
import subprocess
import time

DAYS = 600
REPOSITORIES_IN_TREE = 500
# What a default branch is called, and whether a remote says so.
LAYOUTS = [("main", False), ("master", False), ("trunk", False), ("main", True), ("trunk", True)]
ZONES = ["+0000", "+0100", "-0500", "+0530", "+1345", "-0330"]
ENVIRONMENT = {"PATH": "/usr/bin:/bin", "GIT_CONFIG_GLOBAL": "/dev/null", "GIT_CONFIG_SYSTEM": "/dev/null"}


def _git(folder, *arguments, **more):
    subprocess.run(["git", *arguments], cwd=folder, env=ENVIRONMENT, check=True, **more)


def _author_time(number, when):
    """Now and then an author's clock was wrong."""
    return {7: 86400, 77: when + 10 ** 9}.get(number % 500, when)


def _stream(branch, commits):
    now = int(time.time()) // 86400 * 86400
    for number in range(commits):
        when = now - (commits - number) * 86400 * DAYS // commits
        zone = ZONES[number % len(ZONES)]
        yield (f"commit refs/heads/{branch}\nauthor A <a@example.org> {_author_time(number, when)} {zone}\n"
               f"committer A <a@example.org> {when} {zone}\ndata 1\nx\n")


def make_repository(folder, commits, layout=0):
    branch, has_remote = LAYOUTS[layout % len(LAYOUTS)]
    folder.mkdir(parents=True)
    _git(folder, "init", "--quiet", f"--initial-branch={branch}")
    _git(folder, "fast-import", "--quiet", input="".join(_stream(branch, commits)).encode())
    _git(folder, "config", "user.email", "a@example.org")
    if has_remote:
        _git(folder, "update-ref", f"refs/remotes/origin/{branch}", branch)
        _git(folder, "symbolic-ref", "refs/remotes/origin/HEAD", f"refs/remotes/origin/{branch}")
    return folder


def make_repositories(folder, count, commits):
    return [make_repository(folder / f"repository{number}", commits, number) for number in range(count)]


def _make_folders(folder, count, files=0):
    """Folders in folders, ten in each, with a few files."""
    places = [folder]
    for number in range(count):
        place = places[number // 10] / f"folder{number}"
        place.mkdir(parents=True)
        places.append(place)
        for file in range(files):
            (place / f"file{file}").touch()
    return places


def make_tree(folder):
    """What people have: 500 repositories of 30 folders each, 25,000 plain folders with four files each in which the
    repositories lie, and 10,000 folders that a package manager made. 50,000 in all, but for a few. There are repositories
    in the package manager's folders and in hidden ones too, which no search is to find."""
    plain = _make_folders(folder, 25_000, files=4)
    for number in range(REPOSITORIES_IN_TREE):
        repository = plain[number * 50] / f"repository{number}"
        _make_folders(repository / ".git", 10)
        _make_folders(repository, 19)
    for number in range(50):
        place = plain[number * 500]
        _make_folders(place / "node_modules", 200)
        for decoy in ("node_modules/folder0", ".cache/repository"):
            (place / decoy / ".git").mkdir(parents=True)
    return folder
