// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Controls/Text.h"

#include "Views/Controls/Accessibility.h"

#include <QEvent>
#include <QFontMetrics>
#include <QPainter>
#include <QStyle>

#include <algorithm>
#include <utility>

namespace velquarin {

namespace {

QFont letteringOf(const TextLook &look)
{
    return style::systemFont(look.size, look.weight);
}

// A name may hold line breaks and tabs, which would send its rest elsewhere.
QString onOneLine(QString text)
{
    const auto isBreak = [](QChar character) {
        return character == QLatin1Char('\n') || character == QLatin1Char('\t') || character == QChar::LineSeparator ||
               character == QChar::ParagraphSeparator;
    };
    std::ranges::replace_if(text, isBreak, QChar(QChar::Space));
    return text;
}

Line lineIn(const QFont &font)
{
    const QFontMetrics metrics(font);
    return {metrics.ascent(), metrics.descent()};
}

}  // namespace

TextLook textLook(style::TypeStyle type, style::Tone tone, QFont::Weight weight)
{
    return {style::sizeOf(type), type == style::TypeStyle::Headline ? QFont::Bold : weight, tone};
}

Line lineOf(const TextLook &look)
{
    return lineIn(letteringOf(look));
}

// Some fonts have figures that reach further, as small letters do.
Line closeLineOf(const TextLook &look)
{
    const QFontMetrics metrics(letteringOf(look));
    const auto figures = metrics.tightBoundingRect(QStringLiteral("0123456789"));
    const auto margin = style::points(2);
    return {std::max(metrics.capHeight() + margin, -figures.top()), std::max(margin, figures.bottom() + 1)};
}

Text::Text(const TextLook &look, QWidget *parent)
    : QWidget(parent)
    , m_look(look)
    , m_font(letteringOf(look))
{
    setAccessibleRole(*this, QAccessible::StaticText);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void Text::setText(const QString &text)
{
    if (text == m_text)
        return;
    m_text = text;
    setAccessibleName(text);
    const auto width = measuredWidth();
    if (std::exchange(m_width, width) != width)
        updateGeometry();
    update();
}

void Text::setTone(const style::Tone &tone)
{
    if (tone == m_look.tone)
        return;
    m_look.tone = tone;
    update();
}

void Text::setAlignment(Qt::Alignment alignment)
{
    m_alignment = alignment;
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    update();
}

void Text::setLine(const Line &line)
{
    m_line = line;
    updateGeometry();
}

void Text::allowCutting(Qt::TextElideMode where)
{
    m_cutAt = where;
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
}

QSize Text::sizeHint() const
{
    const auto [above, below] = line();
    return {m_width, above + below};
}

QSize Text::minimumSizeHint() const
{
    const auto whole = sizeHint();
    const bool mayBeCut = sizePolicy().horizontalPolicy() == QSizePolicy::Maximum;
    return {mayBeCut ? 0 : whole.width(), whole.height()};
}

// On its baseline wherever that is: a letter from another font would move a line that is put in the middle.
void Text::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.setLayoutDirection(style::readingDirection(m_text));
    painter.setFont(m_font);
    painter.setPen(style::textColor(palette(), m_look.tone));
    const auto shown = shownText(painter.fontMetrics());
    const auto line = this->line();
    const QSize size(painter.fontMetrics().horizontalAdvance(shown), line.above + line.below);
    const auto place = QStyle::alignedRect(layoutDirection(), m_alignment | Qt::AlignVCenter, size, rect());
    painter.drawText(QPoint(place.x(), place.y() + line.above), shown);
}

void Text::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange) {
        m_font = letteringOf(m_look);
        m_width = measuredWidth();
    }
    QWidget::changeEvent(event);
}

// A screen of another scale measures a text a little wider or narrower: what was given its room is never cut.
QString Text::shownText(const QFontMetrics &metrics) const
{
    const auto whole = onOneLine(m_text);
    return width() >= m_width ? whole : metrics.elidedText(whole, m_cutAt, width());
}

Text *makeText(const TextLook &look, const QString &text, QWidget *parent)
{
    auto *const made = new Text(look, parent);
    made->setText(text);
    return made;
}

Line Text::line() const
{
    return m_line ? *m_line : lineIn(m_font);
}

int Text::measuredWidth() const
{
    return QFontMetrics(m_font).horizontalAdvance(onOneLine(m_text));
}

}  // namespace velquarin
