// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QVBoxLayout>

namespace velquarin {

//! The column of a tab: default padding all round, 16 points between its parts. Where there is so much to say that the
//! window has no room for it, the parts move together before a line of them is cut.
class TabColumn : public QVBoxLayout
{
public:
    explicit TabColumn(QWidget *tab);

    void setGeometry(const QRect &place) override;

private:
    [[nodiscard]] int gaps() const;
};

}  // namespace velquarin
