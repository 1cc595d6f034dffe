// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/StatusItem/StatusIconPainter.h"

#include "Platform/Linux/StatusItem/NumberDrawing.h"

#include <QCoreApplication>
#include <QPainter>
#include <QPainterPath>
#include <QSvgRenderer>

#include <algorithm>
#include <array>
#include <cmath>
#include <QtEndian>

namespace velquarin {

namespace {

QString words(const char *text)
{
    return QCoreApplication::translate("StatusItem", text);
}

// The description says the same until there is more to say.
StatusWords syncingWords(const QString &description)
{
    const auto headline = words(QT_TRANSLATE_NOOP("StatusItem", "Syncing"));
    return {headline, description == headline ? QString() : description};
}

// Heights of the digits in whole pixels, chosen by eye for one, two and three characters, so that their upper
// and lower edges are crisp; and the width of the halo.
struct NumberSize
{
    int picture;
    std::array<int, 3> digits;
    int halo;
};

constexpr std::array squareSizes{
    NumberSize{16, {8, 7, 6}, 1},    NumberSize{22, {11, 9, 8}, 1},   NumberSize{24, {12, 10, 8}, 1},
    NumberSize{32, {15, 13, 11}, 2}, NumberSize{48, {22, 20, 16}, 2}, NumberSize{64, {30, 26, 21}, 3},
};
constexpr std::array wideSizes{NumberSize{24, {14, 14, 12}, 1}, NumberSize{48, {28, 28, 24}, 2}};

template <std::size_t count>
const NumberSize &sizeFor(const std::array<NumberSize, count> &sizes, int picture)
{
    const auto *found = std::find_if(sizes.begin(), sizes.end(), [&](auto &size) { return size.picture >= picture; });
    return found == sizes.end() ? sizes.back() : *found;
}

QColor symbolColor(const StatusItemAppearance &appearance)
{
    return appearance.isTemplate ? statuscolor::templateGrey : statuscolor::committedOrange;
}

QColor haloColor(const StatusItemAppearance &appearance)
{
    return appearance.isTemplate ? statuscolor::haloOnGrey : statuscolor::haloOnOrange;
}

// A drawing made for the size, not a large one scaled down.
QString drawing(const QString &symbolName, int size)
{
    const auto folder = size < 22 ? QStringLiteral("16/") : size < 24 ? QStringLiteral("22/") : QString();
    return QStringLiteral(":/symbols/") + folder + symbolName + QStringLiteral(".svg");
}

QImage transparentImage(int width, int height)
{
    QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

QImage paintSymbol(const QString &symbolName, const QColor &color, int size)
{
    auto image = transparentImage(size, size);
    QPainter painter(&image);
    QSvgRenderer(drawing(symbolName, size)).render(&painter);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
    return image;
}

// The number with its left edge and its baseline at the origin; narrowed where it would be too wide.
QPainterPath numberOutline(const QString &number, int height, qreal widthLimit)
{
    const auto path = numberDrawing(number);
    const auto bounds = path.boundingRect();
    const auto vertical = height / bounds.height();
    const auto horizontal = std::min(vertical, widthLimit / bounds.width());
    return QTransform::fromScale(horizontal, vertical).map(path.translated(-bounds.left(), -bounds.bottom()));
}

void paintNumber(QPainter &painter, const QPainterPath &path, const QColor &halo, int haloWidth)
{
    painter.strokePath(path, QPen(halo, 2.0 * haloWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.fillPath(path, QColor(statuscolor::number));
}

int digitHeight(const NumberSize &size, const QString &number)
{
    return size.digits.at(static_cast<std::size_t>(number.size()) - 1);
}

}  // namespace

bool isSyncing(const StatusItemAppearance &appearance)
{
    return !appearance.symbolName.startsWith(QLatin1String("flame"));
}

StatusWords statusWords(const StatusItemAppearance &appearance)
{
    if (isSyncing(appearance))
        return syncingWords(appearance.accessibilityDescription);
    const auto count = appearance.title.trimmed();
    auto headline = count.isEmpty() ? words(QT_TRANSLATE_NOOP("StatusItem", "No streak yet"))
                                    : words(QT_TRANSLATE_NOOP("StatusItem", "%1-day streak")).arg(count);
    auto detail = appearance.isTemplate ? words(QT_TRANSLATE_NOOP("StatusItem", "No commit today yet"))
                                        : words(QT_TRANSLATE_NOOP("StatusItem", "Committed today"));
    return {std::move(headline), appearance.note.isEmpty() ? detail : detail + u'\n' + appearance.note};
}

QString numberInPicture(const QString &title)
{
    auto number = title.trimmed();
    if (number.size() <= 3)
        return number;
    number.chop(3);
    return number.size() > 2 ? QStringLiteral("99k") : number + u'k';
}

QImage paintSquareIcon(const StatusItemAppearance &appearance, int size)
{
    const auto number = isSyncing(appearance) ? QString() : numberInPicture(appearance.title);
    if (number.isEmpty())
        return paintSymbol(appearance.symbolName, symbolColor(appearance), size);
    auto image = paintSymbol(QStringLiteral("flame.number"), symbolColor(appearance), size);
    const auto &fit = sizeFor(squareSizes, size);
    const auto path = numberOutline(number, digitHeight(fit, number), size - 2 * fit.halo);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate((size - path.boundingRect().width()) / 2, size - fit.halo);
    paintNumber(painter, path, haloColor(appearance), fit.halo);
    return image;
}

QImage paintWideIcon(const StatusItemAppearance &appearance, int height)
{
    const auto number = isSyncing(appearance) ? QString() : numberInPicture(appearance.title);
    if (number.isEmpty())
        return paintSquareIcon(appearance, height);
    const auto &fit = sizeFor(wideSizes, height);
    const auto digits = digitHeight(fit, number);
    const auto flameWidth = height * 0.78;  // with the air at its sides
    const auto path = numberOutline(number, digits, 2 * height - flameWidth - 2 * fit.halo);
    const auto groupWidth = flameWidth + path.boundingRect().width() + 2 * fit.halo;
    const auto left = std::floor((2 * height - groupWidth) / 2);
    auto image = transparentImage(2 * height, height);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.drawImage(QPointF(left - std::round(height * 0.13), 0),
                      paintSymbol(appearance.symbolName, symbolColor(appearance), height));
    const int baseline = (height + digits) / 2;  // on a whole pixel
    painter.translate(left + flameWidth + fit.halo, baseline);
    paintNumber(painter, path, haloColor(appearance), fit.halo);
    return image;
}

QList<QImage> squareIcons(const StatusItemAppearance &appearance)
{
    QList<QImage> icons;
    for (const auto &size : squareSizes)
        icons.append(paintSquareIcon(appearance, size.picture));
    return icons;
}

QList<QImage> wideIcons(const StatusItemAppearance &appearance)
{
    QList<QImage> icons;
    for (const auto &size : wideSizes)
        icons.append(paintWideIcon(appearance, size.picture));
    return icons;
}

QByteArray pixelsInNetworkOrder(const QImage &image, AlphaUse alpha)
{
    const auto pixels = image.convertToFormat(alpha == AlphaUse::Multiplied ? QImage::Format_ARGB32_Premultiplied
                                                                            : QImage::Format_ARGB32);
    QByteArray bytes;
    bytes.reserve(pixels.sizeInBytes());
    for (int y = 0; y < pixels.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(pixels.constScanLine(y));
        for (int x = 0; x < pixels.width(); ++x) {
            const auto pixel = qToBigEndian(quint32{line[x]});
            bytes.append(reinterpret_cast<const char *>(&pixel), sizeof pixel);
        }
    }
    return bytes;
}

}  // namespace velquarin
