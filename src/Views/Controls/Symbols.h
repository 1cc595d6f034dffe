// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Views/Controls/Motion.h"
#include "Views/Controls/Style.h"

#include <QIcon>
#include <QString>
#include <QWidget>

class QPainter;

namespace velquarin {

//! Our own drawings, in one colour but for the program's icon. Each is drawn on a grid 24 units high, with the same
//! weight of line. Names are those of resources/symbols.
namespace style {

//! The room that the symbol @p name takes beside text of so many points: as high as 1.4 times the text, and as wide as
//! it is drawn. Units: logical pixels, whole.
[[nodiscard]] QSize symbolSize(const QString &name, double size);
//! The same of one as wide as @p shape says, of its height: to find that out a file is read.
[[nodiscard]] QSize symbolSize(double shape, double size);
[[nodiscard]] double symbolShape(const QString &name);

//! Paints the symbol @p name into @p rect, as large as it fits, in the middle, sharp at every scale.
void paintSymbol(QPainter &painter, const QString &name, const QRectF &rect, const QColor &color);

//! The same for a painter that turns or scales it on its way: smooth in place of sharp, so that it keeps its shape from one
//! picture to the next.
void paintMovingSymbol(QPainter &painter, const QString &name, const QRectF &rect, const QColor &color);

//! The symbol @p name for a button of Qt's: painted anew each time, in the colour of the buttons' text; for QIcon::On in
//! that of the window's, on whose colours our own buttons stand.
[[nodiscard]] QIcon symbolIcon(const QString &name);

//! The program's own icon, in its colours. Made without Qt's plugin for such drawings, which need not be there.
[[nodiscard]] QIcon programIcon();

}  // namespace style

//! One of our drawings, beside text of a size, within the contents margins. It lets the pointer through, and says nothing to a screen reader: the
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

    //! Has it swell by a tenth and shrink again, once, into the contents margins.
    void beat() { m_beat.begin(); }

    [[nodiscard]] QColor color() const;
    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    QString m_name;
    double m_shape;
    double m_size;
    style::Tone m_tone;
    bool m_isFilled = false;
    Motion m_beat;
};

}  // namespace velquarin
