// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Settings/Picker.h"

#include <QWheelEvent>

namespace velquarin {

Picker::Picker(QWidget *parent)
    : QComboBox(parent)
{
    setFocusPolicy(Qt::TabFocus);
}

void Picker::wheelEvent(QWheelEvent *event)
{
    event->ignore();
}

}  // namespace velquarin
