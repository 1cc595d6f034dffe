// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <stdexcept>

namespace velquarin::test {

//! Real git, with nobody's settings, a fixed author and no time but the one given. Any failure of it is an exception.
class RealGit
{
public:
    explicit RealGit(QString folder)
        : m_folder(std::move(folder))
    {
        m_environment = QProcessEnvironment::systemEnvironment();
        set("GIT_CONFIG_GLOBAL", QStringLiteral("/dev/null"));
        set("GIT_CONFIG_SYSTEM", QStringLiteral("/dev/null"));
        // No examples of hooks in each repository, and no waiting for the disk.
        set("GIT_TEMPLATE_DIR", {});
        set("GIT_TEST_FSYNC", QStringLiteral("0"));
        // No tidying up in the background, beside what is tried.
        set("GIT_CONFIG_COUNT", QStringLiteral("1"));
        set("GIT_CONFIG_KEY_0", QStringLiteral("maintenance.auto"));
        set("GIT_CONFIG_VALUE_0", QStringLiteral("false"));
        set("GIT_AUTHOR_NAME", QStringLiteral("A Developer"));
        set("GIT_AUTHOR_EMAIL", QStringLiteral("developer@example.org"));
        set("GIT_COMMITTER_NAME", QStringLiteral("A Developer"));
        set("GIT_COMMITTER_EMAIL", QStringLiteral("developer@example.org"));
    }

    void set(const char *variable, const QString &value) { m_environment.insert(QLatin1String(variable), value); }

    QByteArray run(const QStringList &arguments, const QByteArray &input = {}) const
    {
        QProcess process;
        process.setWorkingDirectory(m_folder);
        process.setProcessEnvironment(m_environment);
        process.start(QStringLiteral("/usr/bin/git"), arguments);
        process.write(input);
        process.closeWriteChannel();
        process.waitForFinished(-1);
        if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
            throw std::runtime_error(
                ("git " + arguments.join(u' ').toUtf8() + ": " + process.readAllStandardError()).toStdString());
        return process.readAllStandardOutput();
    }

private:
    QString m_folder;
    QProcessEnvironment m_environment;
};

//! Whether the machine's own settings name somebody's address: git reads them wherever the program runs it.
inline bool machineNamesAnAddress()
{
    QProcess process;
    process.start(QStringLiteral("/usr/bin/git"),
                  {QStringLiteral("config"), QStringLiteral("--system"), QStringLiteral("--get-regexp"),
                   QStringLiteral("^(user|author|velquarin)\\.email$")});
    return process.waitForFinished(-1) && process.exitCode() == 0;
}

//! A repository that lives as long as the object.
class TempRepository
{
public:
    explicit TempRepository(const QString &branch = QStringLiteral("main"),
                            const QString &name = QStringLiteral("repo"))
        : m_path(m_parent.filePath(name))
    {
        QDir().mkpath(m_path);
        git({QStringLiteral("init"), QStringLiteral("--quiet"), QStringLiteral("--initial-branch=") + branch});
    }

    [[nodiscard]] QString path() const { return m_path; }
    [[nodiscard]] QString file(const QString &name) const { return m_path + QLatin1Char('/') + name; }

    QByteArray git(const QStringList &arguments, const QByteArray &input = {}) const
    {
        return RealGit(m_path).run(arguments, input);
    }

    //! A commit without changes, made at that time: "2024-03-07T12:00:00+01:00". The author's date may be another.
    void commit(const QString &committed, const QString &authored = {}) const
    {
        RealGit git(m_path);
        git.set("GIT_COMMITTER_DATE", committed);
        git.set("GIT_AUTHOR_DATE", authored.isEmpty() ? committed : authored);
        git.run({QStringLiteral("commit"), QStringLiteral("--quiet"), QStringLiteral("--allow-empty"),
                 QStringLiteral("--message=work")});
    }

    void write(const QString &name, const QByteArray &content) const
    {
        QFile target(file(name));
        QDir().mkpath(QFileInfo(target).path());
        if (!target.open(QIODevice::WriteOnly) || target.write(content) != content.size())
            throw std::runtime_error("cannot write " + name.toStdString());
    }

private:
    QTemporaryDir m_parent;
    QString m_path;
};

}  // namespace velquarin::test
