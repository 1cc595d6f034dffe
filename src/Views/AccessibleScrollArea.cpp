// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/AccessibleScrollArea.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QScrollArea>

namespace velquarin {

namespace {

QAccessibleInterface *scrollAreaInterface(const QString & /*className*/, QObject *object)
{
    auto *const area = qobject_cast<QScrollArea *>(object);
    return area ? new QAccessibleWidget(area, QAccessible::Client) : nullptr;
}

}  // namespace

void readScrollAreasWhole()
{
    QAccessible::installFactory(scrollAreaInterface);
}

}  // namespace velquarin
