// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QMenu>

namespace velquarin {

//! A menu for desktops where a program opens no menu beside a window of somebody else's: an ordinary small window that
//! looks like a menu, stands where the compositor puts it and has the keyboard. It closes with Esc, with the choice of an
//! entry, and when another window is activated. Source: docs/decisions/0004-status-item.md
class MenuWindow : public QMenu
{
    Q_OBJECT
public:
    MenuWindow();

    //! Opens it as large as its entries need, or closes it where it is open: what a click on the item asks for. The
    //! token lets it take the keyboard; it may be empty.
    void toggle(const QString &activationToken);

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    [[nodiscard]] QAction *actionOfKey(const QKeyEvent &event) const;
};

}  // namespace velquarin
