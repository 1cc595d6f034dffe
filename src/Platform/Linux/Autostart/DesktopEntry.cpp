// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Autostart/DesktopEntry.h"

#include <QUtf8StringView>

#include <array>
#include <utility>

namespace velquarin {

namespace {

constexpr auto backslash = u'\\';
constexpr auto separator = u';';

constexpr std::array<std::pair<char16_t, char16_t>, 5> escapes{
    {{u's', u' '}, {u'n', u'\n'}, {u't', u'\t'}, {u'r', u'\r'}, {u'\\', u'\\'}}};

enum class ValueKind { String, ListItem };

std::optional<QChar> characterOfEscape(QChar letter, ValueKind kind)
{
    if (kind == ValueKind::ListItem && letter == separator)
        return letter;
    for (const auto &[name, character] : escapes) {
        if (letter == name)
            return QChar(character);
    }
    return std::nullopt;
}

QString escapeOf(char16_t name)
{
    return QString(QChar(backslash)) + QChar(name);
}

std::optional<QString> unescaped(const QString &text, ValueKind kind)
{
    QString plain;
    for (qsizetype i = 0; i < text.size(); ++i) {
        auto character = std::optional(text.at(i));
        if (*character == backslash)
            character = ++i < text.size() ? characterOfEscape(text.at(i), kind) : std::nullopt;
        if (!character)
            return std::nullopt;
        plain += *character;
    }
    return plain;
}

// The items as they stand in the file, escape sequences and all.
QStringList splitAtSeparators(const QString &list)
{
    QStringList items;
    qsizetype begin = 0;
    for (qsizetype i = 0; i < list.size(); ++i) {
        if (list.at(i) == backslash) {
            ++i;
        } else if (list.at(i) == separator) {
            items << list.mid(begin, i - begin);
            begin = i + 1;
        }
    }
    if (begin < list.size())
        items << list.mid(begin);
    return items;
}

bool isNoise(const QByteArray &line)
{
    return line.isEmpty() || line.startsWith('#');
}

// The name of the group that a line begins; nothing where it begins none.
std::optional<QByteArray> groupOf(const QByteArray &line)
{
    if (line.size() < 3 || !line.startsWith('[') || !line.endsWith(']'))
        return std::nullopt;
    auto name = line.mid(1, line.size() - 2);
    return name.contains('[') || name.contains(']') ? std::nullopt : std::optional(std::move(name));
}

// Before and after the first equals sign.
std::optional<std::pair<QByteArray, QByteArray>> keyAndValueOf(const QByteArray &line)
{
    const auto equals = line.indexOf('=');
    auto key = line.left(equals).trimmed();
    if (equals < 0 || key.isEmpty())
        return std::nullopt;
    return std::pair(std::move(key), line.mid(equals + 1).trimmed());
}

std::optional<QString> decoded(const QByteArray &value)
{
    return QUtf8StringView(value).isValidUtf8() ? std::optional(QString::fromUtf8(value)) : std::nullopt;
}

}  // namespace

std::optional<DesktopEntry> DesktopEntry::parse(const QByteArray &content)
{
    const QByteArray ours = "Desktop Entry";
    DesktopEntry entry;
    std::optional<QByteArray> group;
    for (const auto &raw : content.split('\n')) {
        const auto line = raw.trimmed();
        if (isNoise(line))
            continue;
        const auto begun = groupOf(line);
        const auto pair = begun ? std::nullopt : keyAndValueOf(line);
        const bool isOutOfPlace = begun ? !group && *begun != ours : !group || !pair;
        if (isOutOfPlace)
            return std::nullopt;
        if (begun)
            group = begun;
        else if (group == ours)
            entry.m_values.insert(pair->first, pair->second);
    }
    return group ? std::optional(std::move(entry)) : std::nullopt;
}

std::optional<QString> DesktopEntry::string(const QByteArray &key) const
{
    const auto found = m_values.constFind(key);
    const auto text = found == m_values.constEnd() ? std::nullopt : decoded(*found);
    return text ? unescaped(*text, ValueKind::String) : std::nullopt;
}

std::optional<QStringList> DesktopEntry::strings(const QByteArray &key) const
{
    const auto found = m_values.constFind(key);
    const auto text = found == m_values.constEnd() ? std::nullopt : decoded(*found);
    if (!text)
        return std::nullopt;
    QStringList items;
    for (const auto &item : splitAtSeparators(*text)) {
        const auto plain = unescaped(item, ValueKind::ListItem);
        if (!plain)
            return std::nullopt;
        items << *plain;
    }
    return items;
}

std::optional<bool> DesktopEntry::boolean(const QByteArray &key) const
{
    const auto value = m_values.value(key);
    if (value == "true" || value == "1")
        return true;
    return value == "false" || value == "0" ? std::optional(false) : std::nullopt;
}

QByteArray desktopEntryString(const QString &text)
{
    auto escaped = text;
    escaped.replace(backslash, QStringLiteral("\\\\"));
    for (const auto &[name, character] : escapes) {
        if (character != u' ' && character != backslash)
            escaped.replace(QChar(character), escapeOf(name));
    }
    // Only at the ends would a blank be lost.
    if (escaped.endsWith(u' '))
        escaped.replace(escaped.size() - 1, 1, escapeOf(u's'));
    if (escaped.startsWith(u' '))
        escaped.replace(0, 1, escapeOf(u's'));
    return escaped.toUtf8();
}

}  // namespace velquarin
