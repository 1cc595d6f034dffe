// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "support/Offscreen.h"
#include "support/PaintedText.h"
#include "support/Picture.h"
#include "support/TestProgram.h"
#include "Views/Controls/Decorations.h"
#include "Views/Controls/Style.h"
#include "Views/Controls/Switch.h"
#include "Views/Settings/TabParts.h"

#include "SettingsWindow.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QDir>
#include <QPointer>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QStackedWidget>
#include <QTemporaryDir>

#include <algorithm>
#include <optional>

using namespace velquarin;
using namespace velquarin::test;

namespace {

const QStringList tabs{QStringLiteral("Repositories"), QStringLiteral("Auto-Discover"), QStringLiteral("General")};

QString focusedName()
{
    auto *const focused = QApplication::focusWidget();
    return focused == nullptr ? QString() : SettingsWindow::nameOf(focused);
}

// What Tab stops at, in order, until it comes round.
QStringList tabStops(const SettingsWindow &window)
{
    window.view->findChild<TabStrip *>()->setFocus();
    QStringList stops;
    for (int stop = 0; stop < 30; ++stop) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        if (qobject_cast<TabStrip *>(QApplication::focusWidget()) != nullptr)
            break;
        stops.append(focusedName());
    }
    return stops;
}

QAccessibleInterface *stripOf(const SettingsWindow &window)
{
    return QAccessible::queryAccessibleInterface(window.view->findChild<TabStrip *>());
}

// As where a theme brings a font of its own.
class NoWordOfFonts : public QObject
{
public:
    bool eventFilter(QObject * /*watched*/, QEvent *event) override
    {
        return event->type() == QEvent::FontChange || event->type() == QEvent::ApplicationFontChange;
    }
};

}  // namespace

class TestSettingsView : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { failOnAnyWarningOfOurs(); }
    void itHasThreeTabsAndAFixedSize();
    void theTabsStandOverALine();
    void theSelectedTabStandsOut();
    void everyTabHasItsSymbol();
    void aTabIsDrawnByNumbers_data();
    void aTabIsDrawnByNumbers();
    void whatIsInOneRowStandsOnOneBaseline_data();
    void whatIsInOneRowStandsOnOneBaseline();
    void theSelectedTabHasARingWhileTheStripHasTheFocus();
    void aClickTurnsTheTabsAndLeavesTheFocusWhereItIs();
    void aTabShowsThatThePointerIsOnIt();
    void theTabsAreNeverSqueezed();
    void itOpensWithTheFirstTabWhateverWasShownLast();
    void nothingHasTheFocusAtFirst();
    void escapeClosesIt();
    void controlAndTabTurnTheTabs();
    void theKeysOfTheTabsWorkWhereverTheFocusIs_data();
    void theKeysOfTheTabsWorkWhereverTheFocusIs();
    void escapeInAPopUpClosesThePopUpAlone();
    void mnemonicsTurnTheTabs();
    void aScreenReaderTurnsTheTabs();
    void tabStopsFollowTheEye_data();
    void tabStopsFollowTheEye();
    void everyControlHasAName();
    void aScreenReaderIsToldWhichTabIsSelected();
    void aTabHasTheFocusOnlyWhileTheStripHasIt();
    void aScreenReaderTurnsToATab();
    void aScreenReaderFindsATabAsItIsShown();
    void aTabHoldsNothingAndSaysWhatCanBeDoneWithIt();
    void aTabThatIsGoneSaysSo();
    void noTabOutlivesItsStripForAScreenReader();
    void aTabIsNoneWhileItsStripIsTakenApart();
    void theGapsOfATabGiveWayToItsParts_data();
    void theGapsOfATabGiveWayToItsParts();
    void aPickerIsLabelledOnce();
    void aListSaysWhatItIsOf();
    void enterPressesTheButtonThatHasTheFocus_data();
    void enterPressesTheButtonThatHasTheFocus();
    void anotherFontBuildsItAnewAndKeepsItsTab();
    void whatChangesSizesBuildsItAnew_data();
    void whatChangesSizesBuildsItAnew();
    void theSameFontBuildsNothingAnew();
    void theOptionsNeedNoScrolling_data();
    void theOptionsNeedNoScrolling();
    void symbolsInButtonsFollowTheFont();
    void aPaletteChangeShowsAtOnce();
    void fromTheRightItIsMirrored();
    void closedItTurnsNothingAndWakesNobody();
    void itMayGoWhileAnythingIsOpenInIt();
    void anotherFontMayComeWhileAnythingIsOpenInIt();
};

void TestSettingsView::itHasThreeTabsAndAFixedSize()
{
    SettingsWindow window;
    window.open();
    QCOMPARE(window.view->windowTitle(), QStringLiteral("Settings"));
    QCOMPARE(window.view->accessibleName(), QStringLiteral("Settings"));
    QCOMPARE(namesOf(*window.view, {QAccessible::PageTab}), tabs);
    const QSize expected(style::points(450), style::points(380));
    QCOMPARE(window.view->minimumSize(), expected);
    QCOMPARE(window.view->maximumSize(), expected);
    QVERIFY(window.says(QStringLiteral("Tracked Repositories")));
}

