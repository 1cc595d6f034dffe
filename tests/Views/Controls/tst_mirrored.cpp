// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "support/Offscreen.h"
#include "support/Picture.h"
#include "support/RecordingFileViewer.h"
#include "support/TestProgram.h"
#include "Views/Controls/Switch.h"
#include "Views/Controls/Symbols.h"
#include "Views/Controls/Text.h"
#include "Views/Dashboard/MenuBarView.h"
#include "Views/Dashboard/YearHeatmapView.h"

#include "Views/Settings/SettingsWindow.h"

#include <QApplication>
#include <QComboBox>
#include <QPushButton>
#include <QScrollBar>
#include <QTemporaryDir>

using namespace velquarin;
using namespace velquarin::test;

namespace {

// The application's direction of writing, as long as it lives.
class Direction
{
public:
    explicit Direction(Qt::LayoutDirection direction) { QApplication::setLayoutDirection(direction); }
    ~Direction() { QApplication::setLayoutDirection(Qt::LeftToRight); }
    Q_DISABLE_COPY_MOVE(Direction)
};

// Where everything that is shown stands in a window, each place named by the way to it.
using Places = QMap<QString, QRect>;

void collect(const QWidget &window, const QWidget &parent, const QString &way, Places &places)
{
    QHash<QString, int> numbers;
    for (auto *const child : parent.findChildren<QWidget *>(Qt::FindDirectChildrenOnly)) {
        if (!child->isVisible() || child->inherits("QScrollBar"))
            continue;
        const QString kind = QLatin1String(child->metaObject()->className());
        const auto name = QStringLiteral("%1/%2%3").arg(way, kind).arg(numbers[kind]++);
        places.insert(name, {child->mapTo(&window, QPoint()), child->size()});
        // What is scrolled stands where it was scrolled to.
        if (!child->inherits("velquarin::YearHeatmapView"))
            collect(window, *child, name, places);
    }
}

Places placesOf(const QWidget &window)
{
    Places places;
    collect(window, window, {}, places);
    return places;
}

// What does not stand where a mirror would show it.
QStringList notMirrored(const Places &left, const Places &right, int width)
{
    QStringList wrong;
    if (left.keys() != right.keys())
        return {QStringLiteral("there is not the same")};
    for (auto place = left.begin(); place != left.end(); ++place) {
        const auto other = right.value(place.key());
        const auto expected = width - place->x() - place->width();
        const bool isThere = std::abs(other.x() - expected) <= 1 && other.y() == place->y();
        if (!isThere || other.size() != place->size())
            wrong << QStringLiteral("%1 at %2, not %3").arg(place.key()).arg(other.x()).arg(expected);
    }
    return wrong;
}

QByteArray commits(const char *day, int count)
{
    return (QByteArray(day) + '\n').repeated(count);
}

// A dashboard that is shown; today is Friday, 20 November 2026.
struct Dashboard
{
    Engine engine;
    RecordingFileViewer viewer;
    std::unique_ptr<MenuBarView> view;

    explicit Dashboard(int repositories)
    {
        for (int number = 1; number <= repositories; ++number) {
            const auto log = number == 1 ? commits("2026-11-20", 3) : QByteArray();
            engine.track(QStringLiteral("/src/repository-%1").arg(number), log, log, "2026-11-20T09:00:00+00:00");
        }
        engine.refresh();
    }

    MenuBarView &show(bool isYear)
    {
        engine.manager.setShowYearView(isYear);
        view = std::make_unique<MenuBarView>(
            engine.manager, engine.clock, engine.timers, viewer, [] {}, [] { return QByteArray("en_US"); });
        view->setFixedHeight(700);
        view->show();
        if (!QTest::qWaitForWindowExposed(view.get()))
            qFatal("The dashboard does not come up");
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
        return *view;
    }
};

template <typename Widget>
Widget *shownIn(const QWidget &window, const char *name)
{
    auto *const found = window.findChild<Widget *>(QLatin1String(name));
    return found != nullptr && found->isVisible() ? found : nullptr;
}

int left(const QWidget &widget)
{
    return widget.mapTo(widget.window(), QPoint()).x();
}

// Where the knob is: at the only white of the switch.
int knobOf(Switch &control)
{
    const auto picture = pictureOf(control, 1);
    int sum = 0;
    int count = 0;
    for (int x = 0; x < picture.width(); ++x) {
        if (picture.pixelColor(x, picture.height() / 2) == QColor(Qt::white)) {
            sum += x;
            ++count;
        }
    }
    return count == 0 ? -1 : sum / count;
}

void fill(SettingsWindow &window)
{
    window.engine.settings.addRepository(QStringLiteral("/src/one"), true);
    window.engine.settings.addRepository(QStringLiteral("/src/two"), false);
    window.engine.settings.addWatchedFolder(QStringLiteral("/src"), 5);
    window.engine.settings.setLastAutoDiscoveryScan(instant("2026-11-20T09:00:00Z"));
}

}  // namespace

