// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "support/Offscreen.h"
#include "support/Picture.h"
#include "support/RecordingFileViewer.h"
#include "support/TestProgram.h"
#include "Views/Controls/Decorations.h"
#include "Views/Controls/PlainButton.h"
#include "Views/Controls/Style.h"
#include "Views/Controls/Switch.h"
#include "Views/Controls/Text.h"
#include "Views/Dashboard/DayColor.h"
#include "Views/Dashboard/DayStrip.h"
#include "Views/Dashboard/MenuBarView.h"
#include "Views/Dashboard/RepositoriesSection.h"
#include "Views/Dashboard/YearHeatmapView.h"
#include "Views/Settings/RowList.h"

#include "Views/Settings/SettingsWindow.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QStyleFactory>
#include <QStyleOptionComboBox>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>

using namespace velquarin;
using namespace velquarin::test;

namespace {

// Stems of the smallest letters are some pixels wide at this scale: what is in their middle is the ink itself.
constexpr double magnification = 4;
constexpr double least = 4.5;
constexpr double leastOfShapes = 3.0;
constexpr double leastStep = 1.4;

// A text on the screen: where, and how to call it in a failure.
struct Sample
{
    QString name;
    QRect place;
};

QString describe(const QWidget &widget, const QString &text)
{
    return QStringLiteral("%1 '%2'").arg(QLatin1String(widget.metaObject()->className()), text);
}

QRect inWindow(const QWidget &widget, QRect place)
{
    const auto visible = place & widget.visibleRegion().boundingRect();
    return visible.translated(widget.mapTo(widget.window(), QPoint()));
}

QRect fieldOf(const QComboBox &picker)
{
    QStyleOptionComboBox option;
    option.initFrom(&picker);
    return picker.style()
        ->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, &picker)
        .adjusted(2, 2, -2, -2);
}

QList<Sample> samplesOfYear(const YearHeatmapView &year)
{
    QList<Sample> samples;
    const auto labels = year.labels();
    for (int position = 0; position < labels.size(); ++position) {
        const auto place = inWindow(year, year.rectangleOfLabel(position));
        // One that is scrolled half out of sight may show no more than the edge of a letter.
        if (place.width() == year.rectangleOfLabel(position).width())
            samples.append({describe(year, labels.at(position)), place});
    }
    return samples;
}

QList<Sample> samplesOfTabs(const TabStrip &tabs)
{
    QList<Sample> samples;
    for (int index = 0; index < tabs.count(); ++index) {
        const auto place = tabs.tabRect(index).adjusted(4, 4, -4, -4);
        samples.append({describe(tabs, tabs.tabText(index)), inWindow(tabs, place)});
    }
    return samples;
}

// The part of a widget in which there is nothing but a text and what it stands on; nothing where there is no text.
QRect textIn(const QWidget &widget)
{
    if (widget.inherits("velquarin::Text") || widget.inherits("QLabel"))
        return widget.rect();
    if (widget.inherits("velquarin::Badge"))
        return widget.rect().adjusted(widget.height() / 2, 1, -widget.height() / 2, -1);
    if (widget.inherits("velquarin::DayColumn"))
        return {0, 0, widget.width(), QFontMetrics(style::font(style::TypeStyle::Caption2)).height()};
    if (const auto *const picker = qobject_cast<const QComboBox *>(&widget))
        return fieldOf(*picker);
    if (widget.inherits("velquarin::Switch"))
        return widget.rect().adjusted(4, 4, -48, -4);
    return widget.inherits("QPushButton") ? widget.rect().adjusted(5, 5, -5, -5) : QRect();
}

QList<Sample> samplesIn(const QWidget &window)
{
    QList<Sample> samples;
    for (auto *const widget : window.findChildren<QWidget *>()) {
        // Who cannot be pressed need not be read.
        if (!widget->isVisible() || !widget->isEnabled())
            continue;
        if (const auto *const year = qobject_cast<const YearHeatmapView *>(widget))
            samples += samplesOfYear(*year);
        if (const auto *const tabs = qobject_cast<const TabStrip *>(widget))
            samples += samplesOfTabs(*tabs);
        const auto place = textIn(*widget);
        if (!place.isEmpty() && !inWindow(*widget, place).isEmpty())
            samples.append({describe(*widget, SettingsWindow::nameOf(widget)), inWindow(*widget, place)});
    }
    return samples;
}

