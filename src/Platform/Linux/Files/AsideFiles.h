// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

namespace velquarin {

//! What became of a file that was to be put aside.
struct AsideFile
{
    QString path;     //!< where it lies now; empty where that failed
    QString failure;  //!< why, in words
};

//! Renames @p path to itself with ".damaged-" and the time in UTC added, "20261120T181000Z", and a number where
//! that name is taken: nothing is ever written over.
[[nodiscard]] AsideFile moveAside(const QString &path);

//! Writes @p content, what @p path held, to a new file of such a name, with @p why in place of "damaged", and waits until
//! the disk has it.
[[nodiscard]] AsideFile copyAside(const QString &path, const QByteArray &content, const QString &why);

}  // namespace velquarin
