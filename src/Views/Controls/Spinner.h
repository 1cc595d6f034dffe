// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QBasicTimer>
#include <QWidget>

namespace velquarin {

//! A small turning wheel: nobody knows how long it will take. It turns only while it is on screen.
class Spinner : public QWidget
{
    Q_OBJECT
public:
    explicit Spinner(QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;
    void timerEvent(QTimerEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    QBasicTimer m_timer;
    int m_step = 0;
};

}  // namespace velquarin
