// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Models/SettingsRecords.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <tuple>
#include <utility>

namespace velquarin {

namespace {

// The members of a record, under their names in the file.
constexpr auto membersOf(const TrackedRepository * /*any*/)
{
    return std::tuple{std::pair{"id", &TrackedRepository::id}, std::pair{"path", &TrackedRepository::path},
                      std::pair{"name", &TrackedRepository::name},
                      std::pair{"isEnabled", &TrackedRepository::isEnabled},
                      std::pair{"isAutoDiscovered", &TrackedRepository::isAutoDiscovered}};
}

constexpr auto membersOf(const WatchedFolder * /*any*/)
{
    return std::tuple{std::pair{"id", &WatchedFolder::id}, std::pair{"path", &WatchedFolder::path},
                      std::pair{"name", &WatchedFolder::name}, std::pair{"isEnabled", &WatchedFolder::isEnabled},
                      std::pair{"maxDepth", &WatchedFolder::maxDepth}};
}

// Calls @p visit for each of them with its name and its place in the record, until one answers false.
template <typename Record, typename Visit>
bool allMembers(Record &record, const Visit &visit)
{
    return std::apply(
        [&](const auto &...members) { return (visit(QLatin1String(members.first), record.*members.second) && ...); },
        membersOf(&record));
}

bool isHexadecimal(QChar character)
{
    return (character >= u'0' && character <= u'9') || (character >= u'a' && character <= u'f') ||
           (character >= u'A' && character <= u'F');
}

// The library's own parser is lenient, and cannot tell a failure from the id that is all zeros.
bool isIdText(const QString &text)
{
    const QString shape = QStringLiteral("00000000-0000-0000-0000-000000000000");
    return std::equal(text.begin(), text.end(), shape.begin(), shape.end(), [](QChar character, QChar expected) {
        return expected == u'-' ? character == u'-' : isHexadecimal(character);
    });
}

// Whether the value is one for that member, which then has it.
bool take(const QJsonValue &value, QUuid &id)
{
    const auto text = value.toString();
    id = QUuid(text);
    return isIdText(text);
}

// What cannot be written again must not be taken in: it would keep its whole list from being saved.
bool take(const QJsonValue &value, QString &text)
{
    text = value.toString();
    return value.isString() && text.isValidUtf16();
}

bool take(const QJsonValue &value, bool &flag)
{
    flag = value.toBool();
    return value.isBool();
}

// A number that is no integer of 64 bits answers with whichever default it is offered.
bool take(const QJsonValue &value, qint64 &number)
{
    number = value.toInteger(0);
    return value.isDouble() && number == value.toInteger(1);
}

// Undefined for a text that JSON cannot hold.
QJsonValue jsonOf(const QString &text)
{
    return text.isValidUtf16() ? QJsonValue(text) : QJsonValue(QJsonValue::Undefined);
}

QJsonValue jsonOf(const QUuid &id)
{
    return id.toString(QUuid::WithoutBraces).toUpper();
}

template <typename Value>
QJsonValue jsonOf(Value value)
{
    return value;
}

}  // namespace

template <typename Record>
std::optional<QByteArray> encodeRecords(const QList<Record> &records)
{
    QJsonArray array;
    for (const auto &record : records) {
        QJsonObject object;
        const auto put = [&](QLatin1String name, const auto &value) {
            const auto json = jsonOf(value);
            object.insert(name, json);
            return !json.isUndefined();
        };
        if (!allMembers(record, put))
            return std::nullopt;
        array.append(object);
    }
    // A byte-order mark that stands first in a text would be swallowed when it is read, unless it is escaped.
    return QJsonDocument(array).toJson(QJsonDocument::Compact).replace("\xEF\xBB\xBF", "\\uFEFF");
}

template <typename Record>
std::optional<QList<Record>> decodeRecords(const QByteArray &json)
{
    const auto document = QJsonDocument::fromJson(json);
    if (!document.isArray())
        return std::nullopt;
    QList<Record> records;
    for (const auto element : document.array()) {
        // An element that is no object reads as an empty one, which lacks every member.
        const auto object = element.toObject();
        Record record;
        if (!allMembers(record, [&](QLatin1String name, auto &member) { return take(object.value(name), member); }))
            return std::nullopt;
        records.append(std::move(record));
    }
    return records;
}

template std::optional<QByteArray> encodeRecords(const QList<TrackedRepository> &records);
template std::optional<QByteArray> encodeRecords(const QList<WatchedFolder> &records);
template std::optional<QList<TrackedRepository>> decodeRecords(const QByteArray &json);
template std::optional<QList<WatchedFolder>> decodeRecords(const QByteArray &json);

}  // namespace velquarin
