// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "support/Offscreen.h"
#include "support/PaintedText.h"
#include "support/TestProgram.h"
#include "Views/Controls/Decorations.h"
#include "Views/Controls/Style.h"
#include "Views/Controls/Switch.h"
#include "Views/Controls/Text.h"
#include "Views/Settings/GeneralTab.h"
#include "Views/Settings/TabParts.h"

#include "SettingsWindow.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QFontInfo>
#include <QLabel>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>

using namespace velquarin;
using namespace velquarin::test;

namespace {

const auto startAtLogin = QStringLiteral("Launch at login");
const auto showCount = QStringLiteral("Show streak count in menu bar");
const auto remind = QStringLiteral("Remind me if streak is at risk");
const auto period = QStringLiteral("Check for new commits");
const auto counted = QStringLiteral("Count commits");

Picker *picker(const SettingsWindow &window)
{
    return window.view->findChild<Picker *>(QStringLiteral("refreshPeriod"));
}

Picker *countedPicker(const SettingsWindow &window)
{
    return window.view->findChild<Picker *>(QStringLiteral("countedCommits"));
}

// The period of the one timer that repeats.
double refreshPeriod(const Engine &engine)
{
    const auto &live = engine.timers.live();
    const auto repeating = std::ranges::find_if(live, &FakeTimers::Live::repeats);
    return repeating == live.end() ? 0 : repeating->interval.count();
}

}  // namespace

class TestGeneralTab : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { failOnAnyWarningOfOurs(); }
    void fiveSectionsStandInTheirOrder();
    void everySwitchWritesItsValueAtOnce();
    void everySwitchFollowsItsValue();
    void theReminderExplainsItself();
    void fivePeriodsAreOffered();
    void aPeriodIsStoredAndTheTimerRunsByIt_data();
    void aPeriodIsStoredAndTheTimerRunsByIt();
    void choosingThePeriodThatIsChosenStartsNoTimerAnew();
    void anotherPeriodStartsNoRefresh();
    void aForeignPeriodIsKeptAndNoneIsChosen();
    void theWheelChangesNoPeriod();
    void fourKindsOfCommitsAreOffered();
    void whatCountsIsStored_data();
    void whatCountsIsStored();
    void theChoiceOfCommitsFollowsItsValues();
    void choosingWhatIsChosenStoresNothing();
    void aLoginItemThatCannotBeRegisteredMovesTheSwitchBack();
    void theLoginItemIsReadAndNotWrittenAtFirst();
    void theVersionIsDimmed();
    void whatIsWrittenHasItsSizeAndColour_data();
    void whatIsWrittenHasItsSizeAndColour();
    void theSectionsKeepTheirDistances();
    void whatStandsInASectionFillsItsRow();
    void aSwitchHasItsKnobWhereItsValueIs();
    void aSwitchTakesTheRoomOfItsLabelAndItsTrack();
    void aSwitchIsDrawnByNumbers_data();
    void aSwitchIsDrawnByNumbers();
    void aSwitchWithTheFocusHasARing();
    void aClickOnASwitchLeavesTheFocusWhereItIs();
    void aGroupHasRoundCorners();
    void nothingIsOutOfReachWithALargeFont();
    void withADesktopsFontNothingScrolls_data();
    void withADesktopsFontNothingScrolls();
    void aScreenReaderWorksTheSwitches();
    void aSwitchStandsOutFromItsGround_data();
    void aSwitchStandsOutFromItsGround();
};

void TestGeneralTab::fiveSectionsStandInTheirOrder()
{
    SettingsWindow window;
    window.open(SettingsWindow::General);
    const auto *const tab = window.view->findChild<QScrollArea *>(QStringLiteral("generalTab"));
    const auto names = namesOf(*tab->widget(), {QAccessible::StaticText, QAccessible::CheckBox, QAccessible::ComboBox});
    QCOMPARE(names,
             (QStringList{QStringLiteral("Startup"), startAtLogin, QStringLiteral("Display"), showCount,
                          QStringLiteral("Notifications"), remind, QStringLiteral("Refresh"), period,
                          QStringLiteral("Every 5 minutes"), counted, QStringLiteral("By everyone, default branch"),
                          QStringLiteral("About"), QStringLiteral("Version"), QStringLiteral("1.0.0")}));
}

