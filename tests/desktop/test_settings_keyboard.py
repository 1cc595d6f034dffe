# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""The settings without a pointer: every control is reached, named and worked by keys."""

import unittest

import case
import preferences
from desktop import Desktop
from repositories import Repository
from settings import ADD, SCAN, TABS, WATCH, Session, all_named, current_tab, focused_control
from waiting import wait_until

STOPS = {
    "Repositories": ["one", "Remove", "Add Repository", "Scan Folder", "Refresh Now"],
    "Auto-Discover": ["Auto-discover repos", "shelf", "5", "Remove", "Add Folder", "Scan Now"],
    "General": ["Launch at login", "Show streak count in menu bar", "Remind me if streak is at risk",
                "Every 5 minutes", "By everyone, default branch"],
}
KNOWN_BY = {"check box": "Toggle", "push button": "Press", "combo box": "ShowMenu", "page tab": "Press",
            "page tab list": "SetFocus"}


def prepared(desktop):
    """The program with one repository and one watched folder."""
    repository = Repository(desktop.home / "one")
    repository.commit_days_ago(case.now_in("UTC"), 0)
    preferences.write_defaults(desktop.config, [repository.path], [desktop.home / "shelf"])
    return Session(desktop), repository


class Keyboard(unittest.TestCase):

    def walk(self, session, key, names):
        for name in names:
            session.press(key)
            session.wait_for_focus(name)

    def ask(self, session, key, question):
        session.press(key)
        session.reader.wait_for_window(question)
        session.wait_for_keyboard(question)
        session.press("Escape")
        session.reader.wait_without_window(question)
        session.wait_for_keyboard()

    def test_tab_goes_through_every_tab_as_the_eye_does_and_each_control_says_what_it_is(self):
        with Desktop(self.id()) as desktop:
            session, _ = prepared(desktop)
            session.open()
            self.assertIsNone(focused_control(session.window()))
            self.walk(session, "Tab", [TABS[0], STOPS[TABS[0]][0]])
            for number, tab in enumerate(TABS):
                if number > 0:
                    self.walk(session, "ctrl+Tab", STOPS[tab][:1])
                self.walk(session, "Tab", [*STOPS[tab][1:], tab, STOPS[tab][0]])
                self.walk(session, "shift+Tab", [tab, *STOPS[tab][::-1][:2]])
                controls = [node for node in session.window().shown() if "focusable" in node.states and
                            node.role not in ALWAYS_INSIDE]
                self.assertEqual([node.name for node in controls if node.role not in ("page tab", "page tab list")],
                                 STOPS[tab])
                for node in controls:
                    self.assertIn(KNOWN_BY[node.role], node.actions, node.name)
                    self.assertTrue({"enabled", "sensitive", "visible"} <= node.states, node.name)
            self.assertEqual(session.end(), (0, ""))

    def test_keys_turn_the_tabs(self):
        with Desktop(self.id()) as desktop:
            session, _ = prepared(desktop)
            session.open()
            for key, tab in (("ctrl+Tab", 1), ("ctrl+Tab", 2), ("ctrl+Tab", 0), ("ctrl+shift+Tab", 2),
                             ("ctrl+Page_Up", 1), ("ctrl+Page_Down", 2), ("alt+r", 0), ("alt+g", 2), ("alt+a", 1),
                             ("Tab", 1), ("Left", 0), ("Right", 1)):
                session.press(key)
                session.wait(lambda window, tab=tab: current_tab(window) == TABS[tab], f"{TABS[tab]} after {key}")
            session.press("Escape")
            session.reader.wait_without_window("Settings")
            self.assertEqual(session.end(), (0, ""))

    def test_space_enter_and_mnemonics_work_the_controls(self):
        with Desktop(self.id()) as desktop:
            session, repository = prepared(desktop)
            session.open()
            self.ask(session, "alt+d", ADD)
            self.ask(session, "alt+s", SCAN)
            session.press("ctrl+Tab")
            session.wait_for_tab(TABS[1])
            self.ask(session, "alt+d", WATCH)
            session.press("alt+p")
            session.wait_for_state("Auto-discover repos", "checked", False)
            session.press("alt+g")
            session.wait_for_tab(TABS[2])
            session.press("alt+m")
            session.wait_for_state("Remind me if streak is at risk", "checked", False)
            self.walk(session, "Tab", ["General", *STOPS["General"][:-1]])
            session.press("Down")
            session.wait_for_focus("Every 15 minutes")
            session.press("alt+o")
            self.walk(session, "Down", ["By me, default branch", "By everyone, all branches", "By me, all branches"])

            self.walk(session, "alt+r", ["one"])
            session.press("space")
            session.wait_for_state("one", "checked", False)
            session.press("space")
            session.wait_for_state("one", "checked", True)
            repository.commit_days_ago(case.now_in("UTC"), 1)
            self.walk(session, "Tab", STOPS["Repositories"][1:])
            session.press("Return")
            session.item.wait_for_label(" 2")
            repository.commit_days_ago(case.now_in("UTC"), 2)
            session.press("alt+f")
            session.item.wait_for_label(" 3")
            self.assertEqual(session.end(), (0, ""))

    def test_arrows_go_through_a_thousand_rows_and_removing_leaves_the_keyboard_there(self):
        with Desktop(self.id()) as desktop:
            preferences.write_defaults(desktop.config, [desktop.home / f"r{number:04}" for number in range(1000)])
            session = Session(desktop)
            session.open()
            session.wait_for_text("1000 repos")
            self.walk(session, "Tab", ["Repositories", "r0000"])
            for key, name in (("End", "r0999"), ("Up", "r0998"), ("Down", "r0999"), ("Down", "r0999"),
                              ("Home", "r0000"), ("Down", "r0001"), ("Page_Down", "r0005"), ("Page_Up", "r0001")):
                session.press(key)
                window = session.wait_for_focus(name)
                self.assert_in_sight(window, focused_control(window))
                self.assertLess(len([node for node in window.shown() if node.role == "check box"]), 8)

            self.walk(session, "Tab", ["Remove"])
            session.press("space")
            self.assert_focus_in_row(session.wait_for_text("999 repos"), "r0002")
            session.press("End")
            window = session.wait(lambda window: all_named(window, "r0999"), "the last row")
            self.assert_focus_in_row(window, "r0999")
            session.press("space")
            self.assert_focus_in_row(session.wait_for_text("998 repos"), "r0998")
            def stored():
                names = [record["name"] for record in preferences.records(desktop.config, "trackedRepositories")[1]]
                return len(names), names[:2], names[-1]
            wait_until(lambda: stored() == (998, ["r0000", "r0002"], "r0998"), "the list on the disk", state=stored)
            self.assertEqual(session.end(), (0, ""))

    def assert_in_sight(self, window, node):
        x, y, width, height = node.place
        left, top, whole_width, whole_height = window.place
        self.assertTrue(left <= x and x + width <= left + whole_width, node.place)
        self.assertTrue(top <= y and y + height <= top + whole_height, node.place)

    def assert_focus_in_row(self, window, name):
        """The bin of that row has the keyboard: it stands on one line with the row's check box."""
        control, box = focused_control(window), all_named(window, name, "check box")[0]
        self.assertEqual(control.name, "Remove")
        self.assert_in_sight(window, control)
        self.assertLess(abs(control.centre[1] - box.centre[1]), box.place[3])


# What the toolkit makes reachable only within a control.
ALWAYS_INSIDE = ("list item",)

if __name__ == "__main__":
    case.main()
