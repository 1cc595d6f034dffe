// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "support/Offscreen.h"
#include "support/PaintedText.h"
#include "support/TestProgram.h"
#include "Views/Controls/GuestStyle.h"
#include "Views/Controls/Switch.h"

#include "Views/Settings/SettingsWindow.h"

#include <QApplication>
#include <QLabel>
#include <QProxyStyle>
#include <QPushButton>
#include <QStyleFactory>

#include <functional>

using namespace velquarin;
using namespace velquarin::test;

namespace {

// A style that underlines nothing, whatever is held.
class Plain : public QProxyStyle
{
public:
    Plain()
        : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion")))
    {
    }

    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *result) const override
    {
        return hint == SH_UnderlineShortcut ? 0 : QProxyStyle::styleHint(hint, option, widget, result);
    }
};

bool areUnderlined(const QWidget &widget)
{
    return widget.style()->styleHint(QStyle::SH_UnderlineShortcut, nullptr, &widget) != 0;
}

QImage picture(QWidget *widget)
{
    return widget->grab().toImage();
}

// How much is written: an underline is more than none.
int inkOf(const QImage &image)
{
    int ink = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            ink += 255 - qGray(image.pixel(x, y));
    }
    return ink;
}

}  // namespace

class TestGuestStyle : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void lettersAreUnderlinedWhileAltIsHeld_data();
    void lettersAreUnderlinedWhileAltIsHeld();
    void otherKeysUnderlineNothing();
    void aWindowThatLosesTheFocusForgetsTheKey();
    void anotherStyleOfTheDesktopKeepsToItToo();
    void underAStyleSheetItIsThereOnceAsWell();
    void aStyleThatUnderlinesNothingIsLeftAlone();
    void theStyleKeepsItsName();
    void theTextsStayAsTheyAre();
};

void TestGuestStyle::init()
{
    failOnAnyWarningOfOurs();
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QApplication::setPalette(lightPalette());
}

void TestGuestStyle::lettersAreUnderlinedWhileAltIsHeld_data()
{
    using Find = std::function<QWidget *(const SettingsWindow &)>;
    QTest::addColumn<int>("tab");
    QTest::addColumn<Find>("find");
    QTest::newRow("a tab") << int(SettingsWindow::General)
                           << Find([](const auto &window) { return window.view->template findChild<TabStrip *>(); });
    QTest::newRow("a button") << int(SettingsWindow::Repositories) << Find([](const auto &window) {
        return window.template control<QPushButton>(QStringLiteral("Scan Folder"));
    });
    QTest::newRow("a switch") << int(SettingsWindow::AutoDiscover) << Find([](const auto &window) {
        return window.template control<Switch>(QStringLiteral("Auto-discover repos"));
    });
    QTest::newRow("a label") << int(SettingsWindow::General) << Find([](const auto &window) {
        return window.template control<QLabel>(QStringLiteral("Check for new commits"));
    });
}

void TestGuestStyle::lettersAreUnderlinedWhileAltIsHeld()
{
    QFETCH(int, tab);
    QFETCH(std::function<QWidget *(const SettingsWindow &)>, find);
    SettingsWindow window;
    window.open(SettingsWindow::Tab(tab));
    auto *const widget = find(window);
    QVERIFY(widget != nullptr);
    PaintCounter paints;
    const auto before = picture(widget);
    QTest::keyPress(window.view.get(), Qt::Key_Alt);
    QVERIFY(inkOf(picture(widget)) > inkOf(before));
    paints.forget();
    QTRY_VERIFY(paints.of(widget) > 0);
    QTest::keyRelease(window.view.get(), Qt::Key_Control);
    QVERIFY(areUnderlined(*window.view));
    QTest::keyRelease(window.view.get(), Qt::Key_Alt);
    QCOMPARE(picture(widget), before);
    paints.forget();
    QTRY_VERIFY(paints.of(widget) > 0);
}

void TestGuestStyle::otherKeysUnderlineNothing()
{
    SettingsWindow window;
    window.open();
    for (const auto key : {Qt::Key_Control, Qt::Key_Shift, Qt::Key_Meta, Qt::Key_A}) {
        QTest::keyPress(window.view.get(), key);
        QVERIFY(!areUnderlined(*window.view));
        QTest::keyRelease(window.view.get(), key);
    }
}

void TestGuestStyle::aWindowThatLosesTheFocusForgetsTheKey()
{
    SettingsWindow window;
    window.open();
    QTest::keyPress(window.view.get(), Qt::Key_Alt);
    QVERIFY(areUnderlined(*window.view));
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    QVERIFY(!areUnderlined(*window.view));
}

void TestGuestStyle::anotherStyleOfTheDesktopKeepsToItToo()
{
    SettingsWindow window;
    window.open();
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Windows")));
    QTRY_VERIFY(!areUnderlined(*window.view));
    QCOMPARE(QApplication::style()->objectName(), QStringLiteral("windows"));
    QTest::keyPress(window.view.get(), Qt::Key_Alt);
    QVERIFY(areUnderlined(*window.view));
    QTest::keyRelease(window.view.get(), Qt::Key_Alt);
    QVERIFY(!areUnderlined(*window.view));
}

void TestGuestStyle::underAStyleSheetItIsThereOnceAsWell()
{
    GuestStyle::install();
    auto *const guest = QApplication::style();
    qApp->setStyleSheet(QStringLiteral("QLabel { padding: 1px; }"));
    GuestStyle::install();
    const auto guests = qApp->findChildren<GuestStyle *>();
    qApp->setStyleSheet({});
    QCOMPARE(guests.size(), 1);
    QCOMPARE(QApplication::style(), guest);
}

void TestGuestStyle::aStyleThatUnderlinesNothingIsLeftAlone()
{
    QApplication::setStyle(new Plain);
    SettingsWindow window;
    window.open();
    QTest::keyPress(window.view.get(), Qt::Key_Alt);
    QVERIFY(!areUnderlined(*window.view));
    QTest::keyRelease(window.view.get(), Qt::Key_Alt);
}

void TestGuestStyle::theStyleKeepsItsName()
{
    SettingsWindow first;
    first.open();
    SettingsWindow second;
    second.open();
    QCOMPARE(QApplication::style()->objectName(), QStringLiteral("fusion"));
    QVERIFY(!qobject_cast<GuestStyle *>(qobject_cast<QProxyStyle *>(QApplication::style())->baseStyle()));
}

void TestGuestStyle::theTextsStayAsTheyAre()
{
    SettingsWindow window;
    window.open();
    auto *const button = window.control<QPushButton>(QStringLiteral("Scan Folder"));
    QCOMPARE(button->text(), QStringLiteral("&Scan Folder"));
    QVERIFY(paintedWords(*button).join(QString()).contains(QStringLiteral("Scan Folder")));
}

VELQUARIN_WINDOW_TEST(TestGuestStyle)
#include "tst_gueststyle.moc"
