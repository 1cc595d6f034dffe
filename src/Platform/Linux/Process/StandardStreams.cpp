// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Process/StandardStreams.h"

#include <QString>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace velquarin {

namespace {

bool isReady(int descriptor)
{
    pollfd output{descriptor, POLLOUT, 0};
    return poll(&output, 1, 0) == 1 && (output.revents & POLLOUT) != 0;
}

}  // namespace

void openStandardDescriptors()
{
    int descriptor = 0;
    while (descriptor >= 0 && descriptor <= STDERR_FILENO)
        descriptor = open("/dev/null", O_RDWR | O_CLOEXEC);
    if (descriptor >= 0)
        close(descriptor);
}

// A descriptor that is ready promises room for no more than PIPE_BUF bytes.
void writeWithoutWaiting(int descriptor, QByteArrayView bytes)
{
    while (!bytes.isEmpty() && isReady(descriptor)) {
        const auto length = std::min(bytes.size(), qsizetype(PIPE_BUF));
        const auto written = write(descriptor, bytes.data(), std::size_t(length));
        if (written < 0 && errno != EINTR)
            return;
        bytes = bytes.sliced(std::max(written, ssize_t(0)));
    }
}

void StandardOutput::printLine(const QString &line)
{
    const QByteArray bytes = line.toUtf8() + '\n';
    writeWithoutWaiting(STDOUT_FILENO, bytes);
}

// Not Qt's own logging, which may go to the journal instead.
void printErrorLine(const QString &text)
{
    const QString line = QStringLiteral("velquarin: ") + text + u'\n';
    const auto bytes = line.toUtf8();
    writeWithoutWaiting(STDERR_FILENO, bytes);
}

}  // namespace velquarin
