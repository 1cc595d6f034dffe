// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Preferences/PreferencesFile.h"

#include "Platform/Linux/Files/RegularFile.h"
#include "Platform/Linux/Preferences/PreferencesFormat.h"
#include "Platform/Linux/Process/StandardStreams.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace velquarin {

using namespace std::chrono_literals;

namespace {

// Many times what a save takes. An instance that was stopped in the middle of one holds up no other for longer.
constexpr auto patienceWithOthers = 1s;

// Does not wait for anybody, should a fifo have taken the file's place just now.
bool openForReading(QFile &file, const QString &path)
{
    const auto name = QFile::encodeName(path);
    const int descriptor = ::open(name.constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    return descriptor >= 0 && file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle);
}

bool isTakenByOther(int folder)
{
    return ::flock(folder, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
}

}  // namespace

// Asked for again and again, since a call that waits could wait for ever: for an instance that was stopped in the middle.
FolderLock::FolderLock(const QString &folder, std::chrono::milliseconds patience)
    : m_folder(::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
{
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while ((m_isHeldByOther = isTakenByOther(m_folder)) && std::chrono::steady_clock::now() < deadline)
        std::this_thread::sleep_for(1ms);
}

FolderLock::~FolderLock()
{
    if (m_folder >= 0)
        ::close(m_folder);
}

PreferencesFile::PreferencesFile(QString path)
    : m_path(std::move(path))
{
}

QJsonObject PreferencesFile::load()
{
    const auto target = followLinks(m_path);
    if (target.kind == FileKind::OutOfReach) {
        giveUp(QString::fromStdString(target.error.message()));
        return {};
    }
    removeLeftOverOf(target.path);
    return target.kind == FileKind::Regular ? read(target.path) : QJsonObject();
}

// While another instance saves, what lies there is no left-over.
void PreferencesFile::removeLeftOverOf(const QString &path)
{
    const FolderLock lock(QFileInfo(path).path(), 0ms);
    if (!lock.isHeldByOther())
        removeLeftOver(path);
}

FolderLock PreferencesFile::lock() const
{
    const auto folder = QFileInfo(followLinks(m_path).path).path();
    if (!m_isGivenUp)
        makeFolder(folder);
    return {folder, patienceWithOthers};
}

QJsonObject PreferencesFile::read(const QString &path)
{
    QFile file;
    if (!openForReading(file, path)) {
        giveUp(qt_error_string(errno));
        return {};
    }
    m_loaded = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        giveUp(file.errorString());
        return {};
    }
    const auto values = decodePreferences(m_loaded);
    return values ? *values : setAside(path);
}

QJsonObject PreferencesFile::setAside(const QString &path)
{
    m_loaded.clear();
    const auto aside = moveAside(path);
    if (aside.failure.isEmpty())
        printErrorLine(path + QStringLiteral(" is damaged; it was moved to ") + aside.path);
    else
        giveUp(QStringLiteral("it is damaged and cannot be moved aside: ") + aside.failure);
    return {};
}

void PreferencesFile::giveUp(const QString &reason)
{
    m_isGivenUp = true;
    printErrorLine(m_path + QStringLiteral(" cannot be read, so nothing will be written to it: ") + reason);
}

void PreferencesFile::keepCopyOfLoaded()
{
    m_isCopyDue = !m_isCopyMade && !m_loaded.isEmpty();
}

std::optional<QJsonObject> PreferencesFile::changeOfOthers()
{
    m_present.clear();
    m_isPresentDamaged = false;
    QFile file;
    const auto target = followLinks(m_path);
    if (m_isGivenUp || target.kind != FileKind::Regular || !openForReading(file, target.path))
        return std::nullopt;
    m_present = file.readAll();
    if (m_present.isEmpty() || m_present == m_written.value_or(m_loaded))
        return std::nullopt;
    auto values = decodePreferences(m_present);
    m_isPresentDamaged = !values;
    return values;
}

// Once is enough: two instances of one user change each other's settings every few minutes.
void PreferencesFile::keepCopyOfPresent()
{
    m_isPresentLost |= !m_isLossKept && !m_present.isEmpty();
}

bool PreferencesFile::write(const QByteArray &content)
{
    if (m_isGivenUp)
        return false;
    if (m_written && m_present == content) {
        m_written = content;
        return true;
    }
    const auto failure = replace(content);
    if (!failure)
        m_written = content;
    else if (!m_hasFailed)
        printErrorLine(m_path + QStringLiteral(" cannot be written, so changes last only until the program ends: ") +
                       *failure);
    m_hasFailed = failure.has_value();
    return !m_hasFailed;
}

// Links are followed anew each time: people move their dotfiles while the program runs.
std::optional<QString> PreferencesFile::replace(const QByteArray &content)
{
    const auto target = followLinks(m_path);
    if (target.kind == FileKind::OutOfReach)
        return QString::fromStdString(target.error.message());
    if (target.kind == FileKind::Other)
        return QStringLiteral("there is something that is no file");
    if (auto failure = putCopyAside(target.path))
        return failure;
    if (auto failure = putPresentAside(target.path))
        return failure;
    return replaceFile(target.path, content);
}

std::optional<QString> PreferencesFile::putCopyAside(const QString &path)
{
    if (!m_isCopyDue)
        return std::nullopt;
    const auto aside = copyAside(path, m_loaded, QStringLiteral("damaged"));
    if (!aside.failure.isEmpty())
        return aside.failure;
    m_isCopyMade = true;
    m_isCopyDue = false;
    printErrorLine(path + QStringLiteral(" holds something that cannot be read; a copy was put at ") + aside.path);
    return std::nullopt;
}

std::optional<QString> PreferencesFile::putPresentAside(const QString &path)
{
    if (!(m_isPresentDamaged || m_isPresentLost) || m_present == m_putAside)
        return std::nullopt;
    const auto aside = copyAside(path, m_present, QStringLiteral("replaced"));
    if (!aside.failure.isEmpty())
        return aside.failure;
    m_putAside = m_present;
    m_isLossKept |= m_isPresentLost;
    m_isPresentLost = false;
    printErrorLine(path + QStringLiteral(" was changed by somebody else; a copy of theirs was put at ") + aside.path);
    return std::nullopt;
}

}  // namespace velquarin