//! In a language that is written from the right everything stands as in a mirror, but for what is read by itself: a
//! text, and the path of a folder.
class TestMirrored : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        failOnAnyWarningOfOurs();
        QApplication::setPalette(lightPalette());
        auto font = QApplication::font();
        font.setPixelSize(13);
        QApplication::setFont(font);
    }
    void theDashboardIsItsMirrorImage_data();
    void theDashboardIsItsMirrorImage();
    void theSettingsAreTheirMirrorImage_data();
    void theSettingsAreTheirMirrorImage();
    void theDaysGoFromRightToLeft();
    void theYearGoesFromRightToLeft();
    void theChevronsPointTheOtherWay();
    void aRepositoryBeginsAtTheRight();
    void theTabsGoFromRightToLeft();
    void aSwitchIsOnAtTheOtherEnd();
    void aPickerHasItsArrowAtTheLeft();
    void aPathIsReadFromTheLeft();
};

void TestMirrored::theDashboardIsItsMirrorImage_data()
{
    QTest::addColumn<int>("repositories");
    QTest::addColumn<bool>("isYear");
    QTest::newRow("without repositories") << 0 << false;
    QTest::newRow("the week") << 3 << false;
    QTest::newRow("more than fit") << 12 << false;
    QTest::newRow("the year") << 3 << true;
}

void TestMirrored::theDashboardIsItsMirrorImage()
{
    QFETCH(int, repositories);
    QFETCH(bool, isYear);
    Dashboard dashboard(repositories);
    const auto before = placesOf(dashboard.show(isYear));
    QVERIFY(before.size() > 20);
    const Direction fromTheRight(Qt::RightToLeft);
    const auto after = placesOf(dashboard.show(isYear));
    QCOMPARE(notMirrored(before, after, dashboard.view->width()).join(u'\n'), QString());
}

void TestMirrored::theSettingsAreTheirMirrorImage_data()
{
    QTest::addColumn<bool>("isFilled");
    QTest::addColumn<int>("tab");
    QTest::newRow("no repositories") << false << int(SettingsWindow::Repositories);
    QTest::newRow("repositories") << true << int(SettingsWindow::Repositories);
    QTest::newRow("no folders") << false << int(SettingsWindow::AutoDiscover);
    QTest::newRow("folders") << true << int(SettingsWindow::AutoDiscover);
    QTest::newRow("general") << true << int(SettingsWindow::General);
}

void TestMirrored::theSettingsAreTheirMirrorImage()
{
    QFETCH(bool, isFilled);
    QFETCH(int, tab);
    SettingsWindow window;
    if (isFilled)
        fill(window);
    window.open(SettingsWindow::Tab(tab));
    const auto before = placesOf(*window.view);
    QVERIFY(before.size() > 10);
    const Direction fromTheRight(Qt::RightToLeft);
    window.open(SettingsWindow::Tab(tab));
    QCOMPARE(notMirrored(before, placesOf(*window.view), window.view->width()).join(u'\n'), QString());
}

void TestMirrored::theDaysGoFromRightToLeft()
{
    const Direction fromTheRight(Qt::RightToLeft);
    Dashboard dashboard(1);
    const auto &view = dashboard.show(false);
    QList<QWidget *> days = shownIn<QWidget>(view, "days")->findChildren<QWidget *>();
    QCOMPARE(days.size(), 7);
    std::ranges::sort(days, std::greater{}, [](const QWidget *day) { return left(*day); });
    QCOMPARE(days.first()->accessibleName(), QStringLiteral("Sat, 0"));
    QCOMPARE(days.last()->accessibleName(), QStringLiteral("Fri, 3"));
}

