// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/YearHeatmapAccessible.h"

#include "Views/YearHeatmapView.h"

#include <QPointer>

namespace velquarin {

namespace {

// A square, or the name of a month: the squares come first.
class Part : public QAccessibleInterface
{
public:
    Part(YearHeatmapView *view, int index)
        : m_view(view)
        , m_index(index)
    {
    }

    [[nodiscard]] int index() const { return m_index; }

    [[nodiscard]] bool isValid() const override
    {
        return m_view && m_index < m_view->cells() + m_view->labels().size();
    }
    [[nodiscard]] QObject *object() const override { return nullptr; }
    [[nodiscard]] QWindow *window() const override { return m_view ? m_view->window()->windowHandle() : nullptr; }
    [[nodiscard]] QAccessibleInterface *parent() const override
    {
        return QAccessible::queryAccessibleInterface(m_view);
    }
    [[nodiscard]] QAccessibleInterface *child(int /*index*/) const override { return nullptr; }
    [[nodiscard]] int childCount() const override { return 0; }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface * /*child*/) const override { return -1; }
    [[nodiscard]] QAccessibleInterface *childAt(int /*x*/, int /*y*/) const override { return nullptr; }
    void setText(QAccessible::Text /*kind*/, const QString & /*text*/) override {}

    [[nodiscard]] QString text(QAccessible::Text kind) const override
    {
        if (kind != QAccessible::Name || !isValid())
            return {};
        return isCell() ? m_view->textOf(m_index) : m_view->labels().at(m_index - m_view->cells());
    }

    [[nodiscard]] QRect rect() const override
    {
        if (!isValid())
            return {};
        const auto place = placeInView();
        return {m_view->mapToGlobal(place.topLeft()), place.size()};
    }

    [[nodiscard]] QAccessible::Role role() const override
    {
        return isCell() ? QAccessible::ListItem : QAccessible::StaticText;
    }

    [[nodiscard]] QAccessible::State state() const override
    {
        QAccessible::State state;
        state.invalid = !isValid();
        if (state.invalid)
            return state;
        state.readOnly = true;
        state.invisible = !m_view->isVisible() || text(QAccessible::Name).isEmpty();
        state.offscreen = !m_view->visibleRegion().intersects(placeInView());
        state.focusable = isCell() && !state.invisible;
        state.focused = isCell() && m_view->hasFocus() && m_view->currentCell() == m_index;
        return state;
    }

private:
    [[nodiscard]] bool isCell() const { return m_view && m_index < m_view->cells(); }

    [[nodiscard]] QRect placeInView() const
    {
        return isCell() ? m_view->rectangleOf(m_index) : m_view->rectangleOfLabel(m_index - m_view->cells());
    }

    QPointer<YearHeatmapView> m_view;
    int m_index;
};

}  // namespace

QAccessibleInterface *makeYearHeatmapAccessible(const QString & /*className*/, QObject *object)
{
    auto *view = qobject_cast<YearHeatmapView *>(object);
    return view ? new YearHeatmapAccessible(view) : nullptr;
}

YearHeatmapAccessible::YearHeatmapAccessible(YearHeatmapView *view)
    : QAccessibleWidget(view, QAccessible::List)
{
}

YearHeatmapAccessible::~YearHeatmapAccessible()
{
    for (const auto &[index, id] : m_children)
        QAccessible::deleteAccessibleInterface(id);
}

YearHeatmapView &YearHeatmapAccessible::view() const
{
    return static_cast<YearHeatmapView &>(*object());
}

int YearHeatmapAccessible::childCount() const
{
    return view().cells() + static_cast<int>(view().labels().size());
}

QAccessibleInterface *YearHeatmapAccessible::child(int index) const
{
    if (index < 0 || index >= childCount())
        return nullptr;
    const auto [entry, isNew] = m_children.try_emplace(index);
    if (isNew)
        entry->second = QAccessible::registerAccessibleInterface(new Part(&view(), index));
    return QAccessible::accessibleInterface(entry->second);
}

int YearHeatmapAccessible::indexOfChild(const QAccessibleInterface *child) const
{
    const auto *part = dynamic_cast<const Part *>(child);
    return part ? part->index() : -1;
}

QAccessibleInterface *YearHeatmapAccessible::childAt(int x, int y) const
{
    const auto cell = view().cellUnder(view().mapFromGlobal(QPoint(x, y)));
    return cell ? child(*cell) : nullptr;
}

QAccessibleInterface *YearHeatmapAccessible::focusChild() const
{
    return view().hasFocus() && view().currentCell() ? child(*view().currentCell()) : nullptr;
}

}  // namespace velquarin
