// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Views/Controls/PlainButton.h"

namespace velquarin {

//! The heading of a section, which leads to another one: "Last 7 Days ... Show Year >", or "< Back ... Last 365 Days".
class SectionButton : public PlainButton
{
    Q_OBJECT
public:
    enum class Direction { Forward, Back };

    //! @p title heads the section; @p action says where the button leads, and is its accessible name.
    SectionButton(Direction direction, const QString &title, const QString &action, QWidget *parent = nullptr);

    //! How far the rectangle reaches above and below the text. Units: logical pixels.
    [[nodiscard]] static int verticalPadding();

private:
    QWidget *makeHeading(const QString &title);
    QWidget *makeLink(const QString &action);
    QWidget *makeChevron(Direction direction);
};

}  // namespace velquarin
