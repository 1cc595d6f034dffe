// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/PathNames.h"
#include "support/Offscreen.h"
#include "support/PaintedText.h"
#include "support/Picture.h"
#include "support/TestProgram.h"
#include "Views/Controls/PlainButton.h"
#include "Views/Controls/Style.h"
#include "Views/Controls/Switch.h"
#include "Views/Controls/Symbols.h"
#include "Views/Controls/Text.h"
#include "Views/Settings/TabParts.h"

#include "SettingsWindow.h"

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>

using namespace velquarin;
using namespace velquarin::test;

namespace {

const auto addFolder = QStringLiteral("Add Folder");
const auto scanNow = QStringLiteral("Scan Now");
const auto automatic = QStringLiteral("Auto-discover repos");
const auto scanning = QStringLiteral("Scanning...");
const auto watchedAlready = QStringLiteral("This folder is already being watched");

// A folder with so many repositories in it, named a, b, c and on.
struct Folder
{
    QTemporaryDir dir;

    explicit Folder(int repositories)
    {
        for (int index = 0; index < repositories; ++index)
            QDir(dir.path()).mkpath(QString(QChar('a' + index)) + QStringLiteral("/.git"));
    }
};

void choose(SettingsWindow &window, const QString &path)
{
    SettingsWindow::click(window.controls<QPushButton>(addFolder).last());
    window.chooser.confirm(path);
    SettingsWindow::settle();
}

QStringList linesFrom(const SettingsWindow &window, const QString &first)
{
    const auto texts = window.texts();
    return texts.mid(texts.indexOf(first));
}

bool isMessage(const SettingsWindow &window, const QString &text)
{
    const auto *const line = window.control<Text>(text);
    return line != nullptr && line->tone() == style::Tone(style::Accent::Red);
}

Picker *depthOf(const SettingsWindow &window)
{
    return window.view->findChild<Picker *>(QStringLiteral("depth"));
}

}  // namespace

class TestWatchedFoldersTab : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { failOnAnyWarningOfOurs(); }
    void withoutFoldersItSaysWhatToDo();
    void withoutFoldersARunIsStillShown();
    void theSwitchOnlyStoresItsValue();
    void addingAsksForOneFolder();
    void anAddedFolderIsWatchedFiveLevelsDeepAndSearchedAtOnce();
    void anAddedFolderIsSearchedWithTheSwitchOff();
    void aFolderIsWatchedOnce();
    void cancellingKeepsTheMessage();
    void aFolderThatIsAddedClearsTheMessage();
    void aDepthIsStored();
    void aDepthChosenTwiceBeforeItIsRenderedIsTheLaterOne();
    void aForeignDepthIsKeptAndNoneIsChosen();
    void theDepthExplainsItself();
    void aBoxEnablesOrDisablesItsFolderAndStartsNothing();
    void aBinRemovesItsFolderAndStartsNothing();
    void whileARunGoesOnTheWheelTurnsInPlaceOfTheButton();
    void besideTheWordAWheelTurns();
    void aLongPathIsCutInItsMiddle();
    void aRowNamesItsDepthInSmallLetters();
    void theTabKeepsItsDistances();
    void whatIsWrittenHasItsSizeAndColour_data();
    void whatIsWrittenHasItsSizeAndColour();
    void discoveredRepositoriesStandCloseTogether();
    void withoutFoldersASymbolStandsOverTheWords();
    void theFocusOfTheButtonStaysInItsRow();
    void aRunLeavesAFocusElsewhereAlone();
    void withoutFoldersTheFocusStaysWhereItIs();
    void removingTheLastFolderLeavesTheFocusWhereItIsOfUse();
    void duringARunAnotherFolderCanBeAdded();
    void theTimeOfTheLastRunLeavesAndComesBack();
    void theLastRunIsToldByItsTimeAlone();
    void discoveredRepositoriesAreNamed_data();
    void discoveredRepositoriesAreNamed();
    void aDiscoveredRepositoryWithALongNameIsCut();
    void theMessageIsGoneWhenTheWindowOpensAgain();
    void nothingIsCutOffWhenThereIsMostToSay_data();
    void nothingIsCutOffWhenThereIsMostToSay();
};

