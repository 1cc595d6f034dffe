// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/Preferences/ReadOnlyPreferences.h"

#include "Platform/Linux/Files/RegularFile.h"
#include "Platform/Linux/Preferences/PreferencesFormat.h"

#include <QFuture>
#include <QPromise>

#include <cerrno>
#include <utility>

namespace velquarin {

namespace {

constexpr qint64 mostBytes = qint64(64) * 1024 * 1024;

}  // namespace

ReadOnlyPreferences::ReadOnlyPreferences(QString path)
    : m_path(std::move(path))
{
    load();
}

// A streak of nought would be untrue wherever there are settings that cannot be read.
void ReadOnlyPreferences::load()
{
    const auto target = followLinks(m_path);
    if (target.kind == FileKind::OutOfReach)
        m_failure = m_path + QStringLiteral(" cannot be read: ") + QString::fromStdString(target.error.message());
    if (target.kind == FileKind::Other)
        m_failure = m_path + QStringLiteral(" is no file.");
    if (target.kind != FileKind::Regular)
        return;
    errno = 0;
    const auto text = readRegularFile(target.path, mostBytes);
    const auto values = text ? decodePreferences(*text) : std::nullopt;
    if (values)
        m_values = *values;
    else
        m_failure = m_path + (text ? QStringLiteral(" is damaged.")
                                   : QStringLiteral(" cannot be read: ") + qt_error_string(errno));
}

void ReadOnlyPreferences::putCopyAside()
{
    m_failure = m_path + QStringLiteral(" holds a value that cannot be read.");
}

std::optional<PreferenceValue> ReadOnlyPreferences::value(const QString &key) const
{
    const auto json = m_values.value(key);
    return json.isUndefined() ? std::nullopt : std::optional(preferenceFrom(json));
}

void ReadOnlyPreferences::set(const QString &key, PreferenceValue value)
{
    m_values.insert(key, jsonFrom(value).value_or(QJsonValue::Undefined));
}

void ReadOnlyPreferences::remove(const QString &key)
{
    m_values.remove(key);
}

QFuture<void> ReadOnlyPreferences::takeOverChanges()
{
    QPromise<void> done;
    done.start();
    done.finish();
    return done.future();
}

}  // namespace velquarin
