// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/StatusItem/NumberDrawing.h"

#include <QPainterPathStroker>

#include <array>

namespace velquarin {

namespace {

constexpr qreal weight = 20;
constexpr qreal height = 100;
constexpr qreal gap = 9;
constexpr qreal top = weight / 2;
constexpr qreal bottom = height - weight / 2;
constexpr qreal left = weight / 2;
constexpr qreal right = 48;
constexpr qreal middle = (left + right) / 2;

QPainterPath from(qreal x, qreal y)
{
    return QPainterPath({x, y});
}

QPainterPath zero()
{
    QPainterPath line;
    line.addRoundedRect(QRectF(QPointF(left, top), QPointF(right, bottom)), middle - left, 24);
    return line;
}

QPainterPath one()
{
    auto line = from(left, 26);
    line.lineTo(left + 18, top);
    line.lineTo(left + 18, bottom);
    return line;
}

QPainterPath two()
{
    auto line = from(left, 31);
    line.cubicTo(left, 3, right, 3, right, 32);
    line.cubicTo(right, 52, left, 66, left, bottom);
    line.lineTo(right, bottom);
    return line;
}

QPainterPath three()
{
    auto line = from(left, 22);
    line.cubicTo(16, 4, 46, 6, 46, 29);
    line.cubicTo(46, 43, 36, 47, 24, 47);
    line.cubicTo(38, 47, right, 54, right, 69);
    line.cubicTo(right, 96, 15, 96, left, 77);
    return line;
}

QPainterPath four()
{
    auto line = from(38, bottom);
    line.lineTo(38, top);
    line.lineTo(left, 68);
    line.lineTo(52, 68);
    return line;
}

QPainterPath five()
{
    auto line = from(45, top);
    line.lineTo(15, top);
    line.lineTo(12, 45);
    line.cubicTo(24, 35, right, 38, right, 65);
    line.cubicTo(right, 96, 15, 97, left, 78);
    return line;
}

QPainterPath six()
{
    auto line = from(40, top);
    line.cubicTo(20, 20, left, 42, left, 66);
    line.addEllipse(QPointF(middle, 66), middle - left, bottom - 66);
    return line;
}

QPainterPath seven()
{
    auto line = from(left, top);
    line.lineTo(right, top);
    line.lineTo(22, bottom);
    return line;
}

QPainterPath eight()
{
    QPainterPath line;
    line.addEllipse(QPointF(middle, 28), 16, 18);
    line.addEllipse(QPointF(middle, 68), middle - left, 22);
    return line;
}

// The six upside down.
QPainterPath nine()
{
    return QTransform(-1, 0, 0, -1, left + right, height).map(six());
}

QPainterPath letterK()
{
    auto line = from(left, top);
    line.lineTo(left, bottom);
    line.moveTo(44, 40);
    line.lineTo(left, 69);
    line.moveTo(25, 60);
    line.lineTo(46, bottom);
    return line;
}

QPainterPath lineOf(QChar character)
{
    using Line = QPainterPath (*)();
    constexpr std::array<Line, 10> digits = {zero, one, two, three, four, five, six, seven, eight, nine};
    if (character >= u'0' && character <= u'9')
        return digits.at(character.unicode() - u'0')();
    return character == u'k' ? letterK() : QPainterPath();
}

QPainterPath drawn(const QPainterPath &line)
{
    QPainterPathStroker pen;
    pen.setWidth(weight);
    pen.setCapStyle(Qt::RoundCap);
    pen.setJoinStyle(Qt::RoundJoin);
    return pen.createStroke(line);
}

}  // namespace

QPainterPath numberDrawing(const QString &number)
{
    QPainterPath drawing;
    drawing.setFillRule(Qt::WindingFill);
    qreal edge = 0;
    for (const auto character : number) {
        const auto shape = drawn(lineOf(character));
        drawing.addPath(shape.translated(edge - shape.boundingRect().left(), -height));
        edge = drawing.boundingRect().right() + gap;
    }
    return drawing;
}

}  // namespace velquarin
