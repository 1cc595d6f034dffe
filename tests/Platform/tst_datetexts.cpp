// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/DateTexts.h"

#include "support/FakeClock.h"
#include "support/Strict.h"
#include "support/TestProgram.h"

#include <unicode/uversion.h>

#include <QTest>
#include <QTimeZone>

using namespace velquarin;
using namespace velquarin::test;

class TestDateTexts : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { failOnAnyWarning(); }
    void theTextTellsTheLargestUnitThatFits_data();
    void theTextTellsTheLargestUnitThatFits();
    void theLongestSpansAreCountedInYears();
    void theTextFollowsTheLocale();
    void everyTextFollowsTheLocale_data();
    void everyTextFollowsTheLocale();
    void theWeeksDaysAllHaveNamesOfTheirOwn_data();
    void theWeeksDaysAllHaveNamesOfTheirOwn();
    void aSpanHasItsTwoLargestUnits_data();
    void aSpanHasItsTwoLargestUnits();
    void datesAndTimesAreInTheUsersWordsAndZone();
    void aMonthHasOneNameFromItsFirstDayToItsLast_data();
    void aMonthHasOneNameFromItsFirstDayToItsLast();
    void aDateIsOfTheSameCalendarAsItsMonth();
    void aDayIsCalledByItsOwnDate_data();
    void aDayIsCalledByItsOwnDate();
    void theLocaleComesFromTheFirstVariableThatIsSet_data();
    void theLocaleComesFromTheFirstVariableThatIsSet();
};

void TestDateTexts::theTextTellsTheLargestUnitThatFits_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<QString>("moment");
    QTest::addColumn<QString>("now");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const char *zone, const char *moment, const char *now, const char *expected) {
        QTest::newRow(name) << QByteArray(zone) << QString::fromLatin1(moment) << QString::fromLatin1(now)
                            << QString::fromUtf8(expected);
    };
    row("this very moment", "UTC", "2024-03-07T12:00:00Z", "2024-03-07T12:00:00Z", "0 sec. ago");
    row("seconds", "UTC", "2024-03-07T12:00:00Z", "2024-03-07T12:00:59Z", "59 sec. ago");
    row("minutes, cut off", "UTC", "2024-03-07T12:00:00Z", "2024-03-07T12:05:59Z", "5 min. ago");
    row("hours", "UTC", "2024-03-07T12:00:00Z", "2024-03-07T14:00:00Z", "2 hr. ago");
    row("25 hours are a day, and not called yesterday", "UTC", "2024-03-06T11:00:00Z", "2024-03-07T12:00:00Z",
        "1 day ago");
    row("23 hours across midnight are hours", "UTC", "2024-03-06T13:00:00Z", "2024-03-07T12:00:00Z", "23 hr. ago");
    row("days", "UTC", "2024-03-04T12:00:00Z", "2024-03-07T12:00:00Z", "3 days ago");
    row("thirteen days are one week", "UTC", "2024-03-01T12:00:00Z", "2024-03-14T12:00:00Z", "1 wk. ago");
    row("a month by the calendar", "UTC", "2024-02-07T12:00:00Z", "2024-03-07T12:00:00Z", "1 mo. ago");
    row("not yet a month by the calendar", "UTC", "2024-02-07T12:00:01Z", "2024-03-07T12:00:00Z", "4 wk. ago");
    row("a month from a day that the next month lacks", "UTC", "2024-01-31T12:00:00Z", "2024-02-29T12:00:00Z",
        "1 mo. ago");
    row("years", "UTC", "2021-03-08T12:00:00Z", "2024-03-07T12:00:00Z", "2 yr. ago");
    row("since the beginning of counting", "UTC", "1970-01-01T00:00:00Z", "2024-03-07T12:00:00Z", "54 yr. ago");
    row("ahead", "UTC", "2024-03-13T12:00:00Z", "2024-03-07T12:00:00Z", "in 6 days");
    row("far ahead", "UTC", "9999-03-13T12:00:00Z", "2024-03-07T12:00:00Z", "in 7,975 yr.");
    row("a day of 23 hours is a day", "America/New_York", "2024-03-09T17:00:00Z", "2024-03-10T16:00:00Z", "1 day ago");
    row("24 hours of a day of 25 are hours", "America/New_York", "2024-11-02T16:00:00Z", "2024-11-03T16:00:00Z",
        "24 hr. ago");
}

