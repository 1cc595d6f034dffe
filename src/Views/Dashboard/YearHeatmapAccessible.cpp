// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Dashboard/YearHeatmapAccessible.h"

#include "Views/Dashboard/YearHeatmapView.h"

#include <QPointer>

namespace velquarin {

namespace {

// A square, or the name of a month: the squares come first.
class Part : public QAccessibleInterface
{
public:
    Part(YearHeatmapView *view, int index)
        : m_widget(view)
        , m_index(index)
    {
    }

    [[nodiscard]] int index() const { return m_index; }

    [[nodiscard]] bool isValid() const override
    {
        return view() && m_index < view()->cells() + view()->labels().size();
    }
    [[nodiscard]] QObject *object() const override { return nullptr; }
    [[nodiscard]] QWindow *window() const override { return view() ? view()->window()->windowHandle() : nullptr; }
    [[nodiscard]] QAccessibleInterface *parent() const override
    {
        return QAccessible::queryAccessibleInterface(view());
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
        return isCell() ? view()->textOf(m_index) : view()->labels().at(m_index - view()->cells());
    }

    [[nodiscard]] QRect rect() const override
    {
        if (!isValid())
            return {};
        const auto place = placeInView();
        return {view()->mapToGlobal(place.topLeft()), place.size()};
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
        state.invisible = !view()->isVisible() || text(QAccessible::Name).isEmpty();
        state.offscreen = !view()->visibleRegion().intersects(placeInView());
        state.focusable = isCell() && !state.invisible;
        state.focused = isCell() && view()->hasFocus() && view()->currentCell() == m_index;
        return state;
    }

private:
    // None either while it is being taken apart, when it is of its own class no more.
    [[nodiscard]] YearHeatmapView *view() const { return qobject_cast<YearHeatmapView *>(m_widget.data()); }
    [[nodiscard]] bool isCell() const { return view() && m_index < view()->cells(); }

    [[nodiscard]] QRect placeInView() const
    {
        return isCell() ? view()->rectangleOf(m_index) : view()->rectangleOfLabel(m_index - view()->cells());
    }

    QPointer<QWidget> m_widget;
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