void TestSettingsView::theTabsStandOverALine()
{
    const FontOfPixels font(13);
    SettingsWindow window;
    window.open();
    auto *const strip = window.view->findChild<TabStrip *>();
    const auto place = window.placeOf(strip);
    const auto line = window.placeOf(window.view->findChild<Divider *>(QString(), Qt::FindDirectChildrenOnly));
    QCOMPARE(place.top(), 4);
    QVERIFY(qAbs(place.left() + place.right() - window.view->rect().right()) <= 1);
    QCOMPARE(line, QRect(0, place.bottom() + 1 + 4, 450, 1));
    const QFontMetrics letters(style::font(style::TypeStyle::Subheadline));
    for (int tab = 0; tab < strip->count(); ++tab) {
        const auto title = letters.size(Qt::TextShowMnemonic, strip->tabText(tab));
        QCOMPARE(strip->tabRect(tab).size(),
                 QSize(std::max(title.width() + 4 * 5, 88), 5 + 21 + 2 + title.height() + 5));
    }
}

void TestSettingsView::theSelectedTabStandsOut()
{
    const FontOfPixels font(13);
    SettingsWindow window;
    window.open(SettingsWindow::AutoDiscover);
    auto *const strip = window.view->findChild<TabStrip *>();
    const auto written = paintedTexts(*strip);
    QCOMPARE(paintedWords(*strip), tabs);
    const auto palette = strip->palette();
    for (int tab = 0; tab < 3; ++tab) {
        const bool isSelected = tab == SettingsWindow::AutoDiscover;
        QCOMPARE(written.at(tab).font, style::font(style::TypeStyle::Subheadline));
        QCOMPARE(written.at(tab).color, style::ink(palette, isSelected ? style::Ink::Primary : style::Ink::Secondary));
        const auto ground = pictureOf(*strip, 1).pixelColor(strip->tabRect(tab).topLeft() + QPoint(40, 3));
        QCOMPARE(ground, isSelected ? style::selectedGround(palette) : palette.color(QPalette::Window));
    }
}

void TestSettingsView::everyTabHasItsSymbol()
{
    const FontOfPixels font(13);
    SettingsWindow window;
    window.open(SettingsWindow::General);
    auto *const strip = window.view->findChild<TabStrip *>();
    const auto picture = pictureOf(*strip, 1);
    const auto color = style::ink(strip->palette(), style::Ink::Secondary);
    for (int tab = 0; tab < 2; ++tab) {
        const auto name = QStringList{QStringLiteral("folder"), QStringLiteral("eye")}.at(tab);
        const auto size = style::symbolSize(name, 15);
        const auto whole = strip->tabRect(tab);
        const QRect place(whole.x() + (whole.width() - size.width()) / 2, whole.y() + 5, size.width(), size.height());
        const auto expected = pictureOfSymbol(name, place, color, *strip).copy(place);
        QVERIFY(!isPlain(expected));
        QCOMPARE(picture.copy(place), expected);
    }
}

void TestSettingsView::aTabIsDrawnByNumbers_data()
{
    QTest::addColumn<bool>("isUnderPointer");
    QTest::addColumn<int>("pointed");
    QTest::newRow("with the pointer elsewhere") << false << 1;
    QTest::newRow("with the pointer on the other tab") << true << 1;
    QTest::newRow("with the pointer on the selected tab") << true << 0;
}

void TestSettingsView::aTabIsDrawnByNumbers()
{
    QFETCH(bool, isUnderPointer);
    QFETCH(int, pointed);
    const FontOfPixels font(13);
    TabStrip strip;
    for (const auto *const title : {"One", "Two"})
        strip.addTab(QLatin1String(title), QStringLiteral("gear"));
    strip.resize(strip.sizeHint());
    strip.setAttribute(Qt::WA_UnderMouse, isUnderPointer);
    QCursor::setPos(strip.mapToGlobal(strip.tabRect(pointed).center()));
    QCOMPARE(strip.tabRect(1).x(), 88);
    const auto letters = strip.height() - 5 - 21 - 2 - 5;
    const auto symbol = style::symbolSize(QStringLiteral("gear"), 15);
    const auto expected = drawnOn(strip, [&](QPainter &painter) {
        painter.setFont(style::font(style::TypeStyle::Subheadline));
        for (int tab = 0; tab < 2; ++tab) {
            const auto x = 88 * tab;
            const bool isPointed = isUnderPointer && tab == pointed;
            painter.setPen(Qt::NoPen);
            painter.setBrush(tab == 0 ? style::selectedGround(strip.palette()) : style::hoveredGround(strip.palette()));
            if (tab == 0 || isPointed)
                painter.drawRoundedRect(QRect(x + 1, 1, 86, strip.height() - 2), 6, 6);
            const auto ink = style::ink(strip.palette(), tab == 0 ? style::Ink::Primary : style::Ink::Secondary);
            const auto accent = style::desktopAccentOn(style::selectedGround(strip.palette()), strip.palette());
            style::paintSymbol(painter, QStringLiteral("gear"),
                               QRectF(QPoint(x + (88 - symbol.width()) / 2, 5), symbol), tab == 0 ? accent : ink);
            painter.setPen(ink);
            painter.drawText(QRect(x, 28, 88, letters), Qt::AlignHCenter | Qt::AlignTop, strip.tabText(tab));
        }
    });
    QCOMPARE(pictureOf(strip, 1), expected);
}

