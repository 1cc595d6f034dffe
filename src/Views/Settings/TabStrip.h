// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>
#include <QTabBar>

class QPainter;

namespace velquarin {

//! The tabs of a window, each a symbol over its title. Pointer, arrow keys and mnemonics work as in any other tab bar.
class TabStrip : public QTabBar
{
    Q_OBJECT
public:
    explicit TabStrip(QWidget *parent = nullptr);

    //! @p title may hold a mnemonic, marked with an ampersand.
    void addTab(const QString &title, const QString &symbol);

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