void TestGeneralTab::everySwitchWritesItsValueAtOnce()
{
    SettingsWindow window;
    window.open(SettingsWindow::General);
    SettingsWindow::click(window.control<Switch>(startAtLogin));
    SettingsWindow::click(window.control<Switch>(showCount));
    SettingsWindow::click(window.control<Switch>(remind));
    QCOMPARE(window.loginItem.status(), LoginItemStatus::Enabled);
    QCOMPARE(window.engine.settings.showStreakInMenuBar(), false);
    QCOMPARE(window.engine.settings.notifyOnStreakRisk(), false);
    QCOMPARE(window.engine.preferences.value(QStringLiteral("showStreakInMenuBar")), PreferenceValue(false));
    QCOMPARE(window.engine.preferences.value(QStringLiteral("notifyOnStreakRisk")), PreferenceValue(false));
}

void TestGeneralTab::everySwitchFollowsItsValue()
{
    SettingsWindow window;
    window.open(SettingsWindow::General);
    window.engine.settings.setShowStreakInMenuBar(false);
    window.engine.settings.setNotifyOnStreakRisk(false);
    window.launchAtLogin->setIsEnabled(true);
    SettingsWindow::settle();
    QVERIFY(!window.control<Switch>(showCount)->isChecked());
    QVERIFY(!window.control<Switch>(remind)->isChecked());
    QVERIFY(window.control<Switch>(startAtLogin)->isChecked());
}

void TestGeneralTab::theReminderExplainsItself()
{
    SettingsWindow window;
    window.open(SettingsWindow::General);
    QCOMPARE(window.control<Switch>(remind)->toolTip(),
             QStringLiteral("Get notified in the evening if you haven't committed today"));
}

void TestGeneralTab::fivePeriodsAreOffered()
{
    SettingsWindow window;
    window.open(SettingsWindow::General);
    const auto *const offers = picker(window);
    QStringList offered;
    for (int index = 0; index < offers->count(); ++index)
        offered.append(offers->itemText(index));
    QCOMPARE(offered, (QStringList{QStringLiteral("Every minute"), QStringLiteral("Every 5 minutes"),
                                   QStringLiteral("Every 15 minutes"), QStringLiteral("Every 30 minutes"),
                                   QStringLiteral("Every hour")}));
    QCOMPARE(offers->currentText(), QStringLiteral("Every 5 minutes"));
}

void TestGeneralTab::aPeriodIsStoredAndTheTimerRunsByIt_data()
{
    QTest::addColumn<QString>("label");
    QTest::addColumn<double>("seconds");
    QTest::newRow("a minute") << QStringLiteral("Every minute") << 60.0;
    QTest::newRow("a quarter of an hour") << QStringLiteral("Every 15 minutes") << 900.0;
    QTest::newRow("half an hour") << QStringLiteral("Every 30 minutes") << 1800.0;
    QTest::newRow("an hour") << QStringLiteral("Every hour") << 3600.0;
}

void TestGeneralTab::aPeriodIsStoredAndTheTimerRunsByIt()
{
    QFETCH(QString, label);
    QFETCH(double, seconds);
    SettingsWindow window;
    window.open(SettingsWindow::General);
    picker(window)->setCurrentText(label);
    QCOMPARE(window.engine.settings.refreshInterval(), seconds);
    QCOMPARE(window.engine.preferences.value(QStringLiteral("refreshInterval")), PreferenceValue(seconds));
    QCOMPARE(refreshPeriod(window.engine), seconds);
}

void TestGeneralTab::choosingThePeriodThatIsChosenStartsNoTimerAnew()
{
    SettingsWindow window;
    window.open(SettingsWindow::General);
    const auto before = window.engine.timers.live().back().number;
    auto *const popUp = picker(window);
    popUp->showPopup();
    QTest::keyClick(popUp->view(), Qt::Key_Return);
    SettingsWindow::settle();
    QCOMPARE(popUp->currentText(), QStringLiteral("Every 5 minutes"));
    QCOMPARE(window.engine.timers.live().back().number, before);
}

void TestGeneralTab::anotherPeriodStartsNoRefresh()
{
    SettingsWindow window;
    window.open(SettingsWindow::General);
    QSignalSpy refreshes(&window.engine.manager, &StreakManager::isRefreshingWillChange);
    picker(window)->setCurrentText(QStringLiteral("Every hour"));
    SettingsWindow::settle();
    QCOMPARE(refreshes.count(), 0);
}