void TestWatchedFoldersTab::withoutFoldersItSaysWhatToDo()
{
    SettingsWindow window;
    window.open(SettingsWindow::AutoDiscover);
    QVERIFY(window.says(QStringLiteral("Watched Folders")));
    QVERIFY(window.says(QStringLiteral("Automatically find and track git repositories in these folders")));
    QVERIFY(window.says(QStringLiteral("No Watched Folders")));
    QVERIFY(window.says(QStringLiteral("Add folders to automatically discover new git repositories")));
    QVERIFY(window.control<QPushButton>(scanNow) == nullptr);
    QVERIFY(!window.says(scanning));
    QCOMPARE(window.controls<QPushButton>(addFolder).size(), 2);
    SettingsWindow::click(window.controls<QPushButton>(addFolder).first());
    QCOMPARE(window.chooser.requests.size(), 1);
}

void TestWatchedFoldersTab::withoutFoldersARunIsStillShown()
{
    const Folder folder(0);
    SettingsWindow window;
    window.engine.settings.addWatchedFolder(folder.dir.path(), 5);
    window.open(SettingsWindow::AutoDiscover);
    SlowGit slow(window);
    SettingsWindow::click(window.control<QPushButton>(scanNow));
    SettingsWindow::click(window.control<IconButton>(QStringLiteral("Remove")));
    QVERIFY(window.says(QStringLiteral("No Watched Folders")));
    QVERIFY(window.says(scanning));
    slow.release();
    QTRY_VERIFY(!window.says(scanning));
    QVERIFY(window.control<QPushButton>(scanNow) == nullptr);
}

void TestWatchedFoldersTab::theSwitchOnlyStoresItsValue()
{
    SettingsWindow window;
    window.open(SettingsWindow::AutoDiscover);
    QSignalSpy runs(&window.engine.manager, &StreakManager::isScanningWillChange);
    auto *const master = window.control<Switch>(automatic);
    QVERIFY(master->isChecked());
    SettingsWindow::click(master);
    QVERIFY(!window.engine.settings.autoDiscoveryEnabled());
    SettingsWindow::click(master);
    QVERIFY(window.engine.settings.autoDiscoveryEnabled());
    QCOMPARE(runs.count(), 0);
}

void TestWatchedFoldersTab::addingAsksForOneFolder()
{
    SettingsWindow window;
    window.open(SettingsWindow::AutoDiscover);
    SettingsWindow::click(window.control<QPushButton>(addFolder));
    QCOMPARE(window.chooser.requests.first().message, QStringLiteral("Select a folder to watch for git repositories"));
    QCOMPARE(window.chooser.requests.first().confirmTitle, QStringLiteral("Watch"));
}

void TestWatchedFoldersTab::anAddedFolderIsWatchedFiveLevelsDeepAndSearchedAtOnce()
{
    const Folder folder(1);
    SettingsWindow window;
    window.open(SettingsWindow::AutoDiscover);
    choose(window, folder.dir.path());
    QTRY_COMPARE(window.engine.settings.trackedRepositories().size(), 1);
    const auto watched = window.engine.settings.watchedFolders();
    QCOMPARE(watched.size(), 1);
    QCOMPARE(watched.first().path, folder.dir.path());
    QCOMPARE(watched.first().maxDepth, 5);
    QVERIFY(watched.first().isEnabled);
    QVERIFY(window.engine.settings.trackedRepositories().first().isAutoDiscovered);
    QCOMPARE(depthOf(window)->currentText(), QStringLiteral("5"));
}

void TestWatchedFoldersTab::anAddedFolderIsSearchedWithTheSwitchOff()
{
    const Folder folder(1);
    SettingsWindow window;
    window.engine.settings.setAutoDiscoveryEnabled(false);
    window.open(SettingsWindow::AutoDiscover);
    QSignalSpy runs(&window.engine.manager, &StreakManager::isScanningWillChange);
    choose(window, folder.dir.path());
    const auto withTheSwitchOn = 2;
    QTRY_COMPARE(runs.count(), withTheSwitchOn);
}

