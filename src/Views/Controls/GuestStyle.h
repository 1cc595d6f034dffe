// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QProxyStyle>

namespace velquarin {

//! The desktop's own style in all but this: the letters that work with Alt are underlined while Alt is held, and at no
//! other time, as some styles have it by themselves; nothing moves where the user wants no motion; and where the desktop has
//! no style of its own, ours draws the controls.
class GuestStyle : public QProxyStyle
{
    Q_OBJECT
public:
    //! Puts itself around the application's style, and around every other that the desktop puts in its place later.
    static void install();

    //! Whether the user wants less motion than the desktop's style has.
    static void setReducedMotion(bool isReduced);

    [[nodiscard]] int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                                QStyleHintReturn *result) const override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    explicit GuestStyle(QStyle *style);
    void setHeld(bool isHeld);

    bool m_isAltHeld = false;
};

}  // namespace velquarin
