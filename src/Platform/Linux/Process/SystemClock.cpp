// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Process/SystemClock.h"

#include "Platform/Linux/Files/RegularFile.h"
#include "Platform/Linux/Process/StandardStreams.h"
#include "Platform/PathNames.h"

#include <QFile>
#include <QRegularExpression>
#include <QSocketNotifier>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <ctime>
#include <optional>
#include <QtEndian>
#include <sys/stat.h>
#include <sys/timerfd.h>
#include <unistd.h>
#include <utility>

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

constexpr qint64 mostBytes = 1 << 20;
constexpr qsizetype headerSize = 44;

// How long a file has to be that begins with such a header; nothing where there is none. Source: tzfile(5)
std::optional<qint64> lengthOfBlock(QByteArrayView block, qint64 timeSize)
{
    if (!block.startsWith("TZif") || block.size() < headerSize)
        return std::nullopt;
    const auto count = [&](qsizetype position) {
        return qint64(qFromBigEndian<quint32>(block.sliced(20 + 4 * position).data()));
    };
    const auto markers = count(0) + count(1);
    const auto leapSeconds = count(2) * (timeSize + 4);
    const auto changes = count(3) * (timeSize + 1);
    return headerSize + markers + leapSeconds + changes + count(4) * 6 + count(5);
}

// From the second version on the same follows once more, with longer times. libc takes one that was cut short for
// Greenwich, and says nothing.
bool isWhole(QByteArrayView file)
{
    const auto first = lengthOfBlock(file, 4);
    if (!first || file.size() < *first)
        return false;
    if (file.at(4) == '\0')
        return true;
    const auto rest = file.sliced(*first);
    const auto second = lengthOfBlock(rest, 8);
    return second && rest.size() >= *second;
}

bool isZoneFile(const QString &name)
{
    const auto given = qEnvironmentVariable("TZDIR");
    const auto folder = given.isEmpty() ? QStringLiteral("/usr/share/zoneinfo") : given;
    const auto content = readRegularFile(name.startsWith(u'/') ? name : joinPath(folder, name), mostBytes);
    return content && isWhole(*content);
}

// A name and how far its clocks are from Greenwich; what follows may be missing.
bool isRule(const QString &text)
{
    static const QRegularExpression beginning(QStringLiteral("^([A-Za-z]{3,}|<[A-Za-z0-9+-]{3,}>)[+-]?[0-9]"));
    return beginning.match(text).hasMatch();
}

constexpr double shortest = 0.001;
constexpr double longest = 100.0 * 365 * 24 * 3600;

timespec timeSpan(Timers::Seconds span)
{
    // A period that is not a number waits for ever, like one that is too long.
    const auto seconds = std::isnan(span.count()) ? longest : std::clamp(span.count(), shortest, longest);
    const auto whole = std::floor(seconds);
    return {static_cast<time_t>(whole), static_cast<long>((seconds - whole) * 1e9)};
}

class BootTimeTimer : public Timer
{
public:
    BootTimeTimer(timespec first, timespec period, Timers::Tick tick)
        : m_descriptor(timerfd_create(CLOCK_BOOTTIME, TFD_CLOEXEC | TFD_NONBLOCK))
        , m_notifier(m_descriptor, QSocketNotifier::Read)
        , m_tick(std::move(tick))
    {
        const itimerspec schedule{period, first};
        timerfd_settime(m_descriptor, 0, &schedule, nullptr);
        QObject::connect(&m_notifier, &QSocketNotifier::activated, &m_notifier, [this] { expire(); });
    }

    ~BootTimeTimer() override
    {
        m_notifier.setEnabled(false);
        close(m_descriptor);
    }

    BootTimeTimer(const BootTimeTimer &) = delete;
    BootTimeTimer &operator=(const BootTimeTimer &) = delete;

private:
    void expire()
    {
        std::uint64_t expirations = 0;
        if (read(m_descriptor, &expirations, sizeof expirations) != sizeof expirations)
            return;
        // The tick may destroy this timer, and with it the function it runs in.
        const auto tick = m_tick;
        tick();
    }

    int m_descriptor;
    QSocketNotifier m_notifier;
    Timers::Tick m_tick;
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

void dropUnknownZone()
{
    const auto variable = QFile::decodeName(qgetenv("TZ"));
    const auto name = variable.startsWith(u':') ? variable.mid(1) : variable;
    // Nothing, but set: that of Greenwich.
    if (name.isEmpty() || isZoneFile(name) || isRule(name))
        return;
    printErrorLine(QStringLiteral("TZ is \"%1\", which is no time zone: the system's counts").arg(variable));
    qunsetenv("TZ");
}

std::unique_ptr<Timer> BootTimeTimers::every(Seconds period, Tick tick)
{
    const auto span = timeSpan(period);
    return std::make_unique<BootTimeTimer>(span, span, std::move(tick));
}

std::unique_ptr<Timer> BootTimeTimers::after(Seconds delay, Tick tick)
{
    return std::make_unique<BootTimeTimer>(timeSpan(delay), timespec{}, std::move(tick));
}

}  // namespace velquarin
