// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Linux/Desktop/ColorSchemeSetting.h"

#include <QObject>
#include <QTimer>

namespace velquarin {

//! Keeps the program's palette as dark as the user wants it where the desktop says so and its palette does not follow, as
//! GNOME's does not: a style switch there leaves the theme that the toolkit takes its colours from as it was. A palette
//! that is dark already stays as it is. Source: docs/decisions/0007-look.md
class DesktopColors : public QObject
{
    Q_OBJECT
public:
    explicit DesktopColors(SessionBus &bus, QObject *parent = nullptr);

Q_SIGNALS:
    //! What the user wants has changed, and the palette is as he wants it.
    void looked();

private:
    void follow();

    ColorSchemeSetting m_setting;
    QTimer m_desktopsTurn;
    bool m_isOurs = false;  // the palette that is set
};

}  // namespace velquarin
