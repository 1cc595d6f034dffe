// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Controls/Accessibility.h"

#include "support/Offscreen.h"
#include "support/TestProgram.h"
#include "support/WhatIsShown.h"
#include "Views/Controls/Text.h"
#include "Views/Dashboard/Popover.h"

#include <QApplication>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>

using namespace velquarin;
using namespace velquarin::test;

namespace {

QAccessibleInterface *accessible(QScrollArea &area)
{
    return QAccessible::queryAccessibleInterface(&area);
}

}  // namespace

//! What a screen reader finds in a scroll area, even when it comes too late.
class TestAccessibleScrollArea : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { failOnAnyWarningOfOurs(); }

    void thePopoverNeedsNobodyToAskForIt()
    {
        Popover popover(new QWidget);
        const auto areas = popover.findChildren<QScrollArea *>();
        QCOMPARE(areas.size(), 1);
        // Qt itself counts what is to be seen just now.
        const auto parts = areas.first()->findChildren<QWidget *>(Qt::FindDirectChildrenOnly);
        QCOMPARE(accessible(*areas.first())->childCount(), parts.size());
    }

    void askedForAChildThatIsNotThereItHasNone_data()
    {
        QTest::addColumn<int>("beyond");
        QTest::newRow("the first after the last") << 0;
        QTest::newRow("a later one") << 3;
        QTest::newRow("one far away") << 1'000'000;
    }

    void askedForAChildThatIsNotThereItHasNone()
    {
        QFETCH(int, beyond);
        QScrollArea area;
        readScrollAreaWhole(area);
        area.setWidget(new QWidget);
        area.show();
        auto *const interface = accessible(area);
        QVERIFY(interface->childCount() > 0);
        QCOMPARE(interface->child(interface->childCount() + beyond), nullptr);
        QCOMPARE(interface->child(-1 - beyond), nullptr);
    }

    void aChildThatWasCountedIsStillThereWhenTheScrollBarIsHidden()
    {
        QScrollArea area;
        readScrollAreaWhole(area);
        area.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
        area.setWidget(new QWidget);
        area.show();
        const auto counted = accessible(area)->childCount();
        area.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        for (int index = 0; index < counted; ++index)
            QVERIFY(accessible(area)->child(index) != nullptr);
    }

    void whatItHoldsIsRead()
    {
        QScrollArea area;
        readScrollAreaWhole(area);
        area.setWidget(
            makeText(textLook(style::TypeStyle::Caption, style::Ink::Primary), QStringLiteral("within"), nullptr));
        area.show();
        QCOMPARE(textsIn(area), QStringList{QStringLiteral("within")});
    }
};

VELQUARIN_WINDOW_TEST(TestAccessibleScrollArea)
#include "tst_accessiblescrollarea.moc"
