// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>
#include <QTranslator>

#include <memory>

namespace velquarin {

//! The program's texts in the first of the user's languages in which there are any; nothing where English comes first,
//! since the texts in the source are English.
//! Shape:  @p languages as QLocale::uiLanguages() gives them, "pt-BR" for instance; @p folder holds files such as
//!         velquarin_pt_BR.qm or velquarin_pt.qm.
//! Source: our own decision; Qt's own search would go past an English that is preferred.
[[nodiscard]] std::unique_ptr<QTranslator> translationFor(const QStringList &languages, const QString &folder);

//! Has the program show its texts in that language from now on, and stand in the direction in which it is written. For
//! nothing it stays with English, from left to right.
void useTranslation(QTranslator *translation);

}  // namespace velquarin
