// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/System/ErrorLine.h"

#include <QString>

#include <unistd.h>

namespace velquarin {

// One call, so that lines of several threads do not mix; the toolkit's own logging may go to the journal instead.
void printErrorLine(const QString &text)
{
    const QString line = QStringLiteral("velquarin: ") + text + u'\n';
    const auto bytes = line.toUtf8();
    [[maybe_unused]] const auto written = ::write(STDERR_FILENO, bytes.constData(), static_cast<size_t>(bytes.size()));
}

}  // namespace velquarin