void TestWatchedFoldersTab::aFolderIsWatchedOnce()
{
    const Folder folder(0);
    SettingsWindow window;
    window.open(SettingsWindow::AutoDiscover);
    choose(window, folder.dir.path());
    QTRY_VERIFY(window.engine.settings.lastAutoDiscoveryScan().has_value());
    const auto stored = window.engine.settings.lastAutoDiscoveryScan();
    QSignalSpy runs(&window.engine.manager, &StreakManager::isScanningWillChange);
    choose(window, folder.dir.path());
    QVERIFY(isMessage(window, watchedAlready));
    QCOMPARE(window.engine.settings.watchedFolders().size(), 1);
    QCOMPARE(window.engine.settings.lastAutoDiscoveryScan(), stored);
    QCOMPARE(runs.count(), 0);
}

void TestWatchedFoldersTab::cancellingKeepsTheMessage()
{
    SettingsWindow window;
    window.engine.settings.addWatchedFolder(QStringLiteral("/src"), 5);
    window.open(SettingsWindow::AutoDiscover);
    choose(window, QStringLiteral("/src"));
    SettingsWindow::click(window.control<QPushButton>(addFolder));
    QVERIFY(isMessage(window, watchedAlready));
}

void TestWatchedFoldersTab::aFolderThatIsAddedClearsTheMessage()
{
    SettingsWindow window;
    window.engine.settings.addWatchedFolder(QStringLiteral("/src"), 5);
    window.open(SettingsWindow::AutoDiscover);
    choose(window, QStringLiteral("/src"));
    choose(window, QStringLiteral("/src/"));
    QVERIFY(!window.says(watchedAlready));
    QCOMPARE(window.engine.settings.watchedFolders().size(), 2);
}

void TestWatchedFoldersTab::aDepthIsStored()
{
    SettingsWindow window;
    window.engine.settings.addWatchedFolder(QStringLiteral("/src"), 5);
    window.open(SettingsWindow::AutoDiscover);
    QSignalSpy runs(&window.engine.manager, &StreakManager::isScanningWillChange);
    auto *const depth = depthOf(window);
    QStringList offered;
    for (int index = 0; index < depth->count(); ++index)
        offered.append(depth->itemText(index));
    QCOMPARE(offered,
             (QStringList{QStringLiteral("2"), QStringLiteral("3"), QStringLiteral("5"), QStringLiteral("10")}));
    depth->setCurrentText(QStringLiteral("10"));
    QCOMPARE(window.engine.settings.watchedFolders().first().maxDepth, 10);
    QCOMPARE(runs.count(), 0);
}

void TestWatchedFoldersTab::aDepthChosenTwiceBeforeItIsRenderedIsTheLaterOne()
{
    SettingsWindow window;
    window.engine.settings.addWatchedFolder(QStringLiteral("/src"), 5);
    window.open(SettingsWindow::AutoDiscover);
    auto *const depth = depthOf(window);
    depth->setCurrentText(QStringLiteral("10"));
    depth->setCurrentText(QStringLiteral("5"));
    QCOMPARE(window.engine.settings.watchedFolders().first().maxDepth, 5);
    SettingsWindow::settle();
    QCOMPARE(depth->currentText(), QStringLiteral("5"));
}

void TestWatchedFoldersTab::aForeignDepthIsKeptAndNoneIsChosen()
{
    SettingsWindow window;
    window.engine.settings.addWatchedFolder(QStringLiteral("/src"), 7);
    window.open(SettingsWindow::AutoDiscover);
    QCOMPARE(depthOf(window)->currentIndex(), -1);
    SettingsWindow::click(window.control<QCheckBox>(QStringLiteral("src")));
    QCOMPARE(window.engine.settings.watchedFolders().first().maxDepth, 7);
}

void TestWatchedFoldersTab::theDepthExplainsItself()
{
    SettingsWindow window;
    window.engine.settings.addWatchedFolder(QStringLiteral("/src"), 5);
    window.open(SettingsWindow::AutoDiscover);
    QCOMPARE(depthOf(window)->toolTip(), QStringLiteral("Max folder depth to scan"));
    QCOMPARE(depthOf(window)->width(), style::points(60));
}

void TestWatchedFoldersTab::aBoxEnablesOrDisablesItsFolderAndStartsNothing()
{
    SettingsWindow window;
    window.engine.settings.addWatchedFolder(QStringLiteral("/src"), 5);
    window.engine.settings.addWatchedFolder(QStringLiteral("/work"), 5);
    window.open(SettingsWindow::AutoDiscover);
    QSignalSpy runs(&window.engine.manager, &StreakManager::isScanningWillChange);
    SettingsWindow::click(window.control<QCheckBox>(QStringLiteral("work")));
    QVERIFY(window.engine.settings.watchedFolders().first().isEnabled);
    QVERIFY(!window.engine.settings.watchedFolders().last().isEnabled);
    QCOMPARE(runs.count(), 0);
}

