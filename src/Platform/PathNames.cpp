// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/PathNames.h"

namespace velquarin {

QString lastPathComponent(const QString &path)
{
    auto end = path.size();
    while (end > 1 && path.at(end - 1) == QLatin1Char('/'))
        --end;
    const auto trimmed = path.left(end);
    return trimmed == QLatin1String("/") ? trimmed : trimmed.mid(trimmed.lastIndexOf(QLatin1Char('/')) + 1);
}

}  // namespace velquarin