void TestGeneralTab::aForeignPeriodIsKeptAndNoneIsChosen()
{
    SettingsWindow window;
    window.engine.settings.setRefreshInterval(42.5);
    window.open(SettingsWindow::General);
    QCOMPARE(picker(window)->currentIndex(), -1);
    QCOMPARE(picker(window)->currentText(), QString());
    QCOMPARE(window.engine.settings.refreshInterval(), 42.5);
}

void TestGeneralTab::theWheelChangesNoPeriod()
{
    SettingsWindow window;
    window.open(SettingsWindow::General);
    auto *const popUp = picker(window);
    popUp->setFocus();
    QWheelEvent wheel(popUp->rect().center(), popUp->mapToGlobal(popUp->rect().center()), {}, {0, -120}, Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(popUp, &wheel);
    QCOMPARE(window.engine.settings.refreshInterval(), 300.0);
}

void TestGeneralTab::fourKindsOfCommitsAreOffered()
{
    SettingsWindow window;
    window.open(SettingsWindow::General);
    const auto *const picker = countedPicker(window);
    QStringList texts;
    for (int index = 0; index < picker->count(); ++index)
        texts << picker->itemText(index);
    QCOMPARE(texts, (QStringList{QStringLiteral("By everyone, default branch"), QStringLiteral("By me, default branch"),
                                 QStringLiteral("By everyone, all branches"), QStringLiteral("By me, all branches")}));
    QCOMPARE(picker->currentIndex(), 0);
}

void TestGeneralTab::whatCountsIsStored_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("authors");
    QTest::addColumn<QString>("branches");
    QTest::newRow("mine") << 1 << QStringLiteral("me") << QStringLiteral("default");
    QTest::newRow("all branches") << 2 << QStringLiteral("everyone") << QStringLiteral("all");
    QTest::newRow("mine, all branches") << 3 << QStringLiteral("me") << QStringLiteral("all");
}

void TestGeneralTab::whatCountsIsStored()
{
    QFETCH(const int, index);
    QFETCH(const QString, authors);
    QFETCH(const QString, branches);
    SettingsWindow window;
    window.open(SettingsWindow::General);
    countedPicker(window)->setCurrentIndex(index);
    QCOMPARE(window.engine.preferences.value(QStringLiteral("countedAuthors")), PreferenceValue(authors));
    QCOMPARE(window.engine.preferences.value(QStringLiteral("countedBranches")), PreferenceValue(branches));
}

void TestGeneralTab::theChoiceOfCommitsFollowsItsValues()
{
    SettingsWindow window;
    window.open(SettingsWindow::General);
    window.engine.settings.setCountedBranches(CountedBranches::All);
    QTRY_COMPARE(countedPicker(window)->currentIndex(), 2);
    window.engine.settings.setCountedAuthors(CountedAuthors::Me);
    QTRY_COMPARE(countedPicker(window)->currentIndex(), 3);
    QCOMPARE(window.engine.settings.countedBranches(), CountedBranches::All);
}

void TestGeneralTab::choosingWhatIsChosenStoresNothing()
{
    SettingsWindow window;
    window.open(SettingsWindow::General);
    window.engine.preferences.operations.clear();
    Q_EMIT countedPicker(window)->currentIndexChanged(0);
    QCOMPARE(window.engine.preferences.operations, QStringList());
}

void TestGeneralTab::aLoginItemThatCannotBeRegisteredMovesTheSwitchBack()
{
    SettingsWindow window;
    window.loginItem.failures = 1;
    window.open(SettingsWindow::General);
    auto *const launch = window.control<Switch>(startAtLogin);
    SettingsWindow::click(launch);
    SettingsWindow::settle();
    QVERIFY(!launch->isChecked());
    QVERIFY(!window.launchAtLogin->isEnabled());
}

void TestGeneralTab::theLoginItemIsReadAndNotWrittenAtFirst()
{
    SettingsWindow window;
    QCOMPARE(window.loginItem.registerItem(), LoginItemOutcome::Done);
    window.loginItem.calls.clear();
    window.open(SettingsWindow::General);
    QVERIFY(window.control<Switch>(startAtLogin)->isChecked());
    QVERIFY(!window.loginItem.calls.contains(QStringLiteral("register")));
    SettingsWindow::click(window.control<Switch>(startAtLogin));
    QCOMPARE(window.loginItem.status(), LoginItemStatus::NotRegistered);
}