void TestWatchedFoldersTab::aBinRemovesItsFolderAndStartsNothing()
{
    SettingsWindow window;
    window.engine.settings.addWatchedFolder(QStringLiteral("/src"), 5);
    window.engine.settings.addRepository(QStringLiteral("/src/a"), true);
    window.open(SettingsWindow::AutoDiscover);
    QSignalSpy runs(&window.engine.manager, &StreakManager::isScanningWillChange);
    SettingsWindow::click(window.control<IconButton>(QStringLiteral("Remove")));
    QCOMPARE(window.engine.settings.watchedFolders().size(), 0);
    QCOMPARE(window.engine.settings.trackedRepositories().size(), 1);
    QVERIFY(window.says(QStringLiteral("No Watched Folders")));
    QCOMPARE(runs.count(), 0);
}

void TestWatchedFoldersTab::whileARunGoesOnTheWheelTurnsInPlaceOfTheButton()
{
    const Folder folder(1);
    SettingsWindow window;
    window.engine.settings.addWatchedFolder(folder.dir.path(), 5);
    window.open(SettingsWindow::AutoDiscover);
    SlowGit slow(window);
    SettingsWindow::click(window.control<QPushButton>(scanNow));
    QVERIFY(window.says(scanning));
    QVERIFY(window.control<QPushButton>(scanNow) == nullptr);
    slow.release();
    QTRY_VERIFY(window.control<QPushButton>(scanNow) != nullptr);
    QVERIFY(!window.says(scanning));
}

void TestWatchedFoldersTab::besideTheWordAWheelTurns()
{
    const FontOfPixels font(13);
    const Folder folder(1);
    SettingsWindow window;
    window.engine.settings.addWatchedFolder(folder.dir.path(), 5);
    window.open(SettingsWindow::AutoDiscover);
    const SlowGit slow(window);
    SettingsWindow::click(window.control<QPushButton>(scanNow));
    QTRY_VERIFY(window.control<Text>(scanning) != nullptr);
    QTRY_COMPARE(window.control<Text>(scanning)->x(), 11 + 4);
    QTRY_COMPARE(window.placeOf(window.control<Text>(scanning)).right(), window.view->width() - 1 - 16);
    const auto before = drawingBefore(window, scanning);
    QVERIFY(!isPlain(before));
    QTRY_VERIFY(drawingBefore(window, scanning) != before);
}

void TestWatchedFoldersTab::aLongPathIsCutInItsMiddle()
{
    const auto path = QStringLiteral("/begin/%1/end").arg(QString(400, u'x'));
    SettingsWindow window;
    window.engine.settings.addWatchedFolder(path, 5);
    window.open(SettingsWindow::AutoDiscover);
    const auto shown = paintedWords(*window.control<Text>(path)).join(QString());
    QVERIFY2(shown.startsWith(QLatin1String("/begin/x")) && shown.endsWith(QLatin1String("x/end")), qPrintable(shown));
    QCOMPARE(shown.count(QChar(0x2026)), 1);
}

void TestWatchedFoldersTab::aRowNamesItsDepthInSmallLetters()
{
    const FontOfPixels font(13);
    SettingsWindow window;
    window.engine.settings.addWatchedFolder(QStringLiteral("/src"), 5);
    window.open(SettingsWindow::AutoDiscover);
    auto *const label = window.control<QLabel>(QStringLiteral("Depth"));
    QVERIFY(label != nullptr);
    const auto written = paintedTexts(*label).first();
    QCOMPARE(written.font.pixelSize(), 10);
    QCOMPARE(written.color, style::ink(label->palette(), style::Ink::Secondary));
    QCOMPARE(label->buddy(), depthOf(window));
    QVERIFY(window.placeOf(label).right() < window.placeOf(depthOf(window)).left());
}

