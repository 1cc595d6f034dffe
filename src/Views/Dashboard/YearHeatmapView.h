// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Services/Streak/HeatmapGrid.h"
#include "Views/Controls/PaintedChildren.h"
#include "Views/Dashboard/HeatmapGeometry.h"

#include <QStringList>
#include <QWidget>

class QHelpEvent;

namespace velquarin {

//! The commits of the last 365 days as a grid of small squares, a column a week, with the names of the months above.
//! It has the size of its picture, whatever room there is, and only paints: what it shows is a HeatmapGrid, where is a
//! HeatmapGeometry. A pointer over a square shows the day and its count; so do the arrow keys, Home and End, which move
//! between the days while it has the focus.
class YearHeatmapView : public QWidget, public PaintedChildren
{
    Q_OBJECT
public:
    explicit YearHeatmapView(QWidget *parent = nullptr);

    //! Shows the year that ends at @p now. What looks as before is not painted again.
    void setContents(const DayCounts &yearHistory, const Calendar &calendar, Instant now, const DateTexts &texts);

    //! The middle of today's column, to scroll to; 0 in an empty grid. Units: logical pixels of this widget.
    [[nodiscard]] int todayX() const;

    //! The squares, out of range too, counted down the first week, then down the next.
    [[nodiscard]] int cells() const { return cellCount(m_contents.grid); }
    [[nodiscard]] QString textOf(int cell) const { return m_contents.toolTips.value(cell); }
    [[nodiscard]] QRect rectangleOf(int cell) const;

    //! The names of the months, oldest first, and where each is written.
    [[nodiscard]] QStringList labels() const;
    [[nodiscard]] QRect rectangleOfLabel(int position) const;

    //! To a screen reader it is a list of the squares in their order, named by what their tooltips say, then of the names
    //! of the months.
    [[nodiscard]] int paintedChildCount() const override { return cells() + int(m_contents.labels.size()); }
    [[nodiscard]] PaintedChild paintedChild(int index) override;
    [[nodiscard]] std::optional<int> paintedChildAt(QPoint position) const override;

    //! The square that the keys have reached, today's at first; nothing in an empty grid.
    [[nodiscard]] std::optional<int> currentPaintedChild() const override { return m_current; }

    //! How far what shows fades towards an edge beyond which there is more. Units: logical pixels.
    [[nodiscard]] static int fade();

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

    //! A scroll area scrolls to the cursor when the focus moves on: that is the current square.
    [[nodiscard]] QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;

Q_SIGNALS:
    //! The keys have reached a square, which may be the one they were on: whoever scrolls the view should bring it into
    //! sight.
    void currentCellMoved(const QRect &rectangle);

protected:
    bool event(QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void moveEvent(QMoveEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void leaveEvent(QEvent *event) override;

private:
    struct Contents
    {
        HeatmapGrid grid;
        QList<MonthLabel> labels;
        QStringList toolTips;  // one a square
        friend bool operator==(const Contents &, const Contents &) = default;
    };

    [[nodiscard]] HeatmapGeometry shapes() const;
    [[nodiscard]] QRect logical(QRect devicePixels) const;
    [[nodiscard]] std::optional<int> currentAfter(const Contents &contents) const;
    [[nodiscard]] std::optional<int> cellReachedBy(int key) const;
    void followContents(const Contents &before);
    void followScale();
    void updateCell(std::optional<int> cell);
    void paintLabels(QPainter &painter) const;
    void paintCells(QPainter &painter, const QRect &dirty) const;
    void paintFades(QPainter &painter) const;
    void paintFade(QPainter &painter, int edge, int inside) const;
    void paintRing(QPainter &painter, const HeatmapGeometry &shapes, int cell) const;
    void hover(std::optional<int> cell);
    void hoverAt(QPoint position);
    bool showToolTip(const QHelpEvent &help);
    void moveTo(int cell);
    void announceCurrentCell();

    Contents m_contents;
    std::optional<int> m_current;
    std::optional<int> m_hovered;  // the square under the pointer, where it is in range
};

}  // namespace velquarin
