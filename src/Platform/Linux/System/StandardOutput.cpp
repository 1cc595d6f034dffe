// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/System/StandardOutput.h"

#include <QByteArray>
#include <QString>

#include <algorithm>
#include <cerrno>
#include <poll.h>
#include <unistd.h>

namespace velquarin {

namespace {

// A terminal that was stopped, or a reader that does not read, must not stop the program with it.
bool isReady()
{
    pollfd output{STDOUT_FILENO, POLLOUT, 0};
    return poll(&output, 1, 0) == 1 && (output.revents & POLLOUT) != 0;
}

}  // namespace

void StandardOutput::printLine(const QString &line)
{
    const QByteArray bytes = line.toUtf8() + '\n';
    qsizetype written = 0;
    while (written < bytes.size() && isReady()) {
        const auto step = write(STDOUT_FILENO, bytes.constData() + written, std::size_t(bytes.size() - written));
        if (step < 0 && errno != EINTR)
            return;
        written += std::max(step, ssize_t(0));
    }
}

}  // namespace velquarin