void TestWatchedFoldersTab::theTabKeepsItsDistances()
{
    const FontOfPixels font(13);
    SettingsWindow window;
    window.engine.settings.addWatchedFolder(QStringLiteral("/src"), 5);
    window.open(SettingsWindow::AutoDiscover);
    const auto whole = window.placeOf(window.view->findChild<QWidget *>(QStringLiteral("watchedFoldersTab")));
    const auto outset = Switch::outset();
    const auto master =
        window.placeOf(window.control<Switch>(automatic)).marginsRemoved({outset, outset, outset, outset});
    const auto explanation = window.placeOf(
        window.control<Text>(QStringLiteral("Automatically find and track git repositories in these folders")));
    const auto button = window.placeOf(window.control<QPushButton>(addFolder));
    const auto title = window.placeOf(window.control<Text>(QStringLiteral("Watched Folders")));
    QCOMPARE(title.topLeft() - whole.topLeft(), QPoint(16, 16));
    QVERIFY(qAbs(master.center().y() - title.center().y()) <= 1);
    QCOMPARE(whole.right() - master.right(), 16);
    QCOMPARE(explanation.top() - title.bottom() - 1, 16);
    QCOMPARE(explanation.left() - whole.left(), 16);
    QCOMPARE(whole.bottom() - button.bottom(), 16);
    QCOMPARE(whole.right() - window.placeOf(window.control<QPushButton>(scanNow)).right(), 16);
}

void TestWatchedFoldersTab::whatIsWrittenHasItsSizeAndColour_data()
{
    using style::TypeStyle;
    QTest::addColumn<QString>("text");
    QTest::addColumn<TypeStyle>("type");
    QTest::addColumn<style::Tone>("tone");
    const auto row = [](const char *text, TypeStyle type, const style::Tone &tone) {
        QTest::newRow(text) << QString::fromLatin1(text) << type << tone;
    };
    row("Watched Folders", TypeStyle::Headline, style::Ink::Primary);
    row("Automatically find and track git repositories in these folders", TypeStyle::Caption, style::Ink::Secondary);
    row("Auto-discover repos", TypeStyle::Subheadline, style::Ink::Primary);
    row("Last scan: 12:00 PM", TypeStyle::Caption, style::Ink::Secondary);
    row("Recently discovered:", TypeStyle::Caption, style::Ink::Secondary);
    row("...and 1 more", TypeStyle::Caption, style::Ink::Secondary);
    row("This folder is already being watched", TypeStyle::Caption, style::Accent::Red);
}

void TestWatchedFoldersTab::whatIsWrittenHasItsSizeAndColour()
{
    QFETCH(QString, text);
    QFETCH(style::TypeStyle, type);
    QFETCH(style::Tone, tone);
    const FontOfPixels font(13);
    const Folder folder(4);
    SettingsWindow window;
    window.open(SettingsWindow::AutoDiscover);
    choose(window, folder.dir.path());
    QTRY_VERIFY(window.says(QStringLiteral("...and 1 more")));
    choose(window, folder.dir.path());
    QTRY_VERIFY(window.says(watchedAlready));
    const auto written = paintedTexts(*window.view);
    const auto found = std::ranges::find(written, text, &PaintedText::text);
    QVERIFY(found != written.end());
    QCOMPARE(found->font, style::font(type));
    QCOMPARE(found->color, style::textColor(window.view->palette(), tone));
}

void TestWatchedFoldersTab::discoveredRepositoriesStandCloseTogether()
{
    const FontOfPixels font(13);
    const Folder folder(4);
    SettingsWindow window;
    window.open(SettingsWindow::AutoDiscover);
    choose(window, folder.dir.path());
    const auto last = QStringLiteral("...and 1 more");
    QTRY_VERIFY(window.control<Text>(last) != nullptr);
    const auto lines = linesFrom(window, QStringLiteral("Recently discovered:"));
    QCOMPARE(lines.size(), 5);
    for (qsizetype line = 1; line < lines.size(); ++line) {
        const auto *const above = window.control<Text>(lines.at(line - 1));
        QTRY_COMPARE(window.control<Text>(lines.at(line))->y() - above->geometry().bottom() - 1, 4);
    }
}

void TestWatchedFoldersTab::withoutFoldersASymbolStandsOverTheWords()
{
    const FontOfPixels font(13);
    SettingsWindow window;
    window.open(SettingsWindow::AutoDiscover);
    const auto name = QStringLiteral("folder.badge.gearshape");
    auto *const symbol =
        window.control<Text>(QStringLiteral("No Watched Folders"))->parentWidget()->findChild<SymbolView *>();
    QVERIFY(symbol != nullptr && symbol->isVisible());
    const auto color = style::ink(symbol->palette(), style::Ink::Secondary);
    const auto expected = pictureOfSymbol(name, symbol->rect(), color, *symbol);
    QVERIFY(!isPlain(expected));
    QCOMPARE(pictureOf(*symbol, 1), expected);
}

