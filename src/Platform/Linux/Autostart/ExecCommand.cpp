// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Autostart/ExecCommand.h"

#include <QStringList>

#include <algorithm>

namespace velquarin {

namespace {

constexpr auto backslash = u'\\';
constexpr auto percent = u'%';

const QString reserved = QStringLiteral(" \t\n\"'\\><~|&;$*?#()`");
const QString escapedInQuotes = QStringLiteral("\"`$\\");

// The deprecated ones are still there in old files.
const QString fieldCodes = QStringLiteral("%fFuUickdDnNvm");

bool isBlank(QChar character)
{
    return character == u' ' || character == u'\t' || character == u'\n';
}

// Takes a command line apart, one character after the other.
class ArgumentReader
{
public:
    void take(QChar character)
    {
        if (m_isEscaped)
            takeEscaped(character);
        else if (character == backslash && m_quote != u'\'')
            m_isEscaped = true;
        else if (!m_quote.isNull())
            takeQuoted(character);
        else
            takeUnquoted(character);
    }

    // Nothing where the line ends too early.
    [[nodiscard]] std::optional<QStringList> finish()
    {
        if (m_isEscaped || !m_quote.isNull())
            return std::nullopt;
        endArgument();
        return m_arguments;
    }

private:
    // Within quotes a backslash before any other character is one itself.
    void takeEscaped(QChar character)
    {
        if (!m_quote.isNull() && !escapedInQuotes.contains(character))
            append(backslash);
        append(character);
        m_isEscaped = false;
    }

    void takeQuoted(QChar character)
    {
        if (character == m_quote)
            m_quote = QChar();
        else
            append(character);
    }

    void takeUnquoted(QChar character)
    {
        if (isBlank(character)) {
            endArgument();
        } else if (character == u'"' || character == u'\'') {
            m_quote = character;
            m_hasArgument = true;
        } else {
            append(character);
        }
    }

    void append(QChar character)
    {
        m_argument += character;
        m_hasArgument = true;
    }

    void endArgument()
    {
        if (m_hasArgument)
            m_arguments << m_argument;
        m_argument.clear();
        m_hasArgument = false;
    }

    QStringList m_arguments;
    QString m_argument;
    QChar m_quote;  // the one that closes it; null outside
    bool m_hasArgument = false;
    bool m_isEscaped = false;
};

std::optional<QStringList> argumentsOf(const QString &command)
{
    ArgumentReader reader;
    for (const auto character : command)
        reader.take(character);
    return reader.finish();
}

bool hasUnknownFieldCode(const QString &argument)
{
    for (auto sign = argument.indexOf(percent); sign >= 0; sign = argument.indexOf(percent, sign + 2)) {
        if (sign + 1 == argument.size() || !fieldCodes.contains(argument.at(sign + 1)))
            return true;
    }
    return false;
}

bool isControl(QChar character)
{
    return character.category() == QChar::Other_Control;
}

// At the end of a line some control characters would be taken for blanks.
bool needsQuotes(QChar character)
{
    return reserved.contains(character) || isControl(character);
}

}  // namespace

std::optional<QString> programOfExec(const QString &command)
{
    const auto arguments = argumentsOf(command);
    if (!arguments || arguments->isEmpty() || std::any_of(arguments->begin(), arguments->end(), &hasUnknownFieldCode))
        return std::nullopt;
    auto program = arguments->constFirst();
    return program.replace(QStringLiteral("%%"), QStringLiteral("%"));
}

QString execOfProgram(const QString &program)
{
    const bool isQuoted = std::any_of(program.begin(), program.end(), &needsQuotes);
    QString command;
    for (const auto character : program) {
        if (escapedInQuotes.contains(character))
            command += backslash;
        command += character;
    }
    command.replace(percent, QStringLiteral("%%"));
    return isQuoted ? u'"' + command + u'"' : command;
}

bool isReadAlikeInExec(const QString &program)
{
    return !program.contains(percent) && !program.contains(backslash) &&
           std::none_of(program.begin(), program.end(), &isControl);
}

}  // namespace velquarin
