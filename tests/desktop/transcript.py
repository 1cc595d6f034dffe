# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""What a screen reader says of the program's windows, from beginning to end, always at the same noon."""

import datetime
import json
import re
import uuid

import preferences
from repositories import Repository
from settings import DASHBOARD, TABS, Session

NOON = datetime.datetime(2026, 11, 20, 12, 0, tzinfo=datetime.timezone.utc)
HOME = "/home/robin"

# The clock is moved by whole seconds: a start at 12:00 sharp would now and then be one at 11:59.
WELL_INTO_THE_MINUTE = datetime.timedelta(seconds=5)

SAID_OF_ROLES = {"frame": "window", "push button": "button", "check box": "check box", "combo box": "pop-up",
                 "page tab list": "tabs", "page tab": "tab", "list": "list", "list item": "", "panel": "group",
                 "scroll bar": "scroll bar", "label": ""}

# Of these a reader says the name, which holds what they show.
SAID_WHOLE = ("push button", "check box", "combo box")
# Of a long list the first and the last are enough.
AT_BOTH_ENDS = 2


def _states(node):
    if node.role == "check box":
        yield "checked" if "checked" in node.states else "not checked"
    if "selected" in node.states:
        yield "selected"
    if "sensitive" not in node.states:
        yield "unavailable"


def said_of(node):
    """One element in words; empty for what only holds others."""
    if node.role not in SAID_OF_ROLES:
        return node.name and f"{node.name}, {node.role}"
    role = SAID_OF_ROLES[node.role]
    if not node.name and not role:
        return f"(something without a name: {node.role})"
    return ", ".join(filter(None, (node.label, node.name, role, *_states(node), node.description)))


def _abridged(items):
    """A long list of days, most of them left out."""
    left_out = len(items) - 2 * AT_BOTH_ENDS
    return [*items[:AT_BOTH_ENDS], f"... ({left_out} more days)", *items[-AT_BOTH_ENDS:]] if left_out > 1 else items


# The labels of controls are said with them, not a second time before them.
def lines(node, labels=None):
    """What is said of an element and of all in it, in reading order."""
    labels = {part.label for part in node.walk()} if labels is None else labels
    if "showing" not in node.states or (node.role == "label" and node.name in labels - {""}):
        return []
    said = [text for text in [said_of(node)] if text]
    if node.role in SAID_WHOLE:
        return said
    days = [said_of(child) for child in node.children if child.role == "list item" and "showing" in child.states]
    others = [line for child in node.children if child.role != "list item" for line in lines(child, labels)]
    return said + _abridged(days) + others


def _make(desktop):
    tidewatch, notes = (Repository(desktop.home / "src" / name) for name in ("tidewatch", "notes"))
    tidewatch.commit_days_ago(NOON, 0, 0, 1, 2, 5, 40)
    notes.commit_days_ago(NOON, 3)
    preferences.write_defaults(desktop.config, [tidewatch.path, notes.path])
    folder = {"id": str(uuid.uuid4()).upper(), "path": str(desktop.home / "src"), "name": "src", "isEnabled": True,
              "maxDepth": 5}
    preferences.add(desktop.config, "watchedFolders", {"data": json.dumps([folder])})


def _windows(session):
    session.open_dashboard()
    yield "The dashboard, the week", session.reader.window(DASHBOARD)
    session.reader.press(DASHBOARD, "Show Year")
    session.reader.wait_for(DASHBOARD, "Back")
    yield "The dashboard, the year", session.reader.window(DASHBOARD)
    session.close_dashboard()
    session.open()
    for tab in TABS:
        session.turn_to(tab)
        yield f"The settings, {tab}", session.window()


def _seconds_to(moment):
    return round(moment.timestamp() - datetime.datetime.now().timestamp())


def of_program(desktop):
    """(title, lines) of each face of each window of the program on a desktop."""
    _make(desktop)
    session = Session(desktop, clock_offset=_seconds_to(NOON + WELL_INTO_THE_MINUTE))
    for title, window in _windows(session):
        yield title, [_lasting(line, desktop) for line in lines(window)]
    status, errors = session.end()
    assert (status, errors) == (0, ""), (status, errors)


# Neither the folder of this run nor how long it took is part of what is said.
def _lasting(line, desktop):
    line = line.replace(str(desktop.home), HOME)
    return re.sub(r"^Updated \d+ sec ago", "Updated 2 sec ago", line)


def as_text(faces):
    return "\n\n".join("\n".join([f"## {title}", "", "```", *said, "```"]) for title, said in faces) + "\n"
