// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Interface.h"

#include <QByteArray>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <stdexcept>

namespace velquarin {

//! A program could not be started: it is missing or not executable, or its folder is missing or denied.
//! what() is the platform's own description, in UTF-8.
class LaunchError : public std::runtime_error
{
    using std::runtime_error::runtime_error;
};

//! One program to run.
struct ProcessRequest
{
    QString program;                  //!< absolute path; never searched for
    QStringList arguments;            //!< without the program's name; no shell sees them
    QString directory;                //!< the working directory, which must exist
    QProcessEnvironment environment;  //!< the whole environment, nothing is inherited beside it
};

//! What a program left behind.
struct ProcessOutput
{
    QByteArray text;      //!< its standard output, byte for byte
    int exitStatus = -1;  //!< negative where it did not end by itself
};

//! Runs one child process at a time and hands back what it printed.
class ProcessRunner : public Interface
{
public:
    //! From now on confines every child that runs @p program, and all that such a child starts, to executing @p program
    //! alone and to writing nothing. To be asked before each run: the file may be replaced at any time.
    //! False where the system has no such means; then children run unconfined.
    virtual bool confine(const QString &program) = 0;

    //! Runs the program to its end. Blocks the calling thread for as long as it lives. Errors: LaunchError when it
    //! does not start, and after stop().
    virtual ProcessOutput run(const ProcessRequest &request) = 0;

    //! Kills the running program with all it has started, and lets no further one start. Callable from any
    //! thread; returns at once.
    virtual void stop() = 0;
};

}  // namespace velquarin