void TestWatchedFoldersTab::theFocusOfTheButtonStaysInItsRow()
{
    const Folder folder(0);
    SettingsWindow window;
    window.engine.settings.addWatchedFolder(folder.dir.path(), 5);
    window.open(SettingsWindow::AutoDiscover);
    auto *const button = window.control<QPushButton>(scanNow);
    button->setFocus(Qt::TabFocusReason);
    QTest::keyClick(button, Qt::Key_Space);
    SettingsWindow::settle();
    QCOMPARE(QApplication::focusWidget(), window.controls<QPushButton>(addFolder).last());
    QTRY_VERIFY(button->isVisible());
}

void TestWatchedFoldersTab::aRunLeavesAFocusElsewhereAlone()
{
    const Folder folder(1);
    SettingsWindow window;
    window.engine.settings.addWatchedFolder(folder.dir.path(), 5);
    window.open(SettingsWindow::AutoDiscover);
    auto *const master = window.control<Switch>(automatic);
    master->setFocus(Qt::TabFocusReason);
    const SlowGit slow(window);
    SettingsWindow::click(window.control<QPushButton>(scanNow));
    QVERIFY(window.says(scanning));
    QCOMPARE(QApplication::focusWidget(), master);
}

void TestWatchedFoldersTab::withoutFoldersTheFocusStaysWhereItIs()
{
    SettingsWindow window;
    window.open(SettingsWindow::AutoDiscover);
    auto *const master = window.control<Switch>(automatic);
    master->setFocus(Qt::TabFocusReason);
    QTest::keyClick(master, Qt::Key_Space);
    SettingsWindow::settle();
    QVERIFY(!window.engine.settings.autoDiscoveryEnabled());
    QCOMPARE(QApplication::focusWidget(), master);
}

void TestWatchedFoldersTab::removingTheLastFolderLeavesTheFocusWhereItIsOfUse()
{
    SettingsWindow window;
    window.engine.settings.addWatchedFolder(QStringLiteral("/src"), 5);
    window.open(SettingsWindow::AutoDiscover);
    window.control<IconButton>(QStringLiteral("Remove"))->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    SettingsWindow::settle();
    QVERIFY(window.says(QStringLiteral("No Watched Folders")));
    QCOMPARE(QApplication::focusWidget(), window.controls<QPushButton>(addFolder).last());
}

void TestWatchedFoldersTab::duringARunAnotherFolderCanBeAdded()
{
    const Folder first(1);
    const Folder second(2);
    SettingsWindow window;
    window.engine.settings.addWatchedFolder(first.dir.path(), 5);
    window.open(SettingsWindow::AutoDiscover);
    SlowGit slow(window);
    SettingsWindow::click(window.control<QPushButton>(scanNow));
    choose(window, second.dir.path());
    slow.release();
    QTRY_COMPARE(window.engine.settings.trackedRepositories().size(), 3);
    QTRY_VERIFY(!window.says(scanning));
}

void TestWatchedFoldersTab::theTimeOfTheLastRunLeavesAndComesBack()
{
    const Folder folder(0);
    SettingsWindow window;
    window.engine.settings.addWatchedFolder(folder.dir.path(), 5);
    window.engine.settings.setLastAutoDiscoveryScan(instant("2026-11-20T09:41:00Z"));
    window.open(SettingsWindow::AutoDiscover);
    QVERIFY(window.says(QStringLiteral("Last scan: 9:41 AM")));
    SlowGit slow(window);
    SettingsWindow::click(window.control<QPushButton>(scanNow));
    QVERIFY(!window.engine.settings.lastAutoDiscoveryScan().has_value());
    QVERIFY(window.texts().filter(QStringLiteral("Last scan")).isEmpty());
    slow.release();
    QTRY_VERIFY(window.says(QStringLiteral("Last scan: 12:00 PM")));
}

