// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Autostart/AutostartEntry.h"

#include "Platform/Linux/Files/ConfigHome.h"
#include "Platform/PathNames.h"

#include <QProcessEnvironment>
#include <QRegularExpression>
#include <QUtf8StringView>

#include <algorithm>

namespace velquarin {

namespace {

using Pattern = QRegularExpression;

// The numbers are those of old files.
const QStringList yes{QStringLiteral("true"), QStringLiteral("1")};
const QStringList no{QStringLiteral("false"), QStringLiteral("0")};

// Between two escaped backslashes every other one begins an escape sequence.
std::optional<QString> unescaped(const QString &value)
{
    auto parts = value.split(QStringLiteral("\\\\"));
    for (auto &part : parts) {
        part.replace(QLatin1String("\\s"), QLatin1String(" ")).replace(QLatin1String("\\t"), QLatin1String("\t"));
        part.replace(QLatin1String("\\n"), QLatin1String("\n")).replace(QLatin1String("\\r"), QLatin1String("\r"));
        if (part.contains(u'\\'))
            return std::nullopt;
    }
    return parts.join(u'\\');
}

// The words of a command line as a shell has them. Nothing where it ends within quotes or after a backslash.
std::optional<QStringList> wordsOf(const QString &command)
{
    // Blanks, or a piece of a word: in double quotes, in single quotes, after a backslash, plain.
    static const Pattern piece(
        QStringLiteral(R"re((?s)([ \t\n]++)|"((?:[^"\\]++|\\.)*+)"|'([^']*+)'|\\(.)|([^ \t\n"'\\]++))re"));
    static const Pattern escapedInQuotes(QStringLiteral(R"(\\(["`$\\]))"));
    QStringList words;
    qsizetype end = 0;
    bool isInWord = false;
    auto pieces = piece.globalMatch(command, 0, Pattern::NormalMatch, Pattern::AnchorAtOffsetMatchOption);
    while (pieces.hasNext()) {
        const auto match = pieces.next();
        end = match.capturedEnd();
        const bool isBlank = match.hasCaptured(1);
        if (!isBlank && !isInWord)
            words << QString();
        if (!isBlank)
            words.last() += match.captured(2).replace(escapedInQuotes, QStringLiteral("\\1")) + match.captured(3) +
                            match.captured(4) + match.captured(5);
        isInWord = !isBlank;
    }
    return end == command.size() ? std::optional(words) : std::nullopt;
}

QStringList absolutePartsOf(const QString &value, const QString &otherwise)
{
    return (value.isEmpty() ? otherwise : value).split(u':').filter(Pattern(QStringLiteral("^/")));
}

// The first name of the desktop that one of the lists has decides.
bool isForDesktop(const DesktopEntry &entry, const QStringList &currentDesktop)
{
    const auto only = listIn(entry.value("OnlyShowIn"));
    const auto anyBut = listIn(entry.value("NotShowIn"));
    for (const auto &name : currentDesktop) {
        if (only && only->contains(name))
            return true;
        if (anyBut && anyBut->contains(name))
            return false;
    }
    return !only;
}

// A relative path is none: nobody knows from where a session would look.
bool isFound(const QString &program, const QStringList &searchPath, const IsProgram &isProgram)
{
    if (program.startsWith(u'/'))
        return isProgram(program);
    return !program.isEmpty() && !program.contains(u'/') &&
           std::any_of(searchPath.begin(), searchPath.end(),
                       [&](const QString &folder) { return isProgram(joinPath(folder, program)); });
}

}  // namespace

std::optional<DesktopEntry> parseDesktopEntry(const QByteArray &content)
{
    const QByteArray ours = "[Desktop Entry]";
    DesktopEntry entry;
    QByteArray group;
    for (const auto &raw : content.split('\n')) {
        const auto line = raw.trimmed();
        if (line.isEmpty() || line.startsWith('#'))
            continue;
        const auto equals = line.indexOf('=');
        const auto value = line.mid(equals + 1).trimmed();
        const bool isGroup = line.size() > 2 && line.lastIndexOf('[') == 0 && line.indexOf(']') == line.size() - 1;
        if (group.isEmpty() ? line != ours : !isGroup && equals < 1)
            return std::nullopt;
        if (isGroup)
            group = line;
        else if (group == ours)
            entry[line.left(equals).trimmed()] =
                QUtf8StringView(value).isValidUtf8() ? std::optional(QString::fromUtf8(value)) : std::nullopt;
    }
    return group.isEmpty() ? std::nullopt : std::optional(entry);
}

std::optional<QString> stringIn(const std::optional<QString> &value)
{
    return value ? unescaped(*value) : std::nullopt;
}

std::optional<QStringList> listIn(const std::optional<QString> &value)
{
    // After an even number of backslashes.
    static const Pattern separator(QStringLiteral(R"((?<!\\)(?:\\\\)*+\K;)"));
    auto items = value.value_or(QString()).split(separator);
    for (auto &item : items) {
        const auto plain = unescaped(item.replace(QLatin1String("\\;"), QLatin1String(";")));
        if (!value || !plain)
            return std::nullopt;
        item = *plain;
    }
    if (items.constLast().isEmpty())
        items.removeLast();
    return items;
}

std::optional<QString> programOfExec(const QString &command)
{
    // The deprecated ones are still there in old files.
    static const Pattern fieldCode(QStringLiteral("%[%fFuUickdDnNvm]"));
    auto words = wordsOf(command);
    if (!words || words->isEmpty() || words->join(u' ').remove(fieldCode).contains(u'%'))
        return std::nullopt;
    return words->first().replace(QLatin1String("%%"), QLatin1String("%"));
}

QByteArray execOfProgram(const QString &program)
{
    // At the end of a line some control characters would be taken for blanks.
    static const Pattern reserved(QStringLiteral(R"([ \t\n"'\\><~|&;$*?#()`\p{Cc}])"));
    static const Pattern toEscape(QStringLiteral(R"((["`$\\]))"));
    auto command = program;
    command.replace(toEscape, QStringLiteral(R"(\\1)")).replace(QLatin1String("%"), QLatin1String("%%"));
    if (program.contains(reserved))
        command = u'"' + command + u'"';
    command.replace(QLatin1String("\\"), QLatin1String("\\\\")).replace(QLatin1String("\t"), QLatin1String("\\t"));
    command.replace(QLatin1String("\n"), QLatin1String("\\n")).replace(QLatin1String("\r"), QLatin1String("\\r"));
    return command.toUtf8();
}

bool isReadAlikeInExec(const QString &program)
{
    static const Pattern readInTwoWays(QStringLiteral(R"([%\\\p{Cc}])"));
    return !program.contains(readInTwoWays);
}

AutostartEnvironment autostartEnvironment(const QProcessEnvironment &variables, const QString &program)
{
    const auto value = [&](const char *name) { return variables.value(QLatin1String(name)); };
    const auto autostart = QStringLiteral("autostart");
    const auto configuration = configHome(value("XDG_CONFIG_HOME"), value("HOME"));
    const auto userFolder = configuration.startsWith(u'/') ? joinPath(configuration, autostart) : QString();
    auto systemFolders = absolutePartsOf(value("XDG_CONFIG_DIRS"), QStringLiteral("/etc/xdg"));
    for (auto &folder : systemFolders)
        folder = joinPath(folder, autostart);
    systemFolders.removeAll(userFolder);
    return {userFolder, systemFolders, value("XDG_CURRENT_DESKTOP").split(u':', Qt::SkipEmptyParts),
            absolutePartsOf(value("PATH"), QStringLiteral("/usr/local/bin:/usr/bin:/bin")), program};
}

LoginItemStatus autostartStatus(const QByteArray &content, const AutostartEnvironment &environment,
                                const IsProgram &isProgram)
{
    const auto entry = parseDesktopEntry(content);
    if (!entry || stringIn(entry->value("Type")) != QLatin1String("Application"))
        return LoginItemStatus::NotFound;
    if (yes.contains(entry->value("Hidden")) || !isForDesktop(*entry, environment.currentDesktop))
        return LoginItemStatus::NotRegistered;
    // What the settings of GNOME and Cinnamon, and of MATE, write when their user takes a program off the list.
    if (no.contains(entry->value("X-GNOME-Autostart-enabled")) || no.contains(entry->value("X-MATE-Autostart-enabled")))
        return LoginItemStatus::RequiresApproval;
    const auto program = programOfExec(stringIn(entry->value("Exec")).value_or(QString()));
    const auto condition = stringIn(entry->value("TryExec")).value_or(QString());
    const auto isThere = [&](const QString &name) { return isFound(name, environment.searchPath, isProgram); };
    const bool isStarted = program && isThere(*program) && (condition.isEmpty() || isThere(condition));
    return isStarted ? LoginItemStatus::Enabled : LoginItemStatus::NotFound;
}

QByteArray autostartEntry(const QString &program)
{
    return "[Desktop Entry]\n"
           "Type=Application\n"
           "Name=Velquarin\n"
           "Comment=Your commit streak in the status bar\n"
           "Exec=" +
           execOfProgram(program) +
           "\nIcon=io.velquarin.Velquarin\n"
           "Terminal=false\n"
           "X-GNOME-Autostart-enabled=true\n";
}

QByteArray hiddenAutostartEntry(const QString &program)
{
    return autostartEntry(program).replace("X-GNOME-Autostart-enabled=true", "Hidden=true");
}

}  // namespace velquarin
