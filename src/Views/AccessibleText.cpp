// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/AccessibleText.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QWidget>

namespace velquarin {

namespace {

QAccessibleInterface *textInterface(const QString &className, QObject *object)
{
    const bool isText =
        className == QLatin1String("velquarin::Text") || className == QLatin1String("velquarin::DayColumn");
    auto *const widget = isText ? qobject_cast<QWidget *>(object) : nullptr;
    return widget == nullptr ? nullptr : new QAccessibleWidget(widget, QAccessible::StaticText);
}

}  // namespace

void readAsText()
{
    QAccessible::installFactory(textInterface);
}

}  // namespace velquarin
