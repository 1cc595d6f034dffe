// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Controls/PlainButton.h"

#include "Views/Controls/Style.h"
#include "Views/Controls/Symbols.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>

#include <utility>

namespace velquarin {

namespace {

constexpr int timeOfTurn = 900;  // ms

}  // namespace

PlainButton::PlainButton(QWidget *parent)
    : QAbstractButton(parent)
{
    setFocusPolicy(Qt::TabFocus);
    // Painted anew as the pointer comes and goes.
    setAttribute(Qt::WA_Hover);
}

int PlainButton::outset()
{
    return style::points(style::defaultSpacing) / 2;
}

QSize PlainButton::sizeHint() const
{
    return QWidget::sizeHint();
}

QHBoxLayout *PlainButton::makeRow(int verticalPadding)
{
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(outset(), verticalPadding, outset(), verticalPadding);
    row->setSpacing(style::points(style::defaultSpacing));
    return row;
}

void PlainButton::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    if (isEnabled() && (underMouse() || isDown()))
        style::paintPressable(painter, rect(), palette(), isDown());
    if (hasFocus())
        style::paintFocusRing(painter, rect(), palette());
}

// A key that is held down is one press, however often the keyboard repeats it.
void PlainButton::keyPressEvent(QKeyEvent *event)
{
    if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter)
        QAbstractButton::keyPressEvent(event);
    else if (!event->isAutoRepeat())
        click();
}

QLayout *withoutOutset(PlainButton *button)
{
    auto *const row = new QHBoxLayout;
    const auto besides = style::points(style::defaultPadding) - PlainButton::outset();
    row->setContentsMargins(besides, 0, besides, 0);
    row->addWidget(button);
    return row;
}

IconButton::IconButton(QString symbol, const QString &accessibleName, QWidget *parent)
    : PlainButton(parent)
    , m_symbol(std::move(symbol))
    , m_size(style::sizeOf(style::TypeStyle::Caption))
    , m_tone(style::Ink::Primary)
{
    setAccessibleName(accessibleName);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    m_turn.setObjectName(QStringLiteral("turning"));
    m_turn.setStartValue(0.0);
    m_turn.setEndValue(360.0);
    m_turn.setDuration(timeOfTurn);
    m_turn.setLoopCount(-1);
    connect(&m_turn, &QVariantAnimation::valueChanged, this, qOverload<>(&QWidget::update));
    connect(&m_turn, &QVariantAnimation::currentLoopChanged, this, [this] {
        if (!m_isTurning || style::animationTime(*this, timeOfTurn) == 0)
            m_turn.stop();
    });
}

void IconButton::setTurning(bool isTurning)
{
    m_isTurning = isTurning;
    turnIfWanted();
}

void IconButton::turnIfWanted()
{
    if (m_isTurning && m_turn.state() == QAbstractAnimation::Stopped && style::animationTime(*this, timeOfTurn) > 0)
        m_turn.start();
}

void IconButton::showEvent(QShowEvent *event)
{
    PlainButton::showEvent(event);
    turnIfWanted();
}

void IconButton::hideEvent(QHideEvent *event)
{
    m_turn.stop();
    PlainButton::hideEvent(event);
}

void IconButton::setLook(double size, const style::Tone &tone)
{
    m_size = size;
    m_tone = tone;
    updateGeometry();
    update();
}

double IconButton::opacity() const
{
    return isEnabled() ? 1.0 : 0.5;
}

QColor IconButton::color() const
{
    return style::textColor(palette(), m_tone);
}

QSize IconButton::sizeHint() const
{
    const auto symbol = style::symbolSize(m_symbol, m_size);
    return symbol.grownBy({outset(), outset(), outset(), outset()});
}

void IconButton::paintEvent(QPaintEvent *event)
{
    PlainButton::paintEvent(event);
    QPainter painter(this);
    painter.setOpacity(opacity());
    const auto place = rect().adjusted(outset(), outset(), -outset(), -outset());
    if (m_turn.state() == QAbstractAnimation::Stopped) {
        style::paintSymbol(painter, m_symbol, place, color());
        return;
    }
    const auto middle = QRectF(place).center();
    painter.translate(middle);
    painter.rotate(m_turn.currentValue().toDouble());
    painter.translate(-middle);
    style::paintMovingSymbol(painter, m_symbol, place, color());
}

}  // namespace velquarin
