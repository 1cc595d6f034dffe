// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Platform/Linux/StatusItem/StatusWords.h"

#include <QCoreApplication>

namespace velquarin {

namespace {

QString words(const char *text)
{
    return QCoreApplication::translate("StatusItem", text);
}

// The description says the same until there is more to say.
StatusWords syncingWords(const QString &description)
{
    const auto headline = words(QT_TRANSLATE_NOOP("StatusItem", "Syncing"));
    return {headline, description == headline ? QString() : description};
}

}  // namespace

bool isSyncing(const StatusItemAppearance &appearance)
{
    return !appearance.symbolName.startsWith(QLatin1String("flame"));
}

StatusWords statusWords(const StatusItemAppearance &appearance)
{
    if (isSyncing(appearance))
        return syncingWords(appearance.accessibilityDescription);
    const auto count = appearance.title.trimmed();
    auto headline = count.isEmpty() ? words(QT_TRANSLATE_NOOP("StatusItem", "No streak yet"))
                                    : words(QT_TRANSLATE_NOOP("StatusItem", "%1-day streak")).arg(count);
    auto detail = appearance.isTemplate ? words(QT_TRANSLATE_NOOP("StatusItem", "No commit today yet"))
                                        : words(QT_TRANSLATE_NOOP("StatusItem", "Committed today"));
    return {std::move(headline), std::move(detail)};
}

}  // namespace velquarin
