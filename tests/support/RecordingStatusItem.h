// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/StatusItem.h"

namespace velquarin::test {

//! A status item that nobody sees, which keeps what it was given.
class RecordingStatusItem : public StatusItem
{
    Q_OBJECT
public:
    using StatusItem::StatusItem;

    void setAppearance(const StatusItemAppearance &appearance) override { m_appearances << appearance; }
    void setMenu(const QList<MenuEntry> &entries) override { m_entries = entries; }

    [[nodiscard]] const QList<StatusItemAppearance> &appearances() const { return m_appearances; }
    [[nodiscard]] const QList<MenuEntry> &entries() const { return m_entries; }

private:
    QList<StatusItemAppearance> m_appearances;
    QList<MenuEntry> m_entries;
};

}  // namespace velquarin::test
