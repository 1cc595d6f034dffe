// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Services/Reminder/ReminderDecision.h"
#include "Platform/PluralForm.h"

#include <QCoreApplication>

#include <array>
#include <charconv>
#include <string_view>

namespace velquarin {

namespace {

const QString categoryIdentifier = QStringLiteral("STREAK_RISK");

struct Words
{
    Q_DECLARE_TR_FUNCTIONS(Reminder)
};

}  // namespace

ReminderDecision decideReminder(const ReminderSnapshot &snapshot)
{
    if (!snapshot.notificationsEnabled)
        return ReminderDecision::SwitchedOff;
    if (snapshot.hasCommittedToday)
        return ReminderDecision::CommittedToday;
    if (snapshot.currentStreak < 1)
        return ReminderDecision::NothingToLose;
    if (snapshot.calendar.timeOf(snapshot.now).hour() < notificationStartHour)
        return ReminderDecision::TooEarly;
    if (hasRemindedOn(snapshot.lastReminder, snapshot.now, snapshot.calendar))
        return ReminderDecision::AlreadyReminded;
    return ReminderDecision::Remind;
}

bool hasRemindedOn(const std::optional<PreferenceValue> &lastReminder, Instant now, const Calendar &calendar)
{
    const auto *date = lastReminder ? std::get_if<Instant>(&*lastReminder) : nullptr;
    return date != nullptr && calendar.isSameDay(*date, now);
}

QString reminderIdentifier(Instant moment)
{
    const std::chrono::duration<double> sinceEpoch = moment.time_since_epoch();
    std::array<char, 64> text{};
    const auto written =
        std::to_chars(text.data(), text.data() + text.size(), sinceEpoch.count(), std::chars_format::fixed);
    const std::string_view digits(text.data(), written.ptr);
    const auto fraction = digits.find('.') == std::string_view::npos ? QLatin1String(".0") : QLatin1String();
    return QLatin1String("streak-risk-") + QString::fromLatin1(digits.data(), qsizetype(digits.size())) + fraction;
}

QString reminderBody(qint64 currentStreak)
{
    return Words::tr("You haven't committed today. Your %1-day streak will reset at midnight!", nullptr,
                     pluralForm(currentStreak))
        .arg(currentStreak);
}

NotificationRequest reminderRequest(qint64 currentStreak, Instant moment)
{
    return {
        .identifier = reminderIdentifier(moment),
        .title = Words::tr("Streak at Risk!"),
        .body = reminderBody(currentStreak),
        .categoryIdentifier = categoryIdentifier,
        .isTimeSensitive = true,
        .hasDefaultSound = true,
    };
}

NotificationCategory reminderCategory()
{
    const NotificationAction open{QStringLiteral("OPEN_APP"), Words::tr("Open Velquarin"), true};
    const NotificationAction dismiss{QStringLiteral("DISMISS"), Words::tr("Dismiss"), false};
    return {.identifier = categoryIdentifier, .actions = {open, dismiss}};
}

}  // namespace velquarin
