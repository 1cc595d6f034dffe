// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Console/StreakReport.h"

#include "Services/Streak/StreakManager.h"

#include <QDateTime>

#include <algorithm>
#include <iterator>

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

RepositoryReport repositoryIn(const QVariantMap &record)
{
    return {record.value(QStringLiteral("Name")).toString(), record.value(QStringLiteral("Path")).toString(),
            record.value(QStringLiteral("CommitsToday")).toLongLong(),
            record.value(QStringLiteral("CommitsThisWeek")).toLongLong(),
            record.value(QStringLiteral("LastCommit")).toString()};
}

CountsByText byText(const QMap<QDate, qint64> &days)
{
    CountsByText counts;
    for (const auto &[date, count] : days.asKeyValueRange())
        counts.insert(date.toString(Qt::ISODate), count);
    return counts;
}

QMap<QDate, qint64> byDate(const QVariant &property)
{
    QMap<QDate, qint64> days;
    const auto counts = property.value<CountsByText>();
    for (const auto &[text, count] : counts.asKeyValueRange()) {
        if (const auto date = QDate::fromString(text, Qt::ISODate); date.isValid())
            days.insert(date, count);
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
    if (!properties.contains(QStringLiteral("CurrentStreak")))
        return std::nullopt;
    StreakReport report;
    report.currentStreak = properties.value(QStringLiteral("CurrentStreak")).toLongLong();
    report.longestStreak = properties.value(QStringLiteral("LongestStreak")).toLongLong();
    report.hasCommittedToday = properties.value(QStringLiteral("CommittedToday")).toBool();
    report.commitsThisWeek = properties.value(QStringLiteral("CommitsThisWeek")).toLongLong();
    report.lastSevenDays = byDate(properties.value(QStringLiteral("LastSevenDays")));
    report.days = byDate(properties.value(QStringLiteral("CommitsPerDay")));
    for (const auto &record : properties.value(QStringLiteral("Repositories")).value<QList<QVariantMap>>())
        report.repositories.append(repositoryIn(record));
    report.withoutAddress = properties.value(QStringLiteral("RepositoriesWithoutAddress")).toStringList();
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
