// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

namespace velquarin {

//! Where TZ holds neither a zone's name, nor the path of its file, nor a rule, says so on standard error and takes it
//! away: for this program and for git the system's zone counts, where libc would silently take that of Greenwich. To be
//! called before the first thread starts.
//! Source: tzset(3)
void dropUnknownZone();

}  // namespace velquarin
