// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Controls/AccessibleScrollArea.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QWidget>

namespace velquarin {

namespace {

// Lists and texts of the toolkit are scroll areas too, with much more to say.
QAccessibleInterface *scrollAreaInterface(const QString &className, QObject *object)
{
    const bool isList = className == QLatin1String("velquarin::RowList");
    const bool isOurs = isList || className == QLatin1String("QScrollArea");
    auto *const area = isOurs ? qobject_cast<QWidget *>(object) : nullptr;
    return area ? new QAccessibleWidget(area, isList ? QAccessible::Grouping : QAccessible::Client) : nullptr;
}

}  // namespace

void readScrollAreasWhole()
{
    QAccessible::installFactory(scrollAreaInterface);
}

}  // namespace velquarin
