// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "support/HostileRepository.h"

#include <QList>
#include <QString>
#include <QVersionNumber>

#include <functional>

namespace velquarin::test {

//! What befalls somebody who reads the repository without precautions.
enum class Harm { ProgramRuns, FileChanges, NetworkIsReached, OutputChanges, Hangs, Crashes };

//! What the program shows of a repository on 2024-03-07.
struct Figures
{
    QString branch = QStringLiteral("main");
    qint64 week = 3;
    qint64 twoYears = 4;
    QString last = QStringLiteral("2024-03-07T10:00:00Z");  //!< empty where there is none
    friend bool operator==(const Figures &, const Figures &) = default;
};

//! One thing that a repository, or the surroundings of the program, can carry.
struct Attack
{
    const char *name;  //!< says what is carried
    Harm harm;
    std::function<void(HostileRepository &)> prepare;
    Figures figures = {};                  //!< what the program shows all the same
    const char *beyondSettings = nullptr;  //!< why none of git's settings stops it; nothing where they do
    QVersionNumber since = {};             //!< the first version of git that knows what is carried
    QVersionNumber until = {};             //!< the first one that it harms no more, in which git itself was mended
};

//! The attack, from that version of git on.
[[nodiscard]] inline Attack since(QVersionNumber version, Attack attack)
{
    attack.since = std::move(version);
    return attack;
}

//! The attack, which that version of git and later ones withstand by themselves.
[[nodiscard]] inline Attack until(QVersionNumber version, Attack attack)
{
    attack.until = std::move(version);
    return attack;
}

//! The same attacks, none of which a setting stops, and why.
[[nodiscard]] inline QList<Attack> beyondSettings(const char *reason, QList<Attack> attacks)
{
    for (auto &attack : attacks)
        attack.beyondSettings = reason;
    return attacks;
}

//! Names that reach git's command line.
[[nodiscard]] QList<Attack> referenceAttacks();

//! Settings that start programs or change what git prints.
[[nodiscard]] QList<Attack> configurationAttacks();

//! Objects that are missing, and remotes that offer them.
[[nodiscard]] QList<Attack> fetchAttacks();

//! Files that are not what git takes them for.
[[nodiscard]] QList<Attack> fileAttacks();

//! Variables that the program inherits.
[[nodiscard]] QList<Attack> environmentAttacks();

//! What looks dangerous, but has no effect on the commands that are run.
[[nodiscard]] QList<Attack> idleThreats();

}  // namespace velquarin::test
