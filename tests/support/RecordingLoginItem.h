// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/LoginItem.h"

#include <QStringList>

namespace velquarin::test {

//! A login item that is nowhere but here, writes down what is asked of it, and fails when told to. A change that fails
//! changes nothing.
class RecordingLoginItem : public LoginItem
{
public:
    [[nodiscard]] LoginItemOutcome registerItem() override
    {
        return change(QStringLiteral("register"), LoginItemStatus::Enabled);
    }

    [[nodiscard]] LoginItemOutcome unregisterItem() override
    {
        return change(QStringLiteral("unregister"), LoginItemStatus::NotRegistered);
    }

    [[nodiscard]] LoginItemStatus status() const override
    {
        calls << QStringLiteral("status");
        return current;
    }

    LoginItemStatus current = LoginItemStatus::NotRegistered;
    int failures = 0;           //!< how many of the next changes fail
    mutable QStringList calls;  //!< "register", "unregister" and "status", in their order

private:
    LoginItemOutcome change(const QString &call, LoginItemStatus wanted)
    {
        calls << call;
        if (failures > 0) {
            --failures;
            return LoginItemOutcome::Failed;
        }
        current = wanted;
        return LoginItemOutcome::Done;
    }
};

}  // namespace velquarin::test
