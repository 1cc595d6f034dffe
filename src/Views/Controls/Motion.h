// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QVariantAnimation>

#include <functional>

class QWidget;

namespace velquarin {

//! A short movement on a widget, told as a progress from 0 to 1. Where nobody would see it, or where the desktop wants no
//! animations, it is over as soon as it begins; over, nothing of it runs.
class Motion : public QVariantAnimation
{
public:
    //! It takes @p longest milliseconds; @p show shows its progress whenever that has changed.
    Motion(QWidget &widget, const QString &name, int longest, std::function<void()> show);

    void begin();

    //! At once, where it is on its way.
    void end();

    [[nodiscard]] bool isOver() const { return state() == Stopped; }

    //! 1 as long as it never began.
    [[nodiscard]] double progress() const { return currentValue().toDouble(); }

private:
    QWidget &m_widget;
    int m_longest;
};

}  // namespace velquarin
