// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QObject>
#include <QPoint>
#include <QString>

#include <functional>

namespace velquarin {

//! What the item in the status bar shows.
struct StatusItemAppearance
{
    QString symbolName;                //!< one of our symbols, "flame" for instance
    bool isTemplate = true;            //!< drawn in the panel's own colour; else in the orange of a day with a commit
    QString accessibilityDescription;  //!< what a screen reader says for the symbol
    QString title;                     //!< the text beside the symbol with its leading space, or empty
    QString note = {};                 //!< what the tooltip says besides, or empty
    friend bool operator==(const StatusItemAppearance &, const StatusItemAppearance &) = default;
};

//! One line of the item's menu, or a separator, which has neither text nor action.
struct MenuEntry
{
    QString text;
    QString keyEquivalent;  //!< a letter that is pressed together with Control; may be empty
    std::function<void()> action;
    [[nodiscard]] bool isSeparator() const { return text.isEmpty(); }
};

//! One item in the desktop's status bar. Main thread only. It waits for a status bar that comes later, and
//! follows one that restarts.
class StatusItem : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    virtual void setAppearance(const StatusItemAppearance &appearance) = 0;

    //! The menu of the right click. Some status bars open nothing but a menu, with either button: there it
    //! begins with one more entry and a separator, and the entry asks for the dashboard.
    virtual void setMenu(const QList<MenuEntry> &entries) = 0;

Q_SIGNALS:
    //! A left or middle click. @p position is where the host says it happened, in pixels of the screen,
    //! though not every host tells the truth. @p activationToken lets a window take the focus; it may be
    //! empty.
    void activated(QPoint position, const QString &activationToken);

    //! The status bar says that it has opened the menu, a little late perhaps.
    void menuOpened();

    //! Our own menu is about to open.
    void ownMenuOpens();

    //! The entry of a menu that opens, and never closes.
    void openRequested(QPoint position, const QString &activationToken);
};

}  // namespace velquarin
