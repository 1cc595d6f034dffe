// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Console/FigureSource.h"

#include "Console/OwnReading.h"
#include "Console/StreakReport.h"
#include "Platform/Clock.h"
#include "Platform/Output.h"
#include "Platform/WhileAlive.h"

#include <utility>

namespace velquarin {

FigureSource::FigureSource(Wanted wanted, const Clock &clock, MakeReading makeReading, Output &output, QObject *parent)
    : QObject(parent)
    , m_wanted(std::move(wanted))
    , m_clock(clock)
    , m_makeReading(std::move(makeReading))
    , m_output(output)
{
    connect(&m_wanted.program, &RunningProgram::changed, this, &FigureSource::askSoon);
}

FigureSource::~FigureSource() = default;

void FigureSource::start()
{
    ask();
}

void FigureSource::askSoon()
{
    m_isChanged = true;
    if (!m_isAsking)
        ask();
}

// What changes while an answer is on its way may be in one half of it alone.
QCoro::Task<> FigureSource::ask()
{
    m_isAsking = true;
    RunningProgram::Answer answer;
    do {
        m_isChanged = false;
        auto question = m_wanted.program.properties(m_wanted.names);
        answer = co_await whileAlive(this, std::move(question));
    } while (m_isChanged);
    m_isAsking = false;
    take(answer);
}

void FigureSource::take(const RunningProgram::Answer &answer)
{
    if (const auto report = reportIn(answer.properties); report && isOfToday(*report)) {
        m_reading.reset();
        Q_EMIT reported(*report);
        return;
    }
    if (m_reading)
        return;
    if (answer.state == RunningProgram::State::Silent)
        m_output.printLine(QStringLiteral("The running program does not answer; the repositories are read here."));
    readHere();
}

// Once the day is over "committed today" is untrue until the program looks again, which may take an hour.
bool FigureSource::isOfToday(const StreakReport &report) const
{
    return report.lastSevenDays.isEmpty() || report.lastSevenDays.lastKey() == m_clock.calendar().dateOf(m_clock.now());
}

void FigureSource::readHere()
{
    m_reading = m_makeReading();
    if (!m_reading) {
        Q_EMIT failed();
        return;
    }
    connect(m_reading.get(), &OwnReading::read, this, &FigureSource::takeReading);
    m_reading->start();
}

// A bus that has gone tells nobody when it is back: each reading is an occasion to ask.
void FigureSource::takeReading(const StreakReport &report)
{
    Q_EMIT reported(report);
    QMetaObject::invokeMethod(this, &FigureSource::askSoon, Qt::QueuedConnection);
}

}  // namespace velquarin
