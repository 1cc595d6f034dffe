// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/AccessibleScrollArea.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QWidget>

namespace velquarin {

namespace {

// Lists and texts of the toolkit are scroll areas too, with much more to say.
QAccessibleInterface *scrollAreaInterface(const QString &className, QObject *object)
{
    const bool isPlain = className == QLatin1String("QScrollArea") || className == QLatin1String("velquarin::RowList");
    auto *const area = isPlain ? qobject_cast<QWidget *>(object) : nullptr;
    return area ? new QAccessibleWidget(area, QAccessible::Client) : nullptr;
}

}  // namespace

void readScrollAreasWhole()
{
    QAccessible::installFactory(scrollAreaInterface);
}

}  // namespace velquarin