// How many pixels there are of each colour; most stand beside one of the same.
QHash<QRgb, int> colorsIn(const QImage &picture, const QRect &place)
{
    QHash<QRgb, int> counts;
    const QRect pixels(place.topLeft() * magnification, place.size() * magnification);
    const auto inside = pixels & picture.rect();
    for (int y = inside.top(); y <= inside.bottom(); ++y) {
        const auto *const line = reinterpret_cast<const QRgb *>(picture.constScanLine(y));
        const auto *const end = line + inside.right() + 1;
        for (const auto *pixel = line + inside.left(); pixel != end;) {
            const auto *const other = std::find_if(pixel, end, [&](QRgb color) { return color != *pixel; });
            counts[*pixel] += int(other - pixel);
            pixel = other;
        }
    }
    return counts;
}

// Between what there is most of, the ground, and what stands out from it most. A single pixel is no stem.
double contrastIn(const QImage &picture, const QRect &place)
{
    const auto counts = colorsIn(picture, place);
    const auto ground = std::max_element(counts.begin(), counts.end());
    double best = 1;
    for (auto color = counts.begin(); color != counts.end(); ++color) {
        if (color.value() >= 4)
            best = std::max(best, style::contrast(QColor(color.key()), QColor(ground.key())));
    }
    return best;
}

QStringList illegibleIn(QWidget &window)
{
    QStringList illegible;
    const auto picture = pictureOf(window, magnification).convertToFormat(QImage::Format_RGB32);
    const auto samples = samplesIn(window);
    if (samples.size() < 5)
        illegible << QStringLiteral("there are too few texts");
    for (const auto &sample : samples) {
        const auto contrast = contrastIn(picture, sample.place);
        if (contrast < least)
            illegible << QStringLiteral("%1: %2").arg(sample.name).arg(contrast, 0, 'f', 2);
    }
    return illegible;
}

// Shapes that tell what something is or does, each beside what it lies on.
QStringList faintIn(QWidget &window, const QList<Sample> &shapes)
{
    QStringList faint;
    const auto picture = pictureOf(window, magnification).convertToFormat(QImage::Format_RGB32);
    for (const auto &shape : shapes) {
        const auto contrast = contrastIn(picture, shape.place);
        if (contrast < leastOfShapes)
            faint << QStringLiteral("%1: %2").arg(shape.name).arg(contrast, 0, 'f', 2);
    }
    return faint;
}

template <typename Widget>
QList<Widget *> shownIn(const QWidget &window, const QString &name = {})
{
    auto all = window.findChildren<Widget *>();
    all.removeIf([&name](Widget *widget) {
        return widget->visibleRegion().isEmpty() || (!name.isEmpty() && SettingsWindow::nameOf(widget) != name);
    });
    return all;
}

// Where the knob is not, and what is above it; then where the knob ends. Both sizes have it there.
QList<Sample> shapesOfSwitch(const Switch &control)
{
    const auto at = [&control](int fromTheRight, int width, int margin) {
        const QRect place(control.width() - fromTheRight, 0, width, control.height());
        return inWindow(control, place.adjusted(0, margin, 0, -margin));
    };
    const bool isOn = control.isChecked();
    const auto state = isOn ? QStringLiteral("on") : QStringLiteral("off");
    return {{QStringLiteral("track, ") + state, isOn ? at(29, 7, 0) : at(15, 7, 0)},
            {QStringLiteral("knob, ") + state, at(26, 12, Switch::outset() + 5)}};
}

QList<Sample> shapesOfSettings(const QWidget &window)
{
    QList<Sample> shapes;
    for (const auto *const bin : shownIn<IconButton>(window, QStringLiteral("Remove")))
        shapes.append({QStringLiteral("bin"), inWindow(*bin, bin->rect())});
    for (const auto *const control : shownIn<Switch>(window))
        shapes += shapesOfSwitch(*control);
    const auto *const tabs = window.findChild<TabStrip *>();
    const auto tab = tabs->tabRect(tabs->currentIndex());
    const QRect symbol(tab.center().x() - 10, tab.y() + 5, 20, 20);
    shapes.append({QStringLiteral("symbol of the tab"), inWindow(*tabs, symbol)});
    return shapes;
}

// Before the window is there, where nothing moves.
void setSwitches(AppSettings &settings, bool isOn)
{
    settings.setAutoDiscoveryEnabled(isOn);
    settings.setShowStreakInMenuBar(isOn);
    settings.setNotifyOnStreakRisk(isOn);
}

