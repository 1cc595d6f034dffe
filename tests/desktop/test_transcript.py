#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""What docs/screen-reader.md says is what a screen reader says."""

import pathlib
import unittest

import case
import transcript
from desktop import Desktop

DOCUMENT = pathlib.Path(__file__).resolve().parents[2] / "docs" / "screen-reader.md"


class Transcript(unittest.TestCase):
    maxDiff = None

    def test_the_document_holds_what_is_said(self):
        with Desktop(self.id()) as desktop:
            said = transcript.as_text(transcript.of_program(desktop))
        document = DOCUMENT.read_text()
        self.assertEqual(document[document.index("## The dashboard, the week"):], said)

    def test_everything_that_is_said_has_a_name(self):
        self.assertNotIn("without a name", DOCUMENT.read_text().partition("## The dashboard")[2])


if __name__ == "__main__":
    case.main()
