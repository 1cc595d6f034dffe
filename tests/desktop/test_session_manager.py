# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""Only the login item starts the program: a session that is saved when its user logs out does not know it."""

import contextlib
import socket
import unittest

import case
from desktop import Desktop
from item import StatusItem
from program import Program
from repositories import tracked_days_ago


@contextlib.contextmanager
def session_manager(desktop):
    """A place where a session manager listens to the programs of its session."""
    with socket.socket(socket.AF_UNIX) as listening:
        path = str(desktop.folder / "session-manager")
        listening.bind(path)
        listening.listen()
        listening.setblocking(False)
        yield listening, {"SESSION_MANAGER": f"local/{socket.gethostname()}:{path}"}


class SessionManager(unittest.TestCase):

    def test_the_program_does_not_register_with_it(self):
        with Desktop(self.id()) as desktop, session_manager(desktop) as (listening, given):
            tracked_days_ago(desktop, case.now_in("UTC"), 0, 1)
            desktop.start_panel()
            program = Program(desktop, given=given)
            StatusItem(desktop).wait_for_label(" 2")
            with self.assertRaises(BlockingIOError):
                listening.accept()
            self.assertEqual(program.end(), 0)


if __name__ == "__main__":
    case.main()