void TestGeneralTab::theVersionIsDimmed()
{
    SettingsWindow window;
    window.open(SettingsWindow::General);
    QCOMPARE(window.control<Text>(QStringLiteral("1.0.0"))->tone(), style::Tone(style::Ink::Secondary));
    QCOMPARE(window.control<Text>(QStringLiteral("Version"))->tone(), style::Tone(style::Ink::Primary));
}

void TestGeneralTab::whatIsWrittenHasItsSizeAndColour_data()
{
    using style::TypeStyle;
    QTest::addColumn<QString>("text");
    QTest::addColumn<TypeStyle>("type");
    QTest::addColumn<int>("weight");
    QTest::addColumn<style::Tone>("tone");
    const auto row = [](const char *text, TypeStyle type, QFont::Weight weight, style::Ink ink) {
        QTest::newRow(text) << QString::fromLatin1(text) << type << int(weight) << style::Tone(ink);
    };
    row("Startup", TypeStyle::Subheadline, QFont::DemiBold, style::Ink::Secondary);
    row("About", TypeStyle::Subheadline, QFont::DemiBold, style::Ink::Secondary);
    row("Launch at login", TypeStyle::Body, QFont::Normal, style::Ink::Primary);
    row("Check for new commits", TypeStyle::Body, QFont::Normal, style::Ink::Primary);
    row("Version", TypeStyle::Body, QFont::Normal, style::Ink::Primary);
    row("1.0.0", TypeStyle::Body, QFont::Normal, style::Ink::Secondary);
}

void TestGeneralTab::whatIsWrittenHasItsSizeAndColour()
{
    QFETCH(QString, text);
    QFETCH(style::TypeStyle, type);
    QFETCH(int, weight);
    QFETCH(style::Tone, tone);
    const FontOfPixels font(13);
    SettingsWindow window;
    window.open(SettingsWindow::General);
    const auto written = paintedTexts(*window.view);
    const auto found = std::ranges::find(written, text, &PaintedText::text);
    QVERIFY(found != written.end());
    QCOMPARE(found->font, style::font(type, QFont::Weight(weight)));
    QCOMPARE(found->color, style::textColor(window.view->palette(), tone));
}

void TestGeneralTab::theSectionsKeepTheirDistances()
{
    const FontOfPixels font(13);
    SettingsWindow window;
    window.open(SettingsWindow::General);
    const auto sections = window.view->findChildren<FormSection *>();
    QCOMPARE(sections.size(), 5);
    QCOMPARE(sections.first()->pos(), QPoint(16, 16));
    for (int index = 0; index < 5; ++index) {
        const auto *const section = sections.at(index);
        const auto title = section->findChild<Text *>(QString(), Qt::FindDirectChildrenOnly)->geometry();
        const auto group = section->findChild<TintedGround *>()->geometry();
        QVERIFY(index == 0 || section->y() - sections.at(index - 1)->geometry().bottom() - 1 == 6);
        QCOMPARE(group.top() - title.bottom() - 1, 3);
        QCOMPARE(group.height(), index == 3 ? 2 * 28 + 1 : 28);
    }
    const auto version = window.placeOf(window.control<Text>(QStringLiteral("Version")));
    QCOMPARE(version.left() - window.placeOf(sections.last()).left(), 10);
    const auto number = window.placeOf(window.control<Text>(QStringLiteral("1.0.0")));
    QCOMPARE(window.placeOf(sections.last()).right() - number.right(), 10);
}

void TestGeneralTab::whatStandsInASectionFillsItsRow()
{
    const FontOfPixels font(13);
    SettingsWindow window;
    window.open(SettingsWindow::General);
    const auto width = window.view->width();
    for (const auto &name : {startAtLogin, showCount, remind}) {
        const auto *const control = window.control<Switch>(name);
        const auto place = window.placeOf(control);
        const auto group = window.placeOf(control->parentWidget());
        QCOMPARE(place.left(), 16 + 10 - 4);
        QCOMPARE(place.right(), width - 1 - 16 - 10 + 4);
        QCOMPARE(place.height(), control->sizeHint().height());
        QCOMPARE(place.top() - group.top(), (group.height() - place.height()) / 2);
    }
    for (const auto &[name, chosen] : {std::pair{period, picker(window)}, std::pair{counted, countedPicker(window)}}) {
        const auto label = window.placeOf(window.control<QLabel>(name));
        const auto choice = window.placeOf(chosen);
        QCOMPARE(label.left(), 16 + 10);
        QCOMPARE(choice.right(), width - 1 - 16 - 10);
        QVERIFY(qAbs(label.center().y() - choice.center().y()) <= 1);
    }
}

