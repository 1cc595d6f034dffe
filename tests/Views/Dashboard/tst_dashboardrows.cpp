// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/DateTexts.h"
#include "Services/Streak/HeatmapGrid.h"
#include "support/FakeClock.h"
#include "support/Offscreen.h"
#include "support/PaintedText.h"
#include "support/Picture.h"
#include "support/RecordingFileViewer.h"
#include "support/TestProgram.h"
#include "support/WhatIsShown.h"
#include "Views/Controls/Decorations.h"
#include "Views/Controls/Style.h"
#include "Views/Controls/Symbols.h"
#include "Views/Controls/Text.h"
#include "Views/Dashboard/DayColor.h"
#include "Views/Dashboard/DayStrip.h"
#include "Views/Dashboard/HeaderSection.h"
#include "Views/Dashboard/RepositoriesSection.h"

#include <QApplication>
#include <QFontMetrics>
#include <QImage>
#include <QMouseEvent>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

#include <functional>

using namespace velquarin;
using namespace velquarin::test;
using style::Accent;
using style::Ink;

namespace {

const Instant now = instant("2026-11-20T12:00:00Z");  // a Friday

// Rows 268 pixels wide in a window of their own.
class Window : public QWidget
{
public:
    explicit Window(QWidget *row)
        : m_layout(this)
    {
        m_layout.setContentsMargins(20, 20, 20, 20);
        m_layout.addWidget(row);
        setFixedWidth(268 + 40);
        show();
    }

private:
    QVBoxLayout m_layout;
};

RepositoryStats stats(const QString &name, qint64 today, std::optional<Instant> lastCommit = {})
{
    RepositoryStats stats;
    stats.path = QStringLiteral("/src/tool");
    stats.name = name;
    stats.todayCommits = today;
    stats.lastCommitDate = lastCommit;
    return stats;
}

CommitDay commitDay(const char *moment, qint64 count)
{
    CommitDay day;
    day.date = instant(moment);
    day.commitCount = count;
    return day;
}

QColor blended(style::Accent accent, double opacity, const QPalette &palette)
{
    const auto over = style::accent(palette, accent);
    const auto under = palette.color(QPalette::Window);
    const auto channel = [opacity](int top, int bottom) { return qRound(top * opacity + bottom * (1 - opacity)); };
    return {channel(over.red(), under.red()), channel(over.green(), under.green()), channel(over.blue(), under.blue())};
}

bool isNearly(const QColor &left, const QColor &right)
{
    return qAbs(left.red() - right.red()) <= 2 && qAbs(left.green() - right.green()) <= 2 &&
           qAbs(left.blue() - right.blue()) <= 2;
}

// A window with one of each that does not paint what it need not.
struct Shown : QWidget
{
    Text text{textLook(style::TypeStyle::Body, Ink::Primary), this};
    SymbolView symbol{QStringLiteral("flame"), 16, Ink::Primary, this};
    DayColumn column{this};

    Shown()
    {
        resize(100, 100);
        for (auto *const widget : findChildren<QWidget *>())
            widget->setGeometry(0, 0, 60, 60);
    }
};

using Change = std::function<QWidget *(Shown &)>;

}  // namespace

