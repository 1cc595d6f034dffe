# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""What the program weighs in a panel, beside the least that a program with widgets and a status item can be."""

import os
import pathlib
import re
import statistics
import subprocess
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "desktop"))

from gi.repository import Gio, GLib

import case
import opening
import preferences
import processes
from contenders import Command, in_turns, ratio
from desktop import WATCHER, Desktop
from item import StatusItem
from program import Program
from repositories import Alternation, Repository
from usage import own_kilobytes, proportional_kilobytes, wait_for_quiet, wakings
from waiting import wait_until

REPOSITORIES = 10
SECONDS_ASLEEP = 60
FIRST, LAST = 100, 500


class Runs:
    """Starts one program after another on one desktop, each in its turn."""

    def __init__(self, desktop, build):
        self._desktop = desktop
        self._tray = build / "tests/bench/bench_tray"
        self.item = StatusItem(desktop)

    def tray(self, *arguments):
        return processes.start("tray", [self._tray, *arguments], self._desktop.environment, self._desktop.logs)

    def program(self):
        return Program(self._desktop)

    def end(self, process):
        process.end() if isinstance(process, Program) else processes.end(process)
        wait_until(lambda: not self.item.is_there(), "the item goes with its program")

    def kilobytes(self, start, use=lambda: None):
        """The weight of a program at rest, after it was used."""
        process = start()
        self.item.wait()
        use()
        wait_for_quiet(process.pid)
        kilobytes = proportional_kilobytes(process.pid)
        self.end(process)
        return kilobytes

    def milliseconds_to_item(self, start):
        """From the start of a program to the item's being known in the panel."""
        came = []
        connection = self._desktop.bus.connection
        watch = connection.signal_subscribe(
            WATCHER, WATCHER, "StatusNotifierItemRegistered", None, None, Gio.DBusSignalFlags.NONE,
            lambda *_: came.append(time.monotonic()))
        began = time.monotonic()
        process = start()
        while not came:
            GLib.MainContext.default().iteration(True)
        connection.signal_unsubscribe(watch)
        self.end(process)
        return 1000 * (came[0] - began)


def _prepare(desktop):
    now = case.now_in("UTC")
    paths = [desktop.home / f"repository {number}" for number in range(REPOSITORIES)]
    for path in paths:
        Repository(path).commit_days_ago(now, 0, 1, 2)
    preferences.write(desktop.config, paths)
    desktop.start_panel()


def _use_windows(desktop, place):
    """Opens the dashboard and from it the settings, and closes both."""
    windows = desktop.windows
    StatusItem(desktop).wait_until_refreshed()
    desktop.screen.settled()
    desktop.screen.click(*place, 1)
    wait_until(lambda: "Velquarin" in dict(windows.unmanaged()), "the dashboard")
    desktop.screen.settled()
    dashboard = dict(windows.unmanaged())["Velquarin"]
    desktop.screen.click(dashboard.right - 23, dashboard.bottom - 15, 1)
    wait_until(lambda: b"Settings" in _titles(desktop), "the settings")
    desktop.screen.settled()
    desktop.screen.press("Escape")
    wait_until(lambda: b"Settings" not in _titles(desktop), "no settings")


def _titles(desktop):
    return subprocess.run(["xdotool", "search", "--onlyvisible", "--name", "^Settings$", "getwindowname"],
                          env=desktop.environment, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=False).stdout


def weight(build):
    with Desktop("weight") as desktop:
        _prepare(desktop)
        runs = Runs(desktop, build)
        refreshed = runs.item.wait_until_refreshed
        place = (desktop.screen.width - 14, 14)
        rounds = [(runs.kilobytes(runs.program, refreshed),
                   runs.kilobytes(runs.program, lambda: _use_windows(desktop, place)),
                   runs.kilobytes(runs.tray), runs.kilobytes(lambda: runs.tray("window"))) for _ in range(3)]
        tray = statistics.median(tray for _, _, tray, _ in rounds)
        yield (f"memory (PSS) with {REPOSITORIES} repositories, against a bare tray program of {tray / 1024:.1f} MB",
               ratio([(idle, tray) for idle, _, tray, _ in rounds]), "1.25")
        yield ("the same after dashboard and settings were opened and closed",
               ratio([(used, tray) for _, used, tray, _ in rounds]), "1.50")
        yield ("the same, against a bare tray program that has shown a window",
               ratio([(used, window) for _, used, _, window in rounds]), "")
        pairs = [(runs.milliseconds_to_item(runs.program), runs.milliseconds_to_item(runs.tray)) for _ in range(12)][1:]
        yield "start to the item in the panel, against the same", ratio(pairs), "1.50"