// The upper edge of @p widget while it has the focus.
QStringList faintRingOf(QWidget &widget)
{
    widget.setFocus(Qt::TabFocusReason);
    const QRect edge(widget.width() / 4, 0, widget.width() / 2, 4);
    const auto name = QStringLiteral("ring of ") + describe(widget, SettingsWindow::nameOf(&widget));
    return faintIn(*widget.window(), {{name, inWindow(widget, edge)}});
}

// The squares of the bands from none to more than ten.
QStringList bandsTooAlike(const QPalette &palette)
{
    QStringList alike;
    const auto ground = palette.color(QPalette::Window);
    const auto square = [&](qint64 count) {
        const auto color = colorForCount(count, true).in(palette);
        return style::mix(ground, color, color.alphaF());
    };
    for (const auto &[less, more] : {std::pair(0, 1), std::pair(2, 3), std::pair(5, 6), std::pair(10, 11)}) {
        const auto step = style::contrast(square(less), square(more));
        if (step < leastStep)
            alike << QStringLiteral("%1 and %2: %3").arg(less).arg(more).arg(step, 0, 'f', 2);
    }
    return alike;
}

struct Colors
{
    QRgb window;
    QRgb text;
    QRgb base;
    QRgb button;
    QRgb highlight;
};

QPalette paletteOf(const Colors &colors)
{
    QPalette palette(QColor(colors.button), QColor(colors.window));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::All, role, QColor(colors.text));
    palette.setColor(QPalette::All, QPalette::Base, QColor(colors.base));
    palette.setColor(QPalette::All, QPalette::Highlight, QColor(colors.highlight));
    return palette;
}

QByteArray commits(const char *day, int count)
{
    return (QByteArray(day) + '\n').repeated(count);
}

// A dashboard that is shown.
struct Dashboard
{
    Engine engine;
    RecordingFileViewer viewer;
    std::unique_ptr<MenuBarView> view;

    explicit Dashboard(int repositories, int today, bool isYear = false)
    {
        for (int number = 1; number <= repositories; ++number) {
            const auto log = number == 1 ? commits("2026-11-20", today) : QByteArray();
            engine.track(QStringLiteral("/src/repository-%1").arg(number), log, log, "2026-11-10T09:00:00+00:00");
        }
        engine.refresh();
        engine.manager.setShowYearView(isYear);
        view = std::make_unique<MenuBarView>(
            engine.manager, engine.clock, engine.timers, viewer, [] {}, [] { return QByteArray("en_US"); });
        view->show();
        if (!QTest::qWaitForWindowExposed(view.get()))
            qFatal("The dashboard does not come up");
        QCoreApplication::processEvents();
    }

    void hover() const
    {
        for (auto *const row : view->findChildren<RepoRow *>()) {
            QEnterEvent event(QPointF(1, 1), QPointF(1, 1), QPointF(1, 1));
            QCoreApplication::sendEvent(row, &event);
        }
    }
};

void fill(SettingsWindow &window)
{
    window.engine.settings.addRepository(QStringLiteral("/src/one"), true);
    window.engine.settings.addRepository(QStringLiteral("/src/two"), false);
    window.engine.settings.addWatchedFolder(QStringLiteral("/src"), 5);
    window.engine.settings.setLastAutoDiscoveryScan(instant("2026-11-20T09:00:00Z"));
}

QStringList illegibleInTabs(SettingsWindow &window)
{
    QStringList illegible;
    for (const auto tab : {SettingsWindow::Repositories, SettingsWindow::AutoDiscover, SettingsWindow::General}) {
        window.open(tab);
        illegible << illegibleIn(*window.view);
    }
    return illegible;
}

// The pointer on every row at once, and on each tab after the other.
QStringList illegibleUnderThePointer(SettingsWindow &window)
{
    QStringList illegible;
    for (const auto tab : {SettingsWindow::Repositories, SettingsWindow::AutoDiscover}) {
        window.open(tab);
        for (auto *const row : window.view->findChildren<ListRow *>())
            row->setAttribute(Qt::WA_UnderMouse);
        auto *const tabs = window.view->findChild<TabStrip *>();
        for (int index = 0; index < tabs->count(); ++index) {
            tabs->setAttribute(Qt::WA_UnderMouse);
            QCursor::setPos(tabs->mapToGlobal(tabs->tabRect(index).center()));
            illegible << illegibleIn(*window.view);
        }
    }
    return illegible;
}

