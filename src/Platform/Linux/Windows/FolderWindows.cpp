// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Windows/FolderWindows.h"

#include "Platform/Linux/Session/SessionBus.h"

#include <QCoroFuture>
#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QUrl>

#include <thread>
#include <utility>

namespace velquarin {

namespace {

// A link stays the link that was chosen: the user knows the repository by that path.
QFileDialog *makeDialog(const FolderChooser::Request &request, QWidget *window)
{
    auto *const dialog = new QFileDialog(window, request.message);
    dialog->setObjectName(QStringLiteral("folderDialog"));
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOptions(QFileDialog::ShowDirsOnly | QFileDialog::DontResolveSymlinks);
    dialog->setLabelText(QFileDialog::Accept, request.confirmTitle);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    return dialog;
}

constexpr std::chrono::seconds patience(25);

// Asked on a thread of its own, which ends at once, or with the program where a network folder never answers.
QFuture<bool> isFolder(const QString &path)
{
    QPromise<bool> promise;
    auto answer = promise.future();
    promise.start();
    std::thread([path, promise = std::move(promise)]() mutable {
        promise.addResult(QFileInfo(path).isDir());
        promise.finish();
    }).detach();
    return answer;
}

QDBusMessage showFolders(const QUrl &folder, const QString &activationToken)
{
    auto call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowFolders"));
    call.setArguments({QStringList{folder.toString(QUrl::FullyEncoded)}, activationToken});
    return call;
}

// Touches no object of ours after a wait: whoever asked may be gone by then.
QCoro::Task<> revealFolder(QDBusConnection connection, QString path, QString activationToken,
                           std::function<void()> makeWay)
{
    const auto answer = isFolder(path);
    if (!co_await answer)
        co_return;
    makeWay();
    const auto folder = QUrl::fromLocalFile(path);
    const auto call = showFolders(folder, activationToken);
    const auto reply = co_await replyTo(call, connection, patience);
    if (reply.type() != QDBusMessage::ReplyMessage)
        QDesktopServices::openUrl(folder);
}

}  // namespace

FolderDialog::FolderDialog()
    : m_place(QDir::homePath())
{
}

void FolderDialog::choose(const Request &request, QObject &window, Chosen chosen)
{
    auto *const dialog = makeDialog(request, qobject_cast<QWidget *>(&window));
    dialog->setDirectory(m_place);
    // Of its signals the one that the desktop's dialog and Qt's both send.
    QObject::connect(dialog, &QFileDialog::fileSelected, dialog,
                     [this, chosen = std::move(chosen)](const QString &path) {
                         m_place = QFileInfo(path).path();
                         chosen(path);
                     });
    dialog->open();
}

void FileManagerViewer::reveal(const QString &path, const std::function<void()> &makeWay)
{
    revealFolder(m_bus.connection(), path, m_newToken(), makeWay);
}

}  // namespace velquarin
