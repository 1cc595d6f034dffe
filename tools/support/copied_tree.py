# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""A copy of a checkout with a build folder of its own, in which a build and its tests can be run and timed."""

import json
import os
import pathlib
import re
import resource
import shutil
import signal
import subprocess

import keeper

GIBIBYTE = 1 << 30
MOST_MEMORY, LONGEST_FILE = 6 * GIBIBYTE, GIBIBYTE
BUILD_LIMIT = 3600
EVERY_NAME = "."
# ctest itself does not tell the whole command of a test whose program is not built yet.
ADDED_TEST, WORD = re.compile(r'^add_test\(\[=*\[(.*?)\]=*\] (.*)\)$', re.MULTILINE), re.compile(r'"([^"]*)"')


class Hang(Exception):
    """A command took longer than it may, or a test printed more than ctest can hold."""


def listed(root):
    """The files of a checkout that git keeps or would keep."""
    command = ["git", "-C", root, "ls-files", "-z", "--cached", "--others", "--exclude-standard"]
    names = subprocess.run(command, capture_output=True, check=True).stdout.decode().split("\0")
    return {name for name in names if name and os.path.lexists(root / name)}


def is_same(one, other):
    if not os.path.lexists(other) or one.is_symlink() != other.is_symlink():
        return False
    if one.is_symlink():
        return one.readlink() == other.readlink()
    return one.read_bytes() == other.read_bytes() and one.stat().st_mode == other.stat().st_mode


# What is written gets the time of now: with the original's, a build would keep what it made of a planted fault.
def copy(one, other):
    other.parent.mkdir(parents=True, exist_ok=True)
    other.unlink(missing_ok=True)
    if one.is_symlink():
        other.symlink_to(one.readlink())
    else:
        shutil.copyfile(one, other)
        shutil.copymode(one, other)


def bring_up_to_date(root, tree):
    """Files that are the same keep their times, so that only what differs is built anew."""
    names = listed(root)
    for name in names:
        if not is_same(root / name, tree / name):
            copy(root / name, tree / name)
    for folder, folders, files in os.walk(tree):
        if pathlib.Path(folder) == tree and "build" in folders:
            folders.remove("build")
        for file in (pathlib.Path(folder) / file for file in files):
            if file.relative_to(tree).as_posix() not in names:
                file.unlink()


# A fault may fill memory or the disk before anybody notices it.
def limit_resources():
    resource.setrlimit(resource.RLIMIT_AS, (MOST_MEMORY, MOST_MEMORY))
    resource.setrlimit(resource.RLIMIT_FSIZE, (LONGEST_FILE, LONGEST_FILE))


class CopiedTree:
    def __init__(self, root, tree, build, home):
        self.root, self.tree, self.build, self.home = root, tree, build, home
        self.targets = []

    def bring_up_to_date(self):
        for folder in (self.tree, self.home):
            folder.mkdir(parents=True, exist_ok=True)
        bring_up_to_date(self.root, self.tree)

    def configure(self):
        self.run(["cmake", "--preset", "dev", "-B", str(self.build)], BUILD_LIMIT, check=True)

    def make(self, jobs):
        """Whether it compiles, and what was printed."""
        command = ["cmake", "--build", self.build, "--parallel", str(jobs), "--target", *self.targets]
        return self.run(command, BUILD_LIMIT)

    def test(self, labels, names, jobs, limit):
        """Whether the tests pass, and what was printed; where none has such a name, they do."""
        command = ["ctest", "--test-dir", self.build, "-L", labels, "-R", names, "--stop-on-failure"]
        command += ["--output-on-failure", "--parallel", str(jobs)]
        command += ["--no-tests=error"] if names == EVERY_NAME else []
        return self.run(command, limit, prepare=limit_resources)

    def tests_of(self, file):
        """The names of the tests that include the header of a file, as a regular expression."""
        header = pathlib.PurePath(file).relative_to("src").with_suffix(".h")
        tests = (self.tree / "tests").rglob("tst_*.cpp")
        names = [test.stem for test in tests if f'#include "{header}"' in test.read_text()]
        return f"^({'|'.join(names)})(_|$)" if names else "^$"

    def run(self, command, limit, check=False, prepare=lambda: None):
        started = keeper.start(
            command, prepare, cwd=self.tree, env=self.environment(), stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT, text=True, errors="replace"
        )  # fmt: skip
        try:
            printed = started.communicate(timeout=limit)[0]
        except subprocess.TimeoutExpired as reason:
            raise Hang(f"{command[0]} took longer than {limit:.0f} s") from reason
        finally:
            keeper.end_descendants()
        if command[0] == "ctest" and started.returncode == -signal.SIGABRT:
            raise Hang("ctest was aborted, as where it cannot hold what a test prints")
        if check and started.returncode:
            raise subprocess.CalledProcessError(started.returncode, command, printed)
        return started.returncode == 0, printed

    def environment(self):
        """A program with a fault in it finds nobody's settings."""
        kept = {name: value for name, value in os.environ.items() if not re.match(r"XDG_\w+_HOME$", name)}
        return kept | {"HOME": str(self.home)}

    def executables_of(self, labels):
        """The programs of the build that the tests of these labels run, built or not."""
        printed = self.run(["ctest", "--test-dir", self.build, "-L", labels, "--show-only=json-v1"], BUILD_LIMIT, check=True)[1]
        names = {test["name"] for test in json.loads(printed[printed.index("{") :])["tests"]}
        lists = "".join(file.read_text() for file in pathlib.Path(self.build).rglob("CTestTestfile.cmake"))
        words = {word for name, rest in ADDED_TEST.findall(lists) if name in names for word in WORD.findall(rest)}
        paths = {pathlib.Path(word) for word in words if word.startswith(f"{self.build}/")}
        return sorted(str(path.relative_to(self.build)) for path in paths)
