// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Views/Controls/Style.h"

#include <QString>
#include <QWidget>

namespace velquarin {

//! One of our drawings, beside text of a size. It lets the pointer through, and says nothing to a screen reader: the
//! text or the button beside it does.
class SymbolView : public QWidget
{
    Q_OBJECT
public:
    //! @p size in points, of the text it stands beside.
    SymbolView(QString name, double size, const style::Tone &tone, QWidget *parent = nullptr);

    [[nodiscard]] const QString &name() const { return m_name; }
    void setName(const QString &name);
    void setTone(const style::Tone &tone);

    //! Fills the drawing with a lively colour, where it is a picture and no letter.
    void setFill(style::Accent accent);

    [[nodiscard]] QColor color() const;
    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_name;
    double m_size;
    style::Tone m_tone;
    bool m_isFilled = false;
};

}  // namespace velquarin
