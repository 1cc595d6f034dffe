// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Settings/TabStripAccessible.h"

#include "Views/Settings/TabStrip.h"

#include <QKeySequence>
#include <QPointer>
#include <QWindow>

namespace velquarin {

namespace {

class Tab : public QAccessibleInterface, public QAccessibleActionInterface
{
public:
    Tab(TabStrip *strip, int index)
        : m_widget(strip)
        , m_index(index)
    {
    }

    [[nodiscard]] int index() const { return m_index; }

    [[nodiscard]] bool isValid() const override { return strip() && m_index < strip()->count(); }
    [[nodiscard]] QObject *object() const override { return nullptr; }
    [[nodiscard]] QWindow *window() const override { return strip() ? strip()->window()->windowHandle() : nullptr; }
    [[nodiscard]] QAccessibleInterface *parent() const override
    {
        return QAccessible::queryAccessibleInterface(strip());
    }
    [[nodiscard]] QAccessibleInterface *child(int /*index*/) const override { return nullptr; }
    [[nodiscard]] int childCount() const override { return 0; }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface * /*child*/) const override { return -1; }
    [[nodiscard]] QAccessibleInterface *childAt(int /*x*/, int /*y*/) const override { return nullptr; }
    void setText(QAccessible::Text /*kind*/, const QString & /*text*/) override {}
    [[nodiscard]] QAccessible::Role role() const override { return QAccessible::PageTab; }

    [[nodiscard]] QString text(QAccessible::Text kind) const override
    {
        if (!isValid())
            return {};
        const auto title = strip()->tabText(m_index);
        if (kind == QAccessible::Accelerator)
            return QKeySequence::mnemonic(title).toString(QKeySequence::NativeText);
        return kind == QAccessible::Name ? QString(title).remove(u'&') : QString();
    }

    [[nodiscard]] QRect rect() const override
    {
        if (!isValid())
            return {};
        const auto place = strip()->tabRect(m_index);
        return {strip()->mapToGlobal(place.topLeft()), place.size()};
    }

    [[nodiscard]] QAccessible::State state() const override
    {
        QAccessible::State state;
        state.invalid = !isValid();
        if (state.invalid)
            return state;
        state.invisible = !strip()->isVisible();
        state.selectable = true;
        state.selected = m_index == strip()->currentIndex();
        state.focusable = true;
        state.focused = state.selected && strip()->hasFocus();
        return state;
    }

    void *interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface *>(this) : nullptr;
    }
    [[nodiscard]] QStringList actionNames() const override { return {pressAction()}; }
    void doAction(const QString &name) override
    {
        if (isValid() && name == pressAction())
            strip()->setCurrentIndex(m_index);
    }
    [[nodiscard]] QStringList keyBindingsForAction(const QString & /*name*/) const override { return {}; }

private:
    // None either while it is being taken apart, when it is of its own class no more.
    [[nodiscard]] TabStrip *strip() const { return qobject_cast<TabStrip *>(m_widget.data()); }

    QPointer<QWidget> m_widget;
    int m_index;
};

}  // namespace

QAccessibleInterface *makeTabStripAccessible(const QString & /*className*/, QObject *object)
{
    auto *const strip = qobject_cast<TabStrip *>(object);
    return strip != nullptr ? new TabStripAccessible(strip) : nullptr;
}

TabStripAccessible::TabStripAccessible(TabStrip *strip)
    : QAccessibleWidget(strip, QAccessible::PageTabList)
{
}

TabStripAccessible::~TabStripAccessible()
{
    for (const auto id : m_children)
        QAccessible::deleteAccessibleInterface(id);
}

TabStrip &TabStripAccessible::strip() const
{
    return static_cast<TabStrip &>(*object());
}

int TabStripAccessible::childCount() const
{
    return strip().count();
}

QAccessibleInterface *TabStripAccessible::child(int index) const
{
    if (index < 0 || index >= childCount())
        return nullptr;
    while (int(m_children.size()) <= index)
        m_children.push_back(QAccessible::registerAccessibleInterface(new Tab(&strip(), int(m_children.size()))));
    return QAccessible::accessibleInterface(m_children.at(std::size_t(index)));
}

int TabStripAccessible::indexOfChild(const QAccessibleInterface *child) const
{
    const auto *const tab = dynamic_cast<const Tab *>(child);
    return tab != nullptr ? tab->index() : -1;
}

QAccessibleInterface *TabStripAccessible::childAt(int x, int y) const
{
    return child(strip().tabAt(strip().mapFromGlobal(QPoint(x, y))));
}

QAccessibleInterface *TabStripAccessible::focusChild() const
{
    return strip().hasFocus() ? child(strip().currentIndex()) : nullptr;
}

}  // namespace velquarin
