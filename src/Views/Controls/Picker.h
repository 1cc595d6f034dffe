// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QComboBox>

namespace velquarin {

//! A pop-up of a few values. It may show none of them, and turning the wheel over it scrolls what it stands in instead
//! of choosing something by accident. Keys with Control are its window's. A screen reader finds what it shows under its
//! name, and what it is for in the label whose buddy it is.
class Picker : public QComboBox
{
    Q_OBJECT
public:
    explicit Picker(QWidget *parent = nullptr);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
};

}  // namespace velquarin
