// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/WindowSystem.h"

namespace velquarin {

//! Anchors windows as layer surfaces: above others, with the keyboard when the user wants, in no list of windows. Empty
//! where the compositor offers none, and where we were built without the library for it.
//! Source: docs/decisions/0015-layer-surface.md
[[nodiscard]] AnchorWindow layerShellAnchoring();

}  // namespace velquarin
