// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Controls/Picker.h"

#include <QKeyEvent>
#include <QWheelEvent>

namespace velquarin {

Picker::Picker(QWidget *parent)
    : QComboBox(parent)
{
    setFocusPolicy(Qt::TabFocus);
}

// Qt takes them for its own, and some for the beginning of a word to look for.
void Picker::keyPressEvent(QKeyEvent *event)
{
    if (event->modifiers().testFlag(Qt::ControlModifier))
        event->ignore();
    else
        QComboBox::keyPressEvent(event);
}

void Picker::wheelEvent(QWheelEvent *event)
{
    event->ignore();
}

}  // namespace velquarin
