// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Linux/Windows/ColorSchemeSetting.h"

#include <QObject>
#include <QTimer>

namespace velquarin {

//! Keeps the program's palette as dark as the user wants it where the desktop says so and its palette does not follow, as
//! GNOME's does not: a style switch there leaves the theme that the toolkit takes its colours from as it was. A palette
//! that is dark already stays as it is; each new one of the desktop's is judged anew.
//! Source: docs/decisions/0007-look.md
class DesktopColors : public QObject
{
    Q_OBJECT
public:
    explicit DesktopColors(SessionBus &bus, QObject *parent = nullptr);

    //! Sees the palette of the program change.
    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    //! What the user wants or the desktop's palette has changed, and ours is as he wants it.
    void looked();

private:
    void follow();

    ColorSchemeSetting m_setting;
    QTimer m_desktopsTurn{this};
    bool m_isOurs = false;  // the palette that is set
};

}  // namespace velquarin
