// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Controls/Text.h"

#include "Views/Controls/Accessibility.h"

#include <QFontMetrics>
#include <QPainter>
#include <QStyle>

#include <algorithm>

namespace velquarin {

namespace {

// A name may hold line breaks, which would hide all but its first line.
QString onOneLine(QString text)
{
    const auto isBreak = [](QChar character) {
        return character == QLatin1Char('\n') || character == QChar::LineSeparator ||
               character == QChar::ParagraphSeparator;
    };
    std::ranges::replace_if(text, isBreak, QChar(QChar::Space));
    return text;
}

}  // namespace

TextLook textLook(style::TypeStyle type, style::Tone tone, QFont::Weight weight)
{
    return {style::sizeOf(type), type == style::TypeStyle::Headline ? QFont::Bold : weight, tone};
}

Text::Text(const TextLook &look, QWidget *parent)
    : QWidget(parent)
    , m_look(look)
{
    setAccessibleRole(*this, QAccessible::StaticText);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void Text::setText(const QString &text)
{
    if (text == m_text)
        return;
    const auto sizeBefore = sizeHint();
    m_text = text;
    setAccessibleName(text);
    if (sizeHint() != sizeBefore)
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

void Text::allowCutting(Qt::TextElideMode where)
{
    m_cutAt = where;
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
}

QSize Text::sizeHint() const
{
    const QFontMetrics metrics(lettering());
    return {metrics.horizontalAdvance(onOneLine(m_text)), metrics.height()};
}

QSize Text::minimumSizeHint() const
{
    const auto whole = sizeHint();
    const bool mayBeCut = sizePolicy().horizontalPolicy() == QSizePolicy::Maximum;
    return {mayBeCut ? 0 : whole.width(), whole.height()};
}

void Text::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.setLayoutDirection(style::readingDirection(m_text));
    painter.setFont(lettering());
    painter.setPen(style::textColor(palette(), m_look.tone));
    const auto alignment = QStyle::visualAlignment(layoutDirection(), m_alignment | Qt::AlignVCenter);
    constexpr int flags = Qt::TextSingleLine | Qt::TextDontClip;
    painter.drawText(rect(), int(alignment | Qt::AlignAbsolute) | flags, shownText(painter.fontMetrics()));
}

// A screen of another scale measures a text a little wider or narrower: what was given its room is never cut.
QString Text::shownText(const QFontMetrics &metrics) const
{
    const auto whole = onOneLine(m_text);
    return width() >= sizeHint().width() ? whole : metrics.elidedText(whole, m_cutAt, width());
}

Text *makeText(const TextLook &look, const QString &text, QWidget *parent)
{
    auto *const made = new Text(look, parent);
    made->setText(text);
    return made;
}

QFont Text::lettering() const
{
    return style::systemFont(m_look.size, m_look.weight);
}

}  // namespace velquarin
