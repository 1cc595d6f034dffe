// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

namespace velquarin {

//! The window in which everything is set. It has a name and a place so far, and nothing to set.
class SettingsView : public QWidget
{
    Q_OBJECT
public:
    explicit SettingsView(QWidget *parent = nullptr);

protected:
    void keyPressEvent(QKeyEvent *event) override;
};

}  // namespace velquarin
