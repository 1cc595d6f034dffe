# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""What docs/status-lines.md tells users to write into the settings of others works as it stands there."""

import json
import re
import unittest

import case
from desktop import Desktop
from status_lines import SNIPPETS, Gardener, I3blocks
from terminal import Terminal
from waiting import wait_until

PENDING = "11 days, longest 14, no commit today"
COMMITTED = "12 days, longest 14, committed today"

needs_tmux = case.needs("tmux")
needs_busctl = case.needs("systemd", "busctl")


class StatusLines(unittest.TestCase):

    def wait_for(self, text, shown):
        """Returns when shown() contains the text."""
        wait_until(lambda: text in shown(), repr(text), state=lambda: repr(shown()))

    @case.needs("i3blocks")
    def test_i3blocks_follows_a_commit_by_itself(self):
        with Desktop(self.id()) as desktop:
            gardener = Gardener(desktop, 11)
            bar = I3blocks(desktop, gardener)
            self.wait_for(PENDING, bar.text)
            gardener.commit()
            self.wait_for(COMMITTED, bar.text)

    @case.needs("i3blocks")
    def test_i3blocks_shows_what_the_program_says_and_leaves_nobody_behind(self):
        with Desktop(self.id()) as desktop:
            gardener = Gardener(desktop, 11)
            program = gardener.start_program()
            bar = I3blocks(desktop, gardener)
            self.wait_for(PENDING, bar.text)
            gardener.commit()
            self.wait_for(COMMITTED, bar.text)
            self.assertEqual(len(gardener.followers("i3blocks")), 1)
            desktop.end("i3blocks")
            wait_until(lambda: not gardener.followers("i3blocks"), "the end of who followed")
            self.assertEqual(program.end(), 0)

    def tmux(self, desktop, gardener):
        return Terminal(desktop, *gardener.marked("tmux", "tmux", "-L", "user", "-f", str(SNIPPETS / "tmux.conf"),
                                                  "new-session", "cat"))

    @needs_tmux
    def test_tmux_shows_the_streak_without_the_program(self):
        with Desktop(self.id()) as desktop:
            terminal = self.tmux(desktop, Gardener(desktop, 11))
            self.wait_for(f"{PENDING} | ", terminal.last_line)

    @needs_tmux
    def test_tmux_shows_what_the_program_says(self):
        with Desktop(self.id()) as desktop:
            gardener = Gardener(desktop, 11)
            program = gardener.start_program()
            terminal = self.tmux(desktop, gardener)
            self.wait_for(f"{PENDING} | ", terminal.last_line)
            gardener.commit()
            self.wait_for(f"{COMMITTED} | ", terminal.last_line)
            self.assertEqual(len(gardener.followers("tmux")), 1)
            gardener.run("env", f"TMUX_TMPDIR={desktop.environment['XDG_RUNTIME_DIR']}",
                         "tmux", "-L", "user", "kill-server")
            wait_until(lambda: not gardener.followers("tmux"), "the end of who followed")
            self.assertEqual(program.end(), 0)

    def shell(self, desktop):
        """The shell of somebody whose prompt is "dev$ " without the snippet."""
        (desktop.home / ".bashrc").write_text(f"PS1='dev$ '\n. '{SNIPPETS / 'prompt.bash'}'\n")
        return Terminal(desktop, "bash", "-i")

    def wait_for_prompt(self, terminal, prompt):
        wait_until(lambda: terminal.last_line() == prompt, f"the prompt {prompt!r}", state=terminal.lines)

    @needs_tmux
    @needs_busctl
    def test_the_prompt_asks_the_program_and_keeps_the_status(self):
        with Desktop(self.id()) as desktop:
            gardener = Gardener(desktop, 11)
            program = gardener.start_program()
            terminal = self.shell(desktop)
            self.wait_for_prompt(terminal, "○ 11 dev$")
            gardener.commit()
            wait_until(lambda: gardener.streak() == 12, "the commit in the program", state=gardener.streak)
            terminal.type("(exit 5)")
            self.wait_for_prompt(terminal, "● 12 dev$")
            terminal.type("echo status $?")
            wait_until(lambda: "status 5" in terminal.lines(), "the status", state=terminal.lines)
            self.assertEqual(program.end(), 0)
            terminal.type("clear")
            self.wait_for_prompt(terminal, "dev$")

    @needs_tmux
    @needs_busctl
    def test_the_prompt_of_who_runs_no_program_and_has_no_bus_is_as_it_was(self):
        for bus in (True, False):
            with self.subTest(bus=bus), Desktop(self.id(), bus=bus) as desktop:
                Gardener(desktop, 11)
                terminal = self.shell(desktop)
                self.wait_for_prompt(terminal, "dev$")
                self.assertEqual(len(terminal.lines()), 1)

    @needs_busctl
    def test_the_bus_answers_as_on_the_page(self):
        with Desktop(self.id()) as desktop:
            gardener = Gardener(desktop, 11)
            program = gardener.start_program()
            self.assertEqual(gardener.run("bash", SNIPPETS / "bus.bash"), "x 11\n")
            self.assertEqual(program.end(), 0)


def _members(page, heading):
    """The first column of the first table behind a heading."""
    table = page.partition(heading)[2].partition("\n|---")[2].partition("\n\n")[0]
    return re.findall(r"^\| `([A-Za-z]+)`", table, re.MULTILINE)


class Page(unittest.TestCase):
    """The tables of the page hold what is printed, no more and no less."""

    def setUp(self):
        self.page = (SNIPPETS.parent / "status-lines.md").read_text()

    def printed(self, *words):
        with Desktop(self.id()) as desktop:
            gardener = Gardener(desktop, 11)
            return json.loads(gardener.ask(*words))

    def assert_documented(self, printed, heading):
        self.assertEqual(sorted(_members(self.page, heading)), sorted(printed))

    def test_status_as_json(self):
        status = self.printed("status", "--format", "json")
        self.assertEqual(status["version"], 1)
        self.assert_documented(status, "### `velquarin status --format json`")
        self.assert_documented(status["lastSevenDays"][0], "A day of `lastSevenDays`")
        self.assert_documented(status["days"][0], "A day of `lastSevenDays`")
        self.assert_documented(status["repositories"][0], "A repository")

    def test_status_for_waybar(self):
        self.assert_documented(self.printed("status", "--format", "waybar"), "### `velquarin status --format waybar`")

    def test_the_year_as_json(self):
        year = self.printed("year", "--format", "json")
        self.assertEqual(year["version"], 1)
        self.assert_documented(year, "### `velquarin year --format json`")
        day = next(day for week in year["weeks"] for day in week if day)
        self.assert_documented(day, "A day of `weeks`")


if __name__ == "__main__":
    case.main()
