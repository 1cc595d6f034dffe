// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QProxyStyle>

class QPushButton;
class QScrollBar;
class QStyleOptionButton;
class QStyleOptionComboBox;
class QStyleOptionSlider;

namespace velquarin {

//! What Qt's Fusion draws where the desktop has no style of its own, as calm as the rest of our windows: buttons, check
//! boxes, pickers, scroll bars and tooltips. Everything else stays Fusion's, its name too. All of it follows the palette,
//! the font and the desktop's accent. Source: docs/decisions/0007-look.md
class HouseStyle : public QProxyStyle
{
    Q_OBJECT
public:
    //! Takes @p fusion.
    explicit HouseStyle(QStyle *fusion);

    //! Whether it may take the place of @p style: Fusion, and nobody has chosen that by QT_STYLE_OVERRIDE.
    [[nodiscard]] static bool isWantedFor(const QStyle &style);

    void polish(QWidget *widget) override;
    using QProxyStyle::polish;
    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *widget) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex *option, QPainter *painter,
                            const QWidget *widget) const override;
    [[nodiscard]] QRect subControlRect(ComplexControl control, const QStyleOptionComplex *option, SubControl part,
                                       const QWidget *widget) const override;
    [[nodiscard]] QRect subElementRect(SubElement element, const QStyleOption *option,
                                       const QWidget *widget) const override;
    [[nodiscard]] QSize sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &contents,
                                         const QWidget *widget) const override;
    [[nodiscard]] int pixelMetric(PixelMetric metric, const QStyleOption *option, const QWidget *widget) const override;
    [[nodiscard]] int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                                QStyleHintReturn *result) const override;
};

//! Has the desktop's accent fill @p button where the style is ours: the one thing to do in an empty panel.
void setProminent(QPushButton &button);

//! Makes @p bar a pill in a strip of its own, always to be seen, whatever the desktop's style is: bars with arrows and
//! frames take more room than our lists and squares leave. Laid over what it scrolls, it takes none.
void makePill(QScrollBar &bar, bool isLaidOver);

}  // namespace velquarin