QStringList illegibleMessages()
{
    const QTemporaryDir none;
    SettingsWindow window;
    fill(window);
    window.open(SettingsWindow::Repositories);
    const auto press = [&window](const char *button) {
        SettingsWindow::click(window.controls<QPushButton>(QLatin1String(button)).last());
    };
    press("Scan Folder");
    window.chooser.confirm(none.path());
    SettingsWindow::settle();
    auto illegible = illegibleIn(*window.view);
    const auto message = QStringLiteral("No git repositories found in selected folder");
    if (!QTest::qWaitFor([&] { return window.says(message); }))
        illegible << QStringLiteral("there is no message");
    return illegible << illegibleIn(*window.view);
}

// What a run has found, with the line for the rest.
QStringList illegibleDiscoveries()
{
    const QTemporaryDir folder;
    for (const auto *const name : {"a", "b", "c", "d", "e"})
        QDir(folder.path()).mkpath(QLatin1String(name) + QStringLiteral("/.git"));
    SettingsWindow window;
    window.engine.settings.addWatchedFolder(folder.path(), 5);
    window.open(SettingsWindow::AutoDiscover);
    SettingsWindow::click(window.control<QPushButton>(QStringLiteral("Scan Now")));
    auto illegible = illegibleIn(*window.view);
    if (!QTest::qWaitFor([&] { return window.says(QStringLiteral("...and 2 more")); }))
        illegible << QStringLiteral("nothing is found");
    return illegible << illegibleIn(*window.view);
}

}  // namespace

//! What is painted, letter by letter against what it is painted on, in the palettes of usual desktops. The counts in
//! the day squares are white on green, whatever comes of it.
//! Source: Web Content Accessibility Guidelines 2.1, success criteria 1.4.3 and 1.4.11
class TestContrast : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { QApplication::setStyle(QStringLiteral("Fusion")); }
    void init()
    {
        failOnAnyWarningOfOurs();
        auto font = QApplication::font();
        font.setPixelSize(13);
        QApplication::setFont(font);
    }
    void cleanup() { QApplication::setPalette(QPalette()); }
    void aFaintTextIsFound();
    void theDashboardCanBeRead_data() { addPalettes(); }
    void theDashboardCanBeRead();
    void theSettingsCanBeRead_data() { addPalettes(); }
    void theSettingsCanBeRead();
    void theSettingsCanBeReadUnderThePointer_data() { addPalettes(); }
    void theSettingsCanBeReadUnderThePointer();
    void messagesCanBeRead_data() { addPalettes(); }
    void messagesCanBeRead();
    void whatTheSettingsShowWithoutWordsCanBeSeen_data() { addPalettes(); }
    void whatTheSettingsShowWithoutWordsCanBeSeen();
    void whatTheDashboardShowsWithoutWordsCanBeSeen_data() { addPalettes(); }
    void whatTheDashboardShowsWithoutWordsCanBeSeen();
    void theBandsOfTheYearCanBeToldApart_data() { addPalettes(); }
    void theBandsOfTheYearCanBeToldApart();

private:
    static void addPalettes();
};

void TestContrast::addPalettes()
{
    QTest::addColumn<QPalette>("palette");
    QTest::newRow("Fusion, light") << QApplication::style()->standardPalette();
    const auto row = [](const char *name, const Colors &colors) { QTest::newRow(name) << paletteOf(colors); };
    row("Fusion, dark", {0xff323232, 0xffffffff, 0xff242424, 0xff323232, 0xff308cc6});
    row("Adwaita, light", {0xfff6f5f4, 0xff2e3436, 0xffffffff, 0xfff6f5f4, 0xff3584e4});
    row("Adwaita, paler", {0xfffafafa, 0xff323232, 0xffffffff, 0xffebebeb, 0xff3584e4});
    row("Adwaita, dark", {0xff353535, 0xffeeeeec, 0xff2d2d2d, 0xff373737, 0xff15539e});
    row("Breeze, light", {0xffeff0f1, 0xff232629, 0xffffffff, 0xfffcfcfc, 0xff3daee9});
    row("Breeze, dark", {0xff2a2e32, 0xfffcfcfc, 0xff1b1e20, 0xff31363b, 0xff3daee9});
    row("high contrast, dark", {0xff000000, 0xffffffff, 0xff000000, 0xff000000, 0xff1aebff});
    row("high contrast, light", {0xffffffff, 0xff000000, 0xffffffff, 0xffffffff, 0xff37006e});
    row("a grey of older desktops", {0xffd4d0c8, 0xff000000, 0xffffffff, 0xffd4d0c8, 0xff0a246a});
}

