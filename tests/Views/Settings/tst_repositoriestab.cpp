// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "support/Offscreen.h"
#include "support/PaintedText.h"
#include "support/Picture.h"
#include "support/TestProgram.h"
#include "Views/Controls/Decorations.h"
#include "Views/Controls/PlainButton.h"
#include "Views/Controls/ProgressLine.h"
#include "Views/Controls/Style.h"
#include "Views/Controls/Symbols.h"
#include "Views/Controls/Text.h"
#include "Views/Settings/RecordRow.h"
#include "Views/Settings/RowList.h"
#include "Views/Settings/TabParts.h"

#include "SettingsWindow.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QCheckBox>
#include <QHelpEvent>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTextDocument>
#include <QToolTip>

#include <array>

using namespace velquarin;
using namespace velquarin::test;

namespace {

const auto add = QStringLiteral("Add Repository");
const auto scan = QStringLiteral("Scan Folder");
const auto refreshNow = QStringLiteral("Refresh Now");
const auto noRepository = QStringLiteral("Selected folder is not a git repository");

// A folder with a repository in each of these places below it.
struct Folder
{
    QTemporaryDir dir;

    explicit Folder(const QStringList &repositories)
    {
        for (const auto &place : repositories)
            QDir(dir.path()).mkpath(place + QStringLiteral("/.git"));
    }

    [[nodiscard]] QString path(const QString &place) const { return dir.path() + QLatin1Char('/') + place; }
};

QStringList trackedPaths(const SettingsWindow &window)
{
    QStringList paths;
    const auto tracked = window.engine.settings.trackedRepositories();
    for (const auto &repository : tracked)
        paths.append(repository.path);
    return paths;
}

// Presses the button and answers the question it asks.
void choose(SettingsWindow &window, const QString &button, const QString &path)
{
    const auto asked = window.chooser.requests.size();
    SettingsWindow::click(window.controls<QPushButton>(button).last());
    QCOMPARE(window.chooser.requests.size(), asked + 1);
    window.chooser.confirm(path);
}

void scanTo(SettingsWindow &window, const QString &path)
{
    choose(window, scan, path);
    SettingsWindow::settle();
    QTRY_VERIFY(window.control<QPushButton>(scan)->isEnabled());
}

QString messageOf(const SettingsWindow &window)
{
    const auto texts = window.view->findChildren<Text *>();
    for (const auto *const text : texts) {
        if (text->isVisible() && text->tone() == style::Tone(style::Accent::Red))
            return text->text();
    }
    return {};
}

}  // namespace

class TestRepositoriesTab : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { failOnAnyWarningOfOurs(); }
    void withoutRepositoriesItSaysWhatToDo();
    void withRepositoriesItListsAndCountsThem();
    void oneRepositoryIsCountedLikeMany();
    void onlyWhatWasDiscoveredIsMarked();
    void addingAsksForOneFolder();
    void anAddedFolderIsTrackedAndRead();
    void aFolderWithoutARepositoryPasses();
    void aFolderThatVanishedIsNoRepository();
    void cancellingChangesNothing();
    void aSuccessfulAddClearsTheMessage();
    void addingATrackedPathRefreshesOnly();
    void scanningAsksForOneFolder();
    void aScanTracksWhatIsNew();
    void aScanOfWhatIsTrackedSaysSo();
    void aScanThatFindsNothingSaysSo();
    void startingAScanClearsTheMessage();
    void aScanGoesFiveLevelsDeep();
    void whileAScanRunsAddingStaysUsable();
    void aScanOutlivesItsWindow();
    void besideTheWordAWheelTurns();
    void aBoxEnablesOrDisablesItsRecord();
    void aBoxWritesIntoTheRecordAsItIsNow();
    void aBoxMovedTwiceBeforeItIsRenderedIsAsBefore();
    void aBinRemovesItsRecordAndStartsNoRefresh();
    void removingTheLastRecordLeavesTheFocusWhereItIsOfUse();
    void refreshNowRefreshes();
    void refreshNowStaysUsableWhileOneRuns();
    void aLongPathIsCutInItsMiddle();
    void aNameWithALineBreakStaysOnItsLine();
    void aPathIsNeverTakenForMarkup_data();
    void aPathIsNeverTakenForMarkup();
    void aMessageThatIsTooLongIsCut();
    void theMessageIsGoneWhenTheWindowOpensAgain();
    void aChosenPathIsTakenAsItIs_data();
    void aChosenPathIsTakenAsItIs();
    void theBinIsFaintUntilSomebodyComesNear_data();
    void theBinIsFaintUntilSomebodyComesNear();
    void theButtonOfAnEmptyListIsTheProminentOne();
    void aRowKeepsItsDistances();
    void aRowIsWrittenInItsSizesAndColours();
    void whatIsWrittenHasItsSizeAndColour_data();
    void whatIsWrittenHasItsSizeAndColour();
    void theBadgeIsACapsuleAroundItsWord();
    void theWheelTurnsByOneOfEightSpokes();
    void theWheelTurnsOnlyWhileItIsShown();
    void theTabKeepsItsDistances();
    void theButtonsShowTheirSymbols();
    void rowsArePartedByALine();
    void theRowUnderThePointerHasAGroundOfItsOwn();
    void theRowWithTheFocusHasAGroundOfItsOwn();
    void theControlsOfARowSayWhatTheyAreFor();
    void withoutRepositoriesASymbolStandsOverTheWords();
    void theBadgeCanBeRead_data();
    void theBadgeCanBeRead();
    void whatARowSaysCanBeReadUnderThePointer_data();
    void whatARowSaysCanBeReadUnderThePointer();
    void aScreenReaderRemovesAndDisables();
    void scanningByKeyboardKeepsTheFocusAtHand();
    void aScanLeavesAFocusElsewhereAlone();
    void aMessageLeavesTheFocusAlone();
    void rowsAreRemovedOneAfterAnotherByKeyboard();
};

