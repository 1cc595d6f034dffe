// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Models/SettingsRecords.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace velquarin {

namespace {

const QString idMember = QStringLiteral("id");
const QString pathMember = QStringLiteral("path");
const QString nameMember = QStringLiteral("name");
const QString isEnabledMember = QStringLiteral("isEnabled");
const QString isAutoDiscoveredMember = QStringLiteral("isAutoDiscovered");
const QString maxDepthMember = QStringLiteral("maxDepth");

QString textOf(const QUuid &id)
{
    return id.toString(QUuid::WithoutBraces).toUpper();
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

std::optional<QString> stringIn(const QJsonValue &value)
{
    // What cannot be written again must not be taken in: it would keep its whole list from being saved.
    if (!value.isString() || !value.toString().isValidUtf16())
        return std::nullopt;
    return value.toString();
}

std::optional<QUuid> idIn(const QJsonValue &value)
{
    const auto text = value.toString();
    if (!isIdText(text))
        return std::nullopt;
    return QUuid(text);
}

std::optional<bool> boolIn(const QJsonValue &value)
{
    if (!value.isBool())
        return std::nullopt;
    return value.toBool();
}

// A number that is no integer of 64 bits answers with whichever default it is offered.
std::optional<qint64> integerIn(const QJsonValue &value)
{
    if (!value.isDouble() || value.toInteger(0) != value.toInteger(1))
        return std::nullopt;
    return value.toInteger();
}

std::optional<TrackedRepository> repositoryIn(const QJsonObject &object)
{
    const auto id = idIn(object.value(idMember));
    const auto path = stringIn(object.value(pathMember));
    const auto name = stringIn(object.value(nameMember));
    const auto isEnabled = boolIn(object.value(isEnabledMember));
    const auto isAutoDiscovered = boolIn(object.value(isAutoDiscoveredMember));
    if (!id || !path || !name || !isEnabled || !isAutoDiscovered)
        return std::nullopt;
    return TrackedRepository{*id, *path, *name, *isEnabled, *isAutoDiscovered};
}

std::optional<WatchedFolder> folderIn(const QJsonObject &object)
{
    const auto id = idIn(object.value(idMember));
    const auto path = stringIn(object.value(pathMember));
    const auto name = stringIn(object.value(nameMember));
    const auto isEnabled = boolIn(object.value(isEnabledMember));
    const auto maxDepth = integerIn(object.value(maxDepthMember));
    if (!id || !path || !name || !isEnabled || !maxDepth)
        return std::nullopt;
    return WatchedFolder{*id, *path, *name, *isEnabled, *maxDepth};
}

QJsonObject objectFor(const TrackedRepository &repository)
{
    return {{idMember, textOf(repository.id)},
            {pathMember, repository.path},
            {nameMember, repository.name},
            {isEnabledMember, repository.isEnabled},
            {isAutoDiscoveredMember, repository.isAutoDiscovered}};
}

QJsonObject objectFor(const WatchedFolder &folder)
{
    return {{idMember, textOf(folder.id)},
            {pathMember, folder.path},
            {nameMember, folder.name},
            {isEnabledMember, folder.isEnabled},
            {maxDepthMember, folder.maxDepth}};
}

template <typename Record>
std::optional<QByteArray> encode(const QList<Record> &records)
{
    QJsonArray array;
    for (const auto &record : records) {
        if (!record.path.isValidUtf16() || !record.name.isValidUtf16())
            return std::nullopt;
        array.append(objectFor(record));
    }
    // A byte-order mark that stands first in a text would be swallowed when it is read, unless it is escaped.
    return QJsonDocument(array).toJson(QJsonDocument::Compact).replace("\xEF\xBB\xBF", "\\uFEFF");
}

template <typename Record>
std::optional<QList<Record>> decode(const QByteArray &json, std::optional<Record> (*recordIn)(const QJsonObject &))
{
    const auto document = QJsonDocument::fromJson(json);
    if (!document.isArray())
        return std::nullopt;
    QList<Record> records;
    for (const auto element : document.array()) {
        // An element that is no object reads as an empty one, which lacks every member.
        auto record = recordIn(element.toObject());
        if (!record)
            return std::nullopt;
        records.append(*std::move(record));
    }
    return records;
}

}  // namespace

std::optional<QByteArray> encodeTrackedRepositories(const QList<TrackedRepository> &repositories)
{
    return encode(repositories);
}

std::optional<QByteArray> encodeWatchedFolders(const QList<WatchedFolder> &folders)
{
    return encode(folders);
}

std::optional<QList<TrackedRepository>> decodeTrackedRepositories(const QByteArray &json)
{
    return decode(json, &repositoryIn);
}

std::optional<QList<WatchedFolder>> decodeWatchedFolders(const QByteArray &json)
{
    return decode(json, &folderIn);
}

}  // namespace velquarin
