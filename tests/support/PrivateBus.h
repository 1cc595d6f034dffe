// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QFile>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>
#include <QTest>

namespace velquarin::test {

//! A session bus that the test starts and ends as it likes, always at the same address, which becomes that of
//! this process: make it before anything connects. It knows no service to start but those it is told of.
class PrivateBus
{
public:
    PrivateBus()
    {
        qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + QFile::encodeName(m_folder.filePath(QStringLiteral("bus"))));
        write(QStringLiteral("bus.conf"), configuration());
    }

    //! From the next start() on the bus runs @p command for whoever calls @p name.
    void activate(const QString &name, const QString &command)
    {
        write(name + QStringLiteral(".service"),
              QStringLiteral("[D-BUS Service]\nName=%1\nExec=%2\n").arg(name, command));
    }

    void deactivate(const QString &name) { QFile::remove(m_folder.filePath(name + QStringLiteral(".service"))); }

    void start()
    {
        m_daemon.setReadChannel(QProcess::StandardOutput);
        m_daemon.setStandardErrorFile(QProcess::nullDevice());
        m_daemon.start(QStringLiteral("dbus-daemon"),
                       {QStringLiteral("--nofork"), QStringLiteral("--print-address"),
                        QStringLiteral("--config-file=") + m_folder.filePath(QStringLiteral("bus.conf"))});
        QVERIFY2(m_daemon.waitForReadyRead(), "The bus does not start");
    }

    //! Ends the bus as at the end of a session; those that are connected find out by themselves.
    void stop()
    {
        m_daemon.terminate();
        QVERIFY2(m_daemon.state() == QProcess::NotRunning || m_daemon.waitForFinished(), "The bus does not end");
    }

    ~PrivateBus()
    {
        m_daemon.kill();
        m_daemon.waitForFinished();
    }

private:
    [[nodiscard]] QString configuration() const
    {
        return QStringLiteral("<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-BUS Bus Configuration 1.0//EN\"\n"
                              " \"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\">\n"
                              "<busconfig><type>session</type><listen>unix:path=%1/bus</listen>\n"
                              "<servicedir>%1</servicedir><policy context=\"default\">\n"
                              "<allow send_destination=\"*\" eavesdrop=\"true\"/><allow eavesdrop=\"true\"/>\n"
                              "<allow own=\"*\"/></policy></busconfig>\n")
            .arg(m_folder.path());
    }

    void write(const QString &name, const QString &text)
    {
        QFile file(m_folder.filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(text.toUtf8());
    }

    QTemporaryDir m_folder;
    QProcess m_daemon;
};

}  // namespace velquarin::test
