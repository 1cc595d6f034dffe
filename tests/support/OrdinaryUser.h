// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QFile>
#include <QString>

#include <cstdlib>
#include <stdexcept>
#include <unistd.h>

namespace velquarin::test {

//! While it lives, the administrator's process meets the file system as an ordinary user, who owns @p folder. For
//! anybody else nothing changes.
//! Source: seteuid(2)
class AsOrdinaryUser
{
public:
    explicit AsOrdinaryUser(const QString &folder)
        : m_wasAdministrator(geteuid() == 0)
    {
        constexpr uid_t nobody = 65534;
        if (!m_wasAdministrator)
            return;
        if (chown(QFile::encodeName(folder).constData(), nobody, nobody) != 0 || seteuid(nobody) != 0)
            throw std::runtime_error("cannot become an ordinary user");
    }
    ~AsOrdinaryUser()
    {
        if (m_wasAdministrator && seteuid(0) != 0)
            std::abort();
    }
    AsOrdinaryUser(const AsOrdinaryUser &) = delete;
    AsOrdinaryUser &operator=(const AsOrdinaryUser &) = delete;

private:
    bool m_wasAdministrator;
};

}  // namespace velquarin::test
