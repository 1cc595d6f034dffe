# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""The program with a git that cannot be started, and with one that is none."""

import pathlib
import subprocess
import unittest

import case
from desktop import Desktop
from item import StatusItem
from program import Program
from repositories import tracked_days_ago

GIT = "/usr/bin/git"


def replace_git(replacement):
    """A command that starts another with something else in git's place, which only the other one sees."""
    script = f'mount --bind "$0" {GIT} && exec "$@"'
    return ["unshare", "--mount", "sh", "-c", script, str(replacement)]


def can_replace_git():
    return subprocess.run([*replace_git("/dev/null"), "true"], check=False, stderr=subprocess.DEVNULL).returncode == 0


@unittest.skipUnless(can_replace_git(), "this user may not make a mount namespace")
class Git(unittest.TestCase):

    def run_with(self, make_git):
        noon = case.ShiftedTime(12, 0, "UTC")
        with Desktop(self.id()) as desktop:
            tracked_days_ago(desktop, noon.now, 0, 1)
            desktop.start_panel()
            program = Program(desktop, "UTC", noon.offset, wrapper=replace_git(make_git(desktop.folder)))
            item = StatusItem(desktop)
            item.wait_until_refreshed()
            self.assertEqual(item.label(), "")
            self.assertEqual(program.children(), [])
            self.assertEqual(program.output(), "")
            self.assertEqual(program.end(), 0)

    def test_a_git_that_is_not_executable_leaves_the_flame_alone(self):
        self.run_with(lambda folder: "/dev/null")

    def test_a_git_that_is_a_script_is_taken_at_its_word(self):
        def make(folder):
            script = pathlib.Path(folder, "git")
            script.write_text("#!/bin/sh\necho nonsense\nexit 1\n")
            script.chmod(0o755)
            return script
        self.run_with(make)


if __name__ == "__main__":
    case.main()
