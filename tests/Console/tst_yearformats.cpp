// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Console/Reports.h"
#include "Console/YearFormats.h"
#include "support/FakeClock.h"
#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTest>
#include <QXmlStreamReader>

#include <algorithm>

using namespace velquarin;
using namespace velquarin::test;

namespace {

// One day of each band, the oldest and the newest of the 365, and one before them.
StreakReport bands()
{
    StreakReport report;
    report.currentStreak = 1;
    report.longestStreak = 3;
    report.days = {{date("2025-11-20"), 50}, {date("2025-11-21"), 1},  {date("2026-11-16"), 2},
                   {date("2026-11-17"), 5},  {date("2026-11-18"), 10}, {date("2026-11-20"), 11}};
    report.repositories = fullReport().repositories;
    return report;
}

YearOfSquares yearIn(const char *zone = "UTC", const StreakReport &report = bands())
{
    return yearOf(report, calendarIn(zone), instant("2026-11-20T12:00:00Z"));
}

using Variables = QMap<QString, QString>;

QStringList linesOf(const QString &text)
{
    return text.split(u'\n');
}

}  // namespace

class TestYearFormats : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { failOnAnyWarning(); }
    void theTotalsAreThoseOfTheSquares();
    void eachDayStandsInItsRowAndWeek();
    void eachBandHasACharacterOfItsOwn_data();
    void eachBandHasACharacterOfItsOwn();
    void withoutATerminalThereAreNoEscapes();
    void coloursAreTheTerminalsOwnAndEndWithTheLine();
    void noLineIsWiderThanTheTerminal_data();
    void noLineIsWiderThanTheTerminal();
    void whereThereIsRoomSquaresAreSquare();
    void aNarrowTerminalShowsTheNewestWeeks();
    void noMonthRunsIntoAnother();
    void whatATerminalCanShow_data();
    void whatATerminalCanShow();
    void jsonHasEverySquare();
    void aYearWithoutSquaresIsEmptyEverywhere();
    void thePictureHasASquareForEachDay();
    void thePictureIsDrawnByNumbers();
    void thePictureIsAsLargeAsWhatItShows();
    void thePictureIsLightAndDarkAndNamesNoRepository();
};

void TestYearFormats::theTotalsAreThoseOfTheSquares()
{
    const auto year = yearIn();
    QCOMPARE(year.commits, 29);
    QCOMPARE(year.activeDays, 5);
}

void TestYearFormats::eachDayStandsInItsRowAndWeek()
{
    const auto lines = linesOf(yearText(yearIn(), {80, false, false}));
    QCOMPARE(lines.size(), 12);
    QCOMPARE(lines.at(1), QString(4, u' ') + u' ' + QString(52, u'.'));
    QCOMPARE(lines.at(2), QStringLiteral("Mon  ") + QString(51, u'.') + u'-');
    QCOMPARE(lines.at(3), QString(5, u' ') + QString(51, u'.') + u'+');
    QCOMPARE(lines.at(4), QStringLiteral("Wed  ") + QString(51, u'.') + u'*');
    QCOMPARE(lines.at(5), QString(5, u' ') + QString(52, u'.'));
    QCOMPARE(lines.at(6), QStringLiteral("Fri -") + QString(51, u'.') + u'#');
    QCOMPARE(lines.at(7), QString(4, u' ') + QString(52, u'.') + u' ');
    QCOMPARE(lines.at(8), QString());
    QCOMPARE(lines.at(9), QStringLiteral("29 commits, 5 active days"));
    QCOMPARE(lines.at(10), QStringLiteral("less . - + * # more"));
}

void TestYearFormats::eachBandHasACharacterOfItsOwn_data()
{
    QTest::addColumn<bool>("hasUnicode");
    QTest::addColumn<QString>("column");
    QTest::newRow("in any locale") << false << ".-+*.# ";
    QTest::newRow("in a locale of UTF-8") << true << "·░▒▓·█ ";
}

void TestYearFormats::eachBandHasACharacterOfItsOwn()
{
    QFETCH(bool, hasUnicode);
    const auto lines = linesOf(yearText(yearIn(), {80, false, hasUnicode}));
    QString newestWeek;
    for (const auto &line : lines.mid(1, 7))
        newestWeek += line.at(line.size() - 1);
    QTEST(newestWeek, "column");
}

