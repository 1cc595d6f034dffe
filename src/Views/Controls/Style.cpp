// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Controls/Style.h"

#include <QApplication>
#include <QFontInfo>
#include <QPainter>
#include <QStyle>
#include <QTransform>
#include <QWidget>

#include <array>
#include <cmath>

namespace velquarin::style {

namespace {

constexpr double referenceHeight = 13;
constexpr double leastContrastOfText = 4.5;
constexpr double leastContrastOfShapes = 3.0;
constexpr double leastOfHighContrast = 20.25;

// One colour in a light and in a dark palette, to fill with and to write with.
struct Shades
{
    QRgb lightFill;
    QRgb darkFill;
    QRgb lightText;
    QRgb darkText;
};

Shades shades(Accent accent)
{
    switch (accent) {
    case Accent::Orange:
        return {0xfff57c00, 0xffff9230, 0xffa64b00, 0xffffa352};
    case Accent::Green:
        return {0xff17873f, 0xff27964d, 0xff14713a, 0xff55c884};
    case Accent::HeatGreen:
        return {0xff005a20, 0xff41da78, 0xff14713a, 0xff55c884};
    case Accent::Blue:
        return {0xff1a73e8, 0xff4a9cf8, 0xff1259bd, 0xff76b3fa};
    case Accent::Red:
        return {0xffd93025, 0xfff2665c, 0xffb3261e, 0xfff78b83};
    case Accent::Grey:
        return {0xff80868b, 0xff9aa0a6, 0xff5a6066, 0xffa9afb5};
    }
    Q_UNREACHABLE();
}

double linear(double channel)
{
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

std::array<double, 256> linearChannels()
{
    std::array<double, 256> channels{};
    for (std::size_t value = 0; value < channels.size(); ++value)
        channels.at(value) = linear(double(value) / 255);
    return channels;
}

// Every colour is weighed against its ground each time that it is painted: hundreds in a year.
double luminance(const QColor &color)
{
    static const auto channels = linearChannels();
    const auto of = [](int value) { return channels.at(std::size_t(value)); };
    return 0.2126 * of(color.red()) + 0.7152 * of(color.green()) + 0.0722 * of(color.blue());
}

QColor farthestFrom(const QColor &color)
{
    const QColor black(Qt::black);
    const QColor white(Qt::white);
    return contrast(black, color) > contrast(white, color) ? black : white;
}

// @p color, moved towards @p goal no further than it takes to be read on @p paper. The way may lead past the paper's own
// shade, but once it can be read it can be read to the end.
QColor legible(const QColor &color, const QColor &goal, const QColor &paper, double least = leastContrastOfText)
{
    if (contrast(color, paper) >= least)
        return color;
    int tooNear = 0;
    int farEnough = 256;
    while (farEnough - tooNear > 1) {
        const auto middle = (tooNear + farEnough) / 2;
        const bool isRead = contrast(mix(color, goal, middle / 256.0), paper) >= least;
        (isRead ? farEnough : tooNear) = middle;
    }
    return mix(color, goal, farEnough / 256.0);
}

QColor primary(const QPalette &palette)
{
    const auto paper = ground(palette);
    return legible(palette.color(QPalette::Active, QPalette::WindowText), farthestFrom(paper), paper);
}

// The text's colour with up to so many hundredths of the window's. Some of it stands in groups and under the pointer:
// what can be read on the ground nearest to the text can be read on all.
QColor quietened(const QPalette &palette, int hundredths)
{
    const auto text = primary(palette);
    const auto nearest = hoveredGround(palette);
    for (; hundredths > 0; --hundredths) {
        const auto candidate = mix(text, ground(palette), hundredths / 100.0);
        if (contrast(candidate, nearest) >= leastContrastOfText)
            return candidate;
    }
    return text;
}

// At 1.5x many edges lie in the middle of a pixel: they go the same way whatever the last digit of a sum is.
double rounded(double position)
{
    constexpr double lastDigits = 1e-6;
    return std::floor(position + 0.5 + lastDigits);
}

}  // namespace

QColor mix(const QColor &from, const QColor &to, double share)
{
    const auto channel = [share](int left, int right) {
        return static_cast<int>(std::lround(left + (right - left) * share));
    };
    return {channel(from.red(), to.red()), channel(from.green(), to.green()), channel(from.blue(), to.blue())};
}

// The active colours always: a window that loses the focus changes nothing that is shown.
QColor ground(const QPalette &palette)
{
    return palette.color(QPalette::Active, QPalette::Window);
}

double scale()
{
    return std::max(QFontInfo(QApplication::font()).pixelSize(), 1) / referenceHeight;
}

int points(double size)
{
    const auto pixels = static_cast<int>(std::lround(size * scale()));
    return size > 0 ? std::max(pixels, 1) : pixels;
}

double sizeOf(TypeStyle style)
{
    switch (style) {
    case TypeStyle::Headline:
    case TypeStyle::Body:
        return 13;
    case TypeStyle::Subheadline:
        return 11;
    case TypeStyle::Caption:
    case TypeStyle::Caption2:
        return 10;
    }
    Q_UNREACHABLE();
}

QFont font(TypeStyle style, QFont::Weight weight)
{
    return systemFont(sizeOf(style), style == TypeStyle::Headline ? QFont::Bold : weight);
}

Qt::LayoutDirection readingDirection(const QString &text)
{
    return text.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight;
}

QFont systemFont(double size, QFont::Weight weight)
{
    auto font = QApplication::font();
    font.setPixelSize(points(size));
    font.setWeight(weight);
    return font;
}

bool isDark(const QPalette &palette)
{
    return luminance(palette.color(QPalette::Active, QPalette::WindowText)) > luminance(ground(palette));
}

double contrast(const QColor &left, const QColor &right)
{
    const auto [darker, lighter] = std::minmax({luminance(left), luminance(right)});
    return (lighter + 0.05) / (darker + 0.05);
}

QColor ink(const QPalette &palette, Ink ink)
{
    switch (ink) {
    case Ink::Primary:
        return primary(palette);
    case Ink::Secondary:
        return quietened(palette, 30);
    case Ink::Tertiary:
        return quietened(palette, 50);
    }
    Q_UNREACHABLE();
}

QColor accentText(const QPalette &palette, Accent accent)
{
    return accentTextOn(hoveredGround(palette), palette, accent);
}

QColor accentTextOn(const QColor &paper, const QPalette &palette, Accent accent)
{
    const auto found = shades(accent);
    const QColor color(isDark(palette) ? found.darkText : found.lightText);
    return legible(color, primary(palette), paper);
}

QColor accentOn(const QColor &paper, const QPalette &palette, Accent accent)
{
    return legible(style::accent(palette, accent), primary(palette), paper, leastContrastOfShapes);
}

QColor desktopAccentOn(const QColor &paper, const QPalette &palette)
{
    return legible(desktopAccent(palette), primary(palette), paper, leastContrastOfShapes);
}

QColor faded(const QColor &color, const QPalette &palette)
{
    const auto paper = groupGround(palette);
    return legible(mix(paper, color, 0.7), color, paper, leastContrastOfShapes);
}

QColor textColor(const QPalette &palette, const Tone &tone)
{
    if (const auto *asInk = std::get_if<Ink>(&tone))
        return ink(palette, *asInk);
    return accentText(palette, std::get<Accent>(tone));
}

QColor accent(const QPalette &palette, Accent accent)
{
    const auto found = shades(accent);
    return isDark(palette) ? QColor(found.darkFill) : QColor(found.lightFill);
}

// What is selected is told by it on every desktop. The role that newer toolkits have for it keeps their own blue where
// the colours come from GTK.
QColor desktopAccent(const QPalette &palette)
{
    const auto accent = palette.color(QPalette::Active, QPalette::Highlight);
    return legible(accent, primary(palette), hoveredGround(palette), leastContrastOfShapes);
}

QColor accentFill(const QPalette &palette, double least)
{
    return legible(desktopAccent(palette), Qt::black, Qt::white, least);
}

QColor controlEdge(const QPalette &palette)
{
    return scrollPill(palette, 0.55);
}

QColor scrollPill(const QPalette &palette, double share)
{
    const auto text = primary(palette);
    return legible(mix(ground(palette), text, share), text, hoveredGround(palette), leastContrastOfShapes);
}

bool isHighContrast(const QPalette &palette)
{
    return contrast(palette.color(QPalette::Active, QPalette::WindowText), ground(palette)) >= leastOfHighContrast;
}

QColor divider(const QPalette &palette)
{
    return mix(ground(palette), primary(palette), isHighContrast(palette) ? 0.5 : 0.14);
}

QColor groupGround(const QPalette &palette)
{
    return mix(ground(palette), primary(palette), 0.045);
}

QColor hoveredGround(const QPalette &palette)
{
    return mix(ground(palette), primary(palette), 0.08);
}

QColor selectedGround(const QPalette &palette)
{
    return mix(ground(palette), primary(palette), 0.12);
}

QColor badgeGround(const QPalette &palette, Accent color)
{
    return mix(hoveredGround(palette), accent(palette, color), 0.2);
}

QColor switchTrack(const QPalette &palette, bool isOn)
{
    if (isOn)
        return accentFill(palette, leastContrastOfShapes);
    const auto track = legible(accent(palette, Accent::Grey), Qt::black, Qt::white, leastContrastOfShapes);
    return isDark(palette) ? track : legible(track, Qt::black, groupGround(palette), leastContrastOfShapes);
}

int animationTime(const QWidget &widget, int longest)
{
    const auto ofStyle = widget.style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, &widget);
    return widget.isVisible() && ofStyle > 0 ? longest : 0;
}

int mnemonicFlag(const QWidget &widget)
{
    const bool isShown = widget.style()->styleHint(QStyle::SH_UnderlineShortcut, nullptr, &widget) != 0;
    return isShown ? Qt::TextShowMnemonic : Qt::TextHideMnemonic;
}

void paintBlock(QPainter &painter, const QRectF &rect, double radius, const QColor &color, const QPalette &palette)
{
    const bool isOutlined = isHighContrast(palette) && color.alpha() > 0;
    const auto inset = isOutlined ? 0.5 : 0;
    painter.setPen(isOutlined ? QPen(divider(palette), 1) : QPen(Qt::NoPen));
    painter.setBrush(color);
    painter.drawRoundedRect(rect.adjusted(inset, inset, -inset, -inset), radius, radius);
}

void paintPressable(QPainter &painter, const QRectF &rect, const QPalette &palette, bool isPressed)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    auto color = primary(palette);
    color.setAlphaF(isPressed ? 0.12F : 0.08F);
    painter.setBrush(color);
    painter.drawRoundedRect(onWholePixels(painter, rect), points(6), points(6));
    painter.restore();
}

void paintFocusRing(QPainter &painter, const QRectF &rect, const QPalette &palette)
{
    paintFocusRing(painter, rect, desktopAccent(palette));
}

void paintFocusRing(QPainter &painter, const QRectF &rect, const QColor &color)
{
    constexpr double width = 1.5;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(color, width));
    const auto inset = width / 2;
    painter.drawRoundedRect(rect.adjusted(inset, inset, -inset, -inset), points(4), points(4));
}

QRectF onWholePixels(const QPainter &painter, const QRectF &rect)
{
    const auto toDevice = painter.deviceTransform();
    const auto device = toDevice.mapRect(rect);
    const QPointF corner(rounded(device.x()), rounded(device.y()));
    const QSizeF size(std::max(rounded(device.width()), 1.0), std::max(rounded(device.height()), 1.0));
    return toDevice.inverted().mapRect(QRectF(corner, size));
}

}  // namespace velquarin::style
