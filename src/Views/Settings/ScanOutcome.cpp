// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Settings/ScanOutcome.h"
#include "Platform/PluralForm.h"

#include <QCoreApplication>

namespace velquarin {

namespace {

struct Words
{
    Q_DECLARE_TR_FUNCTIONS(ScanOutcome)
};

}  // namespace

ScanOutcome scanOutcome(qsizetype found, qsizetype added)
{
    if (found == 0)
        return {Words::tr("No git repositories found in selected folder"), false};
    if (added == 0)
        return {Words::tr("Found %1 repos, all already tracked", nullptr, pluralForm(found)).arg(found), false};
    return {std::nullopt, true};
}

}  // namespace velquarin
