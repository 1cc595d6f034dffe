// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/WindowSystem.h"
#include "Views/Controls/Motion.h"
#include "Views/Dashboard/PopoverPlacement.h"
#include "Views/Dashboard/PopoverShadow.h"

#include <QElapsedTimer>
#include <QPoint>
#include <QWidget>

#include <memory>
#include <optional>

class QScrollArea;

namespace velquarin {

//! A window that belongs to the status item and holds any content: a click on the item opens it and closes it again, and
//! so does Esc or a click elsewhere close it. It is as high as its content, within what the screen has; beyond that the
//! content is scrolled. Nothing in it has the focus when it opens. Source: docs/decisions/0008-popover.md
class Popover : public QWidget
{
    Q_OBJECT
public:
    //! Takes @p content, which should be points(300) wide and is made as high as it asks to be. Where a compositor places
    //! windows it is rounded, and stands at the edges that it can be told. Where windows only blend it is rounded and casts
    //! a shadow, which takes the contents margins of the window; elsewhere the corners would be black.
    explicit Popover(QWidget *content, WindowSystem windowSystem = {});

    //! A click on the status item, where the host says. Where a click on the item already closed the popover by taking
    //! the activation from it, the click is over with that.
    void toggle(QPoint position, const QString &activationToken);

    //! The same, where it shall open and not close.
    void openNear(QPoint position, const QString &activationToken);

    //! Opens it for another reason than a click: where it was last, else near the panel.
    void open(const QString &activationToken);

    //! Closes it when a bar says that it has opened the status item's menu. A bar may tell of its menu some milliseconds
    //! late, when that has gone and a click has opened the popover: right after it has opened it stays.
    void giveWayToMenu();

    [[nodiscard]] bool isShown() const { return isVisible(); }
Q_SIGNALS:
    void shown();
    void hidden();

    //! A right click beside the popover closed it, which kept the click from what lies there: the item or something else.
    void rightClickKept(QPoint position);

protected:
    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void setUpWindow();
    void setUpContent(QWidget *content);
    void openAt(QPoint click, const QString &activationToken);
    void fit();
    void standAt(const QRect &place);
    void comeIn();
    void leaveFocusNowhere();
    [[nodiscard]] int contentHeight() const;
    [[nodiscard]] PopoverDimensions dimensions() const;
    [[nodiscard]] int cornerRadius() const;
    void castShadow(bool castsShadow);
    void setTranslucent(bool isTranslucent);
    void catchClicks();
    [[nodiscard]] bool wasJustDeactivated() const;
    [[nodiscard]] bool hasJustOpened() const;

    WindowSystem m_windowSystem;
    QScrollArea *m_scrollArea = nullptr;
    Motion m_opening;
    PopoverShadow m_shadow;
    bool m_castsShadow = false;
    QRect m_place;
    std::optional<QPoint> m_click;
    std::optional<QPoint> m_pressedElsewhere;
    QElapsedTimer m_sinceDeactivation;
    QElapsedTimer m_sinceOpening;
    std::unique_ptr<QWidget> m_clickCatcher;
};

}  // namespace velquarin
