// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

class QPushButton;

namespace velquarin {

//! What an empty list says: a large quiet symbol, a title, an explanation and what to do, in the middle of the room.
class EmptyPanel : public QWidget
{
    Q_OBJECT
public:
    struct Words
    {
        QString symbol;
        QString title;
        QString description;
        QString action;
    };

    explicit EmptyPanel(const Words &words, QWidget *parent = nullptr);

    [[nodiscard]] QPushButton *button() const { return m_button; }

private:
    QPushButton *m_button;
};

}  // namespace velquarin
