// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Windows/FolderDialog.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>

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

}  // namespace velquarin
