// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

namespace velquarin {

//! What follows from a scan for repositories that the user asked for.
struct ScanOutcome
{
    std::optional<QString> message;  //!< what the user is told; nothing where new rows tell it
    bool isRefreshDue = false;
    friend bool operator==(const ScanOutcome &, const ScanOutcome &) = default;
};

//! @p found counts the paths that the scan found, @p added those of them that were not tracked before.
[[nodiscard]] ScanOutcome scanOutcome(qsizetype found, qsizetype added);

}  // namespace velquarin
