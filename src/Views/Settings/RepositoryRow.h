// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Views/Settings/RecordRow.h"

namespace velquarin {

class Badge;
struct TrackedRepository;

//! One tracked repository, with a badge where it was found automatically.
class RepositoryRow : public RecordRow
{
    Q_OBJECT
public:
    explicit RepositoryRow(QWidget *parent);

    void setRepository(const TrackedRepository &repository);

private:
    Badge *m_auto;
};

}  // namespace velquarin
