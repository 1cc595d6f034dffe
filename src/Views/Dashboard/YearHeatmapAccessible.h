// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QAccessibleWidget>

#include <map>

namespace velquarin {

class YearHeatmapView;

//! For QAccessible::installFactory(): what a screen reader sees of a YearHeatmapView; null for anything else.
[[nodiscard]] QAccessibleInterface *makeYearHeatmapAccessible(const QString &className, QObject *object);

//! A year as a list: its children are the squares in their order, named by what their tooltips say, then the names of
//! the months. Children are made when somebody first asks for them.
class YearHeatmapAccessible : public QAccessibleWidget
{
public:
    explicit YearHeatmapAccessible(YearHeatmapView *view);
    ~YearHeatmapAccessible() override;

    [[nodiscard]] int childCount() const override;
    [[nodiscard]] QAccessibleInterface *child(int index) const override;
    [[nodiscard]] int indexOfChild(const QAccessibleInterface *child) const override;
    [[nodiscard]] QAccessibleInterface *childAt(int x, int y) const override;
    [[nodiscard]] QAccessibleInterface *focusChild() const override;

private:
    [[nodiscard]] YearHeatmapView &view() const;

    mutable std::map<int, QAccessible::Id> m_children;
};

}  // namespace velquarin
