// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Controls/AccessibleWindow.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QWidget>

namespace velquarin {

namespace {

QAccessibleInterface *windowInterface(const QString &className, QObject *object)
{
    const bool isWindow =
        className == QLatin1String("velquarin::Popover") || className == QLatin1String("velquarin::SettingsView");
    auto *const widget = isWindow ? qobject_cast<QWidget *>(object) : nullptr;
    return widget ? new QAccessibleWidget(widget, QAccessible::Window) : nullptr;
}

}  // namespace

void readAsWindow()
{
    QAccessible::installFactory(windowInterface);
}

}  // namespace velquarin
