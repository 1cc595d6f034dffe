// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/RunningProgram.h"

#include <QCoroTask>
#include <QObject>

#include <functional>
#include <memory>

namespace velquarin {

class Clock;
class Output;
class OwnReading;
struct StreakReport;

//! Where a command has its figures from: the running program, or a reading of its own where there is none, where it does
//! not answer, or where it has none of today yet. It changes from one to the other as programs begin and end. Main thread only.
class FigureSource : public QObject
{
    Q_OBJECT
public:
    using MakeReading = std::function<std::unique_ptr<OwnReading>()>;

    //! What the program is asked for, as RunningProgram::properties() takes it; the day of a week's end is always needed.
    struct Wanted
    {
        RunningProgram &program;
        QStringList names;
    };

    //! @p output takes what goes wrong. @p makeReading may answer nothing, where nothing can be read here.
    FigureSource(Wanted wanted, const Clock &clock, MakeReading makeReading, Output &output, QObject *parent = nullptr);
    ~FigureSource() override;

    //! Begins to ask, and goes on for as long as it lives.
    void start();

Q_SIGNALS:
    //! The figures as they are now; perhaps the same as before.
    void reported(const velquarin::StreakReport &report);

    //! Nobody answers, and nothing can be read here.
    void failed();

private:
    void askSoon();
    QCoro::Task<> ask();
    void take(const RunningProgram::Answer &answer);
    [[nodiscard]] bool isOfToday(const StreakReport &report) const;
    void readHere();
    void takeReading(const StreakReport &report);

    Wanted m_wanted;
    const Clock &m_clock;
    MakeReading m_makeReading;
    Output &m_output;
    std::unique_ptr<OwnReading> m_reading;  // while the program does not tell
    bool m_isAsking = false;
    bool m_isChanged = false;  // since the question was asked that runs now
};

}  // namespace velquarin
