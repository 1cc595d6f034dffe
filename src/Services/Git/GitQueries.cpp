// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Services/Git/GitQueries.h"

#include "Services/Git/GitLog.h"

#include <QSet>
#include <QStringDecoder>
#include <QUtf8StringView>

#include <algorithm>

namespace velquarin {

namespace {

// Of all addresses as one option. The system takes no argument of 128 KiB.
constexpr qsizetype longestOption = 100'000;

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

// Git lets nobody commit under one with brackets or line breaks, and nobody has a longer one. Source: RFC 5321, 4.5.3.1
bool isUsableAddress(QByteArrayView address)
{
    constexpr qsizetype longest = 320;
    const auto isForbidden = [](char character) { return QByteArrayView("<>\r\n").contains(character); };
    return !address.isEmpty() && address.size() <= longest && QUtf8StringView(address).isValidUtf8() &&
           std::ranges::none_of(address, isForbidden);
}

// One letter as a basic regular expression. Without regard to case git takes letters of ASCII alone.
QString literal(QChar character)
{
    if (QStringLiteral(".*[^$\\").contains(character))
        return QLatin1Char('\\') + character;
    if (character.unicode() < 0x80 || character.toLower() == character.toUpper())
        return character;
    return QStringLiteral("\\(%1\\|%2\\)").arg(character.toLower(), character.toUpper());
}

// Git's own way to compare fixed strings ends at a "\E", behind which it takes the rest for a pattern.
QString literal(const QString &address)
{
    QString pattern;
    for (const auto character : address)
        pattern += literal(character);
    return pattern;
}

// Any of the addresses as a whole, where git finds an author's: between the first brackets. One expression, since each would
// be looked for in every commit. Source: git-log(1), "--author"; regex(7)
QString authorOption(const QStringList &patterns)
{
    return QStringLiteral("--author=^[^<]*<\\(%1\\)>").arg(patterns.join(QLatin1String("\\|")));
}

// The value of one setting in a list; nothing where it has none.
QByteArrayView valueOf(QByteArrayView entry)
{
    const auto end = entry.indexOf('\n');
    return end < 0 ? QByteArrayView() : entry.sliced(end + 1);
}

// Of the usable addresses in a list of settings, each once. Of more than an option holds the first ones: those of a stranger's
// repository come last. Source: git-config(1), "-z"
QStringList patternsOf(QByteArrayView list)
{
    QStringList patterns;
    QSet<QString> known;
    auto room = longestOption;
    while (!list.isEmpty() && room > 0) {
        const auto end = list.indexOf('\0');
        const auto address = valueOf(list.first(end < 0 ? list.size() : end));
        list = list.sliced(end < 0 ? list.size() : end + 1);
        const auto pattern = isUsableAddress(address) ? literal(QString::fromUtf8(address)) : QString();
        if (pattern.isEmpty() || known.contains(pattern))
            continue;
        room -= pattern.toUtf8().size() + 2;
        known << pattern;
        if (room > 0)
            patterns << pattern;
    }
    return patterns;
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

// What is known of a repository is known of the branches that counted.
void GitQueries::count(CountedCommits counted)
{
    if (counted.branches != m_counted.branches)
        m_memory.forget();
    m_counted = counted;
}

void GitQueries::beginLook(const QString &path)
{
    m_memory.beginLook(path);
    m_lookedAt = path;
    takeCalendar();
    m_branch.clear();
    m_addressPatterns.reset();
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

// Nothing where all count.
std::optional<QString> GitQueries::countedBranch(const QString &path)
{
    if (m_counted.branches == CountedBranches::All)
        return std::nullopt;
    return getDefaultBranch(path);
}

QStringList GitQueries::addressPatterns(const QString &path)
{
    if (path == m_lookedAt && m_addressPatterns)
        return *m_addressPatterns;
    const auto list = runGit({QStringLiteral("config"), QStringLiteral("-z"), QStringLiteral("--get-regexp"),
                              QStringLiteral("^(user|author|velquarin)\\.email$")},
                             path);
    m_addressPatterns = patternsOf(list);
    return *m_addressPatterns;
}

bool GitQueries::countsEveryoneForWantOfAddresses(const QString &path)
{
    return m_counted.authors == CountedAuthors::Me && addressPatterns(path).isEmpty();
}

QStringList GitQueries::authorOptions(const QString &path)
{
    if (m_counted.authors == CountedAuthors::Everyone)
        return {};
    const auto patterns = addressPatterns(path);
    if (patterns.isEmpty())
        return {};
    return {QStringLiteral("--basic-regexp"), QStringLiteral("--regexp-ignore-case"), authorOption(patterns)};
}

QByteArray GitQueries::log(const QStringList &options, const QString &path)
{
    const auto branch = countedBranch(path);
    m_memory.readFrom(branch, path);
    return runGit(QStringList{QStringLiteral("log")} + revisionsOf(branch) + options + authorOptions(path), path);
}

QList<Instant> GitQueries::getCommits(const QString &path, Instant since, Instant until)
{
    auto &starts = dayStarts();
    const auto sinceText = isoDateAtGreenwich(since);
    const auto untilText = isoDateAtGreenwich(starts.calendar().addDays(until, 1).value_or(until));
    const auto days = log({QStringLiteral("--format=%ad"), QStringLiteral("--date=short"),
                           QStringLiteral("--since=") + sinceText, QStringLiteral("--until=") + untilText},
                          path);
    return daysFromLog(days, starts);
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
    return instantFromIso(log({QStringLiteral("-1"), QStringLiteral("--format=%aI")}, path).trimmed());
}

QList<WatchPlace> GitQueries::watchPlaces(const QString &path)
{
    return m_memory.watchPlaces(path, countedBranch(path));
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
