# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""Random histories: a zone, a moment, and one to four repositories with commits around it."""

import pathlib
import random
import shutil
import subprocess
from dataclasses import dataclass
from datetime import date, datetime, timedelta, timezone

import reference

UTC = timezone.utc
# Days on which calendars are put to the test: clocks change, also at midnight; a day is left out or has 23 1/2 hours.
ANCHORS = [
    ("UTC", date(2024, 3, 1)),
    ("UTC", date(2024, 1, 1)),
    ("America/New_York", date(2024, 3, 10)),
    ("America/New_York", date(2024, 11, 3)),
    ("Asia/Kolkata", date(2023, 8, 15)),
    ("Pacific/Kiritimati", date(2024, 7, 1)),
    ("Pacific/Kiritimati", date(1995, 1, 1)),
    ("America/Sao_Paulo", date(2018, 11, 4)),
    ("America/Sao_Paulo", date(2018, 2, 18)),
    ("America/Havana", date(2024, 3, 10)),
    ("America/Havana", date(2024, 11, 3)),
    ("Pacific/Apia", date(2011, 12, 30)),
    ("Pacific/Apia", date(2013, 12, 29)),  # two years after the day that was left out
    ("Europe/Berlin", date(2024, 3, 31)),
    ("Europe/Berlin", date(2024, 10, 27)),
    ("Australia/Lord_Howe", date(2024, 4, 7)),
    ("Australia/Lord_Howe", date(2024, 10, 6)),
]

OFFSETS = ["+0000", "-0000", "+0100", "-0500", "-0330", "-0930", "+0530", "+0545", "+0845", "+1030", "+1245", "+1400",
           "-1100", "-1200", "+0017", "-0001"]
TIMES = [(0, 0, 0), (0, 0, 1), (0, 30, 0), (1, 0, 0), (11, 59, 59), (22, 30, 0), (23, 30, 0), (23, 59, 59)]

# Of each of these a comparison has at least one.
KINDS = {
    "a clock that is put forward", "a clock that is put back", "a clock that stands still", "a day without its midnight",
    "a day that is left out", "east of Greenwich", "west of Greenwich",
    "a repository without commits", "a repository that is gone", "a folder without a repository",
    "several repositories", "one repository", "a merge", "a single line",
    "the branch main", "the branch master", "the branch trunk", "the branch develop",
    "an author's clock that is far off", "written long before it was committed", "an offset of odd minutes",
    "an offset of less than an hour", "no offset, said with a minus", "an offset of more than half a day",
    "committed tomorrow", "committed two years ago", "nothing committed today", "a first second of a day",
    "a last second of a day",
    "everyone's commits on the default branch", "the user's commits on the default branch",
    "everyone's commits on all branches", "the user's commits on all branches",
    "several authors", "an author's address in other letters", "an author in another encoding", "an author who is no text",
    "a co-author", "a commit that was picked", "a branch beside", "a detached head",
    "commits of others alone",
    "no address", "one address", "several addresses",
}

# Authors as they stand in a commit, with their encoding where that is not UTF-8.
ME, LOUD_ME, ME_IN_CAPITALS, ME_AT_WORK = "Me <me@home.org>", "Me <ME@Home.ORG>", "M. <jos\u00c9@work>", "Me <jos\u00e9@work>"
OTHERS = ["You <you@home.org>", "me@home.org <some.me@home.org>", "Me <me@home.org.net>", "A <a@example.org>"]
ADDRESSES = ["me@home.org", "Me@HOME.org", "jos\u00e9@work", "JOS\u00c9@work", "nobody@home.org", "<me@home.org>", ""]


