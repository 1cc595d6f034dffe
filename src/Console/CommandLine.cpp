// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Console/CommandLine.h"

#include <QCommandLineParser>
#include <QMap>

#include <initializer_list>
#include <utility>

namespace velquarin {

namespace {

using Kind = Command::Kind;

const QMap<QString, Kind> commandNames{{QStringLiteral("status"), Kind::Status},
                                       {QStringLiteral("year"), Kind::Year},
                                       {QStringLiteral("refresh"), Kind::Refresh},
                                       {QStringLiteral("show"), Kind::Show}};

const QMap<QString, AnswerFormat> statusFormats{{QStringLiteral("text"), AnswerFormat::Text},
                                                {QStringLiteral("json"), AnswerFormat::Json},
                                                {QStringLiteral("waybar"), AnswerFormat::Waybar}};

const QMap<QString, AnswerFormat> yearFormats{{QStringLiteral("text"), AnswerFormat::Text},
                                              {QStringLiteral("json"), AnswerFormat::Json},
                                              {QStringLiteral("svg"), AnswerFormat::Svg}};

const QString help = QStringLiteral("help");
const QString version = QStringLiteral("version");
const QString format = QStringLiteral("format");
const QString follow = QStringLiteral("follow");

void describe(QCommandLineParser &parser)
{
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.setApplicationDescription(
        QStringLiteral("Keeps your commit streak in the status bar. Without a command it starts there,\n"
                       "or opens the dashboard of the one that runs already.\n\n"
                       "Commands:\n"
                       "  status    Print the streak.\n"
                       "  year      Print the last 365 days as a calendar.\n"
                       "  refresh   Have the running program read the repositories again.\n"
                       "  show      Have the running program open its dashboard."));
    parser.addOptions({{{QStringLiteral("h"), help}, QStringLiteral("Print this help.")},
                       {{QStringLiteral("v"), version}, QStringLiteral("Print the version.")},
                       {format,
                        QStringLiteral("How status (text, json, waybar) or year (text, json, svg) is printed; text "
                                       "where it is not given."),
                        QStringLiteral("format")},
                       {follow, QStringLiteral("With status: print it again whenever it changes.")}});
    parser.addPositionalArgument(QStringLiteral("command"), QStringLiteral("One of those above."),
                                 QStringLiteral("[command]"));
}

CommandLine refused(const QString &why)
{
    return {std::nullopt, why};
}

// The name of an option that the command does not take, or nothing.
QString strayOption(const QCommandLineParser &parser, Kind kind)
{
    const bool isFormatted = kind == Kind::Status || kind == Kind::Year;
    if (parser.isSet(format) && !isFormatted)
        return format;
    return parser.isSet(follow) && kind != Kind::Status ? follow : QString();
}

CommandLine commandNamed(const QString &name, const QCommandLineParser &parser)
{
    const auto kind = commandNames.constFind(name);
    if (kind == commandNames.constEnd())
        return refused(QStringLiteral("There is no command \"%1\".").arg(name));
    if (const auto stray = strayOption(parser, *kind); !stray.isEmpty())
        return refused(QStringLiteral("The command \"%1\" takes no option \"--%2\".").arg(name, stray));
    const auto &formats = *kind == Kind::Year ? yearFormats : statusFormats;
    const auto wanted = parser.isSet(format) ? parser.value(format) : QStringLiteral("text");
    if (!formats.contains(wanted))
        return refused(QStringLiteral("There is no format \"%1\" of \"%2\".").arg(wanted, name));
    return {Command{*kind, formats.value(wanted), parser.isSet(follow)}, {}};
}

// What a line may hold: whoever mistypes may have pasted anything.
QString oneLine(QString text)
{
    for (auto &character : text) {
        const bool breaksLine = character == QChar::LineSeparator || character == QChar::ParagraphSeparator;
        if (breaksLine || !(character.isPrint() || character.isSurrogate()))
            character = u'?';
    }
    return text;
}

CommandLine understood(const QCommandLineParser &parser)
{
    if (parser.isSet(help))
        return {Command{Kind::Help}, {}};
    if (parser.isSet(version))
        return {Command{Kind::Version}, {}};
    const auto words = parser.positionalArguments();
    if (words.isEmpty())
        return refused(QStringLiteral("There is no command."));
    if (words.size() > 1)
        return refused(QStringLiteral("Unexpected argument \"%1\".").arg(words.at(1)));
    return commandNamed(words.constFirst(), parser);
}

}  // namespace

CommandLine readCommandLine(const QStringList &arguments)
{
    QCommandLineParser parser;
    describe(parser);
    auto line = parser.parse(arguments) ? understood(parser) : refused(parser.errorText());
    line.refusal = oneLine(line.refusal);
    return line;
}

QString helpText()
{
    QCommandLineParser parser;
    describe(parser);
    return parser.helpText();
}

}  // namespace velquarin
