// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Settings/ScanOutcome.h"

#include <QCoreApplication>

namespace velquarin {

ScanOutcome scanOutcome(qsizetype found, qsizetype added)
{
    const auto text = [](const char *english) {
        return QCoreApplication::translate("velquarin::ScanOutcome", english);
    };
    if (found == 0)
        return {text("No git repositories found in selected folder"), false};
    if (added == 0)
        return {text("Found %1 repos, all already tracked").arg(found), false};
    return {std::nullopt, true};
}

}  // namespace velquarin
