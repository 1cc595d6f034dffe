// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QProxyStyle>

namespace velquarin {

//! The desktop's own style in all but one thing: the letters that work with Alt are underlined while Alt is held, and at
//! no other time. Some styles do so by themselves; others underline them always.
class MnemonicStyle : public QProxyStyle
{
    Q_OBJECT
public:
    //! Puts itself around the application's style. A desktop that changes its style takes it away: call it again then.
    static void install();

    [[nodiscard]] int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                                QStyleHintReturn *result) const override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    explicit MnemonicStyle(QStyle *style);
    void setHeld(bool isHeld);

    bool m_isAltHeld = false;
};

}  // namespace velquarin
