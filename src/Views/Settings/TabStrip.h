// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Views/Controls/PaintedChildren.h"

#include <QStringList>
#include <QTabBar>

class QPainter;

namespace velquarin {

//! The tabs of a window, each a symbol over its title. Pointer, arrow keys and mnemonics work as in any other tab bar.
//! To a screen reader they are tabs, of which one is selected, and has the focus only while the strip has it. Qt's own
//! tab bar calls the current tab focused wherever the keyboard is, never says which one is selected, and is called like
//! it, so that its title is read twice.
class TabStrip : public QTabBar, public PaintedChildren
{
    Q_OBJECT
public:
    explicit TabStrip(QWidget *parent = nullptr);

    //! @p title may hold a mnemonic, marked with an ampersand.
    void addTab(const QString &title, const QString &symbol);

    [[nodiscard]] int paintedChildCount() const override { return count(); }
    [[nodiscard]] PaintedChild paintedChild(int index) override;
    [[nodiscard]] std::optional<int> paintedChildAt(QPoint position) const override;
    [[nodiscard]] std::optional<int> currentPaintedChild() const override { return currentIndex(); }

protected:
    [[nodiscard]] QSize tabSizeHint(int index) const override;
    [[nodiscard]] QSize minimumTabSizeHint(int index) const override;
    void paintEvent(QPaintEvent *event) override;

private:
    void paintGround(QPainter &painter, int index) const;
    void paintLabel(QPainter &painter, int index) const;

    QStringList m_symbols;
};

}  // namespace velquarin
