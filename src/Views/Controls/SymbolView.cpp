// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Controls/SymbolView.h"

#include "Views/Controls/Symbols.h"

#include <QPainter>

#include <utility>

namespace velquarin {

SymbolView::SymbolView(QString name, double size, const style::Tone &tone, QWidget *parent)
    : QWidget(parent)
    , m_name(std::move(name))
    , m_size(size)
    , m_tone(tone)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void SymbolView::setName(const QString &name)
{
    if (std::exchange(m_name, name) != name)
        update();
}

void SymbolView::setTone(const style::Tone &tone)
{
    if (m_tone == tone && !m_isFilled)
        return;
    m_tone = tone;
    m_isFilled = false;
    update();
}

void SymbolView::setFill(style::Accent accent)
{
    if (m_tone == style::Tone(accent) && m_isFilled)
        return;
    m_tone = accent;
    m_isFilled = true;
    update();
}

QColor SymbolView::color() const
{
    return m_isFilled ? style::accent(palette(), std::get<style::Accent>(m_tone)) : style::textColor(palette(), m_tone);
}

QSize SymbolView::sizeHint() const
{
    return style::symbolSize(m_name, m_size);
}

void SymbolView::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    style::paintSymbol(painter, m_name, rect(), color());
}

}  // namespace velquarin