void TestRepositoriesTab::withoutRepositoriesItSaysWhatToDo()
{
    SettingsWindow window;
    window.open();
    QVERIFY(window.says(QStringLiteral("Tracked Repositories")));
    QVERIFY(window.says(QStringLiteral("0 repos")));
    QVERIFY(window.says(QStringLiteral("No Repositories")));
    QVERIFY(window.says(QStringLiteral("Add git repositories to track your commit streak")));
    QCOMPARE(window.controls<QPushButton>(add).size(), 2);
    QVERIFY(window.control<QPushButton>(refreshNow) == nullptr);
    SettingsWindow::click(window.controls<QPushButton>(add).first());
    QCOMPARE(window.chooser.requests.size(), 1);
}

void TestRepositoriesTab::withRepositoriesItListsAndCountsThem()
{
    SettingsWindow window;
    window.engine.settings.addRepository(QStringLiteral("/src/b"), false);
    window.engine.settings.addRepository(QStringLiteral("/src/a"), false);
    window.open();
    const auto texts = window.texts();
    QVERIFY(texts.contains(QStringLiteral("2 repos")));
    QVERIFY(texts.indexOf(QStringLiteral("b")) < texts.indexOf(QStringLiteral("a")));
    QVERIFY(texts.contains(QStringLiteral("/src/b")));
    QVERIFY(!texts.contains(QStringLiteral("No Repositories")));
    QVERIFY(window.control<QPushButton>(refreshNow) != nullptr);
}

void TestRepositoriesTab::oneRepositoryIsCountedLikeMany()
{
    SettingsWindow window;
    window.engine.settings.addRepository(QStringLiteral("/src/a"), false);
    window.open();
    QVERIFY(window.says(QStringLiteral("1 repos")));
}

void TestRepositoriesTab::onlyWhatWasDiscoveredIsMarked()
{
    SettingsWindow window;
    window.engine.settings.addRepository(QStringLiteral("/src/a"), false);
    window.open();
    QVERIFY(!window.says(QStringLiteral("Auto")));
    window.engine.settings.addRepository(QStringLiteral("/src/b"), true);
    SettingsWindow::settle();
    QCOMPARE(window.texts().count(QStringLiteral("Auto")), 1);
}

void TestRepositoriesTab::addingAsksForOneFolder()
{
    SettingsWindow window;
    window.open();
    SettingsWindow::click(window.control<QPushButton>(add));
    QCOMPARE(window.chooser.requests.size(), 1);
    QCOMPARE(window.chooser.requests.first().message, QStringLiteral("Select a git repository folder"));
    QCOMPARE(window.chooser.requests.first().confirmTitle, QStringLiteral("Add"));
}

void TestRepositoriesTab::anAddedFolderIsTrackedAndRead()
{
    SettingsWindow window;
    window.engine.script(QStringLiteral("/src/a"), "2026-11-20\n", "2026-11-20\n", "2026-11-20T10:00:00Z");
    window.open();
    choose(window, add, QStringLiteral("/src/a"));
    QTRY_COMPARE(window.engine.manager.currentStreak(), 1);
    QCOMPARE(trackedPaths(window), QStringList(QStringLiteral("/src/a")));
    QVERIFY(!window.engine.settings.trackedRepositories().first().isAutoDiscovered);
    QVERIFY(window.says(QStringLiteral("1 repos")));
    QCOMPARE(messageOf(window), QString());
}

void TestRepositoriesTab::aFolderWithoutARepositoryPasses()
{
    SettingsWindow window;
    window.engine.script(QStringLiteral("/src/a"), {}, {}, {});
    window.engine.runner.answerIn(QStringLiteral("/src/a"), QStringLiteral("rev-parse --git-dir"), {});
    window.open();
    choose(window, add, QStringLiteral("/src/a"));
    QTRY_COMPARE(window.engine.manager.repositoryStats().size(), 1);
    QCOMPARE(window.engine.manager.repositoryStats().first().todayCommits, 0);
    QCOMPARE(messageOf(window), QString());
}

void TestRepositoriesTab::aFolderThatVanishedIsNoRepository()
{
    SettingsWindow window;
    window.open();
    QSignalSpy refreshes(&window.engine.manager, &StreakManager::isRefreshingWillChange);
    choose(window, add, QStringLiteral("/gone"));
    QTRY_COMPARE(messageOf(window), noRepository);
    QCOMPARE(trackedPaths(window), QStringList());
    QCOMPARE(refreshes.count(), 0);
}

void TestRepositoriesTab::cancellingChangesNothing()
{
    SettingsWindow window;
    window.open();
    choose(window, add, QStringLiteral("/gone"));
    QTRY_COMPARE(messageOf(window), noRepository);
    SettingsWindow::click(window.control<QPushButton>(add));
    SettingsWindow::click(window.control<QPushButton>(scan));
    QCOMPARE(messageOf(window), noRepository);
    QVERIFY(window.control<QPushButton>(scan)->isEnabled());
    QCOMPARE(trackedPaths(window), QStringList());
}

void TestRepositoriesTab::aSuccessfulAddClearsTheMessage()
{
    SettingsWindow window;
    window.engine.script(QStringLiteral("/src/a"), {}, {}, {});
    window.open();
    choose(window, add, QStringLiteral("/gone"));
    QTRY_COMPARE(messageOf(window), noRepository);
    choose(window, add, QStringLiteral("/src/a"));
    QTRY_COMPARE(messageOf(window), QString());
}

void TestRepositoriesTab::addingATrackedPathRefreshesOnly()
{
    SettingsWindow window;
    window.engine.track(QStringLiteral("/src/a"), {}, {}, {});
    window.open();
    choose(window, add, QStringLiteral("/src/a"));
    QTRY_VERIFY(window.engine.manager.lastRefresh().has_value());
    QCOMPARE(trackedPaths(window).size(), 1);
}

void TestRepositoriesTab::scanningAsksForOneFolder()
{
    SettingsWindow window;
    window.open();
    SettingsWindow::click(window.control<QPushButton>(scan));
    QCOMPARE(window.chooser.requests.size(), 1);
    QCOMPARE(window.chooser.requests.first().message, QStringLiteral("Select a folder to scan for git repositories"));
    QCOMPARE(window.chooser.requests.first().confirmTitle, QStringLiteral("Scan"));
}

