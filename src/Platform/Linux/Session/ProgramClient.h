// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/RunningProgram.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>

#include <chrono>
#include <memory>
#include <optional>

namespace velquarin {

//! The running program, asked over the session bus. Source: D-Bus Specification; io.velquarin.Velquarin1.xml
class ProgramClient final : public RunningProgram
{
    Q_OBJECT
public:
    //! Neither the bus nor the program keep anybody waiting for longer than @p patience.
    explicit ProgramClient(std::chrono::milliseconds patience, QObject *parent = nullptr);
    ~ProgramClient() override;

    [[nodiscard]] QCoro::Task<Answer> properties(QStringList names) override;
    [[nodiscard]] QCoro::Task<State> call(QString method, QVariantList arguments) override;

private:
    [[nodiscard]] State connectToBus();
    void listen();
    [[nodiscard]] QCoro::Task<QDBusMessage> ask(QDBusMessage call);
    [[nodiscard]] QCoro::Task<Answer> some(QStringList names);
    Q_SLOT void hearChange(const QString &interface, const QVariantMap &changed, const QStringList &changedByName);
    Q_SLOT void forgetConnection();

    std::chrono::milliseconds m_patience;
    std::optional<QDBusConnection> m_connection;
    std::unique_ptr<QDBusServiceWatcher> m_watcher;
};

}  // namespace velquarin
