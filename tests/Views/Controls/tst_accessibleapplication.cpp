// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "support/Offscreen.h"
#include "support/TestProgram.h"
#include "Views/Controls/Accessibility.h"

#include <QApplication>
#include <QMenu>
#include <QTest>
#include <QWindow>

using namespace velquarin;
using namespace velquarin::test;

namespace {

QStringList listedNames()
{
    QStringList names;
    auto *const application = QAccessible::queryAccessibleInterface(qApp);
    for (int index = 0; index < application->childCount(); ++index)
        names << application->child(index)->text(QAccessible::Name);
    names.sort();
    return names;
}

}  // namespace

//! Which windows a screen reader finds in the program.
class TestAccessibleApplication : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { failOnAnyWarningOfOurs(); }

    void windowsAreFoundAndPopupsThatAreWindowsToTheirUser()
    {
        QWidget window;
        window.setWindowTitle(QStringLiteral("Settings"));
        QWidget dashboard(nullptr, Qt::Popup);
        setAccessibleRole(dashboard, QAccessible::Window);
        dashboard.setAccessibleName(QStringLiteral("Velquarin"));
        window.show();
        dashboard.show();
        QCOMPARE(listedNames(), (QStringList{QStringLiteral("Settings"), QStringLiteral("Velquarin")}));
        auto *const application = QAccessible::queryAccessibleInterface(qApp);
        for (int index = 0; index < 2; ++index)
            QCOMPARE(application->indexOfChild(application->child(index)), index);
    }

    void menusAreNoWindows()
    {
        QMenu menu;
        menu.addAction(QStringLiteral("Refresh"));
        menu.popup({0, 0});
        QVERIFY(menu.isVisible());
        QCOMPARE(listedNames(), QStringList());
    }

    // The window of the old tray is one of these.
    void aWindowOfWhichAScreenReaderKnowsNothingIsPassedOver()
    {
        QWindow bare;
        bare.create();
        QCOMPARE(bare.accessibleRoot(), nullptr);
        QCOMPARE(listedNames(), QStringList());
    }
};

namespace {

int run(int argc, char **argv)
{
    installAccessibleApplication();
    return runIn<TestAccessibleApplication, QApplication>(argc, argv);
}

}  // namespace

VELQUARIN_TEST_RUN(run)
#include "tst_accessibleapplication.moc"
