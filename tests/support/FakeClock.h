// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Clock.h"

#include <QDateTime>
#include <QString>
#include <QTimeZone>

#include <mutex>

namespace velquarin::test {

//! The instant of an ISO 8601 text with its offset, "2026-11-20T18:00:00Z" for instance.
inline Instant instant(const char *text)
{
    const auto moment = QDateTime::fromString(QLatin1String(text), Qt::ISODateWithMs);
    Q_ASSERT(moment.isValid());
    return Instant(std::chrono::milliseconds(moment.toMSecsSinceEpoch()));
}

inline Calendar calendarIn(const char *zone)
{
    const QTimeZone found{QByteArray(zone)};
    Q_ASSERT(found.isValid());
    return Calendar(found);
}

//! A clock that stands until it is moved. It starts at a moment that nothing depends on.
class FakeClock : public Clock
{
public:
    explicit FakeClock(Instant now = instant("2026-11-20T12:34:56Z"), const char *zone = "UTC")
        : m_now(now)
        , m_calendar(calendarIn(zone))
    {
    }

    [[nodiscard]] Instant now() const override
    {
        const std::lock_guard lock(m_mutex);
        return m_now;
    }

    [[nodiscard]] Calendar calendar() const override
    {
        const std::lock_guard lock(m_mutex);
        return m_calendar;
    }

    void advance(std::chrono::milliseconds step)
    {
        const std::lock_guard lock(m_mutex);
        m_now += step;
    }

    void setNow(Instant now)
    {
        const std::lock_guard lock(m_mutex);
        m_now = now;
    }

    void setZone(const char *zone)
    {
        const std::lock_guard lock(m_mutex);
        m_calendar = calendarIn(zone);
    }

private:
    mutable std::mutex m_mutex;
    Instant m_now;
    Calendar m_calendar;
};

}  // namespace velquarin::test