void TestGeneralTab::aSwitchHasItsKnobWhereItsValueIs()
{
    const FontOfPixels font(13);
    Switch control(QStringLiteral("Label"), Switch::Size::Regular, nullptr);
    control.resize(200, control.sizeHint().height());
    for (const bool isOn : {false, true}) {
        control.setChecked(isOn);
        const auto picture = pictureOf(control, 1);
        const auto middle = control.height() / 2;
        // The track is 32 points wide, 4 from the edge, and the knob takes 15 of them.
        const auto left = picture.pixelColor(200 - 4 - 32 + 9, middle);
        const auto right = picture.pixelColor(200 - 4 - 9, middle);
        const auto track = style::switchTrack(control.palette(), isOn);
        QCOMPARE(left, isOn ? track : QColor(Qt::white));
        QCOMPARE(right, isOn ? QColor(Qt::white) : track);
        QCOMPARE(picture.pixelColor(200 - 4 - 32 - 1, middle), control.palette().color(QPalette::Window));
    }
}

void TestGeneralTab::aSwitchTakesTheRoomOfItsLabelAndItsTrack()
{
    const FontOfPixels font(13);
    const auto label = QStringLiteral("Label");
    const auto letters = [&label](style::TypeStyle type) {
        return QFontMetrics(style::font(type)).size(Qt::TextShowMnemonic, label).width();
    };
    const Switch regular(label, Switch::Size::Regular, nullptr);
    const Switch small(label, Switch::Size::Small, nullptr);
    QCOMPARE(regular.sizeHint().width(), letters(style::TypeStyle::Body) + 8 + 32 + 2 * 4);
    QCOMPARE(small.sizeHint().width(), letters(style::TypeStyle::Subheadline) + 8 + 26 + 2 * 4);
}

void TestGeneralTab::aSwitchIsDrawnByNumbers_data()
{
    QTest::addColumn<Switch::Size>("size");
    QTest::addColumn<bool>("isOn");
    QTest::addColumn<QRectF>("track");
    QTest::addColumn<QRectF>("knob");
    using Size = Switch::Size;
    QTest::newRow("off") << Size::Regular << false << QRectF(64, 15, 32, 19) << QRectF(66, 17, 15, 15);
    QTest::newRow("on") << Size::Regular << true << QRectF(64, 15, 32, 19) << QRectF(79, 17, 15, 15);
    QTest::newRow("small, off") << Size::Small << false << QRectF(70, 17, 26, 15) << QRectF(72, 19, 11, 11);
    QTest::newRow("small, on") << Size::Small << true << QRectF(70, 17, 26, 15) << QRectF(83, 19, 11, 11);
}

void TestGeneralTab::aSwitchIsDrawnByNumbers()
{
    QFETCH(Switch::Size, size);
    QFETCH(bool, isOn);
    QFETCH(QRectF, track);
    QFETCH(QRectF, knob);
    const FontOfPixels font(13);
    Switch control(QStringLiteral("On"), size, nullptr);
    control.setChecked(isOn);
    control.resize(100, 49);
    const auto letters = size == Switch::Size::Small ? style::TypeStyle::Subheadline : style::TypeStyle::Body;
    const auto expected = drawnOn(control, [&](QPainter &painter) {
        painter.setBrush(style::switchTrack(control.palette(), isOn));
        painter.drawRoundedRect(track, track.height() / 2, track.height() / 2);
        painter.setBrush(Qt::white);
        painter.drawEllipse(knob);
        painter.setPen(style::ink(control.palette(), style::Ink::Primary));
        painter.setFont(style::font(letters));
        const QFontMetrics body(style::font(style::TypeStyle::Body));
        painter.drawText(4, (49 - body.height()) / 2 + body.ascent(), QStringLiteral("On"));
    });
    QCOMPARE(pictureOf(control, 1), expected);
}

