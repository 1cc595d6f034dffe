// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Settings/RepositoryRow.h"

#include "Models/TrackedRepository.h"
#include "Views/Controls/Badge.h"
#include "Views/Settings/RecordTexts.h"

namespace velquarin {

RepositoryRow::RepositoryRow(QWidget *parent)
    : RecordRow(parent)
    , m_auto(new Badge(tr("Auto"), &texts()))
{
    texts().addBadge(m_auto);
    addBin();
}

void RepositoryRow::setRepository(const TrackedRepository &repository)
{
    showRecord(repository.id, repository.name, repository.path, repository.isEnabled);
    m_auto->setVisible(repository.isAutoDiscovered);
}

}  // namespace velquarin