void TestYearFormats::withoutATerminalThereAreNoEscapes()
{
    QVERIFY(!yearText(yearIn(), {80, false, true}).contains(u'\x1b'));
}

void TestYearFormats::coloursAreTheTerminalsOwnAndEndWithTheLine()
{
    auto text = yearText(yearIn(), {80, true, true});
    const auto lines = linesOf(text);
    QCOMPARE(lines.at(2), QStringLiteral("Mon  \x1b[90m") + QString(51, u'·') + QStringLiteral("\x1b[32m░\x1b[0m"));
    QVERIFY(lines.at(7).endsWith(QStringLiteral("\x1b[0m ")) || lines.at(7).endsWith(QStringLiteral(" \x1b[0m")));
    QVERIFY(lines.at(10).startsWith(QStringLiteral("less \x1b[90m·\x1b[0m \x1b[32m░\x1b[0m")));
    QCOMPARE(text.remove(QRegularExpression(QStringLiteral("\x1b\\[[0-9]*m"))), yearText(yearIn(), {80, false, true}));
}

void TestYearFormats::noLineIsWiderThanTheTerminal_data()
{
    QTest::addColumn<int>("columns");
    for (const int columns : {20, 21, 40, 56, 57, 58, 80, 109, 110, 111, 400})
        QTest::addRow("%d columns", columns) << columns;
}

void TestYearFormats::noLineIsWiderThanTheTerminal()
{
    QFETCH(int, columns);
    const auto lines = linesOf(yearText(yearIn(), {columns, false, true}));
    const auto widest = std::ranges::max(lines, {}, &QString::size);
    QVERIFY2(widest.size() <= columns, qPrintable(widest));
    const auto newest = lines.at(2).right(1);
    QCOMPARE(newest, QStringLiteral("░"));
}

void TestYearFormats::whereThereIsRoomSquaresAreSquare()
{
    QCOMPARE(linesOf(yearText(yearIn(), {109, false, false})).at(6).size(), 4 + 53);
    const auto friday = linesOf(yearText(yearIn(), {110, false, false})).at(6);
    QCOMPARE(friday, QStringLiteral("Fri --") + QString(102, u'.') + QStringLiteral("##"));
}

void TestYearFormats::aNarrowTerminalShowsTheNewestWeeks()
{
    const auto lines = linesOf(yearText(yearIn(), {20, false, false}));
    QCOMPARE(lines.at(6), QStringLiteral("Fri ") + QString(15, u'.') + u'#');
    QCOMPARE(lines.at(0), QStringLiteral("    Aug  Sep Oct Nov"));
    QCOMPARE(lines.at(9), QStringLiteral("29 commits"));
    QCOMPARE(lines.at(10), QStringLiteral("5 active days"));
}

void TestYearFormats::noMonthRunsIntoAnother()
{
    for (int day = 0; day < 400; day += 3) {
        const auto year =
            yearOf(bands(), calendarIn("UTC"), instant("2026-01-01T12:00:00Z") + std::chrono::hours(24 * day));
        const auto months = linesOf(yearText(year, {80, false, false})).constFirst();
        QVERIFY2(!months.contains(QRegularExpression(QStringLiteral("[A-Za-z]{4}"))), qPrintable(months));
        QVERIFY2(months.split(u' ', Qt::SkipEmptyParts).size() >= 11, qPrintable(months));
    }
}