void TestContrast::aFaintTextIsFound()
{
    QWidget window;
    window.setPalette(paletteOf({0xffffffff, 0xff777777, 0xffffffff, 0xffffffff, 0xff0000ff}));
    for (int line = 0; line < 5; ++line) {
        auto *const label = new QLabel(QStringLiteral("faint"), &window);
        label->setGeometry(5, 20 * line, 80, 20);
    }
    window.show();
    QCOMPARE(illegibleIn(window).value(0), QStringLiteral("QLabel 'faint': 4.48"));
    window.setPalette(paletteOf({0xffffffff, 0xff767676, 0xffffffff, 0xffffffff, 0xff0000ff}));
    QCOMPARE(illegibleIn(window).join(u'\n'), QString());
}

void TestContrast::theDashboardCanBeRead()
{
    QFETCH(QPalette, palette);
    QApplication::setPalette(palette);
    for (const auto &[repositories, today] : {std::pair(0, 0), std::pair(12, 0), std::pair(12, 3)}) {
        for (const bool isYear : {false, true})
            QCOMPARE(illegibleIn(*Dashboard(repositories, today, isYear).view).join(u'\n'), QString());
    }
    Dashboard hovered(3, 3);
    hovered.hover();
    QCOMPARE(illegibleIn(*hovered.view).join(u'\n'), QString());
}

void TestContrast::theSettingsCanBeRead()
{
    QFETCH(QPalette, palette);
    QApplication::setPalette(palette);
    SettingsWindow window;
    QCOMPARE(illegibleInTabs(window).join(u'\n'), QString());
    fill(window);
    QCOMPARE(illegibleInTabs(window).join(u'\n'), QString());
}

void TestContrast::theSettingsCanBeReadUnderThePointer()
{
    QFETCH(QPalette, palette);
    QApplication::setPalette(palette);
    SettingsWindow window;
    fill(window);
    QCOMPARE(illegibleUnderThePointer(window).join(u'\n'), QString());
}

void TestContrast::messagesCanBeRead()
{
    QFETCH(QPalette, palette);
    QApplication::setPalette(palette);
    QCOMPARE(illegibleMessages().join(u'\n'), QString());
    QCOMPARE(illegibleDiscoveries().join(u'\n'), QString());
}

void TestContrast::whatTheSettingsShowWithoutWordsCanBeSeen()
{
    QFETCH(QPalette, palette);
    QApplication::setPalette(palette);
    for (const bool isOn : {true, false}) {
        SettingsWindow window;
        fill(window);
        setSwitches(window.engine.settings, isOn);
        for (const auto tab : {SettingsWindow::Repositories, SettingsWindow::AutoDiscover, SettingsWindow::General}) {
            window.open(tab);
            const auto shapes = shapesOfSettings(*window.view);
            QVERIFY(shapes.size() >= 3);
            QCOMPARE(faintIn(*window.view, shapes).join(u'\n'), QString());
            for (auto *const button : shownIn<IconButton>(*window.view))
                QCOMPARE(faintRingOf(*button).join(u'\n'), QString());
            for (auto *const control : shownIn<Switch>(*window.view))
                QCOMPARE(faintRingOf(*control).join(u'\n'), QString());
        }
    }
}

void TestContrast::whatTheDashboardShowsWithoutWordsCanBeSeen()
{
    QFETCH(QPalette, palette);
    QApplication::setPalette(palette);
    const Dashboard week(3, 3);
    const auto *const today = shownIn<DayColumn>(*week.view).last();
    const QRect dot(today->width() / 2 - 4, today->height() - 8, 8, 8);
    QCOMPARE(faintIn(*week.view, {{QStringLiteral("dot of today"), inWindow(*today, dot)}}).join(u'\n'), QString());
    for (auto *const button : shownIn<PlainButton>(*week.view))
        QCOMPARE(faintRingOf(*button).join(u'\n'), QString());

    const Dashboard year(3, 3, true);
    const auto bars = shownIn<QScrollBar>(*year.view);
    QCOMPARE(bars.size(), 1);
    QCOMPARE(faintIn(*year.view, {{QStringLiteral("pill"), inWindow(*bars.first(), bars.first()->rect())}}).join(u'\n'),
             QString());
}

void TestContrast::theBandsOfTheYearCanBeToldApart()
{
    QFETCH(QPalette, palette);
    QCOMPARE(bandsTooAlike(palette).join(u'\n'), QString());
}

VELQUARIN_WINDOW_TEST(TestContrast)
#include "tst_contrast.moc"