void TestSettingsView::whatIsInOneRowStandsOnOneBaseline_data()
{
    QTest::addColumn<int>("tab");
    QTest::addColumn<QString>("left");
    QTest::addColumn<QString>("right");
    const auto row = [](SettingsWindow::Tab tab, const char *left, const char *right) {
        QTest::newRow(left) << int(tab) << QString::fromUtf8(left) << QString::fromUtf8(right);
    };
    row(SettingsWindow::Repositories, "Tracked Repositories", "1 repos");
    row(SettingsWindow::Repositories, "a", "Auto");
    row(SettingsWindow::AutoDiscover, "Watched Folders", "Auto-discover repos");
    row(SettingsWindow::AutoDiscover, "Depth", "5");
    row(SettingsWindow::General, "Check for new commits", "Every 5 minutes");
    row(SettingsWindow::General, "Count commits", "By everyone, default branch");
    row(SettingsWindow::General, "Version", "1.0.0");
}

void TestSettingsView::whatIsInOneRowStandsOnOneBaseline()
{
    QFETCH(int, tab);
    QFETCH(QString, left);
    QFETCH(QString, right);
    const FontOfPixels font(13);
    SettingsWindow window;
    window.engine.settings.addRepository(QStringLiteral("/src/a"), true);
    window.engine.settings.addWatchedFolder(QStringLiteral("/src/b"), 5);
    window.open(SettingsWindow::Tab(tab));
    const auto written = paintedTexts(*window.view);
    const auto first = std::ranges::find(written, left, &PaintedText::text);
    const auto second = std::ranges::find(written, right, &PaintedText::text);
    QVERIFY(first != written.end() && second != written.end());
    QVERIFY(first->place.x() < second->place.x());
    QVERIFY2(qAbs(second->place.y() - first->place.y()) <= 0.5, qPrintable(QString::number(second->place.y())));
}

void TestSettingsView::theSelectedTabHasARingWhileTheStripHasTheFocus()
{
    const FontOfPixels font(13);
    SettingsWindow window;
    window.open(SettingsWindow::AutoDiscover);
    auto *const strip = window.view->findChild<TabStrip *>();
    const auto before = pictureOf(*strip, 1);
    strip->setFocus();
    const auto height = strip->height();
    const auto ring = drawnOn(*strip, [&](QPainter &painter) {
        painter.drawImage(0, 0, before);
        style::paintFocusRing(painter, strip->tabRect(SettingsWindow::AutoDiscover).adjusted(1, 1, -1, -1),
                              strip->palette());
    });
    // The letters are painted over it, which counts where they touch it.
    for (const auto &part : {QRect(0, 0, strip->width(), 4), QRect(0, height - 4, strip->width(), 4)})
        QCOMPARE(pictureOf(*strip, 1).copy(part), ring.copy(part));
}

void TestSettingsView::aClickTurnsTheTabsAndLeavesTheFocusWhereItIs()
{
    SettingsWindow window;
    window.open();
    auto *const strip = window.view->findChild<TabStrip *>();
    QTest::mouseClick(strip, Qt::LeftButton, {}, strip->tabRect(SettingsWindow::General).center());
    SettingsWindow::settle();
    QVERIFY(window.says(QStringLiteral("1.0.0")));
    QCOMPARE(QApplication::focusWidget(), window.view.get());
}

void TestSettingsView::aTabShowsThatThePointerIsOnIt()
{
    SettingsWindow window;
    window.open();
    const auto *const strip = window.view->findChild<TabStrip *>();
    const auto moveTo = [&](QPoint place) { QTest::mouseMove(window.view->windowHandle(), place); };
    const auto placeOf = [&](int tab) { return strip->mapTo(window.view.get(), strip->tabRect(tab).center()); };
    moveTo(QPoint(2, 200));
    SettingsWindow::settle();
    PaintCounter paints;
    for (const auto place : {placeOf(1), placeOf(2), QPoint(2, 200)}) {
        paints.forget();
        moveTo(place);
        QTRY_VERIFY(paints.of(strip) > 0);
    }
}

