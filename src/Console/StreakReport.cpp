// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Console/StreakReport.h"

#include "Services/Streak/StreakManager.h"

#include <QDateTime>

#include <algorithm>

namespace velquarin {

namespace {

using CountsByText = QMap<QString, qint64>;

RepositoryReport reportOf(const RepositoryStats &stats)
{
    return {stats.displayName(), stats.path, stats.todayCommits, stats.weekCommits,
            stats.lastCommitDate ? isoMoment(*stats.lastCommitDate) : QString()};
}

QVariantMap propertiesOf(const RepositoryReport &repository)
{
    QVariantMap record{{QStringLiteral("Name"), repository.name},
                       {QStringLiteral("Path"), repository.path},
                       {QStringLiteral("CommitsToday"), repository.commitsToday},
                       {QStringLiteral("CommitsThisWeek"), repository.commitsThisWeek}};
    if (!repository.lastCommit.isEmpty())
        record.insert(QStringLiteral("LastCommit"), repository.lastCommit);
    return record;
}

// What has another type counts for nothing, since any program may own our name.
template <typename Value>
Value valueOf(const QVariantMap &properties, const char *name)
{
    const auto value = properties.value(QLatin1String(name));
    return value.metaType() == QMetaType::fromType<Value>() ? value.value<Value>() : Value();
}

// JSON has numbers up to this that are exact, and no sum of a year of them is beyond what ours can hold.
qint64 sound(qint64 count)
{
    return std::clamp(count, qint64(0), qint64(1) << 53);
}

qint64 countOf(const QVariantMap &properties, const char *name)
{
    return sound(valueOf<qint64>(properties, name));
}

RepositoryReport repositoryIn(const QVariantMap &record)
{
    return {valueOf<QString>(record, "Name"), valueOf<QString>(record, "Path"), countOf(record, "CommitsToday"),
            countOf(record, "CommitsThisWeek"), valueOf<QString>(record, "LastCommit")};
}

CountsByText byText(const QMap<QDate, qint64> &days)
{
    CountsByText counts;
    for (const auto &[date, count] : days.asKeyValueRange())
        counts.insert(date.toString(Qt::ISODate), count);
    return counts;
}

QMap<QDate, qint64> byDate(const CountsByText &counts)
{
    QMap<QDate, qint64> days;
    for (const auto &[text, count] : counts.asKeyValueRange()) {
        if (const auto date = QDate::fromString(text, Qt::ISODate); date.isValid())
            days.insert(date, sound(count));
    }
    return days;
}

}  // namespace

QString counted(qint64 number, const char *what)
{
    return QString::number(number) + u' ' + QLatin1String(what) + QLatin1String(number == 1 ? "" : "s");
}

QString isoMoment(Instant moment)
{
    const auto milliseconds = moment.time_since_epoch().count();
    return QDateTime::fromMSecsSinceEpoch(milliseconds, universalTime).toString(Qt::ISODate);
}

StreakReport reportOf(const StreakManager &manager, const Calendar &calendar)
{
    StreakReport report;
    report.currentStreak = manager.currentStreak();
    report.longestStreak = manager.longestStreak();
    report.hasCommittedToday = manager.hasCommittedToday();
    report.commitsThisWeek = manager.totalCommitsThisWeek();
    for (const auto &day : manager.commitHistory())
        report.lastSevenDays.insert(calendar.dateOf(day.date), day.commitCount);
    for (const auto &[day, count] : manager.yearHistory().asKeyValueRange())
        report.days.insert(calendar.dateOf(day), count);
    for (const auto &stats : manager.repositoryStats())
        report.repositories.append(reportOf(stats));
    report.withoutAddress = manager.repositoriesWithoutAddress();
    return report;
}

QVariantMap propertiesOf(const StreakReport &report)
{
    QList<QVariantMap> repositories;
    for (const auto &repository : report.repositories)
        repositories.append(propertiesOf(repository));
    return {{QStringLiteral("CurrentStreak"), report.currentStreak},
            {QStringLiteral("LongestStreak"), report.longestStreak},
            {QStringLiteral("CommittedToday"), report.hasCommittedToday},
            {QStringLiteral("CommitsThisWeek"), report.commitsThisWeek},
            {QStringLiteral("LastSevenDays"), QVariant::fromValue(byText(report.lastSevenDays))},
            {QStringLiteral("CommitsPerDay"), QVariant::fromValue(byText(report.days))},
            {QStringLiteral("Repositories"), QVariant::fromValue(repositories)},
            {QStringLiteral("RepositoriesWithoutAddress"), report.withoutAddress}};
}

std::optional<StreakReport> reportIn(const QVariantMap &properties)
{
    if (properties.value(QStringLiteral("CurrentStreak")).metaType() != QMetaType::fromType<qint64>())
        return std::nullopt;
    StreakReport report;
    report.currentStreak = countOf(properties, "CurrentStreak");
    report.longestStreak = countOf(properties, "LongestStreak");
    report.hasCommittedToday = valueOf<bool>(properties, "CommittedToday");
    report.commitsThisWeek = countOf(properties, "CommitsThisWeek");
    report.lastSevenDays = byDate(valueOf<CountsByText>(properties, "LastSevenDays"));
    report.days = byDate(valueOf<CountsByText>(properties, "CommitsPerDay"));
    for (const auto &record : valueOf<QList<QVariantMap>>(properties, "Repositories"))
        report.repositories.append(repositoryIn(record));
    report.withoutAddress = valueOf<QStringList>(properties, "RepositoriesWithoutAddress");
    return report;
}

DayCounts dayCounts(const StreakReport &report, const Calendar &calendar)
{
    DayCounts counts;
    for (const auto &[date, count] : report.days.asKeyValueRange()) {
        if (const auto start = calendar.startOf(date))
            counts.insert(*start, count);
    }
    return counts;
}

}  // namespace velquarin
