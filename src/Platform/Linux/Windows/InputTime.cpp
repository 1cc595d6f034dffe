// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Windows/InputTime.h"

#include <QCoreApplication>
#include <QInputEvent>

namespace velquarin {

namespace {

bool isPressOrRelease(QEvent::Type type)
{
    return type == QEvent::MouseButtonPress || type == QEvent::MouseButtonRelease || type == QEvent::KeyPress ||
           type == QEvent::KeyRelease;
}

}  // namespace

InputTime::InputTime(QObject *parent)
    : QObject(parent)
{
    QCoreApplication::instance()->installEventFilter(this);
}

// What it sets off at once is over when the loop turns again; whatever comes later is not the user's doing.
bool InputTime::eventFilter(QObject *watched, QEvent *event)
{
    if (isPressOrRelease(event->type()) && event->spontaneous()) {
        m_time = quint32(static_cast<const QInputEvent *>(event)->timestamp());
        QMetaObject::invokeMethod(
            this, [this] { m_time.reset(); }, Qt::QueuedConnection);
    }
    return QObject::eventFilter(watched, event);
}

}  // namespace velquarin
