// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Folders.h"

#include <QList>
#include <QObject>
#include <QPointer>

#include <utility>

namespace velquarin::test {

//! Asks nobody: a test answers in the user's place, or never does.
class ScriptedFolderChooser : public FolderChooser
{
public:
    QList<Request> requests;

    void choose(const Request &request, QObject &window, Chosen chosen) override
    {
        requests.append(request);
        m_window = &window;
        m_chosen = std::move(chosen);
    }

    //! The user confirms this folder, unless the window that asked is gone.
    void confirm(const QString &path)
    {
        const auto chosen = std::exchange(m_chosen, {});
        if (chosen && m_window)
            chosen(path);
    }

private:
    QPointer<QObject> m_window;
    Chosen m_chosen;
};

}  // namespace velquarin::test
