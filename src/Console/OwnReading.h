// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <memory>

namespace velquarin {

class Clock;
class FileTree;
class Output;
class PreferencesStore;
class ProcessRunner;
class RepositoryWatch;
class Timers;
struct StreakReport;

//! What a reading of one's own needs; all of it outlives the reading.
struct ReadingPlatform
{
    ProcessRunner &processes;
    const FileTree &files;
    const Clock &clock;
    Timers &timers;
    Output &output;                 //!< for what goes wrong
    PreferencesStore &preferences;  //!< one that keeps nothing
    RepositoryWatch &repositoryWatch;
};

//! The repositories of the preferences, read by this very process, once and again whenever a commit is made or the time
//! between two refreshes is over, as the program in the status bar does it. It reminds of nothing and writes nothing.
class OwnReading : public QObject
{
    Q_OBJECT
public:
    explicit OwnReading(const ReadingPlatform &platform, QObject *parent = nullptr);
    ~OwnReading() override;

    //! Begins to read.
    void start();

Q_SIGNALS:
    //! All repositories have been read.
    void read(const velquarin::StreakReport &report);

private:
    struct Services;

    void tell();

    const Clock &m_clock;
    std::unique_ptr<Services> m_services;
};

}  // namespace velquarin
