// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
// Built where the library for layer surfaces is missing.

#include "Platform/Linux/Windows/LayerShell.h"

namespace velquarin {

AnchorWindow layerShellAnchoring()
{
    return {};
}

}  // namespace velquarin
