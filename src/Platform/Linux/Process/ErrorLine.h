// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

class QString;

namespace velquarin {

//! Writes "velquarin: " and @p text as one line on standard error. From any thread; what nobody reads is lost.
void printErrorLine(const QString &text);

}  // namespace velquarin