void TestRepositoriesTab::aScanTracksWhatIsNew()
{
    const Folder folder({QStringLiteral("known"), QStringLiteral("new")});
    SettingsWindow window;
    window.engine.settings.addRepository(folder.path(QStringLiteral("known")), false);
    window.open();
    scanTo(window, folder.dir.path());
    QCOMPARE(trackedPaths(window),
             (QStringList{folder.path(QStringLiteral("known")), folder.path(QStringLiteral("new"))}));
    QVERIFY(!window.engine.settings.trackedRepositories().last().isAutoDiscovered);
    QCOMPARE(messageOf(window), QString());
    QTRY_VERIFY(window.engine.manager.lastRefresh().has_value());
}

void TestRepositoriesTab::aScanOfWhatIsTrackedSaysSo()
{
    const Folder folder({QStringLiteral("a"), QStringLiteral("b")});
    SettingsWindow window;
    window.open();
    scanTo(window, folder.dir.path());
    QTRY_VERIFY(window.engine.manager.lastRefresh().has_value());
    QSignalSpy refreshes(&window.engine.manager, &StreakManager::isRefreshingWillChange);
    scanTo(window, folder.dir.path());
    QTRY_COMPARE(messageOf(window), QStringLiteral("Found 2 repos, all already tracked"));
    QCOMPARE(trackedPaths(window).size(), 2);
    QCOMPARE(refreshes.count(), 0);
}

void TestRepositoriesTab::aScanThatFindsNothingSaysSo()
{
    const Folder folder({});
    SettingsWindow window;
    window.open();
    scanTo(window, folder.dir.path());
    QTRY_COMPARE(messageOf(window), QStringLiteral("No git repositories found in selected folder"));
}

void TestRepositoriesTab::startingAScanClearsTheMessage()
{
    const Folder folder({QStringLiteral("a")});
    SettingsWindow window;
    window.open();
    choose(window, add, QStringLiteral("/gone"));
    QTRY_COMPARE(messageOf(window), noRepository);
    scanTo(window, folder.dir.path());
    QTRY_COMPARE(messageOf(window), QString());
}

void TestRepositoriesTab::aScanGoesFiveLevelsDeep()
{
    const Folder folder({QStringLiteral("1/2/3/4"), QStringLiteral("i/ii/iii/iv/v")});
    SettingsWindow window;
    window.open();
    scanTo(window, folder.dir.path());
    QCOMPARE(trackedPaths(window), QStringList(folder.path(QStringLiteral("1/2/3/4"))));
}

void TestRepositoriesTab::whileAScanRunsAddingStaysUsable()
{
    const Folder folder({QStringLiteral("a")});
    SettingsWindow window;
    window.open();
    SlowGit slow(window);
    choose(window, scan, folder.dir.path());
    SettingsWindow::settle();
    QVERIFY(window.says(QStringLiteral("Scanning...")));
    QVERIFY(!window.control<QPushButton>(scan)->isEnabled());
    QVERIFY(window.controls<QPushButton>(add).last()->isEnabled());
    slow.release();
    QTRY_VERIFY(window.control<QPushButton>(scan)->isEnabled());
    QVERIFY(!window.says(QStringLiteral("Scanning...")));
}

void TestRepositoriesTab::besideTheWordAWheelTurns()
{
    const FontOfPixels font(13);
    const Folder folder({QStringLiteral("a")});
    SettingsWindow window;
    window.open();
    const SlowGit slow(window);
    choose(window, scan, folder.dir.path());
    const auto word = QStringLiteral("Scanning...");
    QTRY_VERIFY(window.control<Text>(word) != nullptr);
    QTRY_COMPARE(window.control<Text>(word)->x(), 11 + 8);
    QTRY_COMPARE(window.placeOf(window.control<Text>(word)).left(), 16 + 11 + 8);
    const auto before = drawingBefore(window, word);
    QVERIFY(!isPlain(before));
    QTRY_VERIFY(drawingBefore(window, word) != before);
}

void TestRepositoriesTab::aScanOutlivesItsWindow()
{
    const Folder folder({QStringLiteral("a")});
    SettingsWindow window;
    window.open();
    choose(window, scan, folder.dir.path());
    window.view->close();
    QTRY_COMPARE(trackedPaths(window).size(), 1);
    window.show();
    QVERIFY(window.says(QStringLiteral("1 repos")));
}

void TestRepositoriesTab::aBoxEnablesOrDisablesItsRecord()
{
    SettingsWindow window;
    window.engine.settings.addRepository(QStringLiteral("/src/a"), false);
    window.engine.settings.addRepository(QStringLiteral("/src/b"), false);
    window.open();
    QSignalSpy refreshes(&window.engine.manager, &StreakManager::isRefreshingWillChange);
    auto *const box = window.control<QCheckBox>(QStringLiteral("b"));
    QVERIFY(box->isChecked());
    SettingsWindow::click(box);
    QVERIFY(window.engine.settings.trackedRepositories().first().isEnabled);
    QVERIFY(!window.engine.settings.trackedRepositories().last().isEnabled);
    SettingsWindow::click(box);
    QVERIFY(window.engine.settings.trackedRepositories().last().isEnabled);
    QCOMPARE(refreshes.count(), 0);
}

void TestRepositoriesTab::aBoxWritesIntoTheRecordAsItIsNow()
{
    SettingsWindow window;
    window.engine.settings.addRepository(QStringLiteral("/src/a"), false);
    window.engine.settings.addRepository(QStringLiteral("/src/b"), false);
    window.open();
    auto repositories = window.engine.settings.trackedRepositories();
    repositories.swapItemsAt(0, 1);
    repositories.last().name = QStringLiteral("renamed");
    window.engine.settings.setTrackedRepositories(repositories);
    SettingsWindow::click(window.control<QCheckBox>(QStringLiteral("a")));
    repositories.last().isEnabled = false;
    QCOMPARE(window.engine.settings.trackedRepositories(), repositories);
}

