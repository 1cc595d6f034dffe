// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Console/CommandLine.h"
#include "support/Strict.h"
#include "support/TestProgram.h"

#include <QTest>

#include <algorithm>

using namespace velquarin;
using namespace velquarin::test;

namespace {

CommandLine read(const QString &words)
{
    auto arguments = words.split(u' ', Qt::SkipEmptyParts);
    arguments.prepend(QStringLiteral("velquarin"));
    return readCommandLine(arguments);
}

}  // namespace

class TestCommandLine : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { failOnAnyWarning(); }
    void wordsAskForSomething_data();
    void wordsAskForSomething();
    void whatCannotBeMeantIsRefusedInALine_data();
    void whatCannotBeMeantIsRefusedInALine();
    void noCharacterOfTheUsersBreaksTheLine();
    void theHelpFitsEightyColumnsAndNamesAll();
};

void TestCommandLine::wordsAskForSomething_data()
{
    using Kind = Command::Kind;
    QTest::addColumn<QString>("words");
    QTest::addColumn<Command>("command");
    const auto row = [](const char *words, const Command &command) {
        QTest::newRow(words) << QString::fromLatin1(words) << command;
    };
    row("--help", {Kind::Help});
    row("-h", {Kind::Help});
    row("status --help", {Kind::Help});
    row("--version", {Kind::Version});
    row("-v", {Kind::Version});
    row("status", {Kind::Status, AnswerFormat::Text});
    row("status --format text", {Kind::Status, AnswerFormat::Text});
    row("status --format json", {Kind::Status, AnswerFormat::Json});
    row("status -format json", {Kind::Status, AnswerFormat::Json});
    row("--format=json status", {Kind::Status, AnswerFormat::Json});
    row("status --format=waybar --follow", {Kind::Status, AnswerFormat::Waybar, true});
    row("year", {Kind::Year, AnswerFormat::Text});
    row("year --format json", {Kind::Year, AnswerFormat::Json});
    row("year --format svg", {Kind::Year, AnswerFormat::Svg});
    row("refresh", {Kind::Refresh});
    row("show", {Kind::Show});
    row("-- status", {Kind::Status});
}

void TestCommandLine::wordsAskForSomething()
{
    QFETCH(QString, words);
    QFETCH(Command, command);
    const auto line = read(words);
    QCOMPARE(line.refusal, QString());
    QCOMPARE(line.command, command);
}

void TestCommandLine::whatCannotBeMeantIsRefusedInALine_data()
{
    QTest::addColumn<QString>("words");
    QTest::addColumn<QString>("refusal");
    const auto row = [](const char *words, const char *refusal) {
        QTest::newRow(words) << QString::fromUtf8(words) << QString::fromUtf8(refusal);
    };
    row("stats", "There is no command \"stats\".");
    row("Status", "There is no command \"Status\".");
    row("status now", "Unexpected argument \"now\".");
    row("refresh twice", "Unexpected argument \"twice\".");
    row("--follow", "There is no command.");
    row("--", "There is no command.");
    row("status --format", "Missing value after '--format'.");
    row("status --format xml", "There is no format \"xml\" of \"status\".");
    row("status --format svg", "There is no format \"svg\" of \"status\".");
    row("year --format waybar", "There is no format \"waybar\" of \"year\".");
    row("status --format=", "There is no format \"\" of \"status\".");
    row("year --follow", "The command \"year\" takes no option \"--follow\".");
    row("show --follow", "The command \"show\" takes no option \"--follow\".");
    row("refresh --format text", "The command \"refresh\" takes no option \"--format\".");
    row("--nonsense", "Unknown option 'nonsense'.");
    row("status -platform", "Unknown option 'platform'.");
    row("-session 7", "Unknown option 'session'.");
}

void TestCommandLine::whatCannotBeMeantIsRefusedInALine()
{
    QFETCH(QString, words);
    const auto line = read(words);
    QVERIFY(!line.command);
    QTEST(line.refusal, "refusal");
}

void TestCommandLine::noCharacterOfTheUsersBreaksTheLine()
{
    const auto line = readCommandLine({QStringLiteral("velquarin"), QStringLiteral("sta\ntus\x1b[2J\u2028🔥")});
    QCOMPARE(line.refusal, QStringLiteral("There is no command \"sta?tus?[2J?🔥\"."));
}

void TestCommandLine::theHelpFitsEightyColumnsAndNamesAll()
{
    const auto help = helpText();
    const auto lines = help.split(u'\n');
    QVERIFY(std::ranges::all_of(
        lines, [](const QString &line) { return line.size() < 80 || line.startsWith(QLatin1String("Usage: ")); }));
    for (const auto *const word : {"status", "year", "refresh", "show", "--help", "--version", "--format", "--follow",
                                   "text", "json", "waybar", "svg"})
        QVERIFY2(help.contains(QLatin1String(word)), word);
}

VELQUARIN_TEST(TestCommandLine)
#include "tst_commandline.moc"
