// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Console/StreakReport.h"
#include "Console/YearFormats.h"

#include <QXmlStreamWriter>

#include <array>

namespace velquarin {

namespace {

// Units of the picture, which are pixels where nobody scales it.
constexpr int padding = 20;
constexpr int marginWidth = 32;  // the weekdays
constexpr int gridLeft = padding + marginWidth;
constexpr int headline = 36;
constexpr int monthsBaseline = 66;
constexpr int gridTop = 74;
constexpr int pitch = 14;
constexpr int cellSize = 11;
constexpr int daysOfWeek = 7;
constexpr int gridBottom = gridTop + daysOfWeek * pitch;
constexpr int footerBaseline = gridBottom + 22;
constexpr int height = footerBaseline + 18;
constexpr int weeks = 53;
constexpr int right = gridLeft + weeks * pitch - (pitch - cellSize);
constexpr int width = right + padding;

// Dark figures on a light ground unless the viewer prefers it the other way round; the five bands from quiet to full.
constexpr auto style =
    "text{font:11px system-ui,sans-serif;fill:#5a6168}"
    ".ground{fill:#fcfcfb;stroke:#dfe2e5}.streak{font-size:17px;font-weight:600;fill:#20252b}.end{text-anchor:end}"
    ".b0{fill:#e7eaed}.b1{fill:#b5dfc4}.b2{fill:#78c294}.b3{fill:#359a5b}.b4{fill:#12632f}"
    "@media(prefers-color-scheme:dark){text{fill:#a4abb3}"
    ".ground{fill:#1a1d21;stroke:#33383e}.streak{fill:#eef0f2}"
    ".b0{fill:#2b3036}.b1{fill:#205a36}.b2{fill:#2a7746}.b3{fill:#3fab66}.b4{fill:#7be3a2}}";

void writeAttribute(QXmlStreamWriter &xml, const char *name, int value)
{
    xml.writeAttribute(QString::fromLatin1(name), QString::number(value));
}

void writeRectangle(QXmlStreamWriter &xml, const QString &look, int x, int y, int size)
{
    xml.writeEmptyElement(QStringLiteral("rect"));
    xml.writeAttribute(QStringLiteral("class"), look);
    writeAttribute(xml, "x", x);
    writeAttribute(xml, "y", y);
    writeAttribute(xml, "width", size);
    writeAttribute(xml, "height", size);
    writeAttribute(xml, "rx", 2);
}

void writeText(QXmlStreamWriter &xml, int x, int y, const QString &text, const QString &look = {})
{
    xml.writeStartElement(QStringLiteral("text"));
    if (!look.isEmpty())
        xml.writeAttribute(QStringLiteral("class"), look);
    writeAttribute(xml, "x", x);
    writeAttribute(xml, "y", y);
    xml.writeCharacters(text);
    xml.writeEndElement();
}

void writeGround(QXmlStreamWriter &xml)
{
    xml.writeEmptyElement(QStringLiteral("rect"));
    xml.writeAttribute(QStringLiteral("class"), QStringLiteral("ground"));
    xml.writeAttribute(QStringLiteral("x"), QStringLiteral("0.5"));
    xml.writeAttribute(QStringLiteral("y"), QStringLiteral("0.5"));
    writeAttribute(xml, "width", width - 1);
    writeAttribute(xml, "height", height - 1);
    writeAttribute(xml, "rx", 8);
}

QString bandLook(int band)
{
    return QStringLiteral("b%1").arg(band);
}

QString daysInARow(qint64 days)
{
    return counted(days, "day") + QStringLiteral(" in a row");
}

void writeHeader(QXmlStreamWriter &xml, const StreakReport &report)
{
    writeText(xml, padding, headline, daysInARow(report.currentStreak), QStringLiteral("streak"));
    writeText(xml, right, headline, QStringLiteral("longest %1").arg(report.longestStreak), QStringLiteral("end"));
}

// A month of which the year shows a week or two only has no room for its name beside the next one's.
void writeMonths(QXmlStreamWriter &xml, const YearOfSquares &year)
{
    constexpr int weeksOfName = 3;
    for (qsizetype index = 0; index < year.months.size(); ++index) {
        const auto &month = year.months.at(index);
        const auto next = index + 1 < year.months.size() ? year.months.at(index + 1).weekIndex : weeks + 1;
        if (next - month.weekIndex >= weeksOfName)
            writeText(xml, gridLeft + month.weekIndex * pitch, monthsBaseline, month.text);
    }
}

void writeSquares(QXmlStreamWriter &xml, const HeatmapGrid &grid)
{
    for (int index = 0; index < cellCount(grid); ++index) {
        const auto &cell = cellAt(grid, index);
        if (cell.isInRange)
            writeRectangle(xml, bandLook(countBand(cell.count)), gridLeft + index / daysOfWeek * pitch,
                           gridTop + index % daysOfWeek * pitch, cellSize);
    }
}

void writeWeekdays(QXmlStreamWriter &xml)
{
    constexpr std::array names{"Mon", "Wed", "Fri"};
    int weekday = 1;
    for (const auto *const name : names) {
        writeText(xml, padding, gridTop + weekday * pitch + cellSize - 2, QString::fromLatin1(name));
        weekday += 2;
    }
}

void writeLegend(QXmlStreamWriter &xml)
{
    constexpr int bands = 5;
    constexpr int wordWidth = 30;
    const auto left = right - wordWidth - bands * pitch;
    writeText(xml, left - 6, footerBaseline, QStringLiteral("Less"), QStringLiteral("end"));
    for (int band = 0; band < bands; ++band)
        writeRectangle(xml, bandLook(band), left + band * pitch, footerBaseline - cellSize + 2, cellSize);
    writeText(xml, right, footerBaseline, QStringLiteral("More"), QStringLiteral("end"));
}

QString totals(const YearOfSquares &year)
{
    return counted(year.commits, "commit") + QStringLiteral(" on ") + counted(year.activeDays, "day") +
           QStringLiteral(" of the last 365");
}

void writePicture(QXmlStreamWriter &xml, const YearOfSquares &year, const StreakReport &report)
{
    writeGround(xml);
    writeHeader(xml, report);
    writeMonths(xml, year);
    writeWeekdays(xml);
    writeSquares(xml, year.grid);
    writeText(xml, padding, footerBaseline, totals(year));
    writeLegend(xml);
}

}  // namespace

QByteArray yearSvg(const YearOfSquares &year, const StreakReport &report)
{
    QByteArray picture;
    QXmlStreamWriter xml(&picture);
    xml.writeStartElement(QStringLiteral("svg"));
    xml.writeDefaultNamespace(QStringLiteral("http://www.w3.org/2000/svg"));
    xml.writeAttribute(QStringLiteral("viewBox"), QStringLiteral("0 0 %1 %2").arg(width).arg(height));
    writeAttribute(xml, "width", width);
    writeAttribute(xml, "height", height);
    xml.writeAttribute(QStringLiteral("role"), QStringLiteral("img"));
    xml.writeTextElement(QStringLiteral("title"),
                         daysInARow(report.currentStreak) + QStringLiteral(", ") + totals(year));
    xml.writeTextElement(QStringLiteral("style"), QString::fromLatin1(style));
    writePicture(xml, year, report);
    xml.writeEndElement();
    picture += '\n';
    return picture;
}

}  // namespace velquarin
