// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Models/StreakData.h"

#include "Platform/DateTexts.h"
#include "Platform/PathNames.h"

#include <QCoreApplication>

namespace velquarin {

QString RepositoryStats::displayName() const
{
    return name.isEmpty() ? lastPathComponent(path) : name;
}

QString RepositoryStats::lastCommitRelative(const DateTexts &texts, Instant now) const
{
    if (!lastCommitDate)
        return QCoreApplication::translate("velquarin::RepositoryStats", "No commits");
    return texts.relative(*lastCommitDate, now);
}

}  // namespace velquarin
