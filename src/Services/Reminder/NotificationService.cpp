// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Services/Reminder/NotificationService.h"

#include "Platform/Clock.h"
#include "Platform/Output.h"
#include "Platform/PreferencesStore.h"
#include "Platform/WhileAlive.h"
#include "Services/Reminder/ReminderDecision.h"

#include <QTimer>

#include <utility>

namespace velquarin {

namespace {

const QString lastNotificationKey = QStringLiteral("lastStreakRiskNotification");

}  // namespace

NotificationService::NotificationService(NotificationCenter &center, PreferencesStore &preferences, const Clock &clock,
                                         Timers &timers, Output &output, QObject *parent)
    : QObject(parent)
    , m_center(center)
    , m_preferences(preferences)
    , m_clock(clock)
    , m_timers(timers)
    , m_output(output)
{
    // On the next turn of the loop, so that whoever creates the service can connect to it before anything changes.
    QTimer::singleShot(0, this, &NotificationService::checkAuthorizationStatus);
}

void NotificationService::setAuthorized(bool isAuthorized)
{
    Q_EMIT isAuthorizedWillChange(isAuthorized);
    m_isAuthorized = isAuthorized;
}

QCoro::Task<> NotificationService::checkAuthorizationStatus()
{
    auto question = m_center.isAuthorized();
    const bool isAuthorized = co_await whileAlive(this, std::move(question));
    setAuthorized(isAuthorized);
}

QCoro::Task<bool> NotificationService::requestAuthorization()
{
    bool isGranted = false;
    try {
        auto question = m_center.requestAuthorization();
        isGranted = co_await whileAlive(this, std::move(question));
    } catch (const NotificationError &error) {
        m_output.printLine(QLatin1String("Notification authorization error: ") + QString::fromUtf8(error.what()));
    }
    setAuthorized(isGranted);
    co_return isGranted;
}

void NotificationService::setupCategories()
{
    m_center.setCategory(reminderCategory());
}

QCoro::Task<> NotificationService::checkAndNotifyStreakRisk(qint64 currentStreak, bool hasCommittedToday,
                                                            bool notificationsEnabled)
{
    if (hasCommittedToday || isReminderOutdated())
        withdrawReminder();
    if (!isDue(currentStreak, hasCommittedToday, notificationsEnabled))
        co_return;
    // Another instance of the user's, in a session beside this one, may have reminded already.
    const auto look = m_preferences.takeOverChanges();
    co_await whileAlive(this, look);
    if (!isDue(currentStreak, hasCommittedToday, notificationsEnabled))
        co_return;
    if (!m_isAuthorized)
        co_await requestAuthorization();
    if (m_isAuthorized)
        co_await sendStreakRiskNotification(currentStreak);
}

bool NotificationService::isDue(qint64 currentStreak, bool hasCommittedToday, bool notificationsEnabled) const
{
    return isReminderDue({
        .notificationsEnabled = notificationsEnabled,
        .hasCommittedToday = hasCommittedToday,
        .currentStreak = currentStreak,
        .lastReminder = m_preferences.value(lastNotificationKey),
        .now = m_clock.now(),
        .calendar = m_clock.calendar(),
    });
}

QCoro::Task<> NotificationService::sendStreakRiskNotification(qint64 currentStreak)
{
    const auto postedAt = m_clock.now();
    try {
        auto posting = m_center.add(reminderRequest(currentStreak, postedAt));
        co_await whileAlive(this, std::move(posting));
    } catch (const NotificationError &error) {
        m_output.printLine(QLatin1String("Failed to send notification: ") + QString::fromUtf8(error.what()));
        co_return;
    }
    m_preferences.set(lastNotificationKey, m_clock.now());
    m_output.printLine(QStringLiteral("Streak risk notification sent"));
    m_postedAt = postedAt;
    withdrawAtEndOfDay();
}

bool NotificationService::isReminderOutdated() const
{
    return m_postedAt && !m_clock.calendar().isSameDay(*m_postedAt, m_clock.now());
}

void NotificationService::withdrawReminder()
{
    m_endOfDay.reset();
    if (m_postedAt)
        m_center.withdraw();
    m_postedAt.reset();
}

// Clocks are set back and people travel: when the time has passed, the day need not be over.
void NotificationService::withdrawAtEndOfDay()
{
    if (isReminderOutdated())
        return withdrawReminder();
    const auto delay = untilNextDay(m_clock.now(), m_clock.calendar());
    m_endOfDay = m_timers.after(delay, [this] { withdrawAtEndOfDay(); });
}

}  // namespace velquarin