void TestRepositoriesTab::aBoxMovedTwiceBeforeItIsRenderedIsAsBefore()
{
    SettingsWindow window;
    window.engine.settings.addRepository(QStringLiteral("/src/a"), false);
    window.open();
    auto *const box = window.control<QCheckBox>(QStringLiteral("a"));
    box->click();
    box->click();
    QVERIFY(window.engine.settings.trackedRepositories().first().isEnabled);
    SettingsWindow::settle();
    QVERIFY(box->isChecked());
}

void TestRepositoriesTab::aBinRemovesItsRecordAndStartsNoRefresh()
{
    SettingsWindow window;
    window.engine.settings.addRepository(QStringLiteral("/src/a"), false);
    window.engine.settings.addRepository(QStringLiteral("/src/b"), false);
    window.open();
    QSignalSpy refreshes(&window.engine.manager, &StreakManager::isRefreshingWillChange);
    SettingsWindow::click(window.controls<IconButton>(QStringLiteral("Remove")).first());
    QCOMPARE(trackedPaths(window), QStringList(QStringLiteral("/src/b")));
    QVERIFY(window.says(QStringLiteral("1 repos")));
    QVERIFY(!window.says(QStringLiteral("/src/a")));
    QCOMPARE(refreshes.count(), 0);
}

void TestRepositoriesTab::removingTheLastRecordLeavesTheFocusWhereItIsOfUse()
{
    SettingsWindow window;
    window.engine.settings.addRepository(QStringLiteral("/src/a"), false);
    window.open();
    window.control<IconButton>(QStringLiteral("Remove"))->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    SettingsWindow::settle();
    auto *const focused = qobject_cast<QPushButton *>(QApplication::focusWidget());
    QVERIFY(focused != nullptr);
    QCOMPARE(SettingsWindow::nameOf(focused), add);
    QVERIFY(window.says(QStringLiteral("No Repositories")));
}

void TestRepositoriesTab::refreshNowRefreshes()
{
    SettingsWindow window;
    window.engine.track(QStringLiteral("/src/a"), "2026-11-20\n", "2026-11-20\n", {});
    window.open();
    SettingsWindow::click(window.control<QPushButton>(refreshNow));
    QTRY_COMPARE(window.engine.manager.currentStreak(), 1);
}

void TestRepositoriesTab::refreshNowStaysUsableWhileOneRuns()
{
    SettingsWindow window;
    window.engine.track(QStringLiteral("/src/a"), {}, {}, {});
    window.open();
    QSignalSpy refreshes(&window.engine.manager, &StreakManager::isRefreshingWillChange);
    auto *const button = window.control<QPushButton>(refreshNow);
    button->click();
    QVERIFY(window.engine.manager.isRefreshing());
    QVERIFY(button->isEnabled());
    button->click();
    QTRY_VERIFY(!window.engine.manager.isRefreshing());
    QCOMPARE(refreshes.count(), 2);
}

void TestRepositoriesTab::aLongPathIsCutInItsMiddle()
{
    const QString middle(4000, QLatin1Char('x'));
    SettingsWindow window;
    window.engine.settings.addRepository(QStringLiteral("/begin/") + middle + QStringLiteral("/end"), false);
    window.open();
    auto *const path = window.control<Text>(QStringLiteral("/begin/") + middle + QStringLiteral("/end"));
    if (path == nullptr)
        QFAIL("The path is not shown");
    QVERIFY(path->width() < path->sizeHint().width());
    QVERIFY(window.view->rect().contains(window.placeOf(path)));
    const auto shown = paintedWords(*path).join(QString());
    QVERIFY2(shown.startsWith(QLatin1String("/begin/x")) && shown.endsWith(QLatin1String("x/end")), qPrintable(shown));
    QCOMPARE(shown.count(QChar(0x2026)), 1);
    auto *const name = window.control<Text>(QStringLiteral("end"));
    QCOMPARE(name->width(), name->sizeHint().width());
}

void TestRepositoriesTab::aNameWithALineBreakStaysOnItsLine()
{
    SettingsWindow window;
    window.engine.settings.addRepository(QStringLiteral("/src/plain"), false);
    window.engine.settings.addRepository(QStringLiteral("/src/two\nlines"), false);
    window.open();
    const auto *const plain = window.control<Text>(QStringLiteral("plain"));
    const auto *const broken = window.control<Text>(QStringLiteral("two\nlines"));
    QVERIFY(broken != nullptr);
    QCOMPARE(broken->height(), plain->height());
}

// What a folder is called is not ours to choose: shown as markup, it would hide what it says and could show a picture.
void TestRepositoriesTab::aPathIsNeverTakenForMarkup_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("tags") << QStringLiteral("/src/<b>a</b> & <img src='x'>");
    QTest::newRow("an escaped character") << QStringLiteral("/src/a &lt; b");
    QTest::newRow("a plain path") << QStringLiteral("/src/my own & theirs");
}

void TestRepositoriesTab::aPathIsNeverTakenForMarkup()
{
    QFETCH(QString, path);
    SettingsWindow window;
    window.engine.settings.addRepository(path, false);
    window.open();
    auto *const texts = window.control<Text>(path)->parentWidget();
    const QPoint place = texts->rect().center();
    QHelpEvent help(QEvent::ToolTip, place, texts->mapToGlobal(place));
    QApplication::sendEvent(texts, &help);
    QTextDocument shown;
    const auto tip = QToolTip::text();
    Qt::mightBeRichText(tip) ? shown.setHtml(tip) : shown.setPlainText(tip);
    QToolTip::hideText();
    QCOMPARE(shown.toPlainText(), path);
}

void TestRepositoriesTab::aMessageThatIsTooLongIsCut()
{
    QWidget tab;
    auto *const line = makeMessage(&tab);
    QVERIFY(line->isHidden());
    showLine(*line, QString(200, u'w'));
    QVERIFY(!line->isHidden());
    QCOMPARE(line->minimumSizeHint(), QSize(0, line->sizeHint().height()));
    showLine(*line, {});
    QVERIFY(line->isHidden());
}

