// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Process/StandardStreams.h"

#include <QString>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace velquarin {

namespace {

bool isReady(int descriptor)
{
    pollfd output{descriptor, POLLOUT, 0};
    return poll(&output, 1, 0) == 1 && (output.revents & POLLOUT) != 0;
}

// Whoever shares the descriptor may have it not wait.
void waitUntilReady(int descriptor)
{
    pollfd output{descriptor, POLLOUT, 0};
    poll(&output, 1, -1);
}

}  // namespace

bool openStandardDescriptors()
{
    const bool isOutputOpen = fcntl(STDOUT_FILENO, F_GETFD) >= 0;
    int descriptor = 0;
    while (descriptor >= 0 && descriptor <= STDERR_FILENO)
        descriptor = open("/dev/null", O_RDWR | O_CLOEXEC);
    if (descriptor >= 0)
        close(descriptor);
    return isOutputOpen;
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

std::error_code writeWhole(int descriptor, QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const auto written = write(descriptor, bytes.data(), std::size_t(bytes.size()));
        if (written < 0 && errno == EAGAIN)
            waitUntilReady(descriptor);
        else if (written < 0 && errno != EINTR)
            return {errno, std::generic_category()};
        bytes = bytes.sliced(std::max(written, ssize_t(0)));
    }
    return {};
}

// Qt's own notifiers wait for more than that, and spin on a socket that was closed for one direction alone, as tmux does.
void whenReaderGoes(int descriptor, std::function<void()> gone)
{
    std::thread([descriptor, gone = std::move(gone)] {
        pollfd reader{descriptor, 0, 0};
        while (poll(&reader, 1, -1) < 0 && errno == EINTR) {
        }
        gone();
    }).detach();
}

std::optional<int> columnsOf(int descriptor)
{
    winsize size = {};
    const bool isTold = ioctl(descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return isTold ? std::optional<int>(size.ws_col) : std::nullopt;
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
