// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "App/StatusItemPlan.h"

#include <QCoreApplication>

namespace velquarin {

namespace {

QString titleFor(qint64 streak)
{
    return streak >= 1 ? QLatin1Char(' ') + QString::number(streak) : QString();
}

struct Words
{
    Q_DECLARE_TR_FUNCTIONS(StatusItem)
};

}  // namespace

StatusItemAppearance syncingAppearance()
{
    return {QStringLiteral("arrow.triangle.2.circlepath"), true, Words::tr("Syncing"), {}};
}

StatusItemAppearance waitingAppearance(const QString &path)
{
    auto appearance = syncingAppearance();
    appearance.accessibilityDescription = Words::tr("Waiting for git in %1").arg(path);
    return appearance;
}

StatusItemAppearance statusItemAppearance(qint64 streak, bool isRefreshing, bool hasCommittedToday)
{
    if (isRefreshing)
        return syncingAppearance();
    if (hasCommittedToday)
        return {QStringLiteral("flame.fill"), false, Words::tr("Velquarin"), titleFor(streak)};
    return {QStringLiteral("flame"), true, Words::tr("Velquarin"), titleFor(streak)};
}

}  // namespace velquarin
