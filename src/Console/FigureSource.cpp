// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Console/FigureSource.h"

#include "Console/OwnReading.h"
#include "Console/StreakReport.h"
#include "Platform/Output.h"
#include "Platform/WhileAlive.h"

#include <utility>

namespace velquarin {

FigureSource::FigureSource(RunningProgram &program, MakeReading makeReading, Output &output, QObject *parent)
    : QObject(parent)
    , m_program(program)
    , m_makeReading(std::move(makeReading))
    , m_output(output)
{
    connect(&program, &RunningProgram::changed, this, &FigureSource::askSoon);
}

FigureSource::~FigureSource() = default;

void FigureSource::start()
{
    ask();
}

// What changes while an answer is on its way may have come too late for it.
void FigureSource::askSoon()
{
    m_isChanged = true;
    if (!m_isAsking)
        ask();
}

QCoro::Task<> FigureSource::ask()
{
    m_isAsking = true;
    do {
        m_isChanged = false;
        auto question = m_program.properties();
        const auto answer = co_await whileAlive(this, std::move(question));
        take(answer);
    } while (m_isChanged);
    m_isAsking = false;
}

void FigureSource::take(const RunningProgram::Answer &answer)
{
    if (const auto report = reportIn(answer.properties)) {
        m_reading.reset();
        Q_EMIT reported(*report);
        return;
    }
    if (m_reading)
        return;
    if (answer.state == RunningProgram::State::Silent)
        m_output.printLine(QStringLiteral("the running program does not answer; reading the repositories here"));
    readHere();
}

void FigureSource::readHere()
{
    m_reading = m_makeReading();
    if (!m_reading) {
        Q_EMIT failed();
        return;
    }
    connect(m_reading.get(), &OwnReading::read, this, &FigureSource::reported);
    m_reading->start();
}

}  // namespace velquarin
