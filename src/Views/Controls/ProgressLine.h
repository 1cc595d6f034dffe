// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

namespace velquarin {

class Text;

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
