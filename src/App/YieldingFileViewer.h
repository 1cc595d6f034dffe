// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/FileViewer.h"

#include <functional>
#include <utility>

namespace velquarin {

//! Makes way before a folder is shown, then has @p viewer show it, which must outlive this.
class YieldingFileViewer : public FileViewer
{
public:
    YieldingFileViewer(FileViewer &viewer, std::function<void()> makeWay)
        : m_viewer(viewer)
        , m_makeWay(std::move(makeWay))
    {
    }

    void reveal(const QString &path, const QString &activationToken) override
    {
        m_makeWay();
        m_viewer.reveal(path, activationToken);
    }

private:
    FileViewer &m_viewer;
    std::function<void()> m_makeWay;
};

}  // namespace velquarin
