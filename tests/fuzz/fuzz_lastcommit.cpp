// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Calendar.h"
#include "Services/Git/GitLog.h"
#include "Target.h"

#include <QDateTime>
#include <QRegularExpression>

using namespace velquarin;
using namespace velquarin::fuzz;

namespace {

const QRegularExpression &shape()
{
    static const QRegularExpression expression(QStringLiteral(
        "\\A([0-9]{4,}-[0-9]{2}-[0-9]{2})T([0-9]{2}:[0-9]{2}:[0-9]{2})(Z|([+-])([0-9]{2}):([0-9]{2}))\\z"));
    return expression;
}

// The moment of a text of years up to 9999, read the slow way.
std::optional<Instant> momentOf(const QRegularExpressionMatch &match)
{
    const auto date = QDate::fromString(match.captured(1), Qt::ISODate);
    // By its format: as an ISO text "24:00:00" would pass for a time.
    const auto time = QTime::fromString(match.captured(2), QStringLiteral("HH:mm:ss"));
    const int hours = match.captured(5).toInt();
    const int minutes = match.captured(6).toInt();
    if (!date.isValid() || !time.isValid() || hours > 23 || minutes > 59)
        return std::nullopt;
    const int offset = (hours * 60 + minutes) * 60 * (match.captured(4) == u'-' ? -1 : 1);
    return Instant(
        std::chrono::milliseconds(QDateTime(date, time, universalTime).addSecs(-offset).toMSecsSinceEpoch()));
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const auto text = bytes(data, size);
    const auto moment = instantFromIso(text);
    const auto match = shape().match(QString::fromLatin1(text));
    require(match.hasMatch() || !moment, "only a strict date and time is one");
    if (match.hasMatch() && match.captured(1).size() == 10)
        require(moment == momentOf(match), "quick and slow reading agree");
    return 0;
}
