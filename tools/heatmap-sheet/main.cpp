// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
// Paints the heat map on light and dark ground, as it is and with the focus, into one PNG: heatmap_sheet sheet.png
// [zoom]. The scale is the toolkit's own: QT_SCALE_FACTOR=1.5 heatmap_sheet sheet.png

#include "Platform/Calendar.h"
#include "Platform/DateTexts.h"
#include "Views/Dashboard/YearHeatmapView.h"

#include <QApplication>
#include <QPainter>
#include <QRandomGenerator>
#include <QTimeZone>
#include <QVBoxLayout>

#include <cstdio>

using namespace velquarin;

namespace {

QPalette palette(QColor window, QColor text)
{
    QPalette result(window, window);
    result.setColor(QPalette::WindowText, text);
    return result;
}

// A year with every shade in it: quiet weeks, busy ones, and weekends that are mostly free.
DayCounts someYear(const Calendar &calendar, Instant now)
{
    QRandomGenerator random(7);
    DayCounts counts;
    const auto today = calendar.dateOf(now);
    int liveliness = 0;
    for (int daysAgo = 0; daysAgo < 365; ++daysAgo) {
        const auto date = today.addDays(-daysAgo);
        if (date.dayOfWeek() == Qt::Sunday)
            liveliness = random.bounded(1, 18);
        const bool isFree = date.dayOfWeek() > Qt::Friday && random.bounded(4) > 0;
        if (const auto start = calendar.startOf(date); start && !isFree)
            counts[*start] = random.bounded(liveliness + 1);
    }
    return counts;
}

void fill(YearHeatmapView &view, Qt::LayoutDirection direction)
{
    const Calendar calendar(QTimeZone::utc());
    const Instant now(std::chrono::seconds(1'795'176'000));
    view.setLayoutDirection(direction);
    view.setContents(someYear(calendar, now), calendar, now, DateTexts("en_US", calendar));
}

QImage paintColumn(const QPalette &colors)
{
    QWidget ground;
    ground.setPalette(colors);
    QVBoxLayout layout(&ground);
    for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        auto *view = new YearHeatmapView(&ground);
        fill(*view, direction);
        layout.addWidget(view);
    }
    ground.show();
    ground.activateWindow();
    ground.findChild<YearHeatmapView *>()->setFocus(Qt::TabFocusReason);
    QApplication::processEvents();
    return ground.grab().toImage();
}

QImage sideBySide(const QImage &left, const QImage &right)
{
    QImage sheet(left.width() + right.width(), left.height(), QImage::Format_RGB32);
    QPainter painter(&sheet);
    painter.drawImage(QRect({0, 0}, left.size()), left);
    painter.drawImage(QRect({left.width(), 0}, right.size()), right);
    return sheet;
}

}  // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    const auto arguments = QApplication::arguments();
    if (arguments.size() < 2) {
        std::fputs("usage: heatmap_sheet FILE.png [ZOOM]\n", stderr);
        return 2;
    }
    auto font = QApplication::font();
    font.setPixelSize(13);
    QApplication::setFont(font);
    const auto sheet = sideBySide(paintColumn(palette(0xf2f2f2, 0x202020)), paintColumn(palette(0x2b2b2b, 0xf0f0f0)));
    const auto zoom = qMax(arguments.value(2, QStringLiteral("1")).toInt(), 1);
    return sheet.scaled(sheet.size() * zoom).save(arguments.at(1)) ? 0 : 1;
}