class TestDashboardRows : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        failOnAnyWarningOfOurs();
        QApplication::setPalette(lightPalette());
        setFontHeight(13);
        m_viewer.shown.clear();
    }

    void aStatRowSaysItsLabelAndItsValue()
    {
        StatRow row(QStringLiteral("Longest"), QStringLiteral("1 days"), Ink::Primary);
        QCOMPARE(textsIn(row), (QStringList{QStringLiteral("Longest"), QStringLiteral("1 days")}));
    }

    void aStatRowTakesTheWholeWidth()
    {
        auto *const row = new StatRow(QStringLiteral("Longest"), QStringLiteral("30 days"), Ink::Primary);
        const Window window(row);
        const auto texts = row->findChildren<Text *>();
        QCOMPARE(texts.at(0)->width() + texts.at(1)->width() < 200, true);
        QCOMPARE(leftmost(texts)->x(), 0);
        QCOMPARE(rightmost(texts)->geometry().right(), row->rect().right());
    }

    void aStatRowIsSmallAndItsValueStandsOut()
    {
        StatRow row(QStringLiteral("Today"), QStringLiteral("Committed!"), Accent::Green);
        row.resize(row.sizeHint());
        const auto written = paintedTexts(row);
        QCOMPARE(written.size(), 2);
        QCOMPARE(written.first().font, style::font(style::TypeStyle::Caption));
        QCOMPARE(written.first().color, style::ink(row.palette(), Ink::Secondary));
        QCOMPARE(written.last().font, style::font(style::TypeStyle::Caption, QFont::Medium));
        QCOMPARE(written.last().color, style::accentText(row.palette(), Accent::Green));
    }

    void aStatRowShowsANewValueInItsColor()
    {
        StatRow row(QStringLiteral("Today"), QStringLiteral("No commits yet"), Accent::Orange);
        row.setValue(QStringLiteral("Committed!"), Accent::Green);
        QCOMPARE(textsIn(row).last(), QStringLiteral("Committed!"));
        QVERIFY(textNamed(row, QStringLiteral("Committed!"))->tone() == style::Tone(Accent::Green));
    }

    void aDayColumnIsReadAsItsWeekdayAndCount_data()
    {
        QTest::addColumn<qint64>("count");
        QTest::addColumn<QString>("name");
        QTest::newRow("none") << qint64(0) << "Fri, 0";
        QTest::newRow("three") << qint64(3) << "Fri, 3";
        QTest::newRow("a thousand") << qint64(1000) << "Fri, 1000";
    }

    void aDayColumnIsReadAsItsWeekdayAndCount()
    {
        QFETCH(qint64, count);
        DayColumn column;
        column.setDay(commitDay("2026-11-20T00:00:00Z", count), m_texts, m_calendar, now);
        auto *const accessible = QAccessible::queryAccessibleInterface(&column);
        QCOMPARE(accessible->role(), QAccessible::StaticText);
        QTEST(accessible->text(QAccessible::Name), "name");
    }

    void aColumnIsWrittenWithItsWeekdayAndItsCount_data()
    {
        QTest::addColumn<qint64>("count");
        QTest::addColumn<QStringList>("written");
        QTest::newRow("none") << qint64(0) << QStringList{QStringLiteral("Fri")};
        for (const qint64 count : {1, 2, 11, 1000})
            QTest::addRow("%lld", count) << count << QStringList{QStringLiteral("Fri"), QString::number(count)};
    }

    void aColumnIsWrittenWithItsWeekdayAndItsCount()
    {
        QFETCH(qint64, count);
        DayColumn column;
        column.setDay(commitDay("2026-11-20T00:00:00Z", count), m_texts, m_calendar, now);
        column.resize(column.sizeHint());
        QTEST(paintedWords(column), "written");
    }

    void aCountStandsOutFromItsWeekday()
    {
        DayColumn column;
        column.setDay(commitDay("2026-11-20T00:00:00Z", 3), m_texts, m_calendar, now);
        column.resize(column.sizeHint());
        const auto written = paintedTexts(column);
        QCOMPARE(written.size(), 2);
        QCOMPARE(written.first().font, style::font(style::TypeStyle::Caption2));
        QCOMPARE(written.first().color, style::ink(column.palette(), Ink::Secondary));
        QCOMPARE(written.last().font, style::font(style::TypeStyle::Caption2, QFont::DemiBold));
        QCOMPARE(written.last().color, figureColor(3, column.palette()));
    }

    void theWeekdayIsInTheUsersWords()
    {
        const DateTexts german("de_DE", m_calendar);
        DayColumn column;
        column.setDay(commitDay("2026-11-20T00:00:00Z", 1), german, m_calendar, now);
        QVERIFY2(column.weekday().startsWith(QLatin1String("Fr")), qPrintable(column.weekday()));
        QVERIFY(column.weekday() != QLatin1String("Fri"));
    }

    void onlyTodayCarriesTheDot_data()
    {
        QTest::addColumn<QByteArray>("day");
        QTest::addColumn<bool>("isToday");
        QTest::newRow("today") << QByteArray("2026-11-20T00:00:00Z") << true;
        QTest::newRow("yesterday") << QByteArray("2026-11-19T00:00:00Z") << false;
        QTest::newRow("tomorrow") << QByteArray("2026-11-21T00:00:00Z") << false;
    }

    void onlyTodayCarriesTheDot()
    {
        QFETCH(QByteArray, day);
        QFETCH(bool, isToday);
        DayColumn column;
        column.setDay(commitDay(day.constData(), 0), m_texts, m_calendar, now);
        QCOMPARE(column.isToday(), isToday);
        const auto picture = pictureOf(column);
        const auto dot = picture.pixelColor(picture.width() / 2, picture.height() - 3);
        const auto blue = style::accent(column.palette(), Accent::Blue);
        QCOMPARE(isNearly(dot, blue), isToday);
    }

    void theDotsPlaceIsKeptWhereThereIsNone()
    {
        DayColumn today;
        today.setDay(commitDay("2026-11-20T00:00:00Z", 1), m_texts, m_calendar, now);
        DayColumn before;
        before.setDay(commitDay("2026-11-19T00:00:00Z", 1), m_texts, m_calendar, now);
        QCOMPARE(before.sizeHint(), today.sizeHint());
    }

    void aSquareIsFilledByItsCount_data()
    {
        QTest::addColumn<qint64>("count");
        QTest::addColumn<QPalette>("colors");
        for (const qint64 count : {0, 1, 3, 6, 11, 99, 1000}) {
            QTest::addRow("%lld on light", count) << count << lightPalette();
            QTest::addRow("%lld on dark", count) << count << darkPalette();
        }
    }

    void aSquareIsFilledByItsCount()
    {
        QFETCH(qint64, count);
        QFETCH(QPalette, colors);
        DayColumn column;
        column.setPalette(colors);
        column.setDay(commitDay("2026-11-19T00:00:00Z", count), m_texts, m_calendar, now);
        const auto picture = pictureOf(column);
        const auto square = squareIn(column);
        const auto shade = colorForCount(count);
        const auto expected = blended(shade.accent.value(), shade.opacity, colors);
        const auto found = picture.pixelColor(square.left() + square.width() / 2, square.top() + 4);
        QVERIFY2(isNearly(found, expected), qPrintable(found.name() + QLatin1String(" for ") + expected.name()));
        const bool isPaleOnLight = colors == lightPalette() && countBand(count) <= 2;
        QCOMPARE(hasWhite(picture.copy(square)), count >= 1 && !isPaleOnLight);
    }

    void aSquareIs32PointsHighAndWide()
    {
        DayColumn column;
        column.setDay(commitDay("2026-11-19T00:00:00Z", 11), m_texts, m_calendar, now);
        const auto picture = pictureOf(column);
        const auto square = squareIn(column);
        const auto ground = column.palette().color(QPalette::Window);
        QCOMPARE(square.size(), QSize(32, 32));
        const auto middle = square.center();
        for (const auto inside : {QPoint(square.left(), middle.y()), QPoint(square.right(), middle.y()),
                                  QPoint(middle.x(), square.top()), QPoint(middle.x(), square.bottom())})
            QVERIFY(isNearly(picture.pixelColor(inside), style::accent(column.palette(), Accent::Green)));
        for (const auto outside : {QPoint(square.left() - 1, middle.y()), QPoint(square.right() + 1, middle.y()),
                                   QPoint(middle.x(), square.top() - 1), QPoint(middle.x(), square.bottom() + 1)})
            QCOMPARE(picture.pixelColor(outside), ground);
    }

    void aColumnIsDrawnByNumbers()
    {
        DayColumn column;
        column.setDay(commitDay("2026-11-20T00:00:00Z", 3), m_texts, m_calendar, now);
        const auto letters = QFontMetrics(style::font(style::TypeStyle::Caption2)).height();
        QCOMPARE(column.sizeHint(), QSize(32, letters + 4 + 32 + 4 + 4));
        column.resize(38, letters + 44);
        const auto expected = drawnOn(column, [&](QPainter &painter) {
            const QRect square(3, letters + 4, 32, 32);
            auto green = style::accent(column.palette(), Accent::Green);
            green.setAlphaF(0.6F);
            painter.setBrush(green);
            painter.drawRoundedRect(square, 4, 4);
            painter.setBrush(style::accent(column.palette(), Accent::Blue));
            painter.drawEllipse(QRectF(17, letters + 40, 4, 4));
            painter.setPen(style::ink(column.palette(), Ink::Secondary));
            painter.setFont(style::font(style::TypeStyle::Caption2));
            painter.drawText(QRect(0, 0, 38, letters), Qt::AlignCenter, QStringLiteral("Fri"));
            painter.setPen(figureColor(3, column.palette()));
            painter.setFont(style::font(style::TypeStyle::Caption2, QFont::DemiBold));
            painter.drawText(square, Qt::AlignCenter, QStringLiteral("3"));
        });
        QCOMPARE(test::pictureOf(column, 1), expected);
    }

    void aLongNumberIsAsLargeAsItsSquareAllows_data()
    {
        QTest::addColumn<qint64>("count");
        for (qint64 count = 1; count < 100'000'000'000'000'000; count *= 10)
            QTest::addRow("%lld", count) << count;
    }

    void aLongNumberIsAsLargeAsItsSquareAllows()
    {
        QFETCH(qint64, count);
        for (const int height : {4, 13, 17, 26, 39}) {
            setFontHeight(height);
            DayColumn column;
            column.setDay(commitDay("2026-11-20T00:00:00Z", count), m_texts, m_calendar, now);
            column.resize(column.sizeHint());
            auto font = paintedTexts(column).last().font;
            const auto width = [&font, count] { return QFontMetrics(font).horizontalAdvance(QString::number(count)); };
            const auto room = style::points(32) - style::points(5);
            QVERIFY(width() <= room || font.pixelSize() == 1);
            font.setPixelSize(font.pixelSize() + 1);
            QVERIFY(font.pixelSize() > style::points(10) || width() > room);
        }
    }

    void aNumberOfAnyLengthStaysInItsSquare()
    {
        DayColumn column;
        column.setDay(commitDay("2026-11-19T00:00:00Z", 9'000'000'000'000'000'000), m_texts, m_calendar, now);
        const auto picture = pictureOf(column, 60);
        const auto square = squareIn(column);
        QVERIFY(!hasWhite(picture.copy(0, square.top(), square.left(), square.height())));
        QVERIFY(!hasWhite(picture.copy(square.right() + 1, square.top(), 14, square.height())));
    }

    void sevenDaysSpreadFromEdgeToEdge()
    {
        auto *const strip = new DayStrip;
        const Window window(strip);
        strip->setDays(week(7), m_texts, m_calendar, now);
        QTRY_VERIFY(strip->width() > 0 && strip->isVisible());
        QCoreApplication::processEvents();
        const auto columns = strip->findChildren<DayColumn *>();
        QCOMPARE(columns.size(), 7);
        QCOMPARE(columns.first()->x(), 0);
        QCOMPARE(columns.last()->geometry().right(), strip->rect().right());
        const auto middle = [&columns](int index) { return columns.at(index)->geometry().center().x(); };
        for (int index = 2; index < 7; ++index)
            QVERIFY(qAbs((middle(index) - middle(index - 1)) - (middle(1) - middle(0))) <= 1);
    }

    void squaresAreEvenlySpacedAtEveryScale_data()
    {
        QTest::addColumn<double>("scale");
        for (const auto scale : {1.0, 1.25, 1.5, 1.75, 2.0, 3.0})
            QTest::addRow("%g", scale) << scale;
    }

    void squaresAreEvenlySpacedAtEveryScale()
    {
        QFETCH(double, scale);
        DayStrip strip;
        strip.setDays(week(7), m_texts, m_calendar, now);
        strip.resize(274, strip.sizeHint().height());
        strip.show();
        const auto [squares, gaps] = stretchesAcross(strip, scale);
        QCOMPARE(squares.size(), 7);
        QCOMPARE(gaps.size(), 6);
        for (const auto square : squares)
            QCOMPARE(square, qRound(32 * scale));
        const auto [least, most] = std::minmax_element(gaps.begin(), gaps.end());
        QVERIFY2(*most - *least <= 1, qPrintable(QStringLiteral("%1 to %2 pixels").arg(*least).arg(*most)));
    }

    void dividersAreOfOneWidthWhereverTheyStand_data()
    {
        QTest::addColumn<Qt::Orientation>("orientation");
        QTest::addColumn<double>("scale");
        QTest::addColumn<int>("pixels");
        for (const auto orientation : {Qt::Horizontal, Qt::Vertical}) {
            for (const double scale : {1.0, 1.25, 1.5, 2.0})
                QTest::addRow("%s at %g", orientation == Qt::Horizontal ? "across" : "upright", scale)
                    << orientation << scale << (scale == 2 ? 2 : 1);
        }
    }

    void dividersAreOfOneWidthWhereverTheyStand()
    {
        QFETCH(double, scale);
        QFETCH(int, pixels);
        QFETCH(Qt::Orientation, orientation);
        QWidget sheet;
        sheet.resize(40, 40);
        const bool isAcross = orientation == Qt::Horizontal;
        for (const auto place : {3, 10, 18, 25, 33})
            (new Divider(orientation, &sheet))->setGeometry(isAcross ? QRect(0, place, 40, 1) : QRect(place, 0, 1, 40));
        const auto picture = pictureAt(sheet, scale);
        const auto ground = sheet.palette().color(QPalette::Window);
        const auto line = style::divider(sheet.palette());
        QList<int> widths;
        int width = 0;
        for (int step = 0; step < picture.height(); ++step) {
            const auto color = isAcross ? picture.pixelColor(4, step) : picture.pixelColor(step, 4);
            QVERIFY(color == ground || color == line);
            const bool isLine = color == line;
            width += isLine ? 1 : 0;
            if (!isLine && width > 0)
                widths.append(std::exchange(width, 0));
        }
        QCOMPARE(widths, QList<int>(5, pixels));
    }

    void aLongWeekdayWidensNoColumn()
    {
        DayStrip english;
        english.setDays(week(7), m_texts, m_calendar, now);
        DayStrip tamil;
        tamil.setDays(week(7), DateTexts("ta_IN", m_calendar), m_calendar, now);
        QCOMPARE(tamil.sizeHint().width(), english.sizeHint().width());
        QCOMPARE(tamil.findChild<DayColumn *>()->width(), english.findChild<DayColumn *>()->width());
    }

    void aWeekFromWhichADayIsMissingKeepsItsDistances()
    {
        DayStrip whole;
        DayStrip shorter;
        for (auto *const strip : {&whole, &shorter})
            strip->resize(274, 60);
        whole.setDays(week(7), m_texts, m_calendar, now);
        shorter.setDays(week(6), m_texts, m_calendar, now);
        const auto columns = whole.findChildren<DayColumn *>();
        const auto fewer = shorter.findChildren<DayColumn *>();
        QCOMPARE(fewer.size(), 6);
        for (int index = 0; index < 6; ++index)
            QCOMPARE(fewer.at(index)->geometry(), columns.at(index)->geometry());
    }

    void aFigureCanBeReadOnItsSquare_data()
    {
        QTest::addColumn<QPalette>("palette");
        QTest::addColumn<qint64>("count");
        for (const qint64 count : {1, 3}) {
            QTest::addRow("%lld on light", count) << lightPalette() << count;
            QTest::addRow("%lld on a paler light", count) << QPalette(QColor(0xfa, 0xfa, 0xfb)) << count;
            QTest::addRow("%lld on white", count) << QPalette(Qt::white) << count;
        }
    }

    void aFigureCanBeReadOnItsSquare()
    {
        QFETCH(QPalette, palette);
        QFETCH(qint64, count);
        const auto shade = colorForCount(count);
        const auto square = blended(shade.accent.value(), shade.opacity, palette);
        QVERIFY(style::contrast(figureColor(count, palette), square) >= 4.5);
    }

    void figuresAreWhiteInTheDarkAndOnFullGreen()
    {
        for (const qint64 count : {1, 3, 6, 11})
            QCOMPARE(figureColor(count, darkPalette()), QColor(Qt::white));
        for (const qint64 count : {6, 11})
            QCOMPARE(figureColor(count, lightPalette()), QColor(Qt::white));
    }

    void aStripWithoutDaysKeepsTheirPlaces()
    {
        DayStrip empty;
        DayStrip full;
        empty.setDays({}, m_texts, m_calendar, now);
        full.setDays(week(7), m_texts, m_calendar, now);
        QCOMPARE(empty.sizeHint(), full.sizeHint());
        for (auto *const strip : {&empty, &full}) {
            strip->setPalette(lightPalette());
            strip->resize(274, strip->sizeHint().height());
        }
        QVERIFY(textsIn(empty).isEmpty());
        const auto picture = test::pictureOf(empty, 1);
        QVERIFY(!test::pictureOf(full, 1).isNull());  // which places its columns
        const auto ghost = blended(Accent::Grey, 0.12, lightPalette());
        for (auto *const column : full.findChildren<DayColumn *>()) {
            const auto middle = column->mapTo(&full, squareIn(*column).center());
            QVERIFY(isNearly(picture.pixelColor(middle), ghost));
        }
    }

    void aRowSaysWhatTodayBrought_data()
    {
        QTest::addColumn<qint64>("today");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("isGreen");
        QTest::newRow("nothing, and the last commit is told") << qint64(0) << "2 hr. ago" << false;
        QTest::newRow("one") << qint64(1) << "1 today" << true;
        QTest::newRow("three") << qint64(3) << "3 today" << true;
        QTest::newRow("a thousand") << qint64(1000) << "1000 today" << true;
    }

    void aRowSaysWhatTodayBrought()
    {
        QFETCH(qint64, today);
        QFETCH(QString, text);
        RepoRow row(m_viewer);
        row.setStats(stats(QStringLiteral("Work"), today, now - std::chrono::hours(2)), m_texts, now);
        QCOMPARE(textsIn(row), (QStringList{QStringLiteral("Work"), text}));
        const auto green = style::Tone(Accent::Green);
        QTEST(textNamed(row, text)->tone() == green, "isGreen");
        QCOMPARE(row.accessibleName(), QStringLiteral("Work, ") + text);
    }

    void aRepositoryWithoutCommitsSaysSo()
    {
        RepoRow row(m_viewer);
        row.setStats(stats({}, 0), m_texts, now);
        QCOMPARE(textsIn(row), (QStringList{QStringLiteral("tool"), QStringLiteral("No commits")}));
        QVERIFY(textNamed(row, QStringLiteral("No commits"))->tone() == style::Tone(Ink::Secondary));
    }

    void aLongNameIsCutAndTheTextBesideItKeepsItsPlace_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("two hundred letters") << QString(200, u'w');
        QTest::newRow("two lines") << QStringLiteral("one\ntwo ").repeated(30);
    }

    void aLongNameIsCutAndTheTextBesideItKeepsItsPlace()
    {
        QFETCH(QString, name);
        auto *const row = new RepoRow(m_viewer);
        const Window window(row);
        row->setStats(stats(QStringLiteral("i"), 3), m_texts, now);
        QCoreApplication::processEvents();
        const auto *const activity = textNamed(*row, QStringLiteral("3 today"));
        const auto place = activity->geometry();
        const auto height = row->height();

        row->setStats(stats(name, 3), m_texts, now);
        QCoreApplication::processEvents();
        QCOMPARE(activity->geometry(), place);
        QCOMPARE(row->height(), height);
        const auto *const cut = row->findChild<Text *>(QStringLiteral("repositoryName"));
        QVERIFY(cut->width() < cut->sizeHint().width());
        QVERIFY(cut->geometry().right() + style::points(8) <= place.left());
        QCOMPARE(textsIn(*row).first(), name);
    }

    void theWholeRectangleIsClickable_data()
    {
        QTest::addColumn<double>("x");
        QTest::newRow("the folder") << 0.03;
        QTest::newRow("the name") << 0.12;
        QTest::newRow("the gap") << 0.5;
        QTest::newRow("the text at the end") << 0.95;
    }

    void theWholeRectangleIsClickable()
    {
        QFETCH(double, x);
        auto *const row = new RepoRow(m_viewer);
        Window window(row);
        row->setStats(stats(QStringLiteral("Work"), 3), m_texts, now);
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        const QPoint inRow(int(x * row->width()), row->height() / 2);
        QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, row->mapTo(&window, inRow));
        QCOMPARE(m_viewer.shown, QStringList{QStringLiteral("/src/tool")});
    }

    void enterAndSpaceShowTheFolder_data()
    {
        QTest::addColumn<Qt::Key>("key");
        QTest::newRow("Enter") << Qt::Key_Return;
        QTest::newRow("Enter on the number pad") << Qt::Key_Enter;
        QTest::newRow("Space") << Qt::Key_Space;
    }

    void enterAndSpaceShowTheFolder()
    {
        QFETCH(Qt::Key, key);
        RepoRow row(m_viewer);
        row.setStats(stats(QStringLiteral("Work"), 3), m_texts, now);
        QTest::keyClick(&row, key);
        QCOMPARE(m_viewer.shown, QStringList{QStringLiteral("/src/tool")});
    }

    void aScreenReaderShowsTheFolder()
    {
        RepoRow row(m_viewer);
        row.setStats(stats(QStringLiteral("Work"), 3), m_texts, now);
        QCOMPARE(QAccessible::queryAccessibleInterface(&row)->role(), QAccessible::Button);
        pressAccessibly(row);
        QTRY_COMPARE(m_viewer.shown, QStringList{QStringLiteral("/src/tool")});
    }

    void underThePointerARowTurnsBlueAndNothingMoves()
    {
        auto *const row = new RepoRow(m_viewer);
        Window window(row);
        row->setStats(stats(QStringLiteral("Work"), 0, now), m_texts, now);
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        const auto *const name = textNamed(*row, QStringLiteral("Work"));
        const auto places = placesIn(window);

        QTest::mouseMove(window.windowHandle(), row->geometry().center());
        QTRY_VERIFY(name->tone() == style::Tone(Accent::Blue));
        QCOMPARE(placesIn(window), places);
        QTest::mouseMove(window.windowHandle(), QPoint(2, 2));
        QTRY_VERIFY(name->tone() == style::Tone(Ink::Primary));
    }

    void underThePointerTheFolderAndTheNameAreBlue()
    {
        RepoRow row(m_viewer);
        row.setStats(stats(QStringLiteral("Work"), 0, now), m_texts, now);
        row.resize(row.sizeHint());
        const auto quiet = style::ink(row.palette(), Ink::Secondary);
        const auto blue = style::accentText(row.palette(), Accent::Blue);
        QVERIFY(hasColor(folderOf(row), quiet) && !hasColor(folderOf(row), blue));
        QEnterEvent enter({5, 5}, {5, 5}, {5, 5});
        QApplication::sendEvent(&row, &enter);
        QVERIFY(hasColor(folderOf(row), blue) && !hasColor(folderOf(row), quiet));
        QCOMPARE(paintedTexts(row).first().color, blue);
        QEvent leave(QEvent::Leave);
        QApplication::sendEvent(&row, &leave);
        QVERIFY(hasColor(folderOf(row), quiet) && !hasColor(folderOf(row), blue));
    }

    void aRowThatIsHiddenUnderThePointerComesBackQuiet()
    {
        RepoRow row(m_viewer);
        row.setStats(stats(QStringLiteral("Work"), 0, now), m_texts, now);
        row.show();
        QEnterEvent enter({5, 5}, {5, 5}, {5, 5});
        QApplication::sendEvent(&row, &enter);
        row.hide();
        QCOMPARE(textNamed(row, QStringLiteral("Work"))->tone(), style::Tone(Ink::Primary));
    }

    void theFiguresBesideTheStreakAreInTheirColours()
    {
        HeaderSection header;
        header.setFigures({.longestStreak = 3, .totalCommitsThisWeek = 4, .repositories = 5});
        const auto toneOf = [&](const char *text) { return textNamed(header, QString::fromUtf8(text))->tone(); };
        for (const auto *const figure : {"3 days", "4 commits", "5 tracked"})
            QCOMPARE(toneOf(figure), style::Tone(Ink::Primary));
        QCOMPARE(toneOf("No commits yet"), style::Tone(Accent::Orange));
        header.setFigures({.hasCommittedToday = true});
        QCOMPARE(toneOf("Committed!"), style::Tone(Accent::Green));
    }

    void aRowIsWrittenInItsTwoSizes()
    {
        RepoRow row(m_viewer);
        row.setStats(stats(QStringLiteral("Work"), 3), m_texts, now);
        row.resize(row.sizeHint());
        const auto written = paintedTexts(row);
        QCOMPARE(paintedWords(row), (QStringList{QStringLiteral("Work"), QStringLiteral("3 today")}));
        QCOMPARE(written.first().font, style::font(style::TypeStyle::Subheadline));
        QCOMPARE(written.first().color, style::ink(row.palette(), Ink::Primary));
        QCOMPARE(written.last().font, style::font(style::TypeStyle::Caption));
        QCOMPARE(written.last().color, style::accentText(row.palette(), Accent::Green));
    }

    void aRowKeepsItsDistances()
    {
        auto *const row = new RepoRow(m_viewer);
        const Window window(row);
        row->setStats(stats(QStringLiteral("Work"), 3), m_texts, now);
        QCoreApplication::processEvents();
        const auto folder = row->findChild<SymbolView *>()->geometry();
        const auto name = textNamed(*row, QStringLiteral("Work"))->geometry();
        const auto activity = textNamed(*row, QStringLiteral("3 today"))->geometry();
        QCOMPARE(folder.left(), PlainButton::outset());
        QCOMPARE(name.left() - folder.right() - 1, 8);
        QCOMPARE(row->rect().right() - activity.right(), PlainButton::outset());
        QCOMPARE(row->height(),
                 std::max({folder.height(), name.height(), activity.height()}) + 2 * (2 + PlainButton::outset()));
    }

    void aRowThatIsHiddenForgetsThePointer()
    {
        auto *const row = new RepoRow(m_viewer);
        Window window(row);
        row->setStats(stats(QStringLiteral("Work"), 0, now), m_texts, now);
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QTest::mouseMove(window.windowHandle(), row->geometry().center());
        const auto *const name = textNamed(*row, QStringLiteral("Work"));
        QTRY_VERIFY(name->tone() == style::Tone(Accent::Blue));
        window.hide();
        QVERIFY(name->tone() == style::Tone(Ink::Primary));
    }

    void aPressThatBeganOnAnotherRepositoryComesToNothing()
    {
        RepoRow row(m_viewer);
        row.setStats(stats(QStringLiteral("Work"), 3), m_texts, now);
        row.resize(row.sizeHint());
        QTest::mousePress(&row, Qt::LeftButton);
        auto other = stats(QStringLiteral("Other"), 3);
        other.path = QStringLiteral("/src/other");
        row.setStats(other, m_texts, now);
        QTest::mouseRelease(&row, Qt::LeftButton);
        QCOMPARE(m_viewer.shown, QStringList());
    }

    void aPressThatBeganOnAnotherRepositoryStaysOverHoweverThePointerMoves()
    {
        RepoRow row(m_viewer);
        row.setStats(stats(QStringLiteral("Work"), 3), m_texts, now);
        row.resize(row.sizeHint());
        row.show();
        QVERIFY(QTest::qWaitForWindowExposed(&row));
        QTest::mousePress(&row, Qt::LeftButton);
        auto other = stats(QStringLiteral("Other"), 3);
        other.path = QStringLiteral("/src/other");
        row.setStats(other, m_texts, now);
        QMouseEvent move(QEvent::MouseMove, QPointF(5, 5), row.mapToGlobal(QPointF(5, 5)), Qt::NoButton, Qt::LeftButton,
                         Qt::NoModifier);
        QApplication::sendEvent(&row, &move);
        QTest::mouseRelease(&row, Qt::LeftButton);
        QCOMPARE(m_viewer.shown, QStringList());
    }

    void aScreenReadersPressThatBeganOnAnotherRepositoryStaysOver()
    {
        RepoRow row(m_viewer);
        row.setStats(stats(QStringLiteral("Work"), 3), m_texts, now);
        row.show();
        QVERIFY(QTest::qWaitForWindowExposed(&row));
        const QSignalSpy clicked(&row, &QAbstractButton::clicked);
        pressAccessibly(row);
        auto other = stats(QStringLiteral("Other"), 3);
        other.path = QStringLiteral("/src/other");
        row.setStats(other, m_texts, now);
        QTRY_COMPARE(clicked.size(), 1);
        QCOMPARE(m_viewer.shown, QStringList());
    }

    void aKeyThatIsHeldDownShowsTheFolderOnce_data()
    {
        QTest::addColumn<Qt::Key>("key");
        QTest::newRow("Enter") << Qt::Key_Return;
        QTest::newRow("Space") << Qt::Key_Space;
    }

    void aKeyThatIsHeldDownShowsTheFolderOnce()
    {
        QFETCH(Qt::Key, key);
        RepoRow row(m_viewer);
        row.setStats(stats(QStringLiteral("Work"), 3), m_texts, now);
        QTest::keyPress(&row, key);
        for (int repeat = 0; repeat < 3; ++repeat) {
            QKeyEvent again(QEvent::KeyPress, key, Qt::NoModifier, {}, true);
            QApplication::sendEvent(&row, &again);
        }
        QTest::keyRelease(&row, key);
        QCOMPARE(m_viewer.shown, QStringList{QStringLiteral("/src/tool")});
    }

    void whatIsWrittenFromTheLeftIsReadFromTheLeftEverywhere_data()
    {
        QTest::addColumn<QString>("text");
        for (const auto *const text : {"Longest", "4 days", "+2 more", "1 day ago", "Updated 2 min, 13 sec ago"})
            QTest::newRow(text) << QString::fromLatin1(text);
    }

    void whatIsWrittenFromTheLeftIsReadFromTheLeftEverywhere()
    {
        QFETCH(QString, text);
        Text shown(textLook(style::TypeStyle::Caption, Ink::Primary));
        shown.setText(text);
        shown.setAlignment(Qt::AlignHCenter);
        shown.resize(shown.sizeHint());
        const auto expected = shown.grab().toImage();
        QApplication::setLayoutDirection(Qt::RightToLeft);
        const auto mirrored = shown.grab().toImage();
        QApplication::setLayoutDirection(Qt::LeftToRight);
        QCOMPARE(mirrored, expected);
    }

    void aWeekdayIsReadFromTheLeftEverywhere()
    {
        const DateTexts french("fr_FR", m_calendar);
        DayColumn column;
        column.setDay(commitDay("2026-11-20T00:00:00Z", 0), french, m_calendar, now);
        column.resize(column.sizeHint());
        const auto expected = column.grab().toImage();
        QApplication::setLayoutDirection(Qt::RightToLeft);
        const auto mirrored = column.grab().toImage();
        QApplication::setLayoutDirection(Qt::LeftToRight);
        QCOMPARE(mirrored, expected);
    }

    void aNameStandsOnOneLineWhateverBreaksItHolds_data()
    {
        QTest::addColumn<QString>("lineBreak");
        QTest::newRow("line feed") << QStringLiteral("\n");
        QTest::newRow("carriage return") << QStringLiteral("\r");
        QTest::newRow("both") << QStringLiteral("\r\n");
        QTest::newRow("vertical tab") << QStringLiteral("\v");
        QTest::newRow("form feed") << QStringLiteral("\f");
        QTest::newRow("tab") << QStringLiteral("\t");
        QTest::newRow("line separator") << QString(QChar(QChar::LineSeparator));
        QTest::newRow("paragraph separator") << QString(QChar(QChar::ParagraphSeparator));
    }

    void aNameStandsOnOneLineWhateverBreaksItHolds()
    {
        QFETCH(QString, lineBreak);
        Text name(textLook(style::TypeStyle::Subheadline, Ink::Primary));
        name.setText(QStringLiteral("Eins"));
        name.resize(200, name.sizeHint().height());
        const auto first = name.grab().toImage();
        name.setText(QStringLiteral("Eins") + lineBreak + QStringLiteral("Zwei"));
        const auto both = name.grab().toImage();
        // What stood there without the second word stands there with it.
        const QRect word(
            0, 0, QFontMetrics(style::font(style::TypeStyle::Subheadline)).horizontalAdvance(QStringLiteral("Ein")),
            name.height());
        QCOMPARE(both.copy(word), first.copy(word));
        QVERIFY(both.copy(word.right() + 20, 0, 100, name.height()) !=
                first.copy(word.right() + 20, 0, 100, name.height()));
    }

    void aPressOutlastsANewReadingOfItsRepository()
    {
        RepoRow row(m_viewer);
        row.setStats(stats(QStringLiteral("Work"), 3), m_texts, now);
        row.resize(row.sizeHint());
        QTest::mousePress(&row, Qt::LeftButton);
        row.setStats(stats(QStringLiteral("Work"), 4), m_texts, now);
        QTest::mouseRelease(&row, Qt::LeftButton);
        QCOMPARE(m_viewer.shown, QStringList{QStringLiteral("/src/tool")});
    }

    void theFocusCanBeSeen()
    {
        auto *const row = new RepoRow(m_viewer);
        Window window(row);
        row->setStats(stats(QStringLiteral("Work"), 3), m_texts, now);
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        row->clearFocus();
        auto expected = test::pictureOf(*row, 1);
        QPainter painter(&expected);
        style::paintFocusRing(painter, QRectF(row->rect()), row->palette());
        painter.end();
        row->setFocus(Qt::TabFocusReason);
        QCOMPARE(test::pictureOf(*row, 1), expected);
    }

    void aTextOfTheSameSizeMovesNothing()
    {
        auto *const text = new Text(textLook(style::TypeStyle::Body, Ink::Primary));
        Window window(text);
        text->setText(QStringLiteral("6"));
        QCoreApplication::processEvents();
        PaintCounter paints;
        bool isAsked = false;
        LayoutWatch watch(window, isAsked);
        text->setText(QStringLiteral("9"));
        QTRY_COMPARE(paints.of(text), 1);
        QVERIFY(!isAsked);
    }

    void figuresStayWithinTheirCloseLine()
    {
        const TextLook look{.size = 400};
        const auto [above, below] = closeLineOf(look);
        QImage image(2400, 800, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.setFont(style::systemFont(look.size, look.weight));
        painter.drawText(QPoint(10, 500), QStringLiteral("0123456789"));
        painter.end();
        QImage blank(image.width(), 1, image.format());
        blank.fill(Qt::white);
        const auto isBlank = [&](int row) { return image.copy(0, row, image.width(), 1) == blank; };
        QVERIFY(isBlank(500 - above - 1) && isBlank(500 + below));
        QVERIFY(!isBlank(500 + below - 2));
    }

    void aTextFollowsTheFontOfTheDesktop()
    {
        Text text(textLook(style::TypeStyle::Body, Ink::Primary));
        text.setText(QStringLiteral("6 commits"));
        const auto before = text.sizeHint();
        setFontHeight(26);
        QApplication::processEvents();
        Text anew(textLook(style::TypeStyle::Body, Ink::Primary));
        anew.setText(text.text());
        QCOMPARE(text.sizeHint(), anew.sizeHint());
        QVERIFY(text.sizeHint().width() > before.width() && text.sizeHint().height() > before.height());
        QCOMPARE(paintedTexts(text).last().font.pixelSize(), 26);
    }

    void whatIsShownOtherwiseIsPaintedOnce_data()
    {
        QTest::addColumn<Change>("change");
        const auto row = [](const char *name, const Change &change) { QTest::newRow(name) << change; };
        row("another text", [](Shown &shown) {
            shown.text.setText(QStringLiteral("9"));
            return &shown.text;
        });
        row("a text of another colour", [](Shown &shown) {
            shown.text.setTone(Ink::Secondary);
            return &shown.text;
        });
        row("another symbol", [](Shown &shown) {
            shown.symbol.setName(QStringLiteral("gear"));
            return &shown.symbol;
        });
        row("a symbol of another colour", [](Shown &shown) {
            shown.symbol.setTone(Ink::Secondary);
            return &shown.symbol;
        });
        row("a symbol that is filled", [](Shown &shown) {
            shown.symbol.setFill(Accent::Blue);
            return &shown.symbol;
        });
        row("a day a little further on", [](Shown &shown) {
            shown.column.setOffset(0.5);
            return &shown.column;
        });
    }

    void whatIsShownOtherwiseIsPaintedOnce()
    {
        QFETCH(Change, change);
        Shown shown;
        shown.show();
        QVERIFY(QTest::qWaitForWindowExposed(&shown));
        QCoreApplication::processEvents();
        PaintCounter paints;
        const auto *const widget = change(shown);
        QTRY_COMPARE(paints.of(widget), 1);
        QCOMPARE(change(shown), widget);
        QCoreApplication::processEvents();
        QCOMPARE(paints.of(widget), 1);
    }

    void aSymbolThatIsFilledOrNoMoreIsPaintedAgain()
    {
        Shown shown;
        shown.symbol.setFill(Accent::Red);
        shown.show();
        QVERIFY(QTest::qWaitForWindowExposed(&shown));
        QCoreApplication::processEvents();
        PaintCounter paints;
        shown.symbol.setTone(Accent::Red);
        QTRY_COMPARE(paints.of(&shown.symbol), 1);
        QCOMPARE(shown.symbol.color(), style::accentText(shown.palette(), Accent::Red));
        for (const auto accent : {Accent::Red, Accent::Blue}) {
            paints.forget();
            shown.symbol.setFill(accent);
            QTRY_COMPARE(paints.of(&shown.symbol), 1);
            QCOMPARE(shown.symbol.color(), style::accent(shown.palette(), accent));
        }
    }

    void aTextInAnotherPlaceIsPaintedAgain()
    {
        Shown shown;
        shown.show();
        QVERIFY(QTest::qWaitForWindowExposed(&shown));
        QCoreApplication::processEvents();
        PaintCounter paints;
        shown.text.setAlignment(Qt::AlignHCenter);
        QTRY_COMPARE(paints.of(&shown.text), 1);
    }

    void aDayIsPaintedAgainWhereItReadsOtherwise_data()
    {
        QTest::addColumn<QByteArray>("day");
        QTest::addColumn<qint64>("count");
        QTest::addColumn<QByteArray>("today");
        QTest::addColumn<int>("paintings");
        const auto row = [](const char *name, const char *day, qint64 count, const char *today, int paintings) {
            QTest::newRow(name) << QByteArray(day) << count << QByteArray(today) << paintings;
        };
        row("nothing new", "2026-11-20T00:00:00Z", 3, "2026-11-20T12:00:00Z", 0);
        row("a week later", "2026-11-27T00:00:00Z", 3, "2026-11-27T12:00:00Z", 0);
        row("another weekday", "2026-11-21T00:00:00Z", 3, "2026-11-21T12:00:00Z", 1);
        row("another count", "2026-11-20T00:00:00Z", 4, "2026-11-20T12:00:00Z", 1);
        row("a day that is over", "2026-11-20T00:00:00Z", 3, "2026-11-21T12:00:00Z", 1);
    }

    void aDayIsPaintedAgainWhereItReadsOtherwise()
    {
        QFETCH(QByteArray, day);
        QFETCH(qint64, count);
        QFETCH(QByteArray, today);
        Shown shown;
        shown.column.setDay(commitDay("2026-11-20T00:00:00Z", 3), m_texts, m_calendar, now);
        shown.show();
        QVERIFY(QTest::qWaitForWindowExposed(&shown));
        QCoreApplication::processEvents();
        PaintCounter paints;
        shown.column.setDay(commitDay(day.constData(), count), m_texts, m_calendar, instant(today.constData()));
        QCoreApplication::processEvents();
        QTEST(paints.of(&shown.column), "paintings");
    }

    void theSameTextIsNotPaintedAgain()
    {
        auto *const text = new Text(textLook(style::TypeStyle::Body, Ink::Primary));
        Window window(text);
        text->setText(QStringLiteral("6"));
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QCoreApplication::processEvents();
        PaintCounter paints;
        text->setText(QStringLiteral("6"));
        text->setTone(Ink::Primary);
        QCoreApplication::processEvents();
        QCOMPARE(paints.ofAll(), 0);
    }

private:
    // Notes that a layout was asked to do its work again.
    class LayoutWatch : public QObject
    {
    public:
        LayoutWatch(QWidget &window, bool &isAsked)
            : m_isAsked(isAsked)
        {
            window.installEventFilter(this);
        }
        bool eventFilter(QObject * /*watched*/, QEvent *event) override
        {
            m_isAsked = m_isAsked || event->type() == QEvent::LayoutRequest;
            return false;
        }

    private:
        bool &m_isAsked;
    };

    static void setFontHeight(int pixels)
    {
        auto font = QApplication::font();
        font.setPixelSize(pixels);
        QApplication::setFont(font);
    }

    static Text *textNamed(const QWidget &parent, const QString &text)
    {
        for (auto *const child : parent.findChildren<Text *>()) {
            if (child->text() == text)
                return child;
        }
        return nullptr;
    }

    static Text *leftmost(const QList<Text *> &texts)
    {
        return *std::min_element(texts.begin(), texts.end(), [](auto *one, auto *two) { return one->x() < two->x(); });
    }

    static Text *rightmost(const QList<Text *> &texts)
    {
        return *std::max_element(texts.begin(), texts.end(), [](auto *one, auto *two) { return one->x() < two->x(); });
    }

    static QList<CommitDay> week(int days)
    {
        QList<CommitDay> week;
        for (int day = 0; day < days; ++day) {
            CommitDay next;
            next.date = instant("2026-11-14T00:00:00Z") + std::chrono::hours(24 * day);
            next.commitCount = day;
            week.append(next);
        }
        return week;
    }

    // Every square stands 8 pixels above the lower edge: a gap and the dot.
    static QRect squareIn(const DayColumn &column)
    {
        return {(column.width() - 32) / 2, column.height() - 8 - 32, 32, 32};
    }

    static QImage pictureOf(DayColumn &column, int width = 38)
    {
        column.resize(width, column.sizeHint().height());
        QImage image(column.size(), QImage::Format_ARGB32_Premultiplied);
        column.render(&image);
        return image;
    }

    static QImage pictureAt(QWidget &widget, double scale)
    {
        QImage image(int(std::ceil(widget.width() * scale)), int(std::ceil(widget.height() * scale)),
                     QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(scale);
        image.fill(widget.palette().color(QPalette::Window));
        widget.render(&image);
        return image;
    }

    // How wide the squares are and the gaps between them, along a line above the counts.
    static std::pair<QList<int>, QList<int>> stretchesAcross(DayStrip &strip, double scale)
    {
        const auto picture = pictureAt(strip, scale);
        const auto line = int((strip.height() - 8 - 32 + 5) * scale);
        const auto ground = strip.palette().color(QPalette::Window);
        QList<int> squares;
        QList<int> gaps;
        bool wasGround = true;
        for (int x = 0; x < picture.width(); ++x) {
            const bool isGround = picture.pixelColor(x, line) == ground;
            if (isGround != wasGround)
                (isGround ? gaps : squares).append(0);
            if (!squares.isEmpty())
                ++(isGround ? gaps : squares).last();
            wasGround = isGround;
        }
        if (!gaps.isEmpty())
            gaps.removeLast();
        return {squares, gaps};
    }

    static QImage folderOf(RepoRow &row) { return row.findChild<SymbolView *>()->grab().toImage(); }

    static bool hasColor(const QImage &image, const QColor &color)
    {
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (image.pixelColor(x, y) == color)
                    return true;
            }
        }
        return false;
    }

    static bool hasWhite(const QImage &image) { return hasColor(image, Qt::white); }

    RecordingFileViewer m_viewer;
    Calendar m_calendar = calendarIn("UTC");
    DateTexts m_texts{"en_US", m_calendar};
};

VELQUARIN_WINDOW_TEST(TestDashboardRows)
#include "tst_dashboardrows.moc"
