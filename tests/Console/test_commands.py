# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""The program as people and scripts call it: without a display, with a bus of its own or without any, in a terminal or a
pipe, on real repositories."""

import contextlib
import datetime
import fcntl
import json
import os
import pathlib
import pty
import re
import select
import signal
import socket
import struct
import subprocess
import tempfile
import termios
import threading
import unittest
import xml.etree.ElementTree

from gi.repository import Gio, GLib

import case
import preferences
import processes
import reference
from bus import Bus
from program import AT_ONCE
from repositories import HangingRepository, Repository
from waiting import LIMIT_SECONDS, wait_until

PROGRAM = os.environ["VELQUARIN_PROGRAM"]
ZONE = "Europe/Berlin"
NAME, PATH, INTERFACE = "io.velquarin.Velquarin", "/io/velquarin/Velquarin", "io.velquarin.Velquarin1"
# It is noon for all of them: no day ends during a test.
OFFSET = case.ShiftedTime(12, 0, ZONE).offset
OWN_READING = "velquarin: The running program does not answer; the repositories are read here.\n"


class World:
    """A user without a display: a home, preferences, and a bus where somebody starts one."""

    def __init__(self, folder):
        self.folder = folder
        self.config = folder / "config"
        self.bus = None
        (folder / "run").mkdir(mode=0o700)
        self.environment = {
            "PATH": "/usr/bin:/bin", "HOME": str(folder), "XDG_CONFIG_HOME": str(self.config), "TZ": ZONE,
            "XDG_RUNTIME_DIR": str(folder / "run"), "LANG": "C.UTF-8", "GIT_CONFIG_GLOBAL": "/dev/null",
            "QT_QPA_PLATFORM": "offscreen", "GIT_CONFIG_SYSTEM": "/dev/null",
            "LD_PRELOAD": os.environ["VELQUARIN_TEST_CLOCK"], "VELQUARIN_TEST_CLOCK_OFFSET": str(OFFSET)}
        self._started = []

    def repository(self, name, *days):
        """One with a commit on each of those days, counted back from now."""
        made = Repository(self.folder / name)
        made.commit_days_ago(self.now(), *days)
        return made

    @staticmethod
    def now():
        return case.now_in(ZONE) + datetime.timedelta(seconds=OFFSET)

    def track(self, *paths):
        preferences.write(self.config, paths)

    def run(self, *arguments, seconds=AT_ONCE, **changes):
        environment = {**self.environment, **changes}
        environment = {name: value for name, value in environment.items() if value is not None}
        return subprocess.run([PROGRAM, *arguments], env=environment, stdin=subprocess.DEVNULL, capture_output=True,
                              text=True, timeout=seconds, check=False)

    def start(self, *arguments, **streams):
        streams = {"stdin": subprocess.DEVNULL, "stdout": subprocess.PIPE, "stderr": subprocess.PIPE, **streams}
        process = subprocess.Popen([PROGRAM, *arguments], env=self.environment, **streams)
        self._started.append(process)
        return process

    def start_bus(self):
        self.bus = Bus(self.folder)
        self.bus.start(self.environment, self.folder)
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = self.bus.address

    def start_program(self):
        """Returns when it shows its figures."""
        program = self.start(stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        wait_until(lambda: self.property("CurrentStreak") is not None, "the program's figures")
        return program

    def property(self, name):
        with contextlib.suppress(Exception):
            return self.bus.property(NAME, PATH, INTERFACE, name)
        return None

    def end(self):
        for process in self._started:
            if process.poll() is None:
                process.send_signal(signal.SIGCONT)
                processes.end(process)
            for stream in (process.stdout, process.stderr):
                if stream:
                    stream.close()
        if self.bus:
            self.bus.end()


class Lines:
    """What comes out of a process, line by line."""

    def __init__(self, process):
        self._stream = process.stdout
        self._rest = b""

    def next(self):
        return wait_until(self._try_next, "a line")

    def until(self, line):
        """Returns when that line comes. A reading that has the history change under it may tell of both; the next follows."""
        said = [self.next()]
        while said[-1] != line:
            said.append(wait_until(self._try_next, f"{line!r}", state=lambda: said))

    def _try_next(self):
        while select.select([self._stream], [], [], 0)[0] and b"\n" not in self._rest:
            more = os.read(self._stream.fileno(), 65536)
            if not more:
                break
            self._rest += more
        if b"\n" not in self._rest:
            return None
        line, self._rest = self._rest.split(b"\n", 1)
        return line.decode()


class Commands(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.world = World(pathlib.Path(folder.name))
        self.addCleanup(self.world.end)

    def answer(self, *arguments, **changes):
        """What a command prints that has nothing to complain about."""
        done = self.world.run(*arguments, **changes)
        self.assertEqual((done.stderr, done.returncode), ("", 0))
        return done.stdout

    def refusal(self, *arguments, status, **changes):
        """The one line on standard error of a command that does not do what it is told."""
        done = self.world.run(*arguments, **changes)
        self.assertEqual((done.stdout, done.returncode), ("", status), done.stderr)
        self.assertRegex(done.stderr, r"\Avelquarin: [^\n]+\n\Z")
        return done.stderr

    def files(self):
        """All of the user's files, and when each was written last."""
        return {str(path): path.lstat().st_mtime_ns for path in self.world.folder.rglob("*")}


