// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QBasicTimer>
#include <QWidget>

namespace velquarin {

class Text;

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

//! Says that something is going on, for as long as it does.
class ProgressLine : public QWidget
{
    Q_OBJECT
public:
    //! @p spacing between the turning wheel and the text, in points.
    explicit ProgressLine(double spacing, QWidget *parent = nullptr);

    void setText(const QString &text);

private:
    Text *m_text;
};

}  // namespace velquarin
