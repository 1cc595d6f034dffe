// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Calendar.h"
#include "Platform/NotificationCenter.h"
#include "Platform/PreferencesStore.h"

#include <QString>

#include <optional>

namespace velquarin {

//! All that the evening reminder is decided from.
struct ReminderSnapshot
{
    bool notificationsEnabled = false;  //!< the user's switch
    bool hasCommittedToday = false;
    qint64 currentStreak = 0;                     //!< days
    std::optional<PreferenceValue> lastReminder;  //!< as stored; what is not a date was never a reminder
    Instant now;
    Calendar calendar;
};

//! Whether to remind now: once a day, from six in the evening, of a streak that today's commit has not kept yet.
[[nodiscard]] bool isReminderDue(const ReminderSnapshot &snapshot);

//! "streak-risk-" and the seconds since 1970 of @p moment, never in exponent notation and always with a
//! decimal point: the shortest such text that reads back to the same double.
[[nodiscard]] QString reminderIdentifier(Instant moment);

//! The notification of a streak at risk, as it is posted at @p moment. Units: days.
[[nodiscard]] NotificationRequest reminderRequest(qint64 currentStreak, Instant moment);

//! The kind of notification that a reminder is, with its two actions.
[[nodiscard]] NotificationCategory reminderCategory();

}  // namespace velquarin
