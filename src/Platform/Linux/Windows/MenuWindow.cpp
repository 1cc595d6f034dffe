// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Windows/MenuWindow.h"

#include "Platform/Linux/Windows/LinuxWindowSystem.h"

#include <QKeyEvent>

#include <algorithm>

namespace velquarin {

MenuWindow::MenuWindow()
{
    setWindowFlags(Qt::Tool | Qt::FramelessWindowHint);
    setObjectName(QStringLiteral("menuWindow"));
    // Only a menu that holds the pointer closes by itself.
    connect(this, &QMenu::triggered, this, &QWidget::hide);
}

// A fixed size makes tiling compositors let it float.
void MenuWindow::toggle(const QString &activationToken)
{
    if (isVisible()) {
        hide();
        return;
    }
    setActiveAction(nullptr);
    setFixedSize(sizeHint());
    showWithToken(activationToken, [this] {
        show();
        activateWindow();
    });
}

bool MenuWindow::event(QEvent *event)
{
    if (event->type() == QEvent::WindowDeactivate)
        hide();
    return QMenu::event(event);
}

// The keys that stand beside the entries count while the menu is open.
void MenuWindow::keyPressEvent(QKeyEvent *event)
{
    auto *action = actionOfKey(*event);
    if (!action) {
        QMenu::keyPressEvent(event);
        return;
    }
    hide();
    action->trigger();
}

QAction *MenuWindow::actionOfKey(const QKeyEvent &event) const
{
    const QKeySequence keys(event.keyCombination());
    const auto all = actions();
    const auto found = std::find_if(
        all.begin(), all.end(), [&](const auto *action) { return action->isEnabled() && action->shortcut() == keys; });
    return found == all.end() ? nullptr : *found;
}

}  // namespace velquarin
