// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "support/Files.h"
#include "support/FileSnapshot.h"
#include "support/Listener.h"
#include "support/TempRepository.h"

#include <QDir>
#include <QFile>
#include <QMap>
#include <QTemporaryDir>

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>

namespace velquarin::test {

//! A repository that somebody else prepared, with all that it may do harm to: a precious file, a program that leaves a
//! marker when it is run, a folder for temporary files, a listener. It starts out harmless, with one commit on
//! 2023-06-01, one on 2024-03-05 and two on 2024-03-07, on the branch "main".
class HostileRepository
{
public:
    HostileRepository()
    {
        for (const char *folder : {"home", "tmp"})
            QDir().mkpath(inRoot(folder));
        inherit("HOME", inRoot("home"));
        inherit("TMPDIR", inRoot("tmp"));
        inherit("TZ", QStringLiteral("UTC"));
        writeFile(victim(), "precious\n");
        makeProgram(program());
        initialise();
    }
    ~HostileRepository()
    {
        for (auto variable = m_inherited.cbegin(); variable != m_inherited.cend(); ++variable)
            restore(variable.key().constData(), variable.value());
    }
    HostileRepository(const HostileRepository &) = delete;
    HostileRepository &operator=(const HostileRepository &) = delete;

    [[nodiscard]] QString root() const { return m_root.path(); }
    [[nodiscard]] QString inRoot(const char *name) const { return m_root.filePath(QLatin1String(name)); }
    [[nodiscard]] QString path() const { return inRoot("repo"); }
    [[nodiscard]] QString file(const QString &name) const { return path() + u'/' + name; }
    [[nodiscard]] QString victim() const { return inRoot("victim"); }
    [[nodiscard]] QString program() const { return inRoot("program"); }
    [[nodiscard]] QString marker() const { return inRoot("marker"); }
    [[nodiscard]] bool programWasRun() const { return QFile::exists(marker()); }
    [[nodiscard]] FileSnapshot snapshot() const { return snapshotOf(root()); }

    QByteArray git(const char *command, const QByteArray &input = {}) const
    {
        return RealGit(path()).run(QString::fromLatin1(command).split(u' '), input);
    }

    void write(const QString &name, const QByteArray &content) const { writeFile(file(name), content); }
    void makeFifo(const QString &name) const
    {
        QFile::remove(file(name));
        QDir().mkpath(QFileInfo(file(name)).path());
        if (mkfifo(QFile::encodeName(file(name)).constData(), 0600) != 0)
            throw std::runtime_error("cannot make a fifo");
    }

