// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Views/Controls/Style.h"

#include <QWidget>

namespace velquarin {

class Text;

//! A label and its value at the two ends of one line.
class StatRow : public QWidget
{
    Q_OBJECT
public:
    StatRow(const QString &label, const QString &value, const style::Tone &tone, QWidget *parent = nullptr);

    [[nodiscard]] QString value() const;
    void setValue(const QString &value, const style::Tone &tone);

private:
    Text *m_label;
    Text *m_value;
};

}  // namespace velquarin
