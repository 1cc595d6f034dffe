// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Services/LaunchAtLogin.h"
#include "support/Engine.h"
#include "support/Picture.h"
#include "support/RecordingLoginItem.h"
#include "support/ScriptedFolderChooser.h"
#include "support/WhatIsShown.h"
#include "Views/Controls/GuestStyle.h"
#include "Views/Controls/Style.h"
#include "Views/Controls/Text.h"
#include "Views/Settings/SettingsView.h"
#include "Views/Settings/TabStrip.h"

#include <QApplication>
#include <QSemaphore>
#include <QTest>

namespace velquarin::test {

//! The font of the desktop, as long as it lives.
class FontOfPixels
{
public:
    explicit FontOfPixels(int pixels)
    {
        auto font = m_before;
        font.setPixelSize(pixels);
        QApplication::setFont(font);
    }
    ~FontOfPixels() { QApplication::setFont(m_before); }
    Q_DISABLE_COPY_MOVE(FontOfPixels)

private:
    QFont m_before = QApplication::font();
};

//! The settings window on an engine of its own. Prepare the engine first, then open the window.
struct SettingsWindow
{
    Engine engine;
    RecordingLoginItem loginItem;
    ScriptedFolderChooser chooser;
    std::unique_ptr<LaunchAtLogin> launchAtLogin;
    std::unique_ptr<SettingsView> view;

    enum Tab { Repositories, AutoDiscover, General };

    void open(Tab tab = Repositories)
    {
        GuestStyle::install();
        launchAtLogin = std::make_unique<LaunchAtLogin>(loginItem);
        view =
            std::make_unique<SettingsView>(SettingsServices{engine.settings, engine.manager, *launchAtLogin, engine.git,
                                                            chooser, engine.clock, [] { return QByteArray("en_US"); }});
        show(tab);
    }

    //! Opens it again, where it was closed.
    void show(Tab tab = Repositories) const
    {
        view->show();
        view->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(view.get()));
        view->findChild<TabStrip *>()->setCurrentIndex(tab);
        settle();
    }

    //! Lets everything be rendered that is due.
    static void settle() { QCoreApplication::processEvents(); }

    [[nodiscard]] QStringList texts() const { return textsIn(*view); }

    //! The texts of the tab that is shown.
    [[nodiscard]] bool says(const QString &text) const { return texts().contains(text); }

    //! The controls of a kind that are shown and have that name, from top to bottom.
    template <typename Control>
    [[nodiscard]] QList<Control *> controls(const QString &name) const
    {
        QList<Control *> found;
        const auto all = view->findChildren<Control *>();
        std::ranges::copy_if(all, std::back_inserter(found),
                             [&name](Control *control) { return control->isVisible() && nameOf(control) == name; });
        std::ranges::sort(found, {}, [](const Control *control) { return control->mapToGlobal(QPoint()).y(); });
        return found;
    }

    template <typename Control>
    [[nodiscard]] Control *control(const QString &name) const
    {
        return controls<Control>(name).value(0);
    }

    //! Where it stands in the window.
    [[nodiscard]] QRect placeOf(const QWidget *widget) const
    {
        return {widget->mapTo(view.get(), QPoint()), widget->size()};
    }

    static QString nameOf(QWidget *widget)
    {
        return QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name);
    }

    static void click(QWidget *widget)
    {
        QVERIFY(widget != nullptr);
        QTest::mouseClick(widget, Qt::LeftButton, {}, widget->rect().center());
        settle();
    }
};

//! Holds the thread that walks folders until it is released.
struct SlowGit
{
    explicit SlowGit(SettingsWindow &window)
    {
        window.engine.runner.answerWith(QStringLiteral("rev-parse --git-dir"), [this] {
            m_patience.acquire();
            return QByteArray();
        });
        m_answer = window.engine.git.isGitRepository(QStringLiteral("/slow"));
    }
    ~SlowGit() { release(); }
    void release() { m_patience.release(1000); }

private:
    QSemaphore m_patience;
    QFuture<bool> m_answer;
};

//! What is drawn before that word on the line that it stands on.
inline QImage drawingBefore(const SettingsWindow &window, const QString &word)
{
    const auto *const text = window.control<Text>(word);
    return text->parentWidget()->grab({0, 0, text->x(), text->parentWidget()->height()}).toImage();
}

}  // namespace velquarin::test
