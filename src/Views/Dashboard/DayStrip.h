// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Models/StreakData.h"
#include "Platform/Calendar.h"

#include <QList>
#include <QWidget>

namespace velquarin {

class DateTexts;

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

    //! Units: logical pixels.
    [[nodiscard]] static int shownHeight();
    [[nodiscard]] QSize sizeHint() const override;

    //! Where the square of a column stands that is so wide.
    [[nodiscard]] static QRect squareRect(int width);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    [[nodiscard]] QRect weekdayRect() const;
    [[nodiscard]] QRect squareRect() const { return squareRect(width()); }
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

//! The last days side by side. Seven of them spread evenly from edge to edge, whatever their weekdays are called.
class DayStrip : public QWidget
{
    Q_OBJECT
public:
    explicit DayStrip(QWidget *parent = nullptr);

    //! Shows @p days, the oldest first. Without any, before the first data, seven pale squares keep their places, of which
    //! screen readers hear nothing.
    void setDays(const QList<CommitDay> &days, const DateTexts &texts, const Calendar &calendar, Instant now);

    //! How far a column may reach beyond its square on either side, into the padding around the strip as well. Units:
    //! logical pixels.
    [[nodiscard]] static int overhang();

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    [[nodiscard]] double leftOf(qsizetype index, qsizetype columns) const;
    void adjustColumns(qsizetype wanted);
    void placeColumns();

    QList<DayColumn *> m_columns;
};

}  // namespace velquarin
