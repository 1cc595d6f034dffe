// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

namespace velquarin {

class IconButton;
class Text;

//! When the figures were read, and the buttons to read them anew and to change the settings.
class FooterSection : public QWidget
{
    Q_OBJECT
public:
    explicit FooterSection(QWidget *parent = nullptr);

    //! How long ago the last refresh was, in words; empty while there was none.
    void setElapsed(const QString &elapsed);

    //! While a refresh runs, its button is half transparent and cannot be pressed.
    void setRefreshing(bool isRefreshing);

Q_SIGNALS:
    void refreshRequested();
    void settingsRequested();

private:
    Text *m_updated;
    IconButton *m_refresh;
    IconButton *m_settings;
    bool m_isFocusOwed = false;
};

}  // namespace velquarin
