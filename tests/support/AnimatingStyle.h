// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QApplication>
#include <QProxyStyle>

namespace velquarin::test {

//! The style of a desktop that wants animations, or none.
class AnimatingStyle : public QProxyStyle
{
public:
    explicit AnimatingStyle(int milliseconds = 200)
        : QProxyStyle(QStringLiteral("Fusion"))
        , m_milliseconds(milliseconds)
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

//! All of the program on such a desktop.
class AnimatingDesktop
{
public:
    explicit AnimatingDesktop(int milliseconds = 200) { QApplication::setStyle(new AnimatingStyle(milliseconds)); }
    ~AnimatingDesktop() { QApplication::setStyle(QStringLiteral("Fusion")); }
    Q_DISABLE_COPY_MOVE(AnimatingDesktop)
};

}  // namespace velquarin::test