void TestYearFormats::whatATerminalCanShow_data()
{
    QTest::addColumn<Variables>("variables");
    QTest::addColumn<int>("columns");  // 0: no terminal
    QTest::addColumn<QList<int>>("expected");
    const auto row = [](const char *name, const Variables &variables, int columns, const QList<int> &expected) {
        QTest::newRow(name) << variables << columns << expected;
    };
    const auto lang = QStringLiteral("LANG");
    const auto all = QStringLiteral("LC_ALL");
    const auto utf8 = QStringLiteral("de_DE.UTF-8");
    const auto term = std::pair(QStringLiteral("TERM"), QStringLiteral("xterm"));
    row("a terminal", {{lang, utf8}, term}, 120, {120, 1, 1});
    row("a pipe", {{lang, utf8}}, 0, {80, 0, 1});
    row("a terminal that does not say what it can do", {{lang, utf8}}, 80, {80, 0, 1});
    row("no colours wanted", {{lang, utf8}, term, {QStringLiteral("NO_COLOR"), QStringLiteral("1")}}, 80, {80, 0, 1});
    row("an empty wish is none", {{lang, utf8}, term, {QStringLiteral("NO_COLOR"), QString()}}, 80, {80, 1, 1});
    row("a terminal that can do nothing", {{QStringLiteral("TERM"), QStringLiteral("dumb")}}, 80, {80, 0, 0});
    row("no locale", {term}, 80, {80, 1, 0});
    row("another encoding", {term, {lang, QStringLiteral("de_DE.ISO-8859-1")}}, 80, {80, 1, 0});
    row("the stronger variable counts", {term, {lang, utf8}, {all, QStringLiteral("C")}}, 80, {80, 1, 0});
    row("an empty one does not", {term, {lang, utf8}, {all, QString()}}, 80, {80, 1, 1});
    row("in other letters", {term, {QStringLiteral("LC_CTYPE"), QStringLiteral("C.utf8")}}, 80, {80, 1, 1});
}

void TestYearFormats::whatATerminalCanShow()
{
    QFETCH(Variables, variables);
    QFETCH(int, columns);
    QProcessEnvironment environment;
    for (const auto &[name, value] : variables.asKeyValueRange())
        environment.insert(name, value);
    const auto terminal = terminalIn(environment, columns > 0 ? std::optional(columns) : std::nullopt);
    QTEST((QList<int>{terminal.columns, int(terminal.hasColors), int(terminal.hasUnicode)}), "expected");
}

void TestYearFormats::jsonHasEverySquare()
{
    const auto text = yearJson(yearIn());
    QVERIFY(!text.contains('\n'));
    const auto year = QJsonDocument::fromJson(text).object();
    QCOMPARE(year.value(QStringLiteral("version")), 1);
    QCOMPARE(year.value(QStringLiteral("from")), QStringLiteral("2025-11-21"));
    QCOMPARE(year.value(QStringLiteral("to")), QStringLiteral("2026-11-20"));
    QCOMPARE(year.value(QStringLiteral("commits")), 29);
    QCOMPARE(year.value(QStringLiteral("activeDays")), 5);
    const auto weeks = year.value(QStringLiteral("weeks")).toArray();
    QCOMPARE(weeks.size(), 53);
    const auto first = weeks.first().toArray();
    QCOMPARE(first.size(), 7);
    QVERIFY(first.at(4).isNull());
    QCOMPARE(first.at(5).toObject(), (QJsonObject{{QStringLiteral("date"), QStringLiteral("2025-11-21")},
                                                  {QStringLiteral("commits"), 1},
                                                  {QStringLiteral("band"), 1}}));
    QCOMPARE(weeks.last().toArray().at(5).toObject().value(QStringLiteral("band")), 4);
    QVERIFY(weeks.last().toArray().at(6).isNull());
}

void TestYearFormats::aYearWithoutSquaresIsEmptyEverywhere()
{
    const auto year = yearOf(bands(), calendarIn("Pacific/Apia"), instant("2012-12-28T00:00:00Z"));
    QVERIFY(year.grid.empty());
    QVERIFY(yearText(year, {80, true, true}).contains(QStringLiteral("0 commits, 0 active days")));
    QVERIFY(QJsonDocument::fromJson(yearJson(year)).object().value(QStringLiteral("from")).isNull());
    QVERIFY(yearSvg(year, bands()).contains("</svg>"));
}