void TestSettingsView::theTabsAreNeverSqueezed()
{
    const FontOfPixels font(13);
    QWidget window;
    TabStrip strip(&window);
    for (const auto *const title : {"One", "Two", "Three"})
        strip.addTab(QLatin1String(title), QStringLiteral("gear"));
    QCOMPARE(strip.minimumSizeHint().width(), 3 * 88);
    strip.resize(100, strip.sizeHint().height());
    window.show();
    QCOMPARE(strip.tabRect(2).width(), 88);
    for (const auto *const child : strip.findChildren<QWidget *>())
        QVERIFY(!child->isVisible());
}

void TestSettingsView::itOpensWithTheFirstTabWhateverWasShownLast()
{
    SettingsWindow window;
    window.open(SettingsWindow::General);
    window.view->close();
    window.view->show();
    SettingsWindow::settle();
    QCOMPARE(window.view->findChild<TabStrip *>()->currentIndex(), 0);
    QVERIFY(window.says(QStringLiteral("Tracked Repositories")));
}

void TestSettingsView::nothingHasTheFocusAtFirst()
{
    SettingsWindow window;
    window.open();
    QCOMPARE(QApplication::focusWidget(), window.view.get());
}

void TestSettingsView::escapeClosesIt()
{
    SettingsWindow window;
    window.open();
    QTest::keyClick(window.view.get(), Qt::Key_Escape);
    QVERIFY(!window.view->isVisible());
}

void TestSettingsView::controlAndTabTurnTheTabs()
{
    SettingsWindow window;
    window.open();
    auto *const strip = window.view->findChild<TabStrip *>();
    const auto press = [&window](Qt::Key key, Qt::KeyboardModifiers more = {}) {
        QTest::keyClick(window.view.get(), key, Qt::ControlModifier | more);
    };
    press(Qt::Key_Tab);
    QCOMPARE(strip->currentIndex(), 1);
    press(Qt::Key_PageDown);
    QCOMPARE(strip->currentIndex(), 2);
    press(Qt::Key_PageDown);
    QCOMPARE(strip->currentIndex(), 0);
    press(Qt::Key_Backtab, Qt::ShiftModifier);
    QCOMPARE(strip->currentIndex(), 2);
    press(Qt::Key_PageUp);
    QCOMPARE(strip->currentIndex(), 1);
}

void TestSettingsView::theKeysOfTheTabsWorkWhereverTheFocusIs_data()
{
    QTest::addColumn<int>("tab");
    QTest::addColumn<QByteArray>("kind");
    QTest::newRow("a box in a row") << int(SettingsWindow::Repositories) << QByteArray("QCheckBox");
    QTest::newRow("a bin in a row") << int(SettingsWindow::Repositories) << QByteArray("velquarin::IconButton");
    QTest::newRow("a button") << int(SettingsWindow::Repositories) << QByteArray("QPushButton");
    QTest::newRow("a depth") << int(SettingsWindow::AutoDiscover) << QByteArray("velquarin::Picker");
    QTest::newRow("a period") << int(SettingsWindow::General) << QByteArray("velquarin::Picker");
    QTest::newRow("a switch") << int(SettingsWindow::General) << QByteArray("velquarin::Switch");
}

void TestSettingsView::theKeysOfTheTabsWorkWhereverTheFocusIs()
{
    QFETCH(int, tab);
    QFETCH(QByteArray, kind);
    SettingsWindow window;
    window.engine.settings.addRepository(QStringLiteral("/src/a"), false);
    window.engine.settings.addRepository(QStringLiteral("/src/b"), false);
    window.engine.settings.addWatchedFolder(QStringLiteral("/src"), 5);
    window.open(SettingsWindow::Tab(tab));
    const auto all = window.view->findChildren<QWidget *>();
    const auto found = std::ranges::find_if(all, [&kind](const QWidget *widget) {
        return widget->isVisible() && kind == widget->metaObject()->className();
    });
    QVERIFY(found != all.end());
    (*found)->setFocus(Qt::TabFocusReason);
    auto *const strip = window.view->findChild<TabStrip *>();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_PageDown, Qt::ControlModifier);
    QCOMPARE(strip->currentIndex(), (tab + 1) % 3);
    strip->setCurrentIndex(tab);
    (*found)->setFocus(Qt::TabFocusReason);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab, Qt::ControlModifier);
    QCOMPARE(strip->currentIndex(), (tab + 1) % 3);
    QCOMPARE(window.engine.settings.refreshInterval(), 300.0);
    QCOMPARE(window.engine.settings.watchedFolders().first().maxDepth, 5);
}

