// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "App/Translations.h"

#include <QGuiApplication>
#include <QLocale>

namespace velquarin {

namespace {

bool isSourceLanguage(const QString &language)
{
    return language == QLatin1String("C") || language == QLatin1String("en") ||
           language.startsWith(QLatin1String("en-"));
}

}  // namespace

std::unique_ptr<QTranslator> translationFor(const QStringList &languages, const QString &folder)
{
    // Without a folder Qt would look where the program happens to stand.
    if (folder.isEmpty())
        return nullptr;
    auto translator = std::make_unique<QTranslator>();
    for (auto language : languages) {
        if (isSourceLanguage(language))
            return nullptr;
        // Without its country it is looked for by itself: "pt_BR", then "pt".
        if (translator->load(QStringLiteral("velquarin_") + language.replace(u'-', u'_'), folder))
            return translator;
    }
    return nullptr;
}

void useTranslation(QTranslator *translation)
{
    if (!translation)
        return;
    QCoreApplication::installTranslator(translation);
    QGuiApplication::setLayoutDirection(QLocale(translation->language()).textDirection());
}

}  // namespace velquarin
