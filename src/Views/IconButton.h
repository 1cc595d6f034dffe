// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Views/PlainButton.h"

namespace velquarin {

//! A bare symbol of the caption's size that can be pressed. Disabled, it is half transparent.
class IconButton : public PlainButton
{
    Q_OBJECT
public:
    //! @p accessibleName is what a screen reader says in place of the picture.
    IconButton(QString symbol, const QString &accessibleName, QWidget *parent = nullptr);

    [[nodiscard]] double opacity() const;
    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_symbol;
};

}  // namespace velquarin