@dataclass
class History:
    number: int
    zone: str
    now: datetime
    repositories: list
    commits: int
    kinds: set
    counted: reference.Counted

    def task(self, git_time):
        return {"zone": self.zone, "now": reference.milliseconds(self.now), "repositories": self.repositories,
                "gitTime": reference.milliseconds(git_time) // 1000, "mine": self.counted.mine, "all": self.counted.all}


def near(bounds, moment):
    """Whether it depends on the time at which the comparison runs on which side of a bound the commit lies."""
    return any(low <= moment <= high for low, high in bounds)


def unsteady(place, now, wall_clock):
    """The stretches of time in which no commit is made: two hours around each of git's four bounds, which move on with
    the time of day while the comparison runs, and jump a day back at midnight."""
    dates = [day for days_back in (6, 730) for day in reference.period(place, now, days_back) or ()]
    margin = timedelta(hours=2)
    soon = wall_clock + timedelta(minutes=10)
    readings = zip(reference.git_reads_dates_as(tuple(dates), place.name, wall_clock),
                   reference.git_reads_dates_as(tuple(dates), place.name, soon))
    return [(min(bounds) - margin, max(bounds) + margin) for bounds in readings if None not in bounds]


class Writer:
    """Writes repositories below a folder, of which one history after another is made."""

    def __init__(self, root, seed):
        self.root = pathlib.Path(root)
        self.seed = seed
        self.template = self.root / "template"
        run(self.root, "init", "--quiet", "--template=", "--initial-branch=main", "template")

    def write(self, number, wall_clock):
        dice = random.Random(f"{self.seed}/{number}")
        zone, anchor = ANCHORS[number % len(ANCHORS)]
        place = reference.place_named(zone)
        now = moment_here(dice, place, anchor + timedelta(days=dice.randint(-2, 8)))
        forbidden = unsteady(place, now, wall_clock)
        counted = reference.Counted(dice.random() < 0.5, dice.random() < 0.5)
        history = History(number, zone, now, [], 0, kinds_of_moment(place, now) | {kind_of_choice(counted)}, counted)
        for index in range(dice.randint(1, 4)):
            path = self.root / f"{number}-{index}"
            commits = [] if dice.random() < 0.05 else commit_dates(dice, place, now, forbidden)
            history.repositories.append(str(path))
            history.commits += len(commits)
            history.kinds |= self.make(dice, path, commits) | kinds_of_dates(place, now, commits)
        history.kinds.add("one repository" if len(history.repositories) == 1 else "several repositories")
        return history

    def make(self, dice, path, commits):
        """Makes what shall be there, and says which kind it is of."""
        kind = dice.random()
        if kind < 0.03:
            return {"a repository that is gone"}
        if kind < 0.06:
            path.mkdir()
            return {"a folder without a repository"}
        shutil.copytree(self.template, path)
        branch = dice.choice(["main"] * 6 + ["master", "trunk", "develop"])
        (path / ".git" / "HEAD").write_text(f"ref: refs/heads/{branch}\n")
        configured = configure(dice, path)
        text = stream(dice, branch, commits)
        if commits:
            # One file for all objects: to make and remove a folder for each takes longer than to compare.
            run(path, "-c", "fastimport.unpackLimit=1", "fast-import", "--quiet", input=text)
        if branch == "develop":
            remote = path / ".git" / "refs" / "remotes" / "origin"
            remote.mkdir(parents=True)
            (remote / "HEAD").write_text("ref: refs/remotes/origin/develop\n")
        for name in ("refs/remotes/origin/theirs", "refs/tags/loose", "refs/elsewhere"):
            if commits and dice.random() < 0.2:
                run(path, "fast-import", "--quiet", input=one_more(dice, name, branch, commits[-1]))
        if (path / ".git" / "refs" / "elsewhere").exists():
            head = (path / ".git" / "refs" / "elsewhere").read_text()
            (path / ".git" / "HEAD").write_text(head)
            (path / ".git" / "refs" / "elsewhere").unlink()
        shape = "a merge" if b"\nmerge :" in text else "a single line"
        return {f"the branch {branch}", configured, shape if commits else "a repository without commits"} | kinds_of(text, path)


def run(folder, *arguments, input=b""):
    environment = reference.ENVIRONMENT | {"GIT_TEST_FSYNC": "0"}
    subprocess.run(["git", *arguments], cwd=folder, input=input, env=environment, check=True)


def kinds_of_moment(place, now):
    """What the calendar of that place has to show in the ten days around that moment."""
    days = [place.date_at(now) + timedelta(days=back) for back in range(-8, 3)]
    starts = [place.start_of(day) for day in days]
    lengths = [after - start for start, after in zip(starts, starts[1:]) if start and after]
    ahead = now.astimezone(place.zone).utcoffset()
    local = now.astimezone(place.zone)
    found = {
        "a clock that is put forward": any(length < reference.DAY for length in lengths),
        "a clock that is put back": any(length > reference.DAY for length in lengths),
        "a clock that stands still": all(length == reference.DAY for length in lengths) and None not in starts,
        "a day without its midnight": any(start and start.astimezone(place.zone).hour > 0 for start in starts),
        "a day that is left out": None in starts,
        "east of Greenwich": ahead > timedelta(0),
        "west of Greenwich": ahead < timedelta(0),
        "a first second of a day": (local.hour, local.minute, local.second) == (0, 0, 0),
        "a last second of a day": (local.hour, local.minute, local.second) == (23, 59, 59),
    }
    return {kind for kind, is_so in found.items() if is_so}


def kinds_of_dates(place, now, commits):
    """What is special about the dates of a repository's commits."""
    today = place.date_at(now)
    found = set()
    for author, committer in commits:
        written, committed = (int(text.split()[0]) for text in (author, committer))
        back = (today - place.date_at(datetime.fromtimestamp(committed, UTC))).days
        offset = author.split()[1]
        found |= {kind for kind, is_so in {
            "an author's clock that is far off": abs(written - committed) > 300 * 86400,
            "written long before it was committed": 86400 < committed - written < 300 * 86400,
            "an offset of odd minutes": offset[-2:] not in ("00", "30"),
            "an offset of less than an hour": offset in ("+0017", "-0001"),
            "no offset, said with a minus": offset == "-0000",
            "an offset of more than half a day": int(offset[1:3]) > 12,
            "committed tomorrow": back < 0,
            "committed two years ago": 726 <= back <= 732,
        }.items() if is_so}
    if all(place.date_at(datetime.fromtimestamp(int(author.split()[0]), UTC)) != today for author, _ in commits):
        found.add("nothing committed today")
    return found


def moment_here(dice, place, day):
    """A moment of that day, often close to its beginning or end; of the day after where the zone has no such day."""
    while not place.exists(day):
        day += timedelta(days=1)
    hour, minute, second = dice.choice(TIMES + [(dice.randrange(24), dice.randrange(60), dice.randrange(60))] * 8)
    moment = datetime(day.year, day.month, day.day, hour, minute, second, tzinfo=place.zone)
    return moment.astimezone(UTC)


def commit_dates(dice, place, now, forbidden):
    """Pairs of an author's and a committer's date, as git writes them, in the order of the committer's."""
    today = place.date_at(now)
    density = dice.choice([0.2, 0.6, 0.9, 1.0])
    days_back = [back for back in range(dice.randint(1, 40)) if dice.random() < density]
    days_back += [dice.randint(0, 760) for _ in range(dice.randint(0, 25))]
    days_back += [dice.choice([5, 6, 7, 8, 728, 729, 730, 731, -1, -2]) for _ in range(dice.randint(0, 6))]
    moments = [moment_here(dice, place, today - timedelta(days=back))
               for back in days_back for _ in range(dice.randint(1, 2))]
    kept = sorted(moment for moment in moments if not near(forbidden, moment))
    return [(author_date(dice, place, moment), git_date(moment, dice.choice(OFFSETS))) for moment in kept]


def author_date(dice, place, committed):
    """Mostly when it was committed, on the author's own clock; else earlier, later, or by a clock that is far off."""
    chance = dice.random()
    moment = committed
    if chance > 0.98:
        # Not on the first day of all: git gives up on a moment that lies before it on the author's own clock.
        moment = dice.choice([datetime(1970, 1, 3, tzinfo=UTC), datetime(2040, 2, 29, 12, tzinfo=UTC)])
    elif chance > 0.7:
        moment = committed - timedelta(minutes=dice.randint(-600, 60 * 24 * 5))
    local = moment.astimezone(place.zone).strftime("%z")[:5]
    return git_date(moment, local if dice.random() < 0.6 else dice.choice(OFFSETS))


def git_date(moment, offset):
    return f"{reference.milliseconds(moment) // 1000} {offset}"


def kind_of_choice(counted):
    return f"{'the user' if counted.mine else 'everyone'}'s commits on {'all branches' if counted.all else 'the default branch'}"


def configure(dice, path):
    """Gives the repository addresses of the user, and says which kind it is of."""
    names = dice.sample(ADDRESSES, dice.choice([0, 1, 1, 2, 3]))
    lines = [f'[{dice.choice(["user", "author", "velquarin"])}]\n\temail = "{name}"\n' for name in names]
    with open(path / ".git" / "config", "a", encoding="utf-8") as config:
        config.writelines(lines)
    known = len(reference.addresses(path))
    return "several addresses" if known > 1 else "one address" if known else "no address"


def kinds_of(text, path):
    """What is special about the authors and branches of a repository."""
    authors = {line.rsplit(b"> ", 1)[0] for line in text.split(b"\n") if line.startswith(b"author ")}
    return {kind for kind, is_so in {
        "several authors": len(authors) > 1,
        "an author's address in other letters": b"<ME@Home.ORG>" in text,
        "an author in another encoding": b"\nencoding " in text,
        "an author who is no text": b"X <\xff" in text,
        "a co-author": b"Co-authored-by" in text,
        "a commit that was picked": b"picked" in text,
        "a branch beside": b"heads/side\n" in text and b"\nmerge :" not in text,
        "commits of others alone": (path / ".git" / "refs" / "remotes" / "origin" / "theirs").exists(),
        "a detached head": not (path / ".git" / "HEAD").read_text().startswith("ref:"),
    }.items() if is_so}


def author_line(dice, date):
    """Who wrote a commit: mostly the user, by one address or another."""
    chance = dice.random()
    if chance < 0.03:
        return f"author X <\udcff\udcfe@home.org> {date}\n"
    if chance < 0.06:
        return f"author Me <jos\udce9@work> {date}\n"
    who = dice.choice([ME, ME, LOUD_ME, ME_IN_CAPITALS, ME_AT_WORK] if chance < 0.7 else OTHERS)
    return f"author {who} {date}\n"


def one_more(dice, name, branch, dates):
    """A stream with one commit more, under a name that is no branch."""
    author, committer = dates
    return (f"commit {name}\n{author_line(dice, author)}committer C <c@example.org> {committer}\n"
            f"data 4\nmore\nfrom refs/heads/{branch}^0\n\n").encode("utf-8", "surrogateescape")


def message(dice, is_picked):
    text = "Co-authored-by: Me <me@home.org>\n" if dice.random() < 0.1 else "picked" if is_picked else ""
    return f"data {len(text)}\n{text}"


def stream(dice, branch, commits):
    """A fast-import stream: mostly one line of commits, with a second one merged in now and then."""
    text = []
    side = author = None
    for mark, (written, committer) in enumerate(commits, 1):
        on_side = side is None and mark > 2 and dice.random() < 0.1
        is_picked = author is not None and on_side and dice.random() < 0.5
        author = author if is_picked else author_line(dice, written)
        encoding = "encoding ISO-8859-1\n" if "\udce9" in author and dice.random() < 0.5 else ""
        text.append(f"commit refs/heads/{'side' if on_side else branch}\nmark :{mark}\n{author}"
                    f"committer C <c@example.org> {committer}\n{encoding}{message(dice, is_picked)}")
        if on_side:
            side = mark
            text.append(f"from :{mark - 1}\n")
        elif side is not None and dice.random() < 0.3:
            text.append(f"merge :{side}\n")
            side = None
        text.append("\n")
    return "".join(text).encode("utf-8", "surrogateescape")
