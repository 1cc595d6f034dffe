// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "App/StatusItemPlan.h"

#include "Services/Git/GitService.h"
#include "Services/Streak/StreakManager.h"

#include <QCoreApplication>

#include <chrono>
#include <utility>

namespace velquarin {

using namespace std::chrono_literals;

namespace {

QString titleFor(qint64 streak)
{
    return streak >= 1 ? QLatin1Char(' ') + QString::number(streak) : QString();
}

struct Words
{
    Q_DECLARE_TR_FUNCTIONS(StatusItem)
};

QString noteOn(const QStringList &withoutAddress)
{
    if (withoutAddress.isEmpty())
        return {};
    const auto &name = withoutAddress.constFirst();
    if (withoutAddress.size() == 1)
        return Words::tr("Everyone's commits count in %1: git knows no address of yours there").arg(name);
    return Words::tr("Everyone's commits count in %1 and %2 more: git knows no address of yours there")
        .arg(name, QString::number(withoutAddress.size() - 1));
}

}  // namespace

StatusItemAppearance syncingAppearance()
{
    return {QStringLiteral("arrow.triangle.2.circlepath"), true, Words::tr("Syncing"), {}, {}};
}

StatusItemAppearance waitingAppearance(const QString &path)
{
    auto appearance = syncingAppearance();
    appearance.accessibilityDescription = Words::tr("Waiting for git in %1").arg(path);
    return appearance;
}

StatusItemAppearance statusItemAppearance(qint64 streak, bool isRefreshing, bool hasCommittedToday,
                                          const QStringList &withoutAddress)
{
    if (isRefreshing)
        return syncingAppearance();
    const auto symbol = hasCommittedToday ? QStringLiteral("flame.fill") : QStringLiteral("flame");
    return {symbol, !hasCommittedToday, Words::tr("Velquarin"), titleFor(streak), noteOn(withoutAddress)};
}

StreakObserver::StreakObserver(const StreakManager &manager, Timers &timers, Deliver deliver)
    : m_manager(manager)
    , m_timers(timers)
    , m_deliver(std::move(deliver))
{
    connect(&manager, &StreakManager::currentStreakWillChange, this, &StreakObserver::waitForQuiet);
    connect(&manager, &StreakManager::isRefreshingWillChange, this, &StreakObserver::waitForQuiet);
    connect(&manager, &StreakManager::hasCommittedTodayWillChange, this, &StreakObserver::waitForQuiet);
    waitForQuiet();
}

void StreakObserver::waitForQuiet()
{
    m_quiet = m_timers.after(200ms, [this] { deliver(); });
}

// The values are read now: the signals came before theirs were stored.
void StreakObserver::deliver() const
{
    m_deliver(m_manager.currentStreak(), m_manager.isRefreshing(), m_manager.hasCommittedToday());
}

HangObserver::HangObserver(GitService &gitService, Timers &timers, Deliver deliver)
    : m_gitService(gitService)
    , m_timers(timers)
    , m_deliver(std::move(deliver))
{
    connect(&gitService, &GitService::repositoryBeingReadChanged, this, &HangObserver::watch);
}

void HangObserver::watch(const std::optional<QString> &path)
{
    m_patience.reset();
    if (std::exchange(m_isDelivered, false))
        m_deliver(std::nullopt);
    if (path)
        m_patience = m_timers.after(30s, [this] { deliver(); });
}

// The repositories before it took next to no time.
void HangObserver::deliver()
{
    m_isDelivered = true;
    m_deliver(m_gitService.repositoryBeingRead());
}

}  // namespace velquarin
