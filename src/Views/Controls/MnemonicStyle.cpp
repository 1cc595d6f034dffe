// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Controls/MnemonicStyle.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWidget>

#include <utility>

namespace velquarin {

namespace {

bool isAlt(const QEvent *event)
{
    return static_cast<const QKeyEvent *>(event)->key() == Qt::Key_Alt;
}

}  // namespace

void MnemonicStyle::install()
{
    if (qobject_cast<MnemonicStyle *>(QApplication::style()) == nullptr)
        QApplication::setStyle(new MnemonicStyle(QApplication::style()));
}

// Under the name of the style that it is around: some desktops look whether theirs is in force.
MnemonicStyle::MnemonicStyle(QStyle *style)
    : QProxyStyle(style)
{
    setObjectName(style->objectName());
    QCoreApplication::instance()->installEventFilter(this);
}

int MnemonicStyle::styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                             QStyleHintReturn *result) const
{
    if (hint == SH_UnderlineShortcut && !m_isAltHeld)
        return 0;
    return QProxyStyle::styleHint(hint, option, widget, result);
}

// A window that loses the focus does not hear any more that the key is up again.
bool MnemonicStyle::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress && isAlt(event))
        setHeld(true);
    else if (event->type() == QEvent::WindowDeactivate || (event->type() == QEvent::KeyRelease && isAlt(event)))
        setHeld(false);
    return QProxyStyle::eventFilter(watched, event);
}

void MnemonicStyle::setHeld(bool isHeld)
{
    if (std::exchange(m_isAltHeld, isHeld) == isHeld)
        return;
    const auto windows = QApplication::topLevelWidgets();
    for (auto *const window : windows)
        window->update();
}

}  // namespace velquarin
