// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Services/Git/GitQueries.h"

#include "Services/Git/GitLog.h"

#include <QStringDecoder>

#include <algorithm>

namespace velquarin {

namespace {

// Those that git allows in no name.
bool isControl(QChar character)
{
    return character < QChar(0x20) || character == QChar(0x7f);
}

// A name that git would take for an option, or for a question to its reflog, is none, nor is one with control
// characters: nobody's branch is called so, but a hostile remote may say it is.
bool isUsableBranch(const QString &name)
{
    return !name.isEmpty() && !name.startsWith(QLatin1Char('-')) && !name.contains(QLatin1String("@{")) &&
           std::ranges::none_of(name, isControl);
}

// A byte-order mark belongs to the name that it stands in.
QString text(const QByteArray &utf8)
{
    return QStringDecoder(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom)(utf8);
}

}  // namespace

GitQueries::GitQueries(ProcessRunner &runner, const FileTree &files, const Clock &clock,
                       const QProcessEnvironment &inherited)
    : m_clock(clock)
    , m_runner(runner, inherited)
    , m_memory(m_runner, files, clock, inherited)
    , m_dayStarts(clock.calendar())
{
}

void GitQueries::beginLook(const QString &path)
{
    m_memory.beginLook(path);
    m_lookedAt = path;
    takeCalendar();
    m_branch.clear();
}

void GitQueries::endLook()
{
    m_memory.endLook();
    m_lookedAt.clear();
}

QByteArray GitQueries::runGit(const QStringList &arguments, const QString &path)
{
    return m_memory.answer(arguments, path);
}

QString GitQueries::trimmedOutput(const QStringList &arguments, const QString &path)
{
    try {
        return text(runGit(arguments, path)).trimmed();
    } catch (const LaunchError &) {
        return {};
    }
}

bool GitQueries::hasLocalBranch(const QString &name, const QString &path)
{
    return !trimmedOutput({QStringLiteral("branch"), QStringLiteral("--list"), name}, path).isEmpty();
}

// A look has one branch: what it is chosen by is asked once anyway.
QString GitQueries::getDefaultBranch(const QString &path)
{
    if (path != m_lookedAt)
        return chosenBranch(path);
    if (m_branch.isEmpty())
        m_branch = chosenBranch(path);
    return m_branch;
}

QString GitQueries::chosenBranch(const QString &path)
{
    auto remote = trimmedOutput(
        {QStringLiteral("symbolic-ref"), QStringLiteral("refs/remotes/origin/HEAD"), QStringLiteral("--short")}, path);
    remote.remove(QLatin1String("origin/"));
    if (isUsableBranch(remote))
        return remote;
    for (const auto &name : {QStringLiteral("main"), QStringLiteral("master")}) {
        if (hasLocalBranch(name, path))
            return name;
    }
    return QStringLiteral("HEAD");
}

// The user may have travelled since the last look.
void GitQueries::takeCalendar()
{
    const auto calendar = m_clock.calendar();
    if (calendar != m_dayStarts.calendar())
        m_dayStarts = DayStarts(calendar);
}

// Those of the look, or of this moment.
DayStarts &GitQueries::dayStarts()
{
    if (m_lookedAt.isEmpty())
        takeCalendar();
    return m_dayStarts;
}

QList<Instant> GitQueries::getCommits(const QString &path, Instant since, Instant until)
{
    auto &starts = dayStarts();
    const auto sinceText = isoDateAtGreenwich(since);
    const auto untilText = isoDateAtGreenwich(starts.calendar().addDays(until, 1).value_or(until));
    const auto branch = getDefaultBranch(path);
    const auto log =
        runGit({QStringLiteral("log"), branch, QStringLiteral("--format=%ad"), QStringLiteral("--date=short"),
                QStringLiteral("--since=") + sinceText, QStringLiteral("--until=") + untilText},
               path);
    return daysFromLog(log, starts);
}

DayCounts GitQueries::getCommitHistory(const QString &path, qint64 days)
{
    const auto calendar = dayStarts().calendar();
    const auto today = calendar.startOfDay(m_clock.now());
    const auto start = calendar.addDays(today, -(days - 1));
    if (!start)
        return {};
    DayCounts counts;
    for (const auto day : getCommits(path, *start, m_clock.now()))
        ++counts[m_dayStarts.startOfDay(day)];
    return counts;
}

std::optional<Instant> GitQueries::getLastCommitDate(const QString &path)
{
    const auto branch = getDefaultBranch(path);
    const auto output =
        runGit({QStringLiteral("log"), branch, QStringLiteral("-1"), QStringLiteral("--format=%aI")}, path);
    return instantFromIso(output.trimmed());
}

QList<WatchPlace> GitQueries::watchPlaces(const QString &path)
{
    return m_memory.watchPlaces(path, getDefaultBranch(path));
}

bool GitQueries::isGitRepository(const QString &path)
{
    try {
        static_cast<void>(runGit({QStringLiteral("rev-parse"), QStringLiteral("--git-dir")}, path));
        return true;
    } catch (const LaunchError &) {
        return false;
    }
}

}  // namespace velquarin
