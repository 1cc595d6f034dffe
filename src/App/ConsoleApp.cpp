// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "App/ConsoleApp.h"

#include "Console/CommandLine.h"
#include "Console/FigureSource.h"
#include "Console/OwnReading.h"
#include "Console/StatusFormats.h"
#include "Console/StreakReport.h"
#include "Console/YearFormats.h"
#include "Platform/Linux/Files/InotifyWatch.h"
#include "Platform/Linux/Files/PosixFileTree.h"
#include "Platform/Linux/Preferences/JsonPreferencesStore.h"
#include "Platform/Linux/Preferences/ReadOnlyPreferences.h"
#include "Platform/Linux/Process/ChildProcessRunner.h"
#include "Platform/Linux/Process/StandardStreams.h"
#include "Platform/Linux/Process/SystemClock.h"
#include "Platform/Linux/Session/ProgramClient.h"
#include "Platform/Linux/Session/SingleInstance.h"

#include <QCoreApplication>
#include <QProcessEnvironment>

#include <cstdlib>
#include <memory>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace velquarin {

using namespace std::chrono_literals;

namespace {

constexpr int statusOfMisuse = 2;
constexpr auto patience = 2s;

// Some of what is left may wait for others: for a bus that stays silent, for a disk that does not answer.
[[noreturn]] void end(int status)
{
    std::_Exit(status);
}

[[noreturn]] void refuse(const QString &why, int status)
{
    printErrorLine(why);
    end(status);
}

// A reader that has gone has what it wanted.
void answer(const QByteArray &text)
{
    const auto error = writeWhole(STDOUT_FILENO, text);
    if (error && error != std::errc::broken_pipe)
        refuse(QStringLiteral("The answer cannot be written: ") + QString::fromStdString(error.message()),
               EXIT_FAILURE);
    if (error)
        end(EXIT_SUCCESS);
}

class ErrorOutput : public Output
{
public:
    void printLine(const QString &line) override { printErrorLine(line); }
};

QByteArray statusAnswer(const StreakReport &report, AnswerFormat format)
{
    switch (format) {
    case AnswerFormat::Json:
        return statusJson(report) + '\n';
    case AnswerFormat::Waybar:
        return statusWaybar(report) + '\n';
    default:
        return statusText(report).toUtf8() + '\n';
    }
}

QByteArray yearAnswer(const StreakReport &report, AnswerFormat format, const Clock &clock)
{
    const auto year = yearOf(report, clock.calendar(), clock.now());
    switch (format) {
    case AnswerFormat::Json:
        return yearJson(year) + '\n';
    case AnswerFormat::Svg:
        return yearSvg(year, report);
    default:
        return yearText(year, terminalIn(QProcessEnvironment::systemEnvironment(), columnsOf(STDOUT_FILENO))).toUtf8();
    }
}

// What a reading wears out: it stops its runner for good, and watches what nobody needs any more once the program tells.
struct ReadingParts
{
    ReadOnlyPreferences preferences{defaultPreferencesPath()};
    ChildProcessRunner processes;
    PosixFileTree files;
    InotifyWatch repositoryWatch;
};

class ReadingHere : private ReadingParts, public OwnReading
{
public:
    ReadingHere(const Clock &clock, Timers &timers, Output &output)
        : OwnReading({processes, files, clock, timers, output, preferences, repositoryWatch})
    {
    }

    [[nodiscard]] const std::optional<QString> &failure() const { return preferences.failure(); }
};

// What the program is asked for: of many repositories all of it takes its time.
QStringList propertiesFor(const Command &command)
{
    if (command.kind == Command::Kind::Status && command.format == AnswerFormat::Json)
        return {};
    QStringList names{QStringLiteral("CurrentStreak"), QStringLiteral("LongestStreak"),
                      QStringLiteral("CommittedToday"), QStringLiteral("LastSevenDays")};
    names += command.kind == Command::Kind::Year ? QStringLiteral("CommitsPerDay") : QStringLiteral("CommitsThisWeek");
    return names;
}

// Answers from the figures, wherever they come from.
class Answering
{
public:
    explicit Answering(const Command &command)
        : m_command(command)
        , m_source(
              {m_program, propertiesFor(command)}, m_clock, [this] { return reading(); }, m_errors)
    {
        QObject::connect(&m_source, &FigureSource::reported, [this](const StreakReport &report) { take(report); });
        QObject::connect(&m_source, &FigureSource::failed, [this] { fail(); });
    }