void TestRepositoriesTab::theMessageIsGoneWhenTheWindowOpensAgain()
{
    SettingsWindow window;
    window.open();
    choose(window, add, QStringLiteral("/gone"));
    QTRY_COMPARE(messageOf(window), noRepository);
    window.view->close();
    window.show();
    QCOMPARE(messageOf(window), QString());
}

void TestRepositoriesTab::aChosenPathIsTakenAsItIs_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("name");
    QTest::newRow("with a slash at its end") << QStringLiteral("/src/a/") << QStringLiteral("a");
    QTest::newRow("with dots in it") << QStringLiteral("/src/../src/a") << QStringLiteral("a");
    QTest::newRow("the root") << QStringLiteral("/") << QStringLiteral("/");
    QTest::newRow("with blanks and quotes")
        << QStringLiteral("/src/my \"own\" 'work'") << QStringLiteral("my \"own\" 'work'");
    QTest::newRow("with percent and tilde") << QStringLiteral("/src/100%~") << QStringLiteral("100%~");
    QTest::newRow("with letters of many kinds")
        << QStringLiteral("/src/日本 ünïcødé") << QStringLiteral("日本 ünïcødé");
    QTest::newRow("with an ampersand") << QStringLiteral("/src/you & me") << QStringLiteral("you & me");
}

void TestRepositoriesTab::aChosenPathIsTakenAsItIs()
{
    QFETCH(QString, path);
    QFETCH(QString, name);
    SettingsWindow window;
    window.engine.script(path, {}, {}, {});
    window.open();
    choose(window, add, path);
    QTRY_COMPARE(trackedPaths(window), QStringList(path));
    SettingsWindow::settle();
    QVERIFY(window.says(path));
    QVERIFY(window.says(name));
}

void TestRepositoriesTab::theBinIsFaintUntilSomebodyComesNear_data()
{
    QTest::addColumn<bool>("isRowUnderPointer");
    QTest::addColumn<QString>("focused");
    QTest::newRow("with the pointer elsewhere") << false << QString();
    QTest::newRow("with the pointer on its row") << true << QString();
    QTest::newRow("with the focus") << false << QStringLiteral("Remove");
    QTest::newRow("with the focus on the box of its row") << false << QStringLiteral("a");
    QTest::newRow("with the focus elsewhere") << false << QStringLiteral("Refresh Now");
}

void TestRepositoriesTab::theBinIsFaintUntilSomebodyComesNear()
{
    QFETCH(bool, isRowUnderPointer);
    QFETCH(QString, focused);
    const FontOfPixels font(13);
    QCursor::setPos(700, 700);
    SettingsWindow window;
    window.engine.settings.addRepository(QStringLiteral("/src/a"), false);
    window.open();
    auto *const bin = window.control<IconButton>(QStringLiteral("Remove"));
    bin->parentWidget()->setAttribute(Qt::WA_UnderMouse, isRowUnderPointer);
    if (!focused.isEmpty())
        window.control<QAbstractButton>(focused)->setFocus();
    const auto outset = PlainButton::outset();
    const auto place = bin->rect().adjusted(outset, outset, -outset, -outset);
    QCOMPARE(place.height(), style::symbolSize(QStringLiteral("trash"), 12).height());
    const auto red = style::accentText(bin->palette(), style::Accent::Red);
    const bool isInUse = isRowUnderPointer || focused == QStringLiteral("Remove") || focused == QStringLiteral("a");
    const auto color = isInUse ? red : style::faded(red, bin->palette());
    const auto expected = pictureOfSymbol(QStringLiteral("trash"), place, color, *bin);
    QVERIFY(!isPlain(expected.copy(place)));
    QCOMPARE(pictureOf(*bin, 1).copy(place), expected.copy(place));
}

void TestRepositoriesTab::theButtonOfAnEmptyListIsTheProminentOne()
{
    SettingsWindow window;
    window.open();
    for (auto *const button : window.view->findChildren<QPushButton *>()) {
        const bool isOfPanel = qobject_cast<EmptyPanel *>(button->parentWidget()) != nullptr;
        QCOMPARE(button->property("isProminent").toBool(), isOfPanel);
        QCOMPARE(button->isDefault(), isOfPanel);
    }
    QCOMPARE(window.view->findChildren<EmptyPanel *>().size(), 2);
}

void TestRepositoriesTab::aRowKeepsItsDistances()
{
    const FontOfPixels font(13);
    SettingsWindow window;
    window.engine.settings.addRepository(QStringLiteral("/src/a"), true);
    window.open();
    const auto *const row = window.view->findChild<RepositoryRow *>();
    const auto place = window.placeOf(row);
    const auto room = 4;  // around the box, for its ring
    const auto box = window.placeOf(window.control<QCheckBox>(QStringLiteral("a"))).adjusted(room, room, -room, -room);
    const auto name = window.placeOf(window.control<Text>(QStringLiteral("a")));
    const auto path = window.placeOf(window.control<Text>(QStringLiteral("/src/a")));
    const auto badge = window.placeOf(row->findChild<Badge *>());
    const auto bin = window.placeOf(window.control<IconButton>(QStringLiteral("Remove")));
    QCOMPARE(box.left() - place.left(), 10);
    QCOMPARE(name.left() - box.right() - 1, 8);
    QCOMPARE(badge.left() - name.right() - 1, 4);
    QCOMPARE(path.topLeft(), QPoint(name.left(), std::max(name.bottom(), badge.bottom()) + 1 + 8));
    QCOMPARE(place.right() - bin.right(), 10 - PlainButton::outset() - 2);
    QVERIFY(bin.width() >= 24 && bin.height() >= 24);
    const auto texts = path.bottom() + 1 - std::min(name.top(), badge.top());
    QCOMPARE(row->sizeHint().height(), std::max({texts, box.height(), bin.height()}) + 2 * 4 + 1);
}