    //! A program that leaves the marker, fails and prints nothing.
    void makeProgram(const QString &name) const
    {
        writeFile(name, "#!/bin/sh\necho run >> '" + marker().toUtf8() + "'\nexit 1\n");
        QFile::setPermissions(name, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    //! Adds to the repository's own configuration; "PROGRAM" stands for the path of program().
    void configure(const QByteArray &text, const QString &name = QStringLiteral(".git/config")) const
    {
        QFile config(file(name));
        const auto expanded = QByteArray(text).replace("PROGRAM", program().toUtf8());
        if (!config.open(QIODevice::Append) || config.write(expanded + '\n') < 0)
            throw std::runtime_error("cannot write the configuration");
    }

    //! Makes the remote's default branch be @p name, whether or not there is such a thing.
    void nameRemoteHead(const QString &name) const
    {
        write(QStringLiteral(".git/refs/remotes/origin/HEAD"), "ref: " + name.toUtf8() + '\n');
    }

    //! A commit on 2024-03-07 with what looks like a signature of that kind, "PGP SIGNATURE" for instance.
    void addSignedCommit(const QByteArray &kind) const
    {
        const auto raw = "tree " + git("rev-parse main^{tree}") + "parent " + git("rev-parse main") +
                         "author A <a@example.org> 1709809200 +0000\ncommitter A <a@example.org> 1709809200 +0000\n"
                         "gpgsig -----BEGIN " +
                         kind + "-----\n abc\n -----END " + kind + "-----\n\nsigned\n";
        git("update-ref refs/heads/main " + git("hash-object -t commit -w --stdin", raw).trimmed());
    }

    //! Takes the object away, and has a remote promise to deliver it: one of that address, or of none.
    void promise(const char *object, const QString &url) const
    {
        const auto name = QString::fromLatin1(git(QByteArray("rev-parse ") + object).trimmed());
        if (!QFile::remove(file(QStringLiteral(".git/objects/") + name.left(2) + u'/' + name.mid(2))))
            throw std::runtime_error("there is no such loose object");
        configure("[core]\nrepositoryFormatVersion = 1\n[extensions]\npartialClone = origin\n"
                  "[remote \"origin\"]\npromisor = true" +
                  (url.isEmpty() ? QByteArray() : "\nurl = " + url.toUtf8()));
    }

    //! Keeps the references in tables from now on, as newer versions of git can; some of them do not bring logs along.
    void moveReferencesToTables() const
    {
        QDir(file(QStringLiteral(".git/logs"))).removeRecursively();
        git("refs migrate --ref-format=reftable");
    }

    //! A second repository that holds all that this one holds now; gives its path.
    QString makeSource() const
    {
        git("clone --quiet --bare . ../source");
        return inRoot("source");
    }

    //! Has the program's own process, and so git's, run with that variable, until this object ends.
    void inherit(const char *variable, const QString &value)
    {
        remember(variable);
        qputenv(variable, value.toUtf8());
    }

    //! The same, without that variable.
    void drop(const char *variable)
    {
        remember(variable);
        qunsetenv(variable);
    }

    //! Starts to listen; gives "127.0.0.1:port".
    QString listen()
    {
        m_listener.emplace();
        return m_listener->address();
    }
    //! The same, with somebody who asks every caller for a password.
    QString listenBehindPassword()
    {
        m_doorkeeper.emplace();
        return m_doorkeeper->address();
    }
    [[nodiscard]] bool networkWasReached() const
    {
        return (m_listener && m_listener->wasCalled()) || (m_doorkeeper && m_doorkeeper->wasCalled());
    }

private:
    void initialise() const
    {
        std::filesystem::copy(m_harmless.toStdString(), path().toStdString(), std::filesystem::copy_options::recursive);
    }

    // Made once and then copied: to start git twice for each of hundreds takes longer than what is tried on them.
    static QString harmless()
    {
        static const QTemporaryDir folder;
        static const bool isMade = (makeHarmless(folder.path()), true);
        Q_UNUSED(isMade)
        return folder.path();
    }

    static void makeHarmless(const QString &folder)
    {
        const RealGit git(folder);
        git.run({QStringLiteral("init"), QStringLiteral("--quiet"), QStringLiteral("--initial-branch=main")});
        QByteArray stream;
        for (const char *seconds : {"1685613600", "1709632800", "1709798400", "1709805600"})
            stream +=
                QByteArray("commit refs/heads/main\ncommitter A <a@example.org> ") + seconds + " +0000\ndata 1\nx\n";
        git.run({QStringLiteral("fast-import"), QStringLiteral("--quiet")}, stream);
    }

    QByteArray git(const QByteArray &command, const QByteArray &input = {}) const
    {
        return git(command.constData(), input);
    }

    void remember(const char *variable)
    {
        if (!m_inherited.contains(variable))
            m_inherited.insert(variable,
                               qEnvironmentVariableIsSet(variable) ? std::optional(qgetenv(variable)) : std::nullopt);
    }

    static void restore(const char *variable, const std::optional<QByteArray> &value)
    {
        if (value)
            qputenv(variable, *value);
        else
            qunsetenv(variable);
    }

    QString m_harmless = harmless();  // while the folder for temporary files is still that of the test
    QTemporaryDir m_root;
    QMap<QByteArray, std::optional<QByteArray>> m_inherited;
    std::optional<Listener> m_listener;
    std::optional<Doorkeeper> m_doorkeeper;
};

}  // namespace velquarin::test