void TestWatchedFoldersTab::theLastRunIsToldByItsTimeAlone()
{
    SettingsWindow window;
    window.engine.settings.setLastAutoDiscoveryScan(instant("2024-02-29T21:41:00Z"));
    window.open(SettingsWindow::AutoDiscover);
    QVERIFY(window.says(QStringLiteral("Last scan: 9:41 PM")));
}

void TestWatchedFoldersTab::discoveredRepositoriesAreNamed_data()
{
    QTest::addColumn<int>("found");
    QTest::addColumn<QString>("more");
    QTest::newRow("one") << 1 << QString();
    QTest::newRow("three, without a count of more") << 3 << QString();
    QTest::newRow("four") << 4 << QStringLiteral("...and 1 more");
    QTest::newRow("five") << 5 << QStringLiteral("...and 2 more");
}

void TestWatchedFoldersTab::discoveredRepositoriesAreNamed()
{
    QFETCH(int, found);
    QFETCH(QString, more);
    const auto heading = QStringLiteral("Recently discovered:");
    const Folder folder(found);
    SettingsWindow window;
    window.open(SettingsWindow::AutoDiscover);
    QVERIFY(!window.says(heading));
    choose(window, folder.dir.path());
    QTRY_VERIFY(window.says(heading));

    QStringList expected(heading);
    const auto paths = window.engine.manager.lastDiscoveredRepos();
    QCOMPARE(paths.size(), found);
    for (const auto &path : paths.first(std::min(found, 3)))
        expected.append(QStringLiteral("+ ") + lastPathComponent(path));
    if (!more.isEmpty())
        expected.append(more);
    QCOMPARE(linesFrom(window, heading), expected);
    QCOMPARE(window.control<Text>(expected.at(1))->tone(), style::Tone(style::Accent::Green));
}

void TestWatchedFoldersTab::aDiscoveredRepositoryWithALongNameIsCut()
{
    const FontOfPixels font(13);
    const QTemporaryDir folder;
    const QString name(200, u'w');
    QDir(folder.path()).mkpath(name + QStringLiteral("/.git"));
    SettingsWindow window;
    window.open(SettingsWindow::AutoDiscover);
    choose(window, folder.path());
    const auto line = QStringLiteral("+ ") + name;
    QTRY_VERIFY(window.control<Text>(line) != nullptr);
    QTRY_COMPARE(window.placeOf(window.control<Text>(line)).right(), window.view->width() - 1 - 16);
    QVERIFY(paintedWords(*window.control<Text>(line)).first().endsWith(QChar(0x2026)));
}

void TestWatchedFoldersTab::theMessageIsGoneWhenTheWindowOpensAgain()
{
    SettingsWindow window;
    window.engine.settings.addWatchedFolder(QStringLiteral("/src"), 5);
    window.open(SettingsWindow::AutoDiscover);
    choose(window, QStringLiteral("/src"));
    QVERIFY(isMessage(window, watchedAlready));
    window.view->close();
    window.show(SettingsWindow::AutoDiscover);
    QVERIFY(!window.says(watchedAlready));
}

void TestWatchedFoldersTab::nothingIsCutOffWhenThereIsMostToSay_data()
{
    QTest::addColumn<int>("pixels");
    for (const int pixels : {12, 13, 16, 20})
        QTest::addRow("with letters of %d pixels", pixels) << pixels;
}

void TestWatchedFoldersTab::nothingIsCutOffWhenThereIsMostToSay()
{
    QFETCH(int, pixels);
    const FontOfPixels font(pixels);
    const Folder folder(5);
    SettingsWindow window;
    window.open(SettingsWindow::AutoDiscover);
    choose(window, folder.dir.path());
    QTRY_VERIFY(window.says(QStringLiteral("...and 2 more")));
    choose(window, folder.dir.path());
    QVERIFY(isMessage(window, watchedAlready));
    const auto *const message = window.control<Text>(watchedAlready);
    QTRY_VERIFY(window.view->rect().contains(window.placeOf(message)));
    QVERIFY(window.control<QCheckBox>(lastPathComponent(folder.dir.path())) != nullptr);
    const auto texts = window.view->findChildren<Text *>();
    for (const auto *const text : texts)
        QTRY_VERIFY2(!text->isVisible() || text->height() >= text->sizeHint().height(),
                     qPrintable(text->accessibleName()));
}

VELQUARIN_WINDOW_TEST(TestWatchedFoldersTab)
#include "tst_watchedfolderstab.moc"
