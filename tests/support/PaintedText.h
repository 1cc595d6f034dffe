// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QFont>
#include <QPaintDevice>
#include <QPaintEngine>
#include <QPainter>
#include <QPointF>
#include <QStringList>
#include <QWidget>

namespace velquarin::test {

//! What is written somewhere, as it can be read: cut where it is cut.
struct PaintedText
{
    QString text;
    QFont font;
    QColor color;
    QPointF place;  // where its baseline begins
};

//! A sheet that keeps what is written on it, and nothing else.
class TextSheet : public QPaintDevice
{
public:
    explicit TextSheet(QSize size)
        : m_size(size)
    {
    }

    [[nodiscard]] const QList<PaintedText> &texts() const { return m_engine.texts; }
    [[nodiscard]] QPaintEngine *paintEngine() const override { return &m_engine; }

protected:
    [[nodiscard]] int metric(PaintDeviceMetric metric) const override
    {
        constexpr int dotsPerInch = 96;
        switch (metric) {
        case PdmWidth:
            return m_size.width();
        case PdmHeight:
            return m_size.height();
        case PdmDpiX:
        case PdmDpiY:
        case PdmPhysicalDpiX:
        case PdmPhysicalDpiY:
            return dotsPerInch;
        case PdmDevicePixelRatio:
            return 1;
        case PdmDevicePixelRatioScaled:
            return int(devicePixelRatioFScale());
        default:
            return 0;
        }
    }

private:
    class Engine : public QPaintEngine
    {
    public:
        Engine()
            : QPaintEngine(AllFeatures)
        {
        }
        QList<PaintedText> texts;

        bool begin(QPaintDevice * /*device*/) override { return true; }
        bool end() override { return true; }
        void updateState(const QPaintEngineState & /*state*/) override {}
        void drawPath(const QPainterPath & /*path*/) override {}
        void drawPolygon(const QPointF * /*points*/, int /*count*/, PolygonDrawMode /*mode*/) override {}
        void drawPixmap(const QRectF & /*rect*/, const QPixmap & /*pixmap*/, const QRectF & /*from*/) override {}
        void drawTextItem(const QPointF &place, const QTextItem &item) override
        {
            const auto start = painter()->deviceTransform().map(place);
            // A letter that is underlined for its mnemonic comes by itself.
            const auto gap = start - m_end;
            if (!texts.isEmpty() && qAbs(gap.x()) < 1 && qAbs(gap.y()) < 1)
                texts.last().text.append(item.text());
            else
                texts.append({item.text(), painter()->font(), painter()->pen().color(), start});
            m_end = start + QPointF(item.width(), 0);
        }
        [[nodiscard]] Type type() const override { return User; }

    private:
        QPointF m_end;  // of what was written last
    };

    QSize m_size;
    mutable Engine m_engine;
};

//! All that can be read on @p widget, in the order in which it is written.
inline QList<PaintedText> paintedTexts(QWidget &widget)
{
    TextSheet sheet(widget.size());
    widget.render(&sheet);
    return sheet.texts();
}

inline QStringList paintedWords(QWidget &widget)
{
    QStringList words;
    for (const auto &painted : paintedTexts(widget))
        words.append(painted.text);
    return words;
}

}  // namespace velquarin::test