void TestSettingsView::escapeInAPopUpClosesThePopUpAlone()
{
    SettingsWindow window;
    window.open(SettingsWindow::General);
    auto *const picker = window.view->findChild<Picker *>(QStringLiteral("refreshPeriod"));
    picker->setFocus();
    picker->showPopup();
    QVERIFY(picker->view()->isVisible());
    QTest::keyClick(picker->view(), Qt::Key_Escape);
    QTRY_VERIFY(!picker->view()->isVisible());
    QVERIFY(window.view->isVisible());
    QCOMPARE(picker->currentText(), QStringLiteral("Every 5 minutes"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    QVERIFY(!window.view->isVisible());
}

void TestSettingsView::mnemonicsTurnTheTabs()
{
    SettingsWindow window;
    window.open();
    QTest::keyClick(window.view.get(), Qt::Key_G, Qt::AltModifier);
    SettingsWindow::settle();
    QVERIFY(window.says(QStringLiteral("1.0.0")));
    QTest::keyClick(window.view.get(), Qt::Key_S, Qt::AltModifier);
    QTRY_VERIFY(!window.engine.settings.showStreakInMenuBar());
}

void TestSettingsView::aScreenReaderTurnsTheTabs()
{
    SettingsWindow window;
    window.open();
    auto *const strip = QAccessible::queryAccessibleInterface(window.view->findChild<TabStrip *>());
    strip->child(2)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    SettingsWindow::settle();
    QVERIFY(window.says(QStringLiteral("1.0.0")));
}

void TestSettingsView::tabStopsFollowTheEye_data()
{
    QTest::addColumn<int>("tab");
    QTest::addColumn<QStringList>("stops");
    const auto remove = QStringLiteral("Remove");
    QTest::newRow("repositories") << int(SettingsWindow::Repositories)
                                  << QStringList{QStringLiteral("a"), remove, QStringLiteral("Add Repository"),
                                                 QStringLiteral("Scan Folder"), QStringLiteral("Refresh Now")};
    QTest::newRow("watched folders")
        << int(SettingsWindow::AutoDiscover)
        << QStringList{QStringLiteral("Auto-discover repos"), QStringLiteral("src"),     QStringLiteral("5"), remove,
                       QStringLiteral("Add Folder"),          QStringLiteral("Scan Now")};
    QTest::newRow("general") << int(SettingsWindow::General)
                             << QStringList{
                                    QStringLiteral("Launch at login"), QStringLiteral("Show streak count in menu bar"),
                                    QStringLiteral("Remind me if streak is at risk"), QStringLiteral("Every 5 minutes"),
                                    QStringLiteral("By everyone, default branch")};
}

void TestSettingsView::tabStopsFollowTheEye()
{
    QFETCH(int, tab);
    QFETCH(QStringList, stops);
    SettingsWindow window;
    window.engine.settings.addRepository(QStringLiteral("/src/a"), false);
    window.engine.settings.addRepository(QStringLiteral("/src/b"), false);
    window.engine.settings.addWatchedFolder(QStringLiteral("/src"), 5);
    window.open(SettingsWindow::Tab(tab));
    QCOMPARE(tabStops(window), stops);
}

void TestSettingsView::enterPressesTheButtonThatHasTheFocus_data()
{
    QTest::addColumn<int>("tab");
    QTest::addColumn<QString>("name");
    QTest::newRow("below the list") << int(SettingsWindow::Repositories) << QStringLiteral("Scan Folder");
    QTest::newRow("in place of the list") << int(SettingsWindow::AutoDiscover) << QStringLiteral("Add Folder");
}

void TestSettingsView::enterPressesTheButtonThatHasTheFocus()
{
    QFETCH(int, tab);
    QFETCH(QString, name);
    SettingsWindow window;
    window.open(SettingsWindow::Tab(tab));
    auto *const button = window.control<QPushButton>(name);
    button->setFocus();
    QTest::keyClick(button, Qt::Key_Return);
    QTest::keyClick(button, Qt::Key_Enter);
    QCOMPARE(window.chooser.requests.size(), 2);
}

void TestSettingsView::everyControlHasAName()
{
    SettingsWindow window;
    window.engine.settings.addRepository(QStringLiteral("/src/a"), false);
    window.engine.settings.addWatchedFolder(QStringLiteral("/src"), 5);
    for (const auto tab : {SettingsWindow::Repositories, SettingsWindow::AutoDiscover, SettingsWindow::General}) {
        window.open(tab);
        const auto names = namesOf(
            *window.view, {QAccessible::Button, QAccessible::CheckBox, QAccessible::ComboBox, QAccessible::PageTab});
        QVERIFY(names.size() > tabs.size());
        QVERIFY2(!names.contains(QString()), qPrintable(names.join(u',')));
    }
}

void TestSettingsView::aScreenReaderIsToldWhichTabIsSelected()
{
    SettingsWindow window;
    window.open(SettingsWindow::AutoDiscover);
    auto *const strip = stripOf(window);
    QCOMPARE(strip->role(), QAccessible::PageTabList);
    QCOMPARE(strip->childCount(), 3);
    QCOMPARE(strip->text(QAccessible::Name), QString());
    for (int index = 0; index < 3; ++index) {
        QCOMPARE(bool(strip->child(index)->state().selected), index == SettingsWindow::AutoDiscover);
        QCOMPARE(strip->indexOfChild(strip->child(index)), index);
    }
    QCOMPARE(strip->child(3), nullptr);
    QCOMPARE(strip->child(-1), nullptr);
}

void TestSettingsView::aTabHasTheFocusOnlyWhileTheStripHasIt()
{
    SettingsWindow window;
    window.open(SettingsWindow::General);
    auto *const strip = stripOf(window);
    QVERIFY(!strip->child(SettingsWindow::General)->state().focused);
    QCOMPARE(strip->focusChild(), nullptr);
    window.view->findChild<TabStrip *>()->setFocus();
    QVERIFY(strip->child(SettingsWindow::General)->state().focused);
    QVERIFY(!strip->child(SettingsWindow::Repositories)->state().focused);
    QCOMPARE(strip->focusChild(), strip->child(SettingsWindow::General));
}

void TestSettingsView::aScreenReaderTurnsToATab()
{
    SettingsWindow window;
    window.open();
    auto *const tab = stripOf(window)->child(SettingsWindow::General);
    QCOMPARE(tab->actionInterface()->actionNames(), QStringList(QAccessibleActionInterface::pressAction()));
    tab->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    SettingsWindow::settle();
    QVERIFY(window.says(QStringLiteral("1.0.0")));
}

void TestSettingsView::aScreenReaderFindsATabAsItIsShown()
{
    SettingsWindow window;
    window.open();
    auto *const strip = stripOf(window);
    auto *const tab = strip->child(SettingsWindow::AutoDiscover);
    QCOMPARE(tab->text(QAccessible::Name), QStringLiteral("Auto-Discover"));
    QCOMPARE(tab->text(QAccessible::Accelerator), QStringLiteral("Alt+A"));
    for (const auto index : {SettingsWindow::Repositories, SettingsWindow::AutoDiscover, SettingsWindow::General}) {
        const auto middle = strip->child(index)->rect().center();
        QCOMPARE(strip->childAt(middle.x(), middle.y()), strip->child(index));
    }
    QCOMPARE(tab->parent(), strip);
}

void TestSettingsView::aTabHoldsNothingAndSaysWhatCanBeDoneWithIt()
{
    SettingsWindow window;
    window.open();
    auto *const strip = stripOf(window);
    auto *const tab = strip->child(SettingsWindow::Repositories);
    QCOMPARE(tab->childCount(), 0);
    QCOMPARE(tab->child(0), nullptr);
    QCOMPARE(tab->childAt(tab->rect().x() + 1, tab->rect().y() + 1), nullptr);
    QCOMPARE(tab->indexOfChild(strip), -1);
    QCOMPARE(strip->indexOfChild(strip), -1);
    QCOMPARE(tab->object(), nullptr);
    QCOMPARE(tab->window(), window.view->windowHandle());
    QCOMPARE(tab->text(QAccessible::Description), QString());
    const auto state = tab->state();
    QVERIFY(state.selectable && state.focusable && !state.invisible && !state.invalid);
    QVERIFY(tab->interface_cast(QAccessible::ActionInterface) != nullptr);
    QCOMPARE(tab->interface_cast(QAccessible::TextInterface), nullptr);
    tab->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    QVERIFY(tab->state().selected);
    window.view->hide();
    QVERIFY(tab->state().invisible);
}

void TestSettingsView::aTabThatIsGoneSaysSo()
{
    TabStrip strip;
    strip.addTab(QStringLiteral("One"), QStringLiteral("gear"));
    strip.addTab(QStringLiteral("Two"), QStringLiteral("gear"));
    auto *const tab = QAccessible::queryAccessibleInterface(&strip)->child(1);
    QVERIFY(tab->isValid());
    strip.removeTab(1);
    QVERIFY(!tab->isValid());
    QVERIFY(tab->state().invalid);
    QCOMPARE(tab->text(QAccessible::Name), QString());
    QCOMPARE(tab->rect(), QRect());
    tab->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(strip.currentIndex(), 0);
}

void TestSettingsView::noTabOutlivesItsStripForAScreenReader()
{
    auto strip = std::make_unique<TabStrip>();
    strip->addTab(QStringLiteral("One"), QStringLiteral("gear"));
    const auto id = QAccessible::uniqueId(QAccessible::queryAccessibleInterface(strip.get())->child(0));
    QVERIFY(QAccessible::accessibleInterface(id) != nullptr);
    strip.reset();
    QCOMPARE(QAccessible::accessibleInterface(id), nullptr);
}

// Whoever keeps the tabs for screen readers may ask them once more before they go.
void TestSettingsView::aTabIsNoneWhileItsStripIsTakenApart()
{
    auto strip = std::make_unique<TabStrip>();
    strip->addTab(QStringLiteral("One"), QStringLiteral("gear"));
    QAccessible::Id id = 0;
    std::optional<bool> wasValid;
    connect(strip.get(), &QObject::destroyed, this, [&] {
        const auto *tab = QAccessible::accessibleInterface(id);
        wasValid = tab && tab->isValid();
    });
    id = QAccessible::uniqueId(QAccessible::queryAccessibleInterface(strip.get())->child(0));
    strip.reset();
    QCOMPARE(wasValid, false);
}

void TestSettingsView::theGapsOfATabGiveWayToItsParts_data()
{
    QTest::addColumn<int>("height");
    QTest::addColumn<int>("parts");
    QTest::addColumn<QList<int>>("places");
    QTest::newRow("with room to spare") << 200 << 3 << QList<int>{16, 52, 88};
    QTest::newRow("with just enough room") << 124 << 3 << QList<int>{16, 52, 88};
    QTest::newRow("with less") << 112 << 3 << QList<int>{16, 46, 76};
    QTest::newRow("with the least") << 100 << 3 << QList<int>{16, 40, 64};
    QTest::newRow("with a part hidden") << 80 << 2 << QList<int>{16, 44};
    QTest::newRow("with one part alone") << 60 << 1 << QList<int>{16};
}

void TestSettingsView::theGapsOfATabGiveWayToItsParts()
{
    QFETCH(int, height);
    QFETCH(int, parts);
    const FontOfPixels font(13);
    QWidget window;
    auto *const tab = new QWidget(&window);
    auto *const column = new TabColumn(tab);
    QList<QWidget *> widgets;
    for (int part = 0; part < 3; ++part) {
        widgets.append(new QWidget(tab));
        widgets.last()->setFixedSize(50, 20);
        widgets.last()->setVisible(part < parts);
        column->addWidget(widgets.last());
    }
    column->addStretch();
    window.show();
    tab->setGeometry(0, 0, 100, height);
    column->activate();
    QList<int> places;
    for (int part = 0; part < parts; ++part)
        places.append(widgets.at(part)->y());
    QTEST(places, "places");
}

// On this platform a label is told by a relation: a description would say it a second time.
void TestSettingsView::aPickerIsLabelledOnce()
{
    SettingsWindow window;
    window.open(SettingsWindow::General);
    auto *const picker =
        QAccessible::queryAccessibleInterface(window.view->findChild<Picker *>(QStringLiteral("refreshPeriod")));
    const auto labels = picker->relations(QAccessible::Label);
    QCOMPARE(labels.size(), 1);
    QCOMPARE(labels.first().first->text(QAccessible::Name), QStringLiteral("Check for new commits"));
    QCOMPARE(picker->text(QAccessible::Description), QString());
}

void TestSettingsView::aListSaysWhatItIsOf()
{
    SettingsWindow window;
    window.engine.settings.addRepository(QStringLiteral("/src/a"), false);
    window.open();
    QCOMPARE(namesOf(*window.view, {QAccessible::Grouping}), QStringList(QStringLiteral("Tracked Repositories")));
}

void TestSettingsView::anotherFontBuildsItAnewAndKeepsItsTab()
{
    SettingsWindow window;
    window.open(SettingsWindow::General);
    const auto before = window.view->size();
    const FontOfPixels large(26);
    QTRY_VERIFY(window.view->width() > before.width());
    QTRY_COMPARE(window.view->size(), QSize(style::points(450), style::points(380)));
    QTRY_VERIFY(window.says(QStringLiteral("1.0.0")));
    const auto label = QStringLiteral("Show streak count in menu bar");
    QTRY_VERIFY(window.control<Switch>(label) != nullptr);
    // What is shown has no size yet, for as long as a layout is due.
    QTRY_VERIFY(window.control<Switch>(label)->width() > before.width());
    SettingsWindow::click(window.control<Switch>(label));
    QVERIFY(!window.engine.settings.showStreakInMenuBar());
}

void TestSettingsView::whatChangesSizesBuildsItAnew_data()
{
    QTest::addColumn<int>("fontHeight");
    QTest::addColumn<QEvent::Type>("change");
    QTest::newRow("another style") << 13 << QEvent::StyleChange;
    QTest::newRow("a font of which only the palette tells") << 15 << QEvent::PaletteChange;
}

void TestSettingsView::whatChangesSizesBuildsItAnew()
{
    QFETCH(int, fontHeight);
    QFETCH(QEvent::Type, change);
    const FontOfPixels before(13);
    SettingsWindow window;
    window.open(SettingsWindow::General);
    const QPointer tab(window.view->findChild<QScrollArea *>(QStringLiteral("generalTab")));
    NoWordOfFonts silence;
    window.view->installEventFilter(&silence);
    const FontOfPixels after(fontHeight);
    QEvent event(change);
    QApplication::sendEvent(window.view.get(), &event);
    QTRY_VERIFY(tab == nullptr);
    QTRY_VERIFY(window.says(QStringLiteral("1.0.0")));
}

void TestSettingsView::theSameFontBuildsNothingAnew()
{
    SettingsWindow window;
    window.open(SettingsWindow::General);
    const QPointer tab(window.view->findChild<QScrollArea *>(QStringLiteral("generalTab")));
    QEvent change(QEvent::FontChange);
    QApplication::sendEvent(window.view.get(), &change);
    QApplication::processEvents();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(tab != nullptr);
}

void TestSettingsView::theOptionsNeedNoScrolling_data()
{
    QTest::addColumn<int>("pixels");
    for (const int pixels : {12, 13, 15, 16, 20})
        QTest::addRow("with letters of %d pixels", pixels) << pixels;
}

void TestSettingsView::theOptionsNeedNoScrolling()
{
    QFETCH(int, pixels);
    const FontOfPixels font(pixels);
    SettingsWindow window;
    window.open(SettingsWindow::General);
    QCOMPARE(window.view->findChild<QScrollArea *>(QStringLiteral("generalTab"))->verticalScrollBar()->maximum(), 0);
}

void TestSettingsView::symbolsInButtonsFollowTheFont()
{
    for (const int pixels : {7, 13, 30}) {
        const FontOfPixels font(pixels);
        SettingsWindow window;
        window.open();
        const auto *const button = window.control<QPushButton>(QStringLiteral("Scan Folder"));
        const auto height = button->iconSize().height();
        QVERIFY2(height > pixels && height < 2 * pixels, qPrintable(QString::number(height)));
    }
}

void TestSettingsView::aPaletteChangeShowsAtOnce()
{
    const auto before = QApplication::palette();
    SettingsWindow window;
    window.open();
    QApplication::setPalette(lightPalette());
    SettingsWindow::settle();
    const auto light = pictureOf(*window.view, 1);
    QApplication::setPalette(darkPalette());
    SettingsWindow::settle();
    const auto dark = pictureOf(*window.view, 1);
    QApplication::setPalette(before);
    QVERIFY(light.pixelColor(1, 1).lightness() > 200);
    QVERIFY(dark.pixelColor(1, 1).lightness() < 80);
}

void TestSettingsView::fromTheRightItIsMirrored()
{
    QApplication::setLayoutDirection(Qt::RightToLeft);
    SettingsWindow window;
    window.engine.settings.addRepository(QStringLiteral("/src/a"), false);
    window.open();
    const auto *const add = window.control<QPushButton>(QStringLiteral("Add Repository"));
    const auto *const refresh = window.control<QPushButton>(QStringLiteral("Refresh Now"));
    const bool isMirrored = add->x() > refresh->x();
    QApplication::setLayoutDirection(Qt::LeftToRight);
    QVERIFY(isMirrored);
}

void TestSettingsView::closedItTurnsNothingAndWakesNobody()
{
    SettingsWindow window;
    window.open();
    const auto timers = window.engine.timers.live().size();
    window.view->close();
    SettingsWindow::settle();
    PaintCounter paints;
    window.engine.settings.addRepository(QStringLiteral("/src/a"), false);
    SettingsWindow::settle();
    QCOMPARE(paints.ofAll(), 0);
    QCOMPARE(window.engine.timers.live().size(), timers);
}

void TestSettingsView::itMayGoWhileAnythingIsOpenInIt()
{
    const QTemporaryDir folder;
    QDir(folder.path()).mkpath(QStringLiteral("a/.git"));
    SettingsWindow window;
    window.engine.settings.addWatchedFolder(folder.path(), 5);
    window.open();
    SettingsWindow::click(window.control<QPushButton>(QStringLiteral("Scan Folder")));
    window.chooser.confirm(folder.path());
    SettingsWindow::click(window.controls<QPushButton>(QStringLiteral("Add Repository")).first());
    window.view->findChild<TabStrip *>()->setCurrentIndex(SettingsWindow::AutoDiscover);
    SettingsWindow::settle();
    SettingsWindow::click(window.control<QPushButton>(QStringLiteral("Scan Now")));
    window.view->findChild<Picker *>(QStringLiteral("depth"))->showPopup();
    window.view.reset();
    window.chooser.confirm(folder.path());
    QTRY_VERIFY(window.engine.settings.lastAutoDiscoveryScan().has_value());
    QTRY_COMPARE(window.engine.settings.trackedRepositories().size(), 1);
}

void TestSettingsView::anotherFontMayComeWhileAnythingIsOpenInIt()
{
    SettingsWindow window;
    window.engine.settings.addWatchedFolder(QStringLiteral("/src"), 5);
    window.open(SettingsWindow::AutoDiscover);
    auto *const depth = window.view->findChild<Picker *>(QStringLiteral("depth"));
    depth->setFocus();
    depth->showPopup();
    const QPointer before(depth);
    const FontOfPixels large(20);
    QTRY_VERIFY(before.isNull());
    // To a screen reader it is called what it shows.
    QTRY_VERIFY(window.control<Picker>(QStringLiteral("5")) != nullptr);
    QTest::keyClick(window.view.get(), Qt::Key_Escape);
    QVERIFY(!window.view->isVisible());
}

VELQUARIN_WINDOW_TEST(TestSettingsView)
#include "tst_settingsview.moc"
