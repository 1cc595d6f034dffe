// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Controls/Symbols.h"

#include <QApplication>
#include <QFile>
#include <QHash>
#include <QIconEngine>
#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QPixmapCache>
#include <QStyle>
#include <QSvgRenderer>

#include <cmath>
#include <numbers>
#include <utility>

namespace velquarin {

namespace style {

namespace {

constexpr double gridHeight = 24;
constexpr double heightToText = 1.4;
constexpr double swelling = 0.1;
constexpr int timeOfBeat = 260;  // ms
constexpr int sizeByHand = 16;

QString fileOf(const QString &name)
{
    return QStringLiteral(":/symbols/%1.svg").arg(name);
}

// What is drawn by hand for so few pixels has its strokes on whole ones: it is not scaled, and stands in the middle.
bool isByHand(const QString &name, QSize pixels)
{
    return pixels.height() >= sizeByHand - 2 && pixels.height() <= sizeByHand + 1 &&
           QFile::exists(fileOf(QStringLiteral("16/") + name));
}

QImage drawnAsItIs(const QString &name, QSize pixels)
{
    const bool isSmall = isByHand(name, pixels);
    const QRect whole(QPoint(), pixels);
    const auto middle = QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, {sizeByHand, sizeByHand}, whole);
    QSvgRenderer drawing(fileOf(isSmall ? QStringLiteral("16/") + name : name));
    drawing.setAspectRatioMode(Qt::KeepAspectRatio);
    QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    drawing.render(&painter, isSmall ? middle : whole);
    return image;
}

QPixmap drawn(const QString &name, QSize pixels, const QColor &color)
{
    auto image = drawnAsItIs(name, pixels);
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
    painter.end();
    return QPixmap::fromImage(std::move(image));
}

// Parsing a drawing takes far longer than painting it; Qt's cache lets go of what is not used any more.
QPixmap cached(const QString &name, QSize pixels, const QColor &color)
{
    const auto key = QStringLiteral("velquarin/%1/%2x%3/%4")
                         .arg(name)
                         .arg(pixels.width())
                         .arg(pixels.height())
                         .arg(color.rgba(), 8, 16, QLatin1Char('0'));
    QPixmap pixmap;
    if (!QPixmapCache::find(key, &pixmap)) {
        pixmap = drawn(name, pixels, color);
        QPixmapCache::insert(key, pixmap);
    }
    return pixmap;
}

class SymbolIconEngine : public QIconEngine
{
public:
    explicit SymbolIconEngine(QString name)
        : m_name(std::move(name))
    {
    }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override
    {
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        const auto role = state == QIcon::On ? QPalette::WindowText : QPalette::ButtonText;
        paintSymbol(*painter, m_name, rect, QApplication::palette().color(group, role));
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }

    [[nodiscard]] QIconEngine *clone() const override { return new SymbolIconEngine(*this); }

private:
    QString m_name;
};

}  // namespace

// Parsed once: a symbol changes with the figures, and its drawing is ours and stays as it is.
double symbolShape(const QString &name)
{
    static QHash<QString, double> known;
    const auto shape = known.constFind(name);
    if (shape != known.cend())
        return *shape;
    return *known.insert(name, QSvgRenderer(fileOf(name)).viewBoxF().width() / gridHeight);
}

QSize symbolSize(double shape, double size)
{
    const auto height = points(size * heightToText);
    return {qRound(shape * height), height};
}

QSize symbolSize(const QString &name, double size)
{
    return symbolSize(symbolShape(name), size);
}

void paintSymbol(QPainter &painter, const QString &name, const QRectF &rect, const QColor &color)
{
    const auto target = onWholePixels(painter, rect);
    const auto pixels = painter.deviceTransform().mapRect(target).size().toSize();
    painter.drawPixmap(target, cached(name, pixels, color), QRectF(QPointF(), QSizeF(pixels)));
}

void paintMovingSymbol(QPainter &painter, const QString &name, const QRectF &rect, const QColor &color)
{
    const auto pixels = (rect.size() * std::sqrt(painter.deviceTransform().determinant())).toSize();
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(rect, cached(name, pixels, color), QRectF(QPointF(), QSizeF(pixels)));
}

QIcon symbolIcon(const QString &name)
{
    return QIcon(new SymbolIconEngine(name));
}

QIcon programIcon()
{
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 64, 128})
        icon.addPixmap(QPixmap::fromImage(drawnAsItIs(QStringLiteral("io.velquarin.Velquarin"), {size, size})));
    return icon;
}

}  // namespace style

SymbolView::SymbolView(QString name, double size, const style::Tone &tone, QWidget *parent)
    : QWidget(parent)
    , m_name(std::move(name))
    , m_shape(style::symbolShape(m_name))
    , m_size(size)
    , m_tone(tone)
    , m_beat(*this, QStringLiteral("beat"), style::timeOfBeat, [this] { update(); })
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void SymbolView::setName(const QString &name)
{
    if (std::exchange(m_name, name) == name)
        return;
    m_shape = style::symbolShape(name);
    updateGeometry();
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
    return style::symbolSize(m_shape, m_size).grownBy(contentsMargins());
}

void SymbolView::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    m_beat.end();
}

void SymbolView::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    const auto place = contentsRect();
    if (m_beat.isOver()) {
        style::paintSymbol(painter, m_name, place, color());
        return;
    }
    const auto middle = QRectF(place).center();
    const auto size = 1 + style::swelling * std::sin(m_beat.progress() * std::numbers::pi);
    painter.translate(middle);
    painter.scale(size, size);
    painter.translate(-middle);
    style::paintMovingSymbol(painter, m_name, place, color());
}

}  // namespace velquarin
