// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Controls/AccessibleText.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QStringList>
#include <QWidget>

namespace velquarin {

namespace {

QAccessibleInterface *textInterface(const QString &className, QObject *object)
{
    static const QStringList texts{QStringLiteral("velquarin::Text"), QStringLiteral("velquarin::DayColumn"),
                                   QStringLiteral("velquarin::Badge")};
    const bool isText = texts.contains(className);
    auto *const widget = isText ? qobject_cast<QWidget *>(object) : nullptr;
    return widget == nullptr ? nullptr : new QAccessibleWidget(widget, QAccessible::StaticText);
}

}  // namespace

void readAsText()
{
    QAccessible::installFactory(textInterface);
}

}  // namespace velquarin
