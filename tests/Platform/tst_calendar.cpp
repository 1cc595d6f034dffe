// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Calendar.h"

#include "support/Strict.h"

#include <QTest>

using namespace velquarin;

class TestCalendar : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { test::failOnAnyWarning(); }
    void theDayStartsAtMidnightInUtc();
};

void TestCalendar::theDayStartsAtMidnightInUtc()
{
    const Calendar utc(QTimeZone::utc());
    QCOMPARE(utc.startOf(QDate(1970, 1, 2)), Instant(std::chrono::hours(24)));
}

QTEST_GUILESS_MAIN(TestCalendar)
#include "tst_calendar.moc"
