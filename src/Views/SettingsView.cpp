// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/SettingsView.h"

#include "Views/Style.h"

#include <QKeyEvent>

namespace velquarin {

namespace {

constexpr double contentWidth = 450;
constexpr double contentHeight = 380;

}  // namespace

SettingsView::SettingsView(QWidget *parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("settings"));
    setWindowTitle(tr("Settings"));
    setAccessibleName(tr("Settings"));
    setFixedSize(style::points(contentWidth), style::points(contentHeight));
}

void SettingsView::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        close();
    else
        QWidget::keyPressEvent(event);
}

}  // namespace velquarin
