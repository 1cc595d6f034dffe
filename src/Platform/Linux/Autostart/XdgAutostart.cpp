// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Autostart/XdgAutostart.h"

#include "Platform/Linux/Autostart/DesktopEntry.h"
#include "Platform/Linux/Autostart/ExecCommand.h"
#include "Platform/Linux/Files/RegularFile.h"
#include "Platform/PathNames.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <utility>

#include <unistd.h>

namespace velquarin {

namespace {

const QString entryName = QStringLiteral("io.velquarin.Velquarin.desktop");

// A hundred times what anybody puts in one by hand.
constexpr qint64 longestEntry = 1'000'000;

bool isExecutableFile(const QString &path)
{
    const QFileInfo file(path);
    return file.isFile() && file.isExecutable();
}

LinkTarget entryIn(const QString &folder)
{
    return followLinks(joinPath(folder, entryName));
}

}  // namespace

XdgAutostart::XdgAutostart(AutostartEnvironment environment)
    : m_environment(std::move(environment))
    , m_judge{m_environment.currentDesktop, m_environment.searchPath, &isExecutableFile}
{
}

QString XdgAutostart::userEntry() const
{
    return joinPath(m_environment.userFolder, entryName);
}

// Another program than this one counts too: somebody has put a wrapper there, or another build.
LoginItemOutcome XdgAutostart::registerItem()
{
    if (status() == LoginItemStatus::Enabled)
        return LoginItemOutcome::Done;
    const auto entry = autostartEntry(m_environment.program);
    const bool isOfUse =
        isReadAlikeInExec(m_environment.program) && autostartStatus(entry, m_judge) == LoginItemStatus::Enabled;
    return isOfUse ? write(entry) : LoginItemOutcome::Failed;
}

// An entry for everybody that this desktop leaves alone is hidden as well: another desktop may not.
LoginItemOutcome XdgAutostart::unregisterItem()
{
    if (status() != LoginItemStatus::Enabled)
        return LoginItemOutcome::Done;
    return isThereForEverybody() ? write(hiddenAutostartEntry(m_environment.program)) : removeUserEntry();
}

LoginItemStatus XdgAutostart::status() const
{
    if (const auto own = m_environment.userFolder.isEmpty() ? std::nullopt : statusIn(m_environment.userFolder))
        return *own;
    for (const auto &folder : m_environment.systemFolders) {
        if (const auto found = statusIn(folder))
            return *found;
    }
    return LoginItemStatus::NotRegistered;
}

// Nothing where the folder has no such entry, so that the next one counts.
std::optional<LoginItemStatus> XdgAutostart::statusIn(const QString &folder) const
{
    const auto entry = entryIn(folder);
    if (entry.kind == FileKind::Missing)
        return std::nullopt;
    const auto content = readRegularFile(entry.path, longestEntry);
    return content ? autostartStatus(*content, m_judge) : LoginItemStatus::NotFound;
}

bool XdgAutostart::isThereForEverybody() const
{
    return std::any_of(m_environment.systemFolders.begin(), m_environment.systemFolders.end(),
                       [](const QString &folder) { return entryIn(folder).kind != FileKind::Missing; });
}

LoginItemOutcome XdgAutostart::write(const QByteArray &entry) const
{
    if (m_environment.userFolder.isEmpty())
        return LoginItemOutcome::Failed;
    const auto target = followLinks(userEntry());
    if (target.kind == FileKind::Other || target.kind == FileKind::OutOfReach)
        return LoginItemOutcome::Failed;
    return replaceFile(target.path, entry) ? LoginItemOutcome::Failed : LoginItemOutcome::Done;
}

// Of a link only the link goes: what it leads to may belong to the system, or to a collection of dotfiles.
LoginItemOutcome XdgAutostart::removeUserEntry() const
{
    const auto path = userEntry();
    if (::unlink(QFile::encodeName(path).constData()) != 0 && errno != ENOENT)
        return LoginItemOutcome::Failed;
    syncFolderOf(path);
    return LoginItemOutcome::Done;
}

}  // namespace velquarin
