// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Dashboard/YearHeatmapView.h"

#include "Platform/DateTexts.h"

#include "support/FakeClock.h"
#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QAccessible>
#include <QApplication>
#include <QTest>

using namespace velquarin;
using namespace velquarin::test;

namespace {

// A Friday.
const char *const noon = "2026-11-20T12:00:00Z";
constexpr int today = 369;

void show(YearHeatmapView &view, const DayCounts &counts)
{
    const auto calendar = calendarIn("UTC");
    view.setContents(counts, calendar, instant(noon), DateTexts("en_US", calendar));
}

struct Announcement
{
    QAccessible::Event type;
    int child;
    friend bool operator==(const Announcement &, const Announcement &) = default;
};

QList<Announcement> &announcements()
{
    static QList<Announcement> all;
    return all;
}

void record(QAccessibleEvent *event)
{
    if (event->type() == QAccessible::Focus || event->type() == QAccessible::NameChanged)
        announcements().append({event->type(), event->child()});
}

}  // namespace

//! What a screen reader hears. It needs a display: without one Qt says nothing to anybody.
class TestHeatmapAnnouncements : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        failOnAnyWarning();
        QTRY_VERIFY(QAccessible::isActive());
        announcements().clear();
        QAccessible::installUpdateHandler(record);
    }

    void cleanup() { QAccessible::installUpdateHandler(nullptr); }

    void theDayThatTheKeysReachIsTheLastWord()
    {
        YearHeatmapView view;
        show(view, {});
        view.show();
        view.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&view));
        view.clearFocus();
        view.setFocus(Qt::TabFocusReason);
        const Announcement onToday{QAccessible::Focus, today};
        QTRY_VERIFY(!announcements().isEmpty() && announcements().last() == onToday);
        QTest::keyClick(&view, Qt::Key_Left);
        QTRY_COMPARE(announcements().last(), (Announcement{QAccessible::Focus, today - 7}));
    }

    void nothingIsSaidOfADayOnceTheFocusIsElsewhere()
    {
        YearHeatmapView view;
        show(view, {});
        view.show();
        view.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&view));
        view.clearFocus();
        QApplication::processEvents();
        announcements().clear();
        view.setFocus(Qt::TabFocusReason);
        view.clearFocus();
        QApplication::processEvents();
        QVERIFY(!announcements().contains(Announcement{QAccessible::Focus, today}));
    }

    void aNewCommitChangesTheNameOfItsDayAlone()
    {
        YearHeatmapView view;
        show(view, {});
        announcements().clear();
        show(view, {{instant("2026-11-20T00:00:00Z"), 1}});
        QCOMPARE(announcements(), QList({Announcement{QAccessible::NameChanged, today}}));
    }
};

VELQUARIN_WINDOW_TEST(TestHeatmapAnnouncements)
#include "tst_heatmapannouncements.moc"