void TestDateTexts::theTextTellsTheLargestUnitThatFits()
{
    QFETCH(QByteArray, zone);
    QFETCH(QString, moment);
    QFETCH(QString, now);
    const DateTexts texts("en_US", calendarIn(zone.constData()));
    QTEST(texts.relative(instant(moment.toLatin1().constData()), instant(now.toLatin1().constData())), "expected");
}

void TestDateTexts::theLongestSpansAreCountedInYears()
{
    const auto calendar = calendarIn("UTC");
    const auto far = *calendar.startOf(QDate(199'999'999, 12, 27));
    QCOMPARE(calendarSpan(instant("2026-11-20T12:00:00Z"), far, calendar),
             (CalendarSpan{CalendarSpan::Unit::Years, 199'997'973}));
}

void TestDateTexts::theTextFollowsTheLocale()
{
    const DateTexts texts("de_DE", calendarIn("Europe/Berlin"));
    QCOMPARE(texts.relative(instant("2024-03-04T12:00:00Z"), instant("2024-03-07T12:00:00Z")),
             QStringLiteral("vor 3 Tagen"));
}

// Weekday, month, date, time, how long ago and for how long.
void TestDateTexts::everyTextFollowsTheLocale_data()
{
    QTest::addColumn<QString>("variable");
    QTest::addColumn<QStringList>("expected");
    const auto row = [](const char *name, const char *locale, std::initializer_list<const char *> texts) {
        QStringList expected;
        for (const auto *const text : texts)
            expected.append(QString::fromUtf8(text));
        QTest::newRow(name) << QString::fromLatin1(locale) << expected;
    };
    row("German", "de_DE.UTF-8", {"Mo.", "März", "03.03.2025", "21:41", "vor 2 Tagen", "2 Min., 13 Sek."});
    row("Arabic of Egypt, with its own digits", "ar_EG",
        {"الاثنين", "مارس", "٠٣\u200f/٠٣\u200f/٢٠٢٥", "٩:٤١ م", "قبل يومين", "٢ د و١٣ ث"});
    row("Persian, with its own digits", "fa_IR",
        {"دوشنبه", "مارس", "۳ مارس ۲۰۲۵", "۲۱:۴۱", "۲ روز پیش", "۲ دقیقه،\u200f ۱۳ ثانیه"});
    row("Japanese", "ja_JP.UTF-8", {"月", "3月", "2025/03/03", "21:41", "2 日前", "2 分 13 秒"});
    // From this version on its abbreviated weekdays are whole.
    const char *const monday = U_ICU_VERSION_MAJOR_NUM < 78 ? "จ." : "จันทร์";
    row("Thai", "th_TH", {monday, "มี.ค.", "3 มี.ค. 2025", "21:41", "2 วันที่แล้ว", "2 นาที 13 วิ"});
    row("English of America", "en_US.UTF-8", {"Mon", "Mar", "Mar 3, 2025", "9:41 PM", "2 days ago", "2 min, 13 sec"});
    row("no language", "C", {"Mon", "Mar", "Mar 3, 2025", "9:41 PM", "2 days ago", "2 min, 13 sec"});
}

void TestDateTexts::everyTextFollowsTheLocale()
{
    QFETCH(QString, variable);
    QProcessEnvironment session;
    session.insert(QStringLiteral("LANG"), variable);
    const DateTexts texts(dateLocale(session), calendarIn("UTC"));
    const auto moment = instant("2025-03-03T21:41:00Z");
    const QStringList said{texts.weekday(moment),
                           texts.month(moment),
                           texts.mediumDate(moment),
                           texts.shortTime(moment),
                           texts.relative(moment, instant("2025-03-05T21:41:00Z")),
                           texts.elapsed(std::chrono::seconds(133))};
    QTEST(said, "expected");
}

