// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Autostart/XdgAutostart.h"

#include "Platform/Linux/Files/RegularFile.h"
#include "Platform/PathNames.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>

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

// Missing where there is no folder.
LinkTarget entryIn(const QString &folder)
{
    return followLinks(folder.isEmpty() ? QString() : joinPath(folder, entryName));
}

LoginItemOutcome write(const LinkTarget &target, const QByteArray &entry)
{
    const bool isFileOrNone = target.kind == FileKind::Regular || target.kind == FileKind::Missing;
    const bool isDone = !target.path.isEmpty() && isFileOrNone && !replaceFile(target.path, entry);
    return isDone ? LoginItemOutcome::Done : LoginItemOutcome::Failed;
}

// Of a link only the link goes: what it leads to may belong to the system, or to a collection of dotfiles.
LoginItemOutcome remove(const QString &path)
{
    const bool isGone = ::unlink(QFile::encodeName(path).constData()) == 0 || errno == ENOENT;
    syncFolderOf(path);
    return isGone ? LoginItemOutcome::Done : LoginItemOutcome::Failed;
}

}  // namespace

// Another program than this one counts too: somebody has put a wrapper there, or another build.
LoginItemOutcome XdgAutostart::registerItem()
{
    if (status() == LoginItemStatus::Enabled)
        return LoginItemOutcome::Done;
    const auto entry = autostartEntry(m_environment.program);
    const bool isOfUse = isReadAlikeInExec(m_environment.program) &&
                         autostartStatus(entry, m_environment, &isExecutableFile) == LoginItemStatus::Enabled;
    return isOfUse ? write(entryIn(m_environment.userFolder), entry) : LoginItemOutcome::Failed;
}

// An entry for everybody that this desktop leaves alone is hidden as well: another desktop may not.
LoginItemOutcome XdgAutostart::unregisterItem()
{
    if (status() != LoginItemStatus::Enabled)
        return LoginItemOutcome::Done;
    const auto &folders = m_environment.systemFolders;
    const bool isForEverybody = std::any_of(folders.begin(), folders.end(), [](const QString &folder) {
        return entryIn(folder).kind != FileKind::Missing;
    });
    return isForEverybody ? write(entryIn(m_environment.userFolder), hiddenAutostartEntry(m_environment.program))
                          : remove(joinPath(m_environment.userFolder, entryName));
}

LoginItemStatus XdgAutostart::status() const
{
    for (const auto &folder : QStringList(m_environment.userFolder) + m_environment.systemFolders) {
        const auto entry = entryIn(folder);
        if (entry.kind == FileKind::Missing)
            continue;
        const auto content = readRegularFile(entry.path, longestEntry);
        return content ? autostartStatus(*content, m_environment, &isExecutableFile) : LoginItemStatus::NotFound;
    }
    return LoginItemStatus::NotRegistered;
}

}  // namespace velquarin