void TestRepositoriesTab::aRowIsWrittenInItsSizesAndColours()
{
    const FontOfPixels font(13);
    SettingsWindow window;
    window.engine.settings.addRepository(QStringLiteral("/src/a"), true);
    window.open();
    auto *const row = window.view->findChild<RepositoryRow *>();
    const auto palette = row->palette();
    const auto written = paintedTexts(*row);
    QCOMPARE(paintedWords(*row), (QStringList{QStringLiteral("a"), QStringLiteral("/src/a"), QStringLiteral("Auto")}));
    QCOMPARE(written.at(0).font, style::font(style::TypeStyle::Body, QFont::Medium));
    QCOMPARE(written.at(0).color, style::ink(palette, style::Ink::Primary));
    QCOMPARE(written.at(1).font, style::font(style::TypeStyle::Caption));
    QCOMPARE(written.at(1).color, style::ink(palette, style::Ink::Secondary));
    QCOMPARE(written.at(2).font, style::font(style::TypeStyle::Caption2));
    const auto ground = style::badgeGround(palette, style::Accent::Blue);
    QCOMPARE(written.at(2).color, style::accentTextOn(ground, palette, style::Accent::Blue));
}

void TestRepositoriesTab::whatIsWrittenHasItsSizeAndColour_data()
{
    using style::TypeStyle;
    QTest::addColumn<QString>("text");
    QTest::addColumn<QFont>("font");
    QTest::addColumn<style::Tone>("tone");
    const auto row = [](const char *text, const QFont &font, const style::Tone &tone) {
        QTest::newRow(text) << QString::fromLatin1(text) << font << tone;
    };
    const FontOfPixels font(13);
    row("Tracked Repositories", style::font(TypeStyle::Headline), style::Ink::Primary);
    row("0 repos", style::font(TypeStyle::Caption), style::Ink::Secondary);
    row("No Repositories", style::systemFont(17, QFont::Bold), style::Ink::Primary);
    row("Add git repositories to track your commit streak", style::font(TypeStyle::Subheadline), style::Ink::Secondary);
    row("Selected folder is not a git repository", style::font(TypeStyle::Caption), style::Accent::Red);
    row("Scanning...", style::font(TypeStyle::Caption), style::Ink::Secondary);
}

void TestRepositoriesTab::whatIsWrittenHasItsSizeAndColour()
{
    QFETCH(QString, text);
    QFETCH(style::Tone, tone);
    const FontOfPixels font(13);
    SettingsWindow window;
    window.open();
    choose(window, add, QStringLiteral("/gone"));
    QTRY_COMPARE(messageOf(window), noRepository);
    auto written = paintedTexts(*window.view);
    const Folder folder({});
    const SlowGit slow(window);
    choose(window, scan, folder.dir.path());
    SettingsWindow::settle();
    written += paintedTexts(*window.view);
    const auto found = std::ranges::find(written, text, &PaintedText::text);
    QVERIFY(found != written.end());
    QTEST(found->font, "font");
    QCOMPARE(found->color, style::textColor(window.view->palette(), tone));
}

void TestRepositoriesTab::theBadgeIsACapsuleAroundItsWord()
{
    const FontOfPixels font(13);
    Badge badge(QStringLiteral("Auto"), nullptr);
    const QFontMetrics metrics(style::font(style::TypeStyle::Caption2));
    QCOMPARE(badge.sizeHint(), QSize(metrics.horizontalAdvance(QStringLiteral("Auto")) + 2 * 4, metrics.height() + 2));
    badge.resize(60, 16);
    const auto ground = style::badgeGround(badge.palette(), style::Accent::Blue);
    const auto expected = drawnOn(badge, [&badge, &ground](QPainter &painter) {
        painter.setBrush(ground);
        painter.drawRoundedRect(QRectF(0, 0, 60, 16), 8, 8);
        painter.setPen(style::accentTextOn(ground, badge.palette(), style::Accent::Blue));
        painter.setFont(style::font(style::TypeStyle::Caption2));
        painter.drawText(QRect(0, 0, 60, 16), Qt::AlignCenter, QStringLiteral("Auto"));
    });
    QCOMPARE(pictureOf(badge, 1), expected);
}

void TestRepositoriesTab::theWheelTurnsByOneOfEightSpokes()
{
    const FontOfPixels font(20);
    Spinner wheel;
    QCOMPARE(wheel.size(), QSize(17, 17));
    wheel.setFixedSize(70, 70);
    const auto drawn = [&wheel](int steps) {
        return drawnOn(wheel, [&wheel, steps](QPainter &painter) {
            painter.translate(35, 35);
            painter.rotate(45 * steps);
            auto color = style::ink(wheel.palette(), style::Ink::Secondary);
            for (const auto opacity : {1.0F, 0.125F, 0.25F, 0.375F, 0.5F, 0.625F, 0.75F, 0.875F}) {
                color.setAlphaF(opacity);
                painter.setPen(QPen(color, 10, Qt::SolidLine, Qt::RoundCap));
                painter.drawLine(QPointF(0, -17.5), QPointF(0, -29.75));
                painter.rotate(45);
            }
        });
    };
    for (int step = 0; step <= 8; ++step) {
        QCOMPARE(pictureOf(wheel, 1), drawn(step));
        QTimerEvent tick(1);
        QCoreApplication::sendEvent(&wheel, &tick);
    }
}

void TestRepositoriesTab::theWheelTurnsOnlyWhileItIsShown()
{
    const auto timers = [](Spinner &wheel) { return QAbstractEventDispatcher::instance()->registeredTimers(&wheel); };
    Spinner wheel;
    QVERIFY(timers(wheel).isEmpty());
    wheel.show();
    QCOMPARE(timers(wheel).size(), 1);
    QCOMPARE(timers(wheel).first().interval, 100);
    wheel.hide();
    QVERIFY(timers(wheel).isEmpty());
}

