// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Process/StandardStreams.h"

#include <QString>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace velquarin {

namespace {

bool isReady(int descriptor)
{
    pollfd output{descriptor, POLLOUT, 0};
    return poll(&output, 1, 0) == 1 && (output.revents & POLLOUT) != 0;
}

bool isSocket(int descriptor)
{
    struct stat status = {};
    return fstat(descriptor, &status) == 0 && S_ISSOCK(status.st_mode);
}

// Whoever shares the descriptor may have it not wait.
void waitUntilReady(int descriptor)
{
    pollfd output{descriptor, POLLOUT, 0};
    poll(&output, 1, -1);
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

// A pipe or a terminal without a reader has an error. A socket has an end, which is read.
ReaderWatch::ReaderWatch(int descriptor, std::function<void()> gone)
    : m_descriptor(descriptor)
    , m_gone(std::move(gone))
    , m_notifier(descriptor, isSocket(descriptor) ? QSocketNotifier::Read : QSocketNotifier::Exception)
{
    QObject::connect(&m_notifier, &QSocketNotifier::activated, &m_notifier, [this] { look(); });
}

// What somebody says into a socket that is only written to is nothing to us, and would keep us awake.
void ReaderWatch::look()
{
    std::array<char, 4096> said{};
    const bool isSaid =
        m_notifier.type() == QSocketNotifier::Read && recv(m_descriptor, said.data(), said.size(), MSG_DONTWAIT) > 0;
    if (!isSaid)
        m_gone();
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