void TestMirrored::theYearGoesFromRightToLeft()
{
    const Direction fromTheRight(Qt::RightToLeft);
    Dashboard dashboard(1);
    const auto &view = dashboard.show(true);
    auto *const year = shownIn<YearHeatmapView>(view, "yearHeatmap");
    QVERIFY(year->rectangleOf(0).x() > year->rectangleOf(370).x());
    QVERIFY(year->rectangleOfLabel(0).x() > year->rectangleOfLabel(12).x());
    // Sunday stays the first row.
    QVERIFY(year->rectangleOf(0).y() < year->rectangleOf(6).y());
    QCOMPARE(year->rectangleOf(0).x(), year->rectangleOf(6).x());
}

void TestMirrored::theChevronsPointTheOtherWay()
{
    const Direction fromTheRight(Qt::RightToLeft);
    Dashboard dashboard(1);
    const auto &week = dashboard.show(false);
    QCOMPARE(shownIn<QWidget>(week, "showYear")->findChild<SymbolView *>()->name(), QStringLiteral("chevron.left"));
    const auto &year = dashboard.show(true);
    QCOMPARE(shownIn<QWidget>(year, "back")->findChild<SymbolView *>()->name(), QStringLiteral("chevron.right"));
}

void TestMirrored::aRepositoryBeginsAtTheRight()
{
    const Direction fromTheRight(Qt::RightToLeft);
    Dashboard dashboard(1);
    const auto &view = dashboard.show(false);
    const auto *const name = shownIn<Text>(view, "repositoryName");
    QVERIFY(left(*name) > left(*shownIn<Text>(view, "repositoryActivity")));
    QVERIFY(left(*name->parentWidget()->findChild<SymbolView *>()) > left(*name));
}

void TestMirrored::theTabsGoFromRightToLeft()
{
    const Direction fromTheRight(Qt::RightToLeft);
    SettingsWindow window;
    window.open();
    const auto *const strip = window.view->findChild<TabStrip *>();
    QVERIFY(strip->tabRect(0).left() > strip->tabRect(1).right());
    QVERIFY(strip->tabRect(1).left() > strip->tabRect(2).right());
}

void TestMirrored::aSwitchIsOnAtTheOtherEnd()
{
    Switch fromTheLeft(QStringLiteral("On"), Switch::Size::Regular);
    fromTheLeft.setChecked(true);
    fromTheLeft.resize(200, fromTheLeft.sizeHint().height());
    Switch fromTheRight(QStringLiteral("On"), Switch::Size::Regular);
    fromTheRight.setLayoutDirection(Qt::RightToLeft);
    fromTheRight.resize(fromTheLeft.size());
    fromTheRight.setChecked(true);
    const auto on = knobOf(fromTheRight);
    QVERIFY(std::abs(on - (199 - knobOf(fromTheLeft))) <= 1);
    fromTheRight.setChecked(false);
    QVERIFY(knobOf(fromTheRight) > on);
    QVERIFY(knobOf(fromTheRight) < 100);
}

void TestMirrored::aPickerHasItsArrowAtTheLeft()
{
    const Direction fromTheRight(Qt::RightToLeft);
    SettingsWindow window;
    window.open(SettingsWindow::General);
    auto *const picker = shownIn<QComboBox>(*window.view, "refreshPeriod");
    QStyleOptionComboBox option;
    option.initFrom(picker);
    const auto arrow = picker->style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxArrow, picker);
    QVERIFY(arrow.center().x() < picker->width() / 2);
    QVERIFY(left(*picker) < window.view->width() / 2);
}

// A slash at its beginning would else stand at its end.
void TestMirrored::aPathIsReadFromTheLeft()
{
    const auto shown = [](Qt::LayoutDirection direction, Qt::Alignment alignment) {
        Text path(textLook(style::TypeStyle::Caption, style::Ink::Secondary));
        path.setText(QStringLiteral("/home/robin/src"));
        path.setLayoutDirection(direction);
        path.setAlignment(alignment);
        path.resize(path.sizeHint().grownBy({20, 0, 0, 0}));
        return path.grab().toImage();
    };
    const auto written = shown(Qt::LeftToRight, Qt::AlignRight);
    QVERIFY(written != shown(Qt::LeftToRight, Qt::AlignLeft));
    QCOMPARE(shown(Qt::RightToLeft, Qt::AlignLeading), written);
}

VELQUARIN_WINDOW_TEST(TestMirrored)
#include "tst_mirrored.moc"