void TestGeneralTab::aSwitchWithTheFocusHasARing()
{
    const FontOfPixels font(13);
    Switch control(QStringLiteral("On"), Switch::Size::Regular, nullptr);
    control.resize(100, 49);
    control.show();
    control.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&control));
    control.clearFocus();
    auto expected = pictureOf(control, 1);
    QPainter painter(&expected);
    style::paintFocusRing(painter, QRectF(0, 0, 100, 49), control.palette());
    painter.end();
    control.setFocus();
    QCOMPARE(pictureOf(control, 1), expected);
}

void TestGeneralTab::aClickOnASwitchLeavesTheFocusWhereItIs()
{
    Switch control(QStringLiteral("On"), Switch::Size::Regular, nullptr);
    control.show();
    control.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&control));
    control.clearFocus();
    QTest::mouseClick(&control, Qt::LeftButton);
    QVERIFY(control.isChecked());
    QVERIFY(!control.hasFocus());
}

void TestGeneralTab::aGroupHasRoundCorners()
{
    const FontOfPixels font(13);
    TintedGround group;
    group.resize(60, 40);
    const auto expected = drawnOn(group, [&group](QPainter &painter) {
        painter.setBrush(style::groupGround(group.palette()));
        painter.drawRoundedRect(QRectF(0, 0, 60, 40), 8, 8);
    });
    QCOMPARE(pictureOf(group, 1), expected);
}

void TestGeneralTab::nothingIsOutOfReachWithALargeFont()
{
    const auto before = QApplication::font();
    auto large = before;
    large.setPixelSize(26);
    QApplication::setFont(large);
    SettingsWindow window;
    window.open(SettingsWindow::General);
    auto *const tab = window.view->findChild<QScrollArea *>(QStringLiteral("generalTab"));
    QVERIFY(tab->widget()->width() <= tab->viewport()->width());
    QCOMPARE(tab->widget()->height() - tab->viewport()->height(), tab->verticalScrollBar()->maximum());
    QApplication::setFont(before);
}

void TestGeneralTab::withADesktopsFontNothingScrolls_data()
{
    QTest::addColumn<QFont>("font");
    for (const auto *const family : {"DejaVu Sans", "Noto Sans"}) {
        for (const int pixels : {13, 15}) {
            QFont font{QString::fromLatin1(family)};
            font.setPixelSize(pixels);
            QTest::addRow("%s, %d pixels", family, pixels) << font;
        }
    }
}

void TestGeneralTab::withADesktopsFontNothingScrolls()
{
    QFETCH(QFont, font);
    if (!QFontInfo(font).exactMatch())
        QSKIP("this font is not installed here");
    const auto before = QApplication::font();
    QApplication::setFont(font);
    SettingsWindow window;
    window.open(SettingsWindow::General);
    const auto beyond =
        window.view->findChild<QScrollArea *>(QStringLiteral("generalTab"))->verticalScrollBar()->maximum();
    QApplication::setFont(before);
    QCOMPARE(beyond, 0);
}

void TestGeneralTab::aScreenReaderWorksTheSwitches()
{
    SettingsWindow window;
    window.open(SettingsWindow::General);
    auto *const accessible = QAccessible::queryAccessibleInterface(window.control<Switch>(showCount));
    QCOMPARE(accessible->role(), QAccessible::CheckBox);
    QVERIFY(accessible->state().checked);
    accessible->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    QVERIFY(!accessible->state().checked);
    QCOMPARE(window.engine.settings.showStreakInMenuBar(), false);
}

void TestGeneralTab::aSwitchStandsOutFromItsGround_data()
{
    QTest::addColumn<QPalette>("palette");
    QTest::newRow("on a light ground") << lightPalette();
    QTest::newRow("on a dark ground") << darkPalette();
}

void TestGeneralTab::aSwitchStandsOutFromItsGround()
{
    QFETCH(QPalette, palette);
    for (const bool isOn : {false, true}) {
        const auto track = style::switchTrack(palette, isOn);
        QVERIFY(style::contrast(track, Qt::white) >= 3);
        QVERIFY(style::contrast(track, style::groupGround(palette)) >= 3);
    }
}

VELQUARIN_WINDOW_TEST(TestGeneralTab)
#include "tst_generaltab.moc"
