# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""A test that is interrupted leaves nothing running: test_ends_together.py PROGRAM"""

import os
import signal
import subprocess
import sys
import unittest

PROGRAM = sys.argv.pop()
# Something in the background with a session of its own, which would never end; all of it holds the pipe open.
LEAVES_SOMETHING = "setsid sleep 100000 & sh -c 'setsid sleep 100000 & wait' & echo started; "


def started(script, wrapper=()):
    process = subprocess.Popen([*wrapper, PROGRAM, "sh", "-c", LEAVES_SOMETHING + script], stdout=subprocess.PIPE)
    assert process.stdout.readline() == b"started\n"
    return process


class EndsTogether(unittest.TestCase):

    def assert_all_ends(self, process, status):
        """The pipe ends with the last process that has it; where one stays, ctest's limit ends this."""
        self.assertEqual(process.stdout.read(), b"")
        self.assertEqual(process.wait(), status)
        process.stdout.close()

    def test_what_stays_behind_ends_with_the_test(self):
        self.assert_all_ends(started("exit 3"), 3)

    def test_a_test_that_is_killed_takes_the_rest_along(self):
        self.assert_all_ends(started("kill -KILL $$"), 128 + signal.SIGKILL)

    def test_a_signal_ends_all_of_it(self):
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            with self.subTest(number):
                process = started("sleep 100000")
                process.send_signal(number)
                self.assert_all_ends(process, 128 + number)

    def test_whoever_started_it_may_be_killed(self):
        runner = "import subprocess, sys; subprocess.run(sys.argv[1:])"
        process = started("sleep 100000", (sys.executable, "-c", runner))
        process.kill()
        self.assert_all_ends(process, -signal.SIGKILL)

    def test_what_cannot_be_started_is_told(self):
        missing = os.path.join(os.path.dirname(__file__), "missing")
        process = subprocess.run([PROGRAM, missing], stderr=subprocess.PIPE, check=False)
        self.assertEqual(process.returncode, 126)
        self.assertIn(b"missing: No such file or directory", process.stderr)


if __name__ == "__main__":
    unittest.main()
