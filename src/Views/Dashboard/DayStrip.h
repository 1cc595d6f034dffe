// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Models/StreakData.h"
#include "Platform/Calendar.h"

#include <QList>
#include <QWidget>

namespace velquarin {

class DateTexts;
class DayColumn;

//! The last days side by side. Seven of them spread evenly from edge to edge, whatever their weekdays are called.
class DayStrip : public QWidget
{
    Q_OBJECT
public:
    explicit DayStrip(QWidget *parent = nullptr);

    //! Shows @p days, the oldest first. Without any it takes no room.
    void setDays(const QList<CommitDay> &days, const DateTexts &texts, const Calendar &calendar, Instant now);

    //! How far a column may reach beyond its square on either side, into the padding around the strip as well. Units:
    //! logical pixels.
    [[nodiscard]] static int overhang();

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void adjustColumns(qsizetype wanted);
    void placeColumns();

    QList<DayColumn *> m_columns;
};

}  // namespace velquarin
