// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Calendar.h"
#include "Platform/Clock.h"
#include "Platform/NotificationCenter.h"

#include <QCoroTask>
#include <QObject>

#include <memory>
#include <optional>

namespace velquarin {

class Clock;
class Output;
class PreferencesStore;

//! Warns in the evening, at most once a day, that a streak ends at midnight. Main thread only. Nothing here
//! fails: what goes wrong is a line of output, and the next check tries again. A call that is still under way
//! when the service goes ends without a further effect. Source: docs/decisions/0003-reminders.md
class NotificationService : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isAuthorized READ isAuthorized NOTIFY isAuthorizedWillChange)
public:
    //! Begins to look up whether notifications are allowed, and does not wait for it.
    NotificationService(NotificationCenter &center, PreferencesStore &preferences, const Clock &clock, Timers &timers,
                        Output &output, QObject *parent = nullptr);

    //! Whether notifications would be shown, as last heard; false until then.
    [[nodiscard]] bool isAuthorized() const { return m_isAuthorized; }

    //! Asks for leave to notify; true when it was given.
    QCoro::Task<bool> requestAuthorization();

    //! Reads anew whether notifications are allowed.
    QCoro::Task<> checkAuthorizationStatus();

    //! Posts the reminder if it is due, and takes the last one back where it no longer holds. Units: days.
    QCoro::Task<> checkAndNotifyStreakRisk(qint64 currentStreak, bool hasCommittedToday, bool notificationsEnabled);

    //! Tells the notification centre which actions a reminder offers.
    void setupCategories();

Q_SIGNALS:
    //! Before every assignment, of an equal value too.
    void isAuthorizedWillChange(bool newValue);

private:
    void setAuthorized(bool isAuthorized);
    [[nodiscard]] bool isDue(qint64 currentStreak, bool hasCommittedToday, bool notificationsEnabled) const;
    QCoro::Task<> sendStreakRiskNotification(qint64 currentStreak);
    [[nodiscard]] bool isReminderOutdated() const;
    void withdrawReminder();
    void withdrawAtEndOfDay();

    NotificationCenter &m_center;
    PreferencesStore &m_preferences;
    const Clock &m_clock;
    Timers &m_timers;
    Output &m_output;
    bool m_isAuthorized = false;
    std::optional<Instant> m_postedAt;  // of a reminder that we did not take back; the user may have closed it since
    std::unique_ptr<Timer> m_endOfDay;
};

}  // namespace velquarin
