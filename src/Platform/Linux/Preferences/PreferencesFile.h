// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>

#include <chrono>
#include <optional>

namespace velquarin {

//! Keeps other instances of this program from changing what is in a folder, for as long as it lives. It leaves nothing
//! behind, however the program ends. Source: flock(2)
class FolderLock
{
public:
    //! Waits at most @p patience while another one is held.
    FolderLock(const QString &folder, std::chrono::milliseconds patience);
    ~FolderLock();
    FolderLock(const FolderLock &) = delete;
    FolderLock &operator=(const FolderLock &) = delete;

    //! Whether somebody else held it to the end. A folder that nobody can lock, on some network file systems for
    //! instance, is held by nobody.
    [[nodiscard]] bool isHeldByOther() const { return m_isHeldByOther; }

private:
    int m_folder;
    bool m_isHeldByOther = false;
};

//! The preferences on the disk. Every call blocks until the disk has answered; one thread at a time. Nothing is
//! thrown away: what cannot be understood is put aside, what cannot be read is never written over. What goes
//! wrong is told in one line on standard error. Source: docs/decisions/0002-preferences-file.md
class PreferencesFile
{
public:
    explicit PreferencesFile(QString path);

    //! What the file holds; to be called once, first. Empty where there is no file, or none that can be used.
    [[nodiscard]] QJsonObject load();

    //! Keeps other instances from writing: to be held from changeOfOthers() to write(). Makes the folder where it is
    //! missing.
    [[nodiscard]] FolderLock lock() const;

    //! Puts a copy of what load() read aside before the next write, once; until that has worked none is made.
    void keepCopyOfLoaded();

    //! What the file holds, where somebody else has changed it since it was last read or written; nothing where nobody
    //! has, or where it cannot be understood.
    [[nodiscard]] std::optional<QJsonObject> changeOfOthers();

    //! Puts a copy of what changeOfOthers() met aside before the next write, once.
    void keepCopyOfPresent();

    //! Makes the file hold @p content, unless that is what changeOfOthers() met. What it could not understand is put
    //! aside first. A failure is told once, and anew only after a success; the next call tries again.
    //! Returns whether the file holds it now.
    bool write(const QByteArray &content);

private:
    static void removeLeftOverOf(const QString &path);
    [[nodiscard]] QJsonObject read(const QString &path);
    [[nodiscard]] QJsonObject setAside(const QString &path);
    void giveUp(const QString &reason);
    [[nodiscard]] std::optional<QString> replace(const QByteArray &content);
    [[nodiscard]] std::optional<QString> putCopyAside(const QString &path);
    [[nodiscard]] std::optional<QString> putPresentAside(const QString &path);

    QString m_path;
    QByteArray m_loaded;
    QByteArray m_present;
    QByteArray m_putAside;
    std::optional<QByteArray> m_written;
    bool m_isGivenUp = false;
    bool m_isCopyDue = false;
    bool m_isCopyMade = false;
    bool m_isPresentDamaged = false;
    bool m_isPresentLost = false;
    bool m_isLossKept = false;
    bool m_hasFailed = false;
};

}  // namespace velquarin
