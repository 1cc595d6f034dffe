// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Models/StreakData.h"
#include "Platform/Calendar.h"
#include "Views/Controls/Style.h"

#include <QWidget>

namespace velquarin {

//! How a day's square is filled.
struct DayShade
{
    style::Accent accent = style::Accent::Grey;
    double opacity = 0;
    friend bool operator==(const DayShade &, const DayShade &) = default;
};

//! The shade of a day with so many commits: grey without any, and the fuller a green the more there are.
[[nodiscard]] DayShade colorForCount(qint64 count);

//! One day of the strip: its weekday, a square with its count, and a dot below today.
class DayColumn : public QWidget
{
    Q_OBJECT
public:
    explicit DayColumn(QWidget *parent = nullptr);

    //! Shows @p day; it carries the dot where @p now lies in it.
    void setDay(const CommitDay &day, const DateTexts &texts, const Calendar &calendar, Instant now);

    //! Moves all that is painted by less than a pixel to the right, so that columns spread evenly on screens whose
    //! pixels are finer than the logical ones, on which widgets stand.
    void setOffset(double offset);

    [[nodiscard]] const QString &weekday() const { return m_weekday; }
    [[nodiscard]] qint64 count() const { return m_count; }
    [[nodiscard]] bool isToday() const { return m_isToday; }

    //! The width of a square; the column may be wider, for weekdays with long names. Units: logical pixels.
    [[nodiscard]] static int squareSize();

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    [[nodiscard]] QRect weekdayRect() const;
    [[nodiscard]] QRect squareRect() const;
    [[nodiscard]] QRect dotRect() const;
    void paintWeekday(QPainter &painter) const;
    void paintSquare(QPainter &painter) const;
    void paintCount(QPainter &painter) const;
    void paintDot(QPainter &painter) const;

    QString m_weekday;
    qint64 m_count = 0;
    bool m_isToday = false;
    double m_offset = 0;
};

}  // namespace velquarin
