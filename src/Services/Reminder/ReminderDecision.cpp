// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Services/Reminder/ReminderDecision.h"

#include <QCoreApplication>
#include <QLocale>

namespace velquarin {

namespace {

const QString categoryIdentifier = QStringLiteral("STREAK_RISK");

// The first local hour of the day at which a reminder may come.
constexpr int notificationStartHour = 18;

struct Words
{
    Q_DECLARE_TR_FUNCTIONS(Reminder)
};

bool hasNotifiedToday(const ReminderSnapshot &snapshot)
{
    const auto *date = snapshot.lastReminder ? std::get_if<Instant>(&*snapshot.lastReminder) : nullptr;
    return date != nullptr && snapshot.calendar.isSameDay(*date, snapshot.now);
}

}  // namespace

bool isReminderDue(const ReminderSnapshot &snapshot)
{
    return snapshot.notificationsEnabled && !snapshot.hasCommittedToday && snapshot.currentStreak >= 1 &&
           snapshot.calendar.timeOf(snapshot.now).hour() >= notificationStartHour && !hasNotifiedToday(snapshot);
}

QString reminderIdentifier(Instant moment)
{
    const std::chrono::duration<double> sinceEpoch = moment.time_since_epoch();
    const auto digits = QString::number(sinceEpoch.count(), 'f', QLocale::FloatingPointShortest);
    const auto fraction = digits.contains(u'.') ? QLatin1String() : QLatin1String(".0");
    return QLatin1String("streak-risk-") + digits + fraction;
}

NotificationRequest reminderRequest(qint64 currentStreak, Instant moment)
{
    return {
        .identifier = reminderIdentifier(moment),
        .title = Words::tr("Streak at Risk!"),
        .body = Words::tr("You haven't committed today. Your %1-day streak will reset at midnight!").arg(currentStreak),
        .categoryIdentifier = categoryIdentifier,
    };
}

NotificationCategory reminderCategory()
{
    const NotificationAction open{QStringLiteral("OPEN_APP"), Words::tr("Open Velquarin"), true};
    const NotificationAction dismiss{QStringLiteral("DISMISS"), Words::tr("Dismiss"), false};
    return {.identifier = categoryIdentifier, .actions = {open, dismiss}};
}

}  // namespace velquarin