    [[noreturn]] void run()
    {
        m_source.start();
        // Between two lines hours may pass, and nobody is to wait so long for an end.
        if (m_command.isFollowed)
            whenReaderGoes(STDOUT_FILENO, [] { end(EXIT_SUCCESS); });
        end(QCoreApplication::exec());
    }

private:
    // Anew each time: a program that has ended meanwhile may have left other settings behind.
    std::unique_ptr<OwnReading> reading()
    {
        auto made = std::make_unique<ReadingHere>(m_clock, m_timers, m_errors);
        if (!made->failure())
            return made;
        printErrorLine(*made->failure());
        return nullptr;
    }

    // Who follows has had an answer, and the next program may mend the settings.
    void fail() const
    {
        if (m_last.isEmpty())
            end(EXIT_FAILURE);
    }

    void take(const StreakReport &report)
    {
        auto text = m_command.kind == Command::Kind::Year ? yearAnswer(report, m_command.format, m_clock)
                                                          : statusAnswer(report, m_command.format);
        if (text == m_last)
            return;
        m_last = std::move(text);
        answer(m_last);
        if (!m_command.isFollowed)
            end(EXIT_SUCCESS);
    }

    Command m_command;
    ErrorOutput m_errors;
    SystemClock m_clock;
    BootTimeTimers m_timers;
    ProgramClient m_program{patience};
    FigureSource m_source;
    QByteArray m_last;
};

QCoro::Task<> callProgram(RunningProgram &program, QString method, QVariantList arguments)
{
    auto question = program.call(method, arguments);
    const auto state = co_await question;
    if (state == RunningProgram::State::Absent)
        refuse(QStringLiteral("The program does not run; \"velquarin\" starts it."), EXIT_FAILURE);
    if (state == RunningProgram::State::Silent)
        refuse(QStringLiteral("The running program does not answer."), EXIT_FAILURE);
    end(EXIT_SUCCESS);
}

[[noreturn]] void haveProgram(const QString &method, const QVariantList &arguments)
{
    ProgramClient program(patience);
    callProgram(program, method, arguments);
    end(QCoreApplication::exec());
}

[[noreturn]] void carryOut(const Command &command, const LaunchTokens &tokens)
{
    switch (command.kind) {
    case Command::Kind::Help:
        answer(helpText().toUtf8());
        end(EXIT_SUCCESS);
    case Command::Kind::Version:
        answer("velquarin " VELQUARIN_VERSION "\n");
        end(EXIT_SUCCESS);
    case Command::Kind::Refresh:
        haveProgram(QStringLiteral("Refresh"), {});
    case Command::Kind::Show:
        haveProgram(QStringLiteral("ShowDashboard"),
                    {tokens.activationToken.isEmpty() ? tokens.startupId : tokens.activationToken});
    case Command::Kind::Status:
    case Command::Kind::Year:
        Answering(command).run();
    }
    Q_UNREACHABLE();
}

}  // namespace

void runCommand(int argc, char **argv, bool isOutputOpen)
{
    const auto tokens = takeLaunchTokens();
    // Qt wants a locale in UTF-8 and says so where there is none; no answer depends on it.
    qInstallMessageHandler([](QtMsgType /*type*/, const QMessageLogContext & /*context*/, const QString & /*text*/) {});
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("velquarin"));
    const auto line = readCommandLine(QCoreApplication::arguments());
    if (!line.command)
        refuse(line.refusal + QStringLiteral(" Try \"velquarin --help\"."), statusOfMisuse);
    if (!isOutputOpen)
        refuse(QStringLiteral("The answer cannot be written: standard output is closed."), EXIT_FAILURE);
    carryOut(*line.command, tokens);
}

}  // namespace velquarin
