// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QProxyStyle>

namespace velquarin::test {

//! The style of a desktop that wants animations, or none.
class AnimatingStyle : public QProxyStyle
{
public:
    explicit AnimatingStyle(int milliseconds = 200)
        : m_milliseconds(milliseconds)
    {
    }

    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *data) const override
    {
        return hint == SH_Widget_Animation_Duration ? m_milliseconds
                                                    : QProxyStyle::styleHint(hint, option, widget, data);
    }

private:
    int m_milliseconds;
};

}  // namespace velquarin::test
