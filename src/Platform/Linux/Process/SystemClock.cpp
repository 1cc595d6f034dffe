// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Process/SystemClock.h"

#include <ctime>
#include <sys/stat.h>

namespace velquarin {

namespace {

class SystemZone : public Zone
{
public:
    [[nodiscard]] std::chrono::seconds offsetAt(Instant moment) const override
    {
        const auto time = std::chrono::floor<std::chrono::seconds>(moment).time_since_epoch().count();
        std::tm parts = {};
        return std::chrono::seconds(localtime_r(&time, &parts) ? parts.tm_gmtoff : 0);
    }
};

}  // namespace

Instant SystemClock::now() const
{
    return std::chrono::floor<std::chrono::milliseconds>(std::chrono::system_clock::now());
}

// What was worked out for a zone is remembered by whoever holds the calendar, so a zone that has changed is another one.
Calendar SystemClock::calendar() const
{
    const std::lock_guard lock(m_mutex);
    const auto source = currentSource();
    tzset();
    if (!m_zone || source != m_source)
        m_zone = std::make_shared<SystemZone>();
    m_source = source;
    return Calendar(m_zone);
}

SystemClock::ZoneSource SystemClock::currentSource()
{
    if (qEnvironmentVariableIsSet("TZ"))
        return {qgetenv("TZ"), {}, {}, {}};
    struct stat status = {};
    stat("/etc/localtime", &status);
    return {{}, status.st_dev, status.st_ino, status.st_mtime};
}

}  // namespace velquarin