class Answers(Commands):
    def expected(self):
        """The reference's figures of now."""
        now = self.world.now().astimezone(datetime.timezone.utc)
        return reference.figures([str(path) for path in self.paths], reference.place_named(ZONE), now, now,
                                 reference.Counted())

    @staticmethod
    def date_of(milliseconds):
        moment = datetime.datetime.fromtimestamp(milliseconds / 1000, datetime.timezone.utc)
        return reference.place_named(ZONE).date_at(moment).isoformat()

    def in_our_words(self, figures):
        def days(pairs):
            return [{"date": self.date_of(start), "commits": count} for start, count in pairs]

        def moment(milliseconds):
            if milliseconds is None:
                return None
            whole = datetime.datetime.fromtimestamp(milliseconds // 1000, datetime.timezone.utc)
            return whole.strftime("%Y-%m-%dT%H:%M:%SZ")
        return {
            "version": 1, "currentStreak": figures["currentStreak"], "longestStreak": figures["longestStreak"],
            "committedToday": figures["hasCommittedToday"], "commitsThisWeek": figures["totalCommitsThisWeek"],
            "lastSevenDays": days(figures["commitHistory"]), "days": days(figures["yearHistory"]),
            "repositories": [{"name": pathlib.Path(path).name, "path": path, "commitsToday": today,
                              "commitsThisWeek": week, "lastCommit": moment(last)}
                             for path, today, week, last in figures["repositoryStats"]],
            "repositoriesWithoutAddress": figures["withoutAddress"]}

    def setUp(self):
        super().setUp()
        self.paths = [self.world.repository("garden", 0, 1, 2, 2, 40, 41, 42, 43, 300, 500).path,
                      self.world.repository("a \"quoted\" gärten", 1, 3, 300).path,
                      self.world.repository("empty").path]
        self.world.track(*self.paths)

    def test_the_figures_are_those_of_the_reference_with_a_program_and_without(self):
        expected = self.in_our_words(self.expected())
        self.assertEqual(expected["currentStreak"], 4)
        self.assertEqual(json.loads(self.answer("status", "--format", "json")), expected)
        self.world.start_bus()
        self.world.start_program()
        self.assertEqual(json.loads(self.answer("status", "--format", "json")), expected)

    def test_every_format_says_the_same_with_a_program_and_without(self):
        def all_formats():
            return [self.answer("status"), self.answer("status", "--format", "waybar"), self.answer("year"),
                    self.answer("year", "--format", "json"), self.answer("year", "--format", "svg")]
        alone = all_formats()
        self.world.start_bus()
        self.world.start_program()
        self.assertEqual(all_formats(), alone)
        self.assertEqual(alone[0], "4 days, longest 4, committed today\n")
        self.assertEqual(json.loads(alone[1])["text"], "4")

    def test_the_year_has_the_squares_of_the_reference(self):
        answer, expected = json.loads(self.answer("year", "--format", "json")), self.expected()
        squares = {day["date"]: day for week in answer["weeks"] for day in week if day}
        counts = {self.date_of(start): count for start, count in expected["yearHistory"]}
        self.assertEqual(len(squares), 365)
        self.assertEqual({date: square["commits"] for date, square in squares.items() if square["commits"]},
                         {date: count for date, count in counts.items() if date in squares})
        self.assertEqual(answer["commits"], sum(square["commits"] for square in squares.values()))
        for week in answer["weeks"]:
            for weekday, day in enumerate(week):
                if day:
                    self.assertEqual(datetime.date.fromisoformat(day["date"]).isoweekday() % 7, weekday)

    def test_the_picture_is_sound_and_names_no_repository(self):
        picture = self.answer("year", "--format", "svg")
        root = xml.etree.ElementTree.fromstring(picture)
        self.assertEqual(root.tag, "{http://www.w3.org/2000/svg}svg")
        self.assertNotIn("garden", picture)
        self.assertNotIn(str(self.world.folder), picture)

    def test_nothing_is_written(self):
        before = self.files()
        self.answer("status")
        self.answer("year")
        self.assertEqual(self.files(), before)

    def test_a_folder_that_is_watched_is_searched(self):
        preferences.write_defaults(self.world.config, [], [self.world.folder])
        before = self.files()
        self.assertEqual(self.answer("status"), "4 days, longest 4, committed today\n")
        self.assertEqual(self.files(), before)

    def test_without_preferences_there_is_no_streak(self):
        (self.world.config / "velquarin/preferences.json").unlink()
        self.assertEqual(self.answer("status"), "0 days, longest 0, no commit today\n")

    def test_a_missing_repository_is_passed_over(self):
        self.world.track(self.world.folder / "gone", *self.paths)
        self.assertEqual(self.answer("status"), "4 days, longest 4, committed today\n")

    def test_a_locale_of_another_encoding_adds_no_word(self):
        self.assertEqual(self.answer("status", LANG="C", LC_ALL="POSIX"), "4 days, longest 4, committed today\n")
        self.assertTrue(self.answer("year", LANG="C").isascii())
        self.assertIn("·", self.answer("year"))


class Refusals(Commands):
    def test_words_that_mean_nothing(self):
        for words in (["stats"], ["status", "now"], ["--nonsense"], ["status", "--format", "xml"], ["year", "--follow"],
                      [""], ["status", "-platform", "xcb"]):
            with self.subTest(words):
                self.assertIn("Try \"velquarin --help\".", self.refusal(*words, status=2))

    def test_help_and_version(self):
        self.assertEqual(self.answer("--version"), "velquarin 1.0.0\n")
        self.assertTrue(self.answer("--help").startswith("Usage: "))

    def test_without_a_display_the_program_says_what_to_do(self):
        for place in ({}, {"DISPLAY": ":77"}, {"WAYLAND_DISPLAY": "wayland-77"}):
            with self.subTest(place):
                line = self.refusal(status=1, QT_QPA_PLATFORM=None, **place)
                self.assertIn("\"velquarin status\"", line)

    def test_preferences_that_cannot_be_read(self):
        self.world.track()
        file = self.world.config / "velquarin/preferences.json"
        for text, reason in (("{", "is damaged"), ('{"trackedRepositories": 5}', "a value that cannot be read"),
                             ('{"trackedRepositories": {"data": "garbage"}}', "a value that cannot be read")):
            with self.subTest(text):
                file.write_text(text)
                before = self.files()
                self.assertIn(reason, self.refusal("status", status=1))
                self.assertEqual(self.files(), before)

    def test_nobody_to_refresh_or_to_show(self):
        self.refusal("refresh", status=1)
        self.world.start_bus()
        self.assertIn("does not run", self.refusal("refresh", status=1))
        self.assertIn("does not run", self.refusal("show", status=1))

    def test_a_full_disk(self):
        with open("/dev/full", "wb") as full:
            process = self.world.start("--version", stdout=full)
            self.assertIn(b"cannot be written", process.communicate(timeout=LIMIT_SECONDS)[1])
        self.assertEqual(process.returncode, 1)

    def test_nothing_to_write_to(self):
        done = subprocess.run(["sh", "-c", 'exec "$0" status >&-', PROGRAM], env=self.world.environment,
                              stderr=subprocess.PIPE, timeout=LIMIT_SECONDS, check=False)
        self.assertEqual(done.returncode, 1)
        self.assertIn(b"cannot be written", done.stderr)

    def test_a_display_that_fails_is_told_with_its_reason(self):
        self.assertIn("could not connect to display :77",
                      self.refusal(status=1, QT_QPA_PLATFORM="xcb", DISPLAY=":77"))
        self.assertIn("nonsense", self.refusal(status=1, QT_QPA_PLATFORM="nonsense"))


class Program(Commands):
    """With the program, or something in its place, on a bus."""

    def setUp(self):
        super().setUp()
        self.garden = self.world.repository("garden", 1, 2)
        self.world.track(self.garden.path)
        self.world.start_bus()

    def test_it_is_asked_and_not_the_repositories(self):
        self.world.start_program()
        self.world.track()
        self.assertEqual(self.answer("status"), "2 days, longest 2, no commit today\n")

    def test_a_refresh_is_made(self):
        self.world.start_program()
        self.garden.commit_unheard(self.world.now())
        self.assertEqual(self.answer("refresh"), "")
        wait_until(lambda: self.world.property("CommittedToday"), "the commit")

    def test_the_dashboard_is_shown(self):
        self.world.start_program()
        self.assertEqual(self.answer("show"), "")

    def test_one_that_hangs_is_not_waited_for(self):
        program = self.world.start_program()
        program.send_signal(signal.SIGSTOP)
        done = self.world.run("status")
        self.assertEqual((done.stdout, done.stderr, done.returncode),
                         ("2 days, longest 2, no commit today\n", OWN_READING, 0))
        self.assertIn("does not answer", self.refusal("refresh", status=1))

    def test_a_bus_that_hangs_is_not_waited_for(self):
        self.world.bus._process.send_signal(signal.SIGSTOP)
        try:
            done = self.world.run("status")
        finally:
            self.world.bus._process.send_signal(signal.SIGCONT)
        self.assertEqual((done.stdout, done.stderr, done.returncode),
                         ("2 days, longest 2, no commit today\n", OWN_READING, 0))

    def test_a_bus_that_hangs_once_it_has_greeted_is_not_waited_for(self):
        with HalfABus(self.world.folder / "half") as address:
            self.world.environment["DBUS_SESSION_BUS_ADDRESS"] = address
            done = self.world.run("status")
        self.assertEqual((done.stdout, done.stderr, done.returncode),
                         ("2 days, longest 2, no commit today\n", OWN_READING, 0))

    def test_followed_a_bus_that_comes_back_is_used_again(self):
        follower = self.world.start("status", "--follow")
        lines = Lines(follower)
        self.assertEqual(lines.next(), "2 days, longest 2, no commit today")
        self.world.bus.end()
        (self.world.folder / "socket").unlink(missing_ok=True)
        self.world.bus.start(self.world.environment, self.world.folder)
        self.world.start_program()
        self.world.track()
        # Its own reading is what has it ask; from then on the program tells.
        self.garden.commit(self.world.now())
        lines.until("3 days, longest 3, committed today")
        wait_until(lambda: not watches_of(follower.pid), "the end of its own reading",
                   state=lambda: watches_of(follower.pid))

    def test_followed_preferences_that_break_are_said_and_waited_through(self):
        program = self.world.start_program()
        follower = self.world.start("status", "--follow")
        lines = Lines(follower)
        self.assertEqual(lines.next(), "2 days, longest 2, no commit today")
        file = self.world.config / "velquarin/preferences.json"
        whole = file.read_text()
        # Before the program goes: the follower reads them as soon as it hears of that.
        file.write_text("{")
        program.kill()
        program.wait()
        wait_until(lambda: select.select([follower.stderr], [], [], 0)[0], "what it says")
        self.assertIn(b"is damaged", os.read(follower.stderr.fileno(), 4096))
        file.write_text(whole)
        self.garden.commit(self.world.now())
        self.world.start_program()
        lines.until("3 days, longest 3, committed today")

    def test_followed_it_goes_on_from_one_program_to_the_next(self):
        follower = self.world.start("status", "--follow")
        lines = Lines(follower)
        self.assertEqual(lines.next(), "2 days, longest 2, no commit today")
        program = self.world.start_program()
        self.garden.commit(self.world.now())
        lines.until("3 days, longest 3, committed today")
        program.terminate()
        program.wait(LIMIT_SECONDS)
        self.garden.run("reset", "--quiet", "--hard", "HEAD~1")
        lines.until("2 days, longest 2, no commit today")
        self.world.start_program()
        self.garden.commit(self.world.now())
        lines.until("3 days, longest 3, committed today")
        self.assertIsNone(follower.poll())

    def test_followed_it_prints_what_changed_alone(self):
        self.world.start_program()
        follower = self.world.start("status", "--follow")
        lines = Lines(follower)
        self.assertEqual(lines.next(), "2 days, longest 2, no commit today")
        for _ in range(3):
            before = self.world.property("LastRefresh")
            wait_until(lambda: self.answer("refresh") == "" and self.world.property("LastRefresh") != before,
                       "another refresh")
        self.garden.commit(self.world.now())
        self.assertEqual(lines.next(), "3 days, longest 3, committed today")


class Readers(Commands):
    def setUp(self):
        super().setUp()
        self.garden = self.world.repository("garden", 1, 2)
        self.world.track(self.garden.path)

    def test_followed_without_a_program_a_commit_is_noticed(self):
        lines = Lines(self.world.start("status", "--follow", "--format", "json"))
        self.assertFalse(json.loads(lines.next())["committedToday"])
        self.garden.commit(self.world.now())
        self.assertTrue(json.loads(lines.next())["committedToday"])

    def test_followed_it_ends_with_its_reader(self):
        follower = self.world.start("status", "--follow")
        Lines(follower).next()
        follower.stdout.close()
        follower.stdout = None
        self.assertEqual(follower.wait(LIMIT_SECONDS), 0)
        self.assertEqual(follower.stderr.read(), b"")

    def test_followed_it_ends_with_the_other_end_of_a_socket(self):
        ours, its = socket.socketpair()
        follower = self.world.start("status", "--follow", stdout=its)
        its.close()
        with ours:
            # Some close at once the direction that they do not need.
            ours.sendall(b"nobody listens to this")
            ours.shutdown(socket.SHUT_WR)
            self.assertEqual(ours.recv(4096), b"2 days, longest 2, no commit today\n")
            self.garden.commit(self.world.now())
            self.assertEqual(ours.recv(4096), b"3 days, longest 3, committed today\n")
        self.assertEqual(follower.wait(LIMIT_SECONDS), 0)

    def test_a_reader_that_is_gone_from_the_start_is_no_error(self):
        reading, writing = os.pipe()
        os.close(reading)
        process = self.world.start("status", stdout=writing)
        os.close(writing)
        self.assertEqual((process.communicate(timeout=LIMIT_SECONDS)[1], process.returncode), (b"", 0))

    def test_control_c_ends_it_at_once_and_git_with_it(self):
        hanging = HangingRepository(self.world.folder / "hanging")
        self.world.track(hanging.path)
        process = self.world.start("status")
        with hanging.with_a_reader():
            git = wait_until(lambda: children_of(process.pid), "git")
            process.send_signal(signal.SIGINT)
            self.assertEqual(process.wait(LIMIT_SECONDS), -signal.SIGINT)
            wait_until(lambda: not any(os.path.exists(f"/proc/{pid}") for pid in git), "git's end")

    def terminal(self, columns, *arguments, **changes):
        """What a terminal of that width is sent."""
        master, slave = pty.openpty()
        fcntl.ioctl(slave, termios.TIOCSWINSZ, struct.pack("HHHH", 24, columns, 0, 0))
        self.world.environment |= {"TERM": "xterm-256color", **changes}
        process = self.world.start(*arguments, stdout=slave)
        os.close(slave)
        text = b""
        with contextlib.suppress(OSError):  # a terminal ends with an error
            while more := os.read(master, 65536):
                text += more
        os.close(master)
        self.assertEqual(process.wait(LIMIT_SECONDS), 0)
        return text.decode().replace("\r\n", "\n")

    def test_a_terminal_gets_colours_and_what_fits(self):
        for columns in (20, 80, 200):
            with self.subTest(columns):
                text = self.terminal(columns, "year")
                self.assertIn("\x1b[32m", text)
                plain = re.sub("\x1b\\[[0-9]*m", "", text)
                self.assertLessEqual(max(map(len, plain.splitlines())), columns)
                self.assertIn("░", plain)

    def test_colours_that_nobody_wants_are_left_out(self):
        for wish in ({"NO_COLOR": "1"}, {"TERM": "dumb"}, {"TERM": ""}):
            with self.subTest(wish):
                self.assertNotIn("\x1b", self.terminal(80, "year", **wish))


class HalfABus:
    """A bus that greets whoever comes and then says no more."""

    def __init__(self, path):
        self._address = f"unix:path={path}"
        self._listening = socket.socket(socket.AF_UNIX)
        self._listening.bind(str(path))
        self._listening.listen()
        self._taken = None

    def __enter__(self):
        threading.Thread(target=self._serve, daemon=True).start()
        return self._address

    def _serve(self):
        self._taken = self._listening.accept()[0]
        stream = self._taken.makefile("rwb", buffering=0)
        for answer in (b"OK 0123456789abcdef0123456789abcdef\r\n", b"AGREE_UNIX_FD\r\n"):
            while not stream.readline().lstrip(b"\0").startswith((b"AUTH EXTERNAL", b"NEGOTIATE")):
                stream.write(b"REJECTED EXTERNAL\r\n")
            stream.write(answer)
        stream.readline()  # BEGIN
        hello = b""
        while len(hello) < 16 or len(hello) < Gio.DBusMessage.bytes_needed(hello):
            hello += self._taken.recv(4096)
        reply = Gio.DBusMessage.new_method_reply(Gio.DBusMessage.new_from_blob(hello, Gio.DBusCapabilityFlags.NONE))
        reply.set_serial(1)
        reply.set_sender("org.freedesktop.DBus")
        reply.set_body(GLib.Variant("(s)", (":1.7",)))
        self._taken.sendall(reply.to_blob(Gio.DBusCapabilityFlags.NONE))

    def __exit__(self, *_):
        self._listening.close()
        if self._taken:
            self._taken.close()


def watches_of(pid):
    """What a process watches on the disk."""
    found = []
    for file in pathlib.Path(f"/proc/{pid}/fdinfo").iterdir():
        with contextlib.suppress(OSError):
            found += [line for line in file.read_text().splitlines() if line.startswith("inotify ")]
    return found


def children_of(pid):
    tasks = pathlib.Path(f"/proc/{pid}/task").glob("*/children")
    return [int(child) for task in tasks for child in task.read_text().split()]


class Many(Commands):
    @unittest.skipUnless(case.IS_WHOLE, "takes long")
    def test_ten_thousand_repositories(self):
        garden = self.world.repository("garden", 0)
        gone = [self.world.folder / f"gone {number}" for number in range(9999)]
        self.world.track(garden.path, *gone)
        self.assertEqual(self.answer("status", seconds=LIMIT_SECONDS), "1 day, longest 1, committed today\n")


if __name__ == "__main__":
    case.stop_without({name: case.NEEDED[name] for name in ("dbus-daemon", "git")})
    unittest.main(verbosity=2)
