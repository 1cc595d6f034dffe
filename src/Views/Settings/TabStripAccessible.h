// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QAccessibleWidget>

#include <vector>

namespace velquarin {

class TabStrip;

//! For QAccessible::installFactory(): what a screen reader sees of a TabStrip; null for anything else.
[[nodiscard]] QAccessibleInterface *makeTabStripAccessible(const QString &className, QObject *object);

//! Tabs, of which one is selected, and has the focus only while the strip has it. The toolkit's own strip calls the
//! current tab focused wherever the keyboard is, never says which one is selected, and is called like it, so that its
//! title is read twice.
class TabStripAccessible : public QAccessibleWidget
{
public:
    explicit TabStripAccessible(TabStrip *strip);
    ~TabStripAccessible() override;

    [[nodiscard]] int childCount() const override;
    [[nodiscard]] QAccessibleInterface *child(int index) const override;
    [[nodiscard]] int indexOfChild(const QAccessibleInterface *child) const override;
    [[nodiscard]] QAccessibleInterface *childAt(int x, int y) const override;
    [[nodiscard]] QAccessibleInterface *focusChild() const override;

private:
    [[nodiscard]] TabStrip &strip() const;

    mutable std::vector<QAccessible::Id> m_children;
};

}  // namespace velquarin
