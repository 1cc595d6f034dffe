// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Views/Controls/PlainButton.h"
#include "Views/Controls/Style.h"

namespace velquarin {

//! A bare symbol that can be pressed: of the caption's size and the text's colour unless it is said otherwise. Disabled,
//! it is half transparent.
class IconButton : public PlainButton
{
    Q_OBJECT
public:
    //! @p accessibleName is what a screen reader says in place of the picture.
    IconButton(QString symbol, const QString &accessibleName, QWidget *parent = nullptr);

    //! @p size in points, of the text it stands beside.
    void setLook(double size, const style::Tone &tone);

    [[nodiscard]] double opacity() const;
    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_symbol;
    double m_size;
    style::Tone m_tone;
};

}  // namespace velquarin