def sleep():
    with Desktop("sleep") as desktop:
        _prepare(desktop)
        program = Program(desktop)
        StatusItem(desktop).wait_until_refreshed()
        wait_for_quiet(program.pid)
        before = wakings(program.pid)
        time.sleep(SECONDS_ASLEEP)
        woken = sum(wakings(program.pid).values()) - sum(before.values())
        yield "voluntary context switches in a minute, at rest", f"{woken}", "0"


def growth():
    now = case.now_in("UTC")
    with Desktop("growth") as desktop:
        alternation = Alternation(desktop.home / "repository", now)
        preferences.write(desktop.config, [alternation.repository.path])
        desktop.start_panel()
        program, item = Program(desktop), StatusItem(desktop)

        def refresh(times):
            for _ in range(times):
                label = alternation.turn()
                item.choose("Refresh")
                item.wait_for_label(label)
            wait_for_quiet(program.pid)
            return own_kilobytes(program.pid)

        item.wait_for_label(" 2")
        before, after = refresh(FIRST), refresh(LAST - FIRST)
        yield f"growth of memory from refresh {FIRST} to {LAST}", f"{after - before} KiB", "100 KiB"


def noticed():
    with Desktop("noticed") as desktop:
        alternation = Alternation(desktop.home / "repository", case.now_in("UTC"))
        preferences.write(desktop.config, [alternation.repository.path])
        desktop.start_panel()
        program, item = Program(desktop), StatusItem(desktop)
        item.wait_for_label(" 2")

        def milliseconds():
            wait_for_quiet(program.pid)
            label = alternation.turn()
            began = time.monotonic()
            while item.label() != label:
                pass
            return 1000 * (time.monotonic() - began)
        measured = [milliseconds() for _ in range(20)]
        yield ("from the end of git to the new number on the item",
               f"{statistics.median(measured):.0f} ms ({min(measured):.0f} to {max(measured):.0f})", "500 ms")


def opened(build):
    with Desktop("opening") as desktop:
        for what, measured in opening.figures(desktop, 20):
            yield (f"from {what} to the painted dashboard",
                   f"{statistics.median(measured):.1f} ms ({min(measured):.1f} to {max(measured):.1f})", "16 ms")
    told = subprocess.run([build / "tests/bench/bench_dashboard"], env={**os.environ, "QT_QPA_PLATFORM": "offscreen"},
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=True).stdout
    for where in ("in the week", "in the year"):
        median, most = re.findall(rf"\({where}\) median ([\d.]+) ms, from [\d.]+ to ([\d.]+)", told)[-1]
        yield f"full re-render and painting, {where}", f"{median} ms (at most {most})", "4 ms"


def asked(build):
    with Desktop("asked") as desktop:
        paths = [desktop.home / f"repository {number}" for number in range(100)]
        for path in paths:
            Repository(path).commit_days_ago(case.now_in("UTC"), *range(0, 60, 3))
        preferences.write(desktop.config, paths)
        desktop.start_panel()
        program, item = Program(desktop), StatusItem(desktop)
        item.wait_for_label(" 1")
        wait_for_quiet(program.pid)
        desktop_environment = dict(os.environ)
        os.environ.update(desktop.environment)
        rounds = in_turns(40, Command(build / "velquarin", "status"),
                          Command(build / "velquarin", "status", "--format", "json"), Command("git", "--version"))
        os.environ.clear()
        os.environ.update(desktop_environment)
    for number, what in ((0, "a line"), (1, "JSON")):
        measured = [figures[number][0] for figures in rounds]
        bare = statistics.median(figures[2][0] for figures in rounds)
        yield (f"velquarin status of 100 repositories as {what}, start included, where git --version takes {bare:.1f} ms",
               f"{statistics.median(measured):.1f} ms ({min(measured):.1f} to {max(measured):.1f})", "30 ms")


def rows(build, _folder):
    os.environ["VELQUARIN_PROGRAM"] = str(build / "velquarin")
    yield from opened(build)
    yield from noticed()
    yield from asked(build)
    yield from weight(build)
    yield from sleep()
    yield from growth()