void TestYearFormats::thePictureHasASquareForEachDay()
{
    QXmlStreamReader xml(yearSvg(yearIn(), bands()));
    QMap<QString, int> squares;
    QStringList texts;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == QLatin1String("rect"))
            ++squares[xml.attributes().value(QStringLiteral("class")).toString()];
        else if (xml.name() == QLatin1String("text"))
            texts += xml.readElementText();
    }
    QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
    // One of each in the legend.
    QCOMPARE(squares, (QMap<QString, int>{{QStringLiteral("ground"), 1},
                                          {QStringLiteral("b0"), 361},
                                          {QStringLiteral("b1"), 3},
                                          {QStringLiteral("b2"), 2},
                                          {QStringLiteral("b3"), 2},
                                          {QStringLiteral("b4"), 2}}));
    QVERIFY(texts.contains(QStringLiteral("1 day in a row")));
    QVERIFY(texts.contains(QStringLiteral("longest 3")));
    QVERIFY(texts.contains(QStringLiteral("29 commits on 5 days of the last 365")));
    for (const auto *const month : {"Dec", "Jan", "Feb", "Oct"})
        QCOMPARE(texts.count(QLatin1String(month)), 1);
}

// Where something stands, in the order in which it is drawn: its look, its place and its text.
void TestYearFormats::thePictureIsDrawnByNumbers()
{
    QXmlStreamReader xml(yearSvg(yearIn(), bands()));
    QStringList texts;
    QStringList legend;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        const auto attributes = xml.attributes();
        const auto of = [&](const char *name) { return attributes.value(QLatin1String(name)).toString(); };
        const auto place = QStringLiteral("%1 %2,%3").arg(of("class"), of("x"), of("y"));
        if (xml.name() == QLatin1String("text"))
            texts << place + u' ' + xml.readElementText();
        else if (of("y") == QLatin1String("185"))
            legend << place;
    }
    QCOMPARE(texts, (QStringList{QStringLiteral("streak 20,36 1 day in a row"),
                                 QStringLiteral("end 791,36 longest 3"),
                                 QStringLiteral(" 52,66 Nov"),
                                 QStringLiteral(" 94,66 Dec"),
                                 QStringLiteral(" 150,66 Jan"),
                                 QStringLiteral(" 206,66 Feb"),
                                 QStringLiteral(" 262,66 Mar"),
                                 QStringLiteral(" 332,66 Apr"),
                                 QStringLiteral(" 388,66 May"),
                                 QStringLiteral(" 458,66 Jun"),
                                 QStringLiteral(" 514,66 Jul"),
                                 QStringLiteral(" 570,66 Aug"),
                                 QStringLiteral(" 640,66 Sep"),
                                 QStringLiteral(" 696,66 Oct"),
                                 QStringLiteral(" 752,66 Nov"),
                                 QStringLiteral(" 20,97 Mon"),
                                 QStringLiteral(" 20,125 Wed"),
                                 QStringLiteral(" 20,153 Fri"),
                                 QStringLiteral(" 20,194 29 commits on 5 days of the last 365"),
                                 QStringLiteral("end 685,194 Less"),
                                 QStringLiteral("end 791,194 More")}));
    QCOMPARE(legend,
             (QStringList{QStringLiteral("b0 691,185"), QStringLiteral("b1 705,185"), QStringLiteral("b2 719,185"),
                          QStringLiteral("b3 733,185"), QStringLiteral("b4 747,185")}));
}

void TestYearFormats::thePictureIsAsLargeAsWhatItShows()
{
    QXmlStreamReader xml(yearSvg(yearIn(), bands()));
    QVERIFY(xml.readNextStartElement());
    const auto of = [&](const char *name) { return xml.attributes().value(QLatin1String(name)).toString(); };
    QCOMPARE(of("viewBox"), QStringLiteral("0 0 %1 %2").arg(of("width"), of("height")));
    QCOMPARE(of("height"), QStringLiteral("212"));
}

void TestYearFormats::thePictureIsLightAndDarkAndNamesNoRepository()
{
    const auto picture = yearSvg(yearIn(), bands());
    QVERIFY(picture.contains("prefers-color-scheme:dark"));
    for (const auto &repository : bands().repositories) {
        QVERIFY(!picture.contains(repository.name.toUtf8()));
        QVERIFY(!picture.contains("/home"));
    }
}

VELQUARIN_TEST(TestYearFormats)
#include "tst_yearformats.moc"