void TestDateTexts::theWeeksDaysAllHaveNamesOfTheirOwn_data()
{
    QTest::addColumn<QByteArray>("locale");
    for (const auto *const locale : {"de_DE", "ar_EG", "fa_IR", "ja_JP", "th_TH", "en_US", "he_IL"})
        QTest::newRow(locale) << QByteArray(locale);
}

void TestDateTexts::theWeeksDaysAllHaveNamesOfTheirOwn()
{
    QFETCH(QByteArray, locale);
    const auto calendar = calendarIn("UTC");
    const DateTexts texts(locale, calendar);
    QStringList names;
    for (int day = 1; day <= 7; ++day)
        names.append(texts.weekday(calendar.startOf(QDate(2026, 11, day)).value()));
    QCOMPARE(names.removeDuplicates(), 0);
}

void TestDateTexts::aSpanHasItsTwoLargestUnits_data()
{
    QTest::addColumn<qint64>("seconds");
    QTest::addColumn<QString>("expected");
    QTest::newRow("nothing yet") << qint64(0) << QStringLiteral("0 sec");
    QTest::newRow("a clock that was set back") << qint64(-5) << QStringLiteral("0 sec");
    QTest::newRow("seconds") << qint64(59) << QStringLiteral("59 sec");
    QTest::newRow("a minute to the second") << qint64(60) << QStringLiteral("1 min");
    QTest::newRow("minutes and seconds") << qint64(133) << QStringLiteral("2 min, 13 sec");
    QTest::newRow("an hour to the minute, seconds left out") << qint64(3659) << QStringLiteral("1 hr");
    QTest::newRow("hours and minutes") << qint64(3 * 3600 + 5 * 60 + 59) << QStringLiteral("3 hr, 5 min");
    QTest::newRow("days and hours") << qint64(2 * 86'400 + 3 * 3600) << QStringLiteral("2 days, 3 hr");
}

void TestDateTexts::aSpanHasItsTwoLargestUnits()
{
    QFETCH(qint64, seconds);
    const DateTexts texts("en_US", calendarIn("UTC"));
    QTEST(texts.elapsed(std::chrono::seconds(seconds)), "expected");
}

void TestDateTexts::datesAndTimesAreInTheUsersWordsAndZone()
{
    const auto moment = instant("2025-03-04T02:41:00Z");
    const DateTexts english("en_US", calendarIn("America/New_York"));
    QCOMPARE(english.weekday(moment), QStringLiteral("Mon"));
    QCOMPARE(english.month(moment), QStringLiteral("Mar"));
    QCOMPARE(english.mediumDate(moment), QStringLiteral("Mar 3, 2025"));
    QCOMPARE(english.shortTime(moment), QStringLiteral("9:41 PM"));
    const DateTexts german("de_DE", calendarIn("Asia/Kolkata"));
    QCOMPARE(german.weekday(moment), QStringLiteral("Di."));
    QCOMPARE(german.mediumDate(moment), QStringLiteral("04.03.2025"));
    QCOMPARE(german.shortTime(moment), QStringLiteral("08:11"));
    const DateTexts offset("de_DE", Calendar(QTimeZone(3 * 3600)));
    QCOMPARE(offset.shortTime(moment), QStringLiteral("05:41"));
}

void TestDateTexts::aMonthHasOneNameFromItsFirstDayToItsLast_data()
{
    QTest::addColumn<QByteArray>("locale");
    for (const auto *const locale : {"en_US", "ja_JP", "th_TH", "fa_IR", "ar_SA"})
        QTest::newRow(locale) << QByteArray(locale);
}

void TestDateTexts::aMonthHasOneNameFromItsFirstDayToItsLast()
{
    QFETCH(QByteArray, locale);
    const auto calendar = calendarIn("UTC");
    const DateTexts texts(locale, calendar);
    const QDate first(2026, 12, 1);
    const auto name = texts.month(calendar.startOf(first).value());
    for (int day = 1; day < first.daysInMonth(); ++day)
        QCOMPARE(texts.month(calendar.startOf(first.addDays(day)).value()), name);
    QVERIFY(texts.month(calendar.startOf(first.addDays(-1)).value()) != name);
}

void TestDateTexts::aDateIsOfTheSameCalendarAsItsMonth()
{
    const auto calendar = calendarIn("UTC");
    const auto start = calendar.startOf(QDate(2026, 12, 1)).value();
    for (const auto *const locale : {"en_US", "th_TH"})
        QVERIFY2(DateTexts(locale, calendar).mediumDate(start).contains(QLatin1String("2026")), locale);
    const DateTexts persian("fa_IR", calendar);
    QVERIFY(persian.mediumDate(start).contains(persian.month(start)));
}

// The library that writes dates brings a list of zones of its own, which may be older than the system's.
void TestDateTexts::aDayIsCalledByItsOwnDate_data()
{
    QTest::addColumn<QByteArray>("zone");
    for (const auto *const zone : {"Europe/Berlin", "Africa/Cairo", "America/Asuncion", "America/Nuuk",
                                   "America/Coyhaique", "JST-9", "CET-1CEST,M3.5.0,M10.5.0/3", "posix/Asia/Tokyo"})
        QTest::newRow(zone) << QByteArray(zone);
}

void TestDateTexts::aDayIsCalledByItsOwnDate()
{
    QFETCH(QByteArray, zone);
    if (!QTimeZone(zone).isValid())
        QSKIP("This system does not know the zone.");
    const auto calendar = calendarIn(zone.constData());
    const DateTexts texts("en_US", calendar);
    for (const auto date : {QDate(2026, 7, 1), QDate(2026, 12, 1)}) {
        const auto start = calendar.startOf(date).value();
        QCOMPARE(texts.weekday(start), QLocale::c().toString(date, QStringLiteral("ddd")));
        QCOMPARE(texts.month(start), QLocale::c().toString(date, QStringLiteral("MMM")));
        QCOMPARE(texts.mediumDate(start), QLocale::c().toString(date, QStringLiteral("MMM d, yyyy")));
        QCOMPARE(texts.shortTime(start + std::chrono::hours(12)), QStringLiteral("12:00 PM"));
    }
}

void TestDateTexts::theLocaleComesFromTheFirstVariableThatIsSet_data()
{
    QTest::addColumn<QStringList>("variables");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("nothing set") << QStringList() << QByteArray("en_US");
    QTest::newRow("C") << QStringList{QStringLiteral("LANG=C")} << QByteArray("en_US");
    QTest::newRow("C with an encoding") << QStringList{QStringLiteral("LANG=C.UTF-8")} << QByteArray("en_US");
    QTest::newRow("POSIX") << QStringList{QStringLiteral("LC_ALL=POSIX")} << QByteArray("en_US");
    QTest::newRow("encoding and modifier are cut off")
        << QStringList{QStringLiteral("LANG=de_DE.UTF-8@euro")} << QByteArray("de_DE");
    QTest::newRow("a modifier alone is cut off")
        << QStringList{QStringLiteral("LANG=ca_ES@valencia")} << QByteArray("ca_ES");
    QTest::newRow("LC_TIME before LANG") << QStringList{QStringLiteral("LANG=de_DE"), QStringLiteral("LC_TIME=fr_FR")}
                                         << QByteArray("fr_FR");
    QTest::newRow("LC_ALL before LC_TIME")
        << QStringList{QStringLiteral("LC_ALL=ja_JP.UTF-8"), QStringLiteral("LC_TIME=fr_FR")} << QByteArray("ja_JP");
    QTest::newRow("an empty variable is passed over")
        << QStringList{QStringLiteral("LC_ALL="), QStringLiteral("LANG=it_IT")} << QByteArray("it_IT");
}

void TestDateTexts::theLocaleComesFromTheFirstVariableThatIsSet()
{
    QFETCH(QStringList, variables);
    QProcessEnvironment environment;
    for (const auto &variable : variables)
        environment.insert(variable.section(u'=', 0, 0), variable.section(u'=', 1));
    QTEST(dateLocale(environment), "expected");
}

VELQUARIN_TEST(TestDateTexts)
#include "tst_datetexts.moc"
