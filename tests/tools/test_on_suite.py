# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""Whatever becomes of a command on another suite, nothing stays mounted and nothing goes on: test_on_suite.py TOOL"""

import os
import pathlib
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import unittest

TOOL = sys.argv.pop()
SKIPPED = 77
# In the place of the program that makes a bare system: it mounts something there, and does what a test says.
MAKER = """#!/bin/bash
set -eu
target=${!#}
mount -t tmpfs none "$target"
touch "$target/half"
"""
NO_SUITE = "echo 'E: there is no such suite' >&2; exit 1\n"
NO_END = "exec 3> '%s'; echo started >&3; sleep 100000\n"
# What the tool itself runs in a system, and what the tests do.
PROGRAMS = ("bash", "env", "sleep")


def libraries_of(program):
    listed = subprocess.run(["ldd", program], capture_output=True, text=True, check=True).stdout
    return re.findall(r"(/\S+) \(0x", listed)


def make_small_system(root):
    for folder in ("proc", "sys", "dev", "tmp", "etc", "srv"):
        (root / folder).mkdir(parents=True)
    files = {shutil.which(program) for program in PROGRAMS}
    for file in files | {library for program in files for library in libraries_of(program)}:
        there = root / file.lstrip("/")
        there.parent.mkdir(parents=True, exist_ok=True)
        shutil.copy(file, there)


class OnSuite(unittest.TestCase):

    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="velquarin-on-suite-"))
        self.addCleanup(shutil.rmtree, self.folder)
        (self.folder / "tools").mkdir()
        shutil.copy(TOOL, self.folder / "tools")
        subprocess.run(["git", "init", "--quiet", self.folder], check=True)
        self.suites = self.folder / "build" / "suites"

    def make_maker(self, script):
        maker = self.folder / "bin" / "mmdebstrap"
        maker.parent.mkdir()
        maker.write_text(MAKER + script)
        maker.chmod(0o755)

    def start(self, *arguments):
        environment = {**os.environ, "PATH": f"{self.folder / 'bin'}:{os.environ['PATH']}"}
        process = subprocess.Popen([self.folder / "tools" / "on-suite", *arguments], env=environment,
                                   stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        self.addCleanup(process.stdout.close)
        self.addCleanup(process.stderr.close)
        return process

    def assert_nothing_is_mounted(self):
        self.assertNotIn(str(self.folder), pathlib.Path("/proc/self/mountinfo").read_text())

    def test_a_suite_that_cannot_be_installed_says_why(self):
        self.make_maker(NO_SUITE)
        process = self.start("none", "true")
        _, errors = process.communicate()
        self.assertEqual(process.returncode, 2)
        self.assertIn("E: there is no such suite\nThe suite none cannot be installed", errors)
        self.assert_nothing_is_mounted()
        self.assertEqual([path.name for path in self.suites.iterdir()], ["none.unfinished.log"])

    def test_whoever_ends_it_while_it_makes_a_system_ends_all_of_it(self):
        fifo = self.folder / "fifo"
        os.mkfifo(fifo)
        self.make_maker(NO_END % fifo)
        process = self.start("none", "true")
        with fifo.open() as maker:
            self.assertEqual(maker.readline(), "started\n")
            process.send_signal(signal.SIGTERM)
            self.assertEqual(process.wait(), 128 + signal.SIGTERM)
            self.assertEqual(maker.read(), "")
        self.assert_nothing_is_mounted()

    def start_in_small_system(self, script):
        self.make_maker(NO_SUITE)
        make_small_system(self.suites / "small")
        return self.start("small", "bash", "-c", script)

    def test_the_status_is_that_of_the_command(self):
        process = self.start_in_small_system("echo here; exit 7")
        self.assertEqual(process.communicate()[0], "here\n")
        self.assertEqual(process.returncode, 7)
        self.assert_nothing_is_mounted()

    def assert_all_ends_by(self, number, status):
        process = self.start_in_small_system("sleep 100000 & echo started; wait")
        self.assertEqual(process.stdout.readline(), "started\n")
        process.send_signal(number)
        self.assertEqual(process.wait(), status)
        self.assertEqual(process.stdout.read(), "")
        self.assert_nothing_is_mounted()

    def test_whoever_ends_it_ends_the_command(self):
        self.assert_all_ends_by(signal.SIGTERM, 128 + signal.SIGTERM)

    def test_whoever_kills_it_ends_the_command(self):
        self.assert_all_ends_by(signal.SIGKILL, -signal.SIGKILL)


if __name__ == "__main__":
    try:
        subprocess.run(["unshare", "--mount", "--pid", "--fork", "true"], check=True)
    except (OSError, subprocess.CalledProcessError):
        print("skipped: only the administrator can make namespaces here")
        sys.exit(SKIPPED)
    unittest.main()