void TestRepositoriesTab::theTabKeepsItsDistances()
{
    const FontOfPixels font(13);
    SettingsWindow window;
    window.engine.settings.addRepository(QStringLiteral("/src/a"), false);
    window.open();
    const auto *const tab = window.view->findChild<QWidget *>(QStringLiteral("repositoriesTab"));
    const auto whole = window.placeOf(tab);
    const auto title = window.placeOf(window.control<Text>(QStringLiteral("Tracked Repositories")));
    const auto count = window.placeOf(window.control<Text>(QStringLiteral("1 repos")));
    const auto list = window.placeOf(tab->findChild<RowList *>());
    const auto first = window.placeOf(window.control<QPushButton>(add));
    const auto second = window.placeOf(window.control<QPushButton>(scan));
    const auto last = window.placeOf(window.control<QPushButton>(refreshNow));
    QCOMPARE(title.topLeft() - whole.topLeft(), QPoint(16, 16));
    QCOMPARE(whole.right() - count.right(), 16);
    QCOMPARE(list.top() - title.bottom() - 1, 16);
    QCOMPARE(first.top() - list.bottom() - 1, 16);
    QCOMPARE(whole.bottom() - first.bottom(), 16);
    QCOMPARE(first.left() - whole.left(), 16);
    QCOMPARE(second.left() - first.right() - 1, 8);
    QCOMPARE(whole.right() - last.right(), 16);
}

void TestRepositoriesTab::theButtonsShowTheirSymbols()
{
    SettingsWindow window;
    window.engine.settings.addRepository(QStringLiteral("/src/a"), false);
    window.open();
    const auto shown = [&window](const QString &button) {
        const auto icon = window.control<QPushButton>(button)->icon();
        return icon.isNull() ? QImage() : icon.pixmap(24, 24).toImage();
    };
    const auto drawn = [](const char *symbol) {
        return style::symbolIcon(QLatin1String(symbol)).pixmap(24, 24).toImage();
    };
    QVERIFY(!isPlain(drawn("plus")) && !isPlain(drawn("folder.badge.gearshape")));
    QCOMPARE(shown(add), drawn("plus"));
    QCOMPARE(shown(scan), drawn("folder.badge.gearshape"));
    QCOMPARE(shown(refreshNow), QImage());
}

void TestRepositoriesTab::rowsArePartedByALine()
{
    const FontOfPixels font(13);
    SettingsWindow window;
    window.engine.settings.addRepository(QStringLiteral("/src/a"), false);
    window.engine.settings.addRepository(QStringLiteral("/src/b"), false);
    window.open();
    const auto rowOf = [&window](const QString &name) { return window.control<QCheckBox>(name)->parentWidget(); };
    const auto lowerEdge = [](QWidget *row, int x) { return pictureOf(*row, 1).pixelColor(x, row->height() - 1); };
    auto *const upper = rowOf(QStringLiteral("a"));
    const auto ground = upper->palette().color(QPalette::Window);
    QCOMPARE(lowerEdge(upper, 10), style::divider(upper->palette()));
    QCOMPARE(lowerEdge(upper, upper->width() - 11), style::divider(upper->palette()));
    QCOMPARE(lowerEdge(upper, 9), ground);
    QCOMPARE(lowerEdge(upper, upper->width() - 10), ground);
    QCOMPARE(lowerEdge(rowOf(QStringLiteral("b")), 10), ground);
}

void TestRepositoriesTab::theRowUnderThePointerHasAGroundOfItsOwn()
{
    SettingsWindow window;
    window.engine.settings.addRepository(QStringLiteral("/src/a"), false);
    window.open();
    auto *const row = window.view->findChild<RepositoryRow *>();
    const auto ground = [row] { return pictureOf(*row, 1).pixelColor(6, row->height() / 2); };
    QTest::mouseMove(window.view->windowHandle(), QPoint(2, 2));
    QTRY_COMPARE(ground(), row->palette().color(QPalette::Window));
    QTest::mouseMove(window.view->windowHandle(), window.placeOf(row).center());
    QTRY_COMPARE(ground(), style::hoveredGround(row->palette()));
}

void TestRepositoriesTab::theRowWithTheFocusHasAGroundOfItsOwn()
{
    SettingsWindow window;
    window.engine.settings.addRepository(QStringLiteral("/src/a"), false);
    window.open();
    auto *const row = window.view->findChild<RepositoryRow *>();
    const QPoint place(4, row->height() / 2);
    const auto ground = [&] { return pictureOf(*row, 1).pixelColor(place); };
    QTest::mouseMove(window.view->windowHandle(), QPoint(2, 2));
    PaintRecorder paints(*row);
    window.control<QCheckBox>(QStringLiteral("a"))->setFocus();
    QTRY_VERIFY(paints.region.contains(place));
    QCOMPARE(ground(), style::hoveredGround(row->palette()));
    paints.region = {};
    window.control<QPushButton>(QStringLiteral("Refresh Now"))->setFocus();
    QTRY_VERIFY(paints.region.contains(place));
    QCOMPARE(ground(), row->palette().color(QPalette::Window));
}

void TestRepositoriesTab::theControlsOfARowSayWhatTheyAreFor()
{
    SettingsWindow window;
    window.engine.settings.addRepository(QStringLiteral("/src/a"), false);
    window.open();
    const auto *const bin = window.control<IconButton>(QStringLiteral("Remove"));
    QCOMPARE(bin->toolTip(), QStringLiteral("Remove"));
    QCOMPARE(bin->accessibleDescription(), QStringLiteral("a"));
    QCOMPARE(window.control<QCheckBox>(QStringLiteral("a"))->accessibleDescription(), QStringLiteral("/src/a"));
}

