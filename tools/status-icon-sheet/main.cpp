// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
// Paints every status picture on light and dark ground into one PNG: status_icon_sheet sheet.png [zoom]

#include "Platform/Linux/StatusItem/StatusIconPainter.h"

#include <QGuiApplication>
#include <QPainter>

#include <array>
#include <cstdio>

using namespace velquarin;

namespace {

constexpr std::array sizes{16, 22, 24, 32, 48, 64};
constexpr std::array wideHeights{24, 48};
constexpr int margin = 6;
constexpr int rowHeight = 64 + 2 * margin;

StatusItemAppearance syncing()
{
    return {QStringLiteral("arrow.triangle.2.circlepath"), true, QStringLiteral("Syncing"), {}};
}

StatusItemAppearance flame(bool isCommitted, const QString &title)
{
    const auto symbol = isCommitted ? QStringLiteral("flame.fill") : QStringLiteral("flame");
    return {symbol, !isCommitted, QStringLiteral("Velquarin"), title};
}

QList<StatusItemAppearance> rows()
{
    QList<StatusItemAppearance> appearances{syncing()};
    for (const auto isCommitted : {false, true}) {
        for (const auto *title : {"", " 7", " 42", " 365", " 1000"})
            appearances.append(flame(isCommitted, QLatin1String(title)));
    }
    return appearances;
}

int rowWidth()
{
    int width = margin;
    for (const auto size : sizes)
        width += size + margin;
    for (const auto height : wideHeights)
        width += 2 * height + margin;
    return width;
}

void paintRow(QPainter &painter, const StatusItemAppearance &appearance)
{
    int x = margin;
    for (const auto size : sizes) {
        painter.drawImage(x, (rowHeight - size) / 2, paintSquareIcon(appearance, size));
        x += size + margin;
    }
    for (const auto height : wideHeights) {
        painter.drawImage(x, (rowHeight - height) / 2, paintWideIcon(appearance, height));
        x += 2 * height + margin;
    }
}

void paintColumn(QPainter &painter, const QColor &ground)
{
    const auto appearances = rows();
    painter.fillRect(QRect(0, 0, rowWidth(), rowHeight * static_cast<int>(appearances.size())), ground);
    painter.save();
    for (const auto &appearance : appearances) {
        paintRow(painter, appearance);
        painter.translate(0, rowHeight);
    }
    painter.restore();
}

QImage paintSheet()
{
    const std::array grounds{QColor(0xf2, 0xf2, 0xf2), QColor(0x2b, 0x2b, 0x2b)};
    QImage sheet(rowWidth() * static_cast<int>(grounds.size()), rowHeight * static_cast<int>(rows().size()),
                 QImage::Format_RGB32);
    QPainter painter(&sheet);
    for (const auto &ground : grounds) {
        paintColumn(painter, ground);
        painter.translate(rowWidth(), 0);
    }
    return sheet;
}

}  // namespace

int main(int argc, char *argv[])
{
    const QGuiApplication application(argc, argv);
    const auto arguments = QGuiApplication::arguments();
    if (arguments.size() < 2) {
        std::fputs("usage: status_icon_sheet FILE.png [ZOOM]\n", stderr);
        return 2;
    }
    auto sheet = paintSheet();
    const auto zoom = arguments.value(2, QStringLiteral("1")).toInt();
    return sheet.scaled(sheet.size() * qMax(zoom, 1)).save(arguments.at(1)) ? 0 : 1;
}
