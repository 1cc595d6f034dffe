// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Console/StatusFormats.h"

#include "Console/StreakReport.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace velquarin {

namespace {

constexpr int versionOfJson = 1;

QString todayInWords(const StreakReport &report)
{
    return report.hasCommittedToday ? QStringLiteral("committed today") : QStringLiteral("no commit today");
}

QJsonArray jsonOf(const QMap<QDate, qint64> &days)
{
    QJsonArray array;
    for (const auto &[date, count] : days.asKeyValueRange())
        array.append(
            QJsonObject{{QStringLiteral("date"), date.toString(Qt::ISODate)}, {QStringLiteral("commits"), count}});
    return array;
}

QJsonValue textOrNull(const QString &text)
{
    return text.isEmpty() ? QJsonValue() : QJsonValue(text);
}

QJsonObject jsonOf(const RepositoryReport &repository)
{
    return {{QStringLiteral("name"), repository.name},
            {QStringLiteral("path"), repository.path},
            {QStringLiteral("commitsToday"), repository.commitsToday},
            {QStringLiteral("commitsThisWeek"), repository.commitsThisWeek},
            {QStringLiteral("lastCommit"), textOrNull(repository.lastCommit)}};
}

QByteArray inOneLine(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

QString stateOf(const StreakReport &report)
{
    if (report.hasCommittedToday)
        return QStringLiteral("committed");
    return report.currentStreak > 0 ? QStringLiteral("pending") : QStringLiteral("none");
}

}  // namespace

QString statusText(const StreakReport &report)
{
    return QStringLiteral("%1, longest %2, %3")
        .arg(counted(report.currentStreak, "day"), QString::number(report.longestStreak), todayInWords(report));
}

QByteArray statusJson(const StreakReport &report)
{
    QJsonArray repositories;
    for (const auto &repository : report.repositories)
        repositories.append(jsonOf(repository));
    return inOneLine(
        {{QStringLiteral("version"), versionOfJson},
         {QStringLiteral("currentStreak"), report.currentStreak},
         {QStringLiteral("longestStreak"), report.longestStreak},
         {QStringLiteral("committedToday"), report.hasCommittedToday},
         {QStringLiteral("commitsThisWeek"), report.commitsThisWeek},
         {QStringLiteral("lastSevenDays"), jsonOf(report.lastSevenDays)},
         {QStringLiteral("days"), jsonOf(report.days)},
         {QStringLiteral("repositories"), repositories},
         {QStringLiteral("repositoriesWithoutAddress"), QJsonArray::fromStringList(report.withoutAddress)}});
}

QByteArray statusWaybar(const StreakReport &report)
{
    const auto number = report.currentStreak > 0 ? QString::number(report.currentStreak) : QString();
    const auto tip =
        QStringLiteral("%1\n%2 this week").arg(statusText(report), counted(report.commitsThisWeek, "commit"));
    return inOneLine({{QStringLiteral("text"), number},
                      {QStringLiteral("alt"), stateOf(report)},
                      {QStringLiteral("tooltip"), tip},
                      {QStringLiteral("class"), stateOf(report)}});
}

}  // namespace velquarin