void TestRepositoriesTab::withoutRepositoriesASymbolStandsOverTheWords()
{
    const FontOfPixels font(13);
    SettingsWindow window;
    window.open();
    const auto *const title = window.control<Text>(QStringLiteral("No Repositories"));
    auto *const panel = title->parentWidget();
    auto *const symbol = panel->findChild<SymbolView *>();
    QVERIFY(symbol != nullptr && symbol->isVisible());
    QCOMPARE(title->y() - symbol->geometry().bottom() - 1, 8);
    QCOMPARE(symbol->size(), style::symbolSize(QStringLiteral("folder.badge.plus"), 34));
    const auto *const explanation = panel->findChildren<Text *>().last();
    const auto *const button = panel->findChild<QPushButton *>();
    QCOMPARE(explanation->y() - title->geometry().bottom() - 1, 8);
    QCOMPARE(button->y() - explanation->geometry().bottom() - 1, 8 + 4);
    QVERIFY(qAbs(symbol->y() + button->geometry().bottom() - panel->rect().bottom()) <= 1);
    for (const auto *const part : {static_cast<const QWidget *>(symbol), static_cast<const QWidget *>(title),
                                   static_cast<const QWidget *>(explanation), static_cast<const QWidget *>(button)}) {
        QCOMPARE(part->size(), part->sizeHint());
        QVERIFY(qAbs(part->x() + part->geometry().right() - panel->rect().right()) <= 1);
    }
    QCOMPARE(panel->minimumSizeHint(), QSize(explanation->width(), button->geometry().bottom() + 1 - symbol->y()));
    QCOMPARE(window.placeOf(panel).left(), 16);
    QCOMPARE(window.placeOf(panel).right(), window.view->width() - 1 - 16);
    const auto color = style::ink(panel->palette(), style::Ink::Secondary);
    const auto expected = pictureOfSymbol(QStringLiteral("folder.badge.plus"), symbol->rect(), color, *symbol);
    QVERIFY(!isPlain(expected));
    QCOMPARE(pictureOf(*symbol, 1), expected);
    const auto heading = paintedTexts(*panel->findChildren<Text *>().first()).first();
    const auto words = paintedTexts(*panel->findChildren<Text *>().last()).first();
    QCOMPARE(heading.font, style::systemFont(17, QFont::Bold));
    QCOMPARE(words.font, style::font(style::TypeStyle::Subheadline));
    QCOMPARE(words.color, color);
}

void TestRepositoriesTab::theBadgeCanBeRead_data()
{
    QTest::addColumn<QPalette>("palette");
    QTest::newRow("on a light ground") << lightPalette();
    QTest::newRow("on a dark ground") << darkPalette();
}

void TestRepositoriesTab::theBadgeCanBeRead()
{
    QFETCH(QPalette, palette);
    const auto ground = style::badgeGround(palette, style::Accent::Blue);
    const auto ink = style::accentTextOn(ground, palette, style::Accent::Blue);
    QVERIFY2(style::contrast(ink, ground) >= 4.5, qPrintable(QString::number(style::contrast(ink, ground))));
}

void TestRepositoriesTab::whatARowSaysCanBeReadUnderThePointer_data()
{
    theBadgeCanBeRead_data();
}

void TestRepositoriesTab::whatARowSaysCanBeReadUnderThePointer()
{
    QFETCH(QPalette, palette);
    const auto ground = style::hoveredGround(palette);
    const std::array<style::Tone, 4> tones{style::Ink::Primary, style::Ink::Secondary, style::Accent::Red,
                                           style::Accent::Green};
    for (const auto &tone : tones) {
        const auto contrast = style::contrast(style::textColor(palette, tone), ground);
        QVERIFY2(contrast >= 4.5, qPrintable(QString::number(contrast)));
    }
}

void TestRepositoriesTab::aScreenReaderRemovesAndDisables()
{
    SettingsWindow window;
    window.engine.settings.addRepository(QStringLiteral("/src/a"), false);
    window.engine.settings.addRepository(QStringLiteral("/src/b"), false);
    window.open();
    auto *const box = QAccessible::queryAccessibleInterface(window.control<QCheckBox>(QStringLiteral("a")));
    QVERIFY(box->state().checked);
    box->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    SettingsWindow::settle();
    QVERIFY(!window.engine.settings.trackedRepositories().first().isEnabled);
    pressAccessibly(*window.controls<IconButton>(QStringLiteral("Remove")).last());
    QTRY_COMPARE(trackedPaths(window), QStringList(QStringLiteral("/src/a")));
}

void TestRepositoriesTab::scanningByKeyboardKeepsTheFocusAtHand()
{
    const Folder folder({QStringLiteral("a")});
    SettingsWindow window;
    window.engine.settings.addRepository(QStringLiteral("/src/a"), false);
    window.open();
    window.control<QPushButton>(scan)->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    window.chooser.confirm(folder.dir.path());
    SettingsWindow::settle();
    QCOMPARE(SettingsWindow::nameOf(QApplication::focusWidget()), add);
}

void TestRepositoriesTab::aScanLeavesAFocusElsewhereAlone()
{
    const Folder folder({});
    SettingsWindow window;
    window.engine.settings.addRepository(QStringLiteral("/src/a"), false);
    window.open();
    auto *const refresh = window.control<QPushButton>(refreshNow);
    refresh->setFocus();
    const SlowGit slow(window);
    choose(window, scan, folder.dir.path());
    SettingsWindow::settle();
    QVERIFY(!window.control<QPushButton>(scan)->isEnabled());
    QCOMPARE(QApplication::focusWidget(), refresh);
}

void TestRepositoriesTab::aMessageLeavesTheFocusAlone()
{
    SettingsWindow window;
    window.open();
    for (auto *const focused : {window.controls<QPushButton>(add).first(), window.control<QPushButton>(scan)}) {
        focused->setFocus();
        choose(window, add, QStringLiteral("/gone"));
        QTRY_COMPARE(messageOf(window), noRepository);
        QCOMPARE(QApplication::focusWidget(), focused);
        window.view->close();
        window.show();
    }
}

void TestRepositoriesTab::rowsAreRemovedOneAfterAnotherByKeyboard()
{
    SettingsWindow window;
    for (int index = 0; index < 1000; ++index)
        window.engine.settings.addRepository(QStringLiteral("/src/%1").arg(index), false);
    window.open();
    window.controls<IconButton>(QStringLiteral("Remove")).at(1)->setFocus();
    const auto press = [](Qt::Key key) {
        QTest::keyClick(QApplication::focusWidget(), key);
        SettingsWindow::settle();
    };
    press(Qt::Key_Space);
    press(Qt::Key_End);
    press(Qt::Key_Space);
    press(Qt::Key_Space);
    press(Qt::Key_Home);
    press(Qt::Key_Space);
    const auto paths = trackedPaths(window);
    QCOMPARE(paths.size(), 996);
    QCOMPARE(paths.first(), QStringLiteral("/src/2"));
    QCOMPARE(paths.last(), QStringLiteral("/src/997"));
}

VELQUARIN_WINDOW_TEST(TestRepositoriesTab)
#include "tst_repositoriestab.moc"
