// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Preferences/PreferencesFormat.h"

#include "Platform/Calendar.h"

#include <QDateTime>
#include <QJsonDocument>

#include <cmath>

namespace velquarin {

namespace {

const QString dateMember = QStringLiteral("date");
const QString dataMember = QStringLiteral("data");
const QString base64Member = QStringLiteral("base64");

std::optional<QJsonValue> jsonOf(bool value)
{
    return QJsonValue(value);
}

std::optional<QJsonValue> jsonOf(double value)
{
    return std::isfinite(value) ? std::optional(QJsonValue(value)) : std::nullopt;
}

std::optional<QJsonValue> jsonOf(const QString &value)
{
    return value.isValidUtf16() ? std::optional(QJsonValue(value)) : std::nullopt;
}

std::optional<QJsonValue> jsonOf(Instant value)
{
    const auto moment = QDateTime::fromMSecsSinceEpoch(value.time_since_epoch().count(), universalTime);
    if (moment.date().year() < 1 || moment.date().year() > 9999)
        return std::nullopt;
    return QJsonObject{{dateMember, moment.toString(Qt::ISODateWithMs)}};
}

// As text wherever the bytes come back from it unchanged, so that people can read and mend their file. The byte-order
// mark is such a case: the conversion swallows it.
std::optional<QJsonValue> jsonOf(const QByteArray &value)
{
    const auto text = QString::fromUtf8(value);
    if (text.toUtf8() == value)
        return QJsonObject{{dataMember, text}};
    return QJsonObject{{base64Member, QString::fromLatin1(value.toBase64())}};
}

std::optional<QJsonValue> jsonOf(UnreadableValue /*value*/)
{
    return std::nullopt;
}

// A moment needs its offset from UTC: without one it would mean something else wherever the user travels.
PreferenceValue momentIn(const QString &text)
{
    const auto moment = QDateTime::fromString(text, Qt::ISODateWithMs);
    if (!moment.isValid() || moment.timeSpec() == Qt::LocalTime)
        return UnreadableValue();
    return Instant(std::chrono::milliseconds(moment.toMSecsSinceEpoch()));
}

PreferenceValue bytesIn(const QString &text)
{
    if (!text.isValidUtf16())
        return UnreadableValue();
    return text.toUtf8();
}

PreferenceValue base64BytesIn(const QString &text)
{
    auto result = QByteArray::fromBase64Encoding(text.toUtf8(), QByteArray::AbortOnBase64DecodingErrors);
    if (!result)
        return UnreadableValue();
    return std::move(result.decoded);
}

PreferenceValue preferenceIn(const QJsonObject &object)
{
    if (object.size() != 1 || !object.begin()->isString())
        return UnreadableValue();
    const auto name = object.begin().key();
    const auto text = object.begin()->toString();
    if (name == dateMember)
        return momentIn(text);
    if (name == dataMember)
        return bytesIn(text);
    if (name == base64Member)
        return base64BytesIn(text);
    return UnreadableValue();
}

}  // namespace

QByteArray encodePreferences(const QJsonObject &values)
{
    // A byte-order mark that stands first in a text would be swallowed when it is read, unless it is escaped.
    return QJsonDocument(values).toJson(QJsonDocument::Indented).replace("\xEF\xBB\xBF", "\\uFEFF");
}

std::optional<QJsonObject> decodePreferences(const QByteArray &text)
{
    const auto document = QJsonDocument::fromJson(text);
    return document.isObject() ? std::optional(document.object()) : std::nullopt;
}

std::optional<QJsonValue> jsonFrom(const PreferenceValue &value)
{
    return std::visit([](const auto &typed) { return jsonOf(typed); }, value);
}

PreferenceValue preferenceFrom(const QJsonValue &json)
{
    if (json.isBool())
        return json.toBool();
    if (json.isDouble())
        return json.toDouble();
    if (json.isString())
        return json.toString();
    return preferenceIn(json.toObject());
}

}  // namespace velquarin
