// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/RepoRow.h"

#include "Platform/DateTexts.h"
#include "Platform/FileViewer.h"
#include "Views/SymbolView.h"
#include "Views/Text.h"

#include <QHBoxLayout>

namespace velquarin {

using style::Accent;
using style::Ink;
using style::TypeStyle;

RepoRow::RepoRow(FileViewer &viewer, QWidget *parent)
    : PlainButton(parent)
    , m_viewer(viewer)
    , m_folder(new SymbolView(QStringLiteral("folder.fill"), style::sizeOf(TypeStyle::Caption), Ink::Secondary, this))
    , m_name(new Text(textLook(TypeStyle::Subheadline, Ink::Primary), this))
    , m_activity(new Text(textLook(TypeStyle::Caption, Ink::Secondary), this))
{
    m_name->allowCutting();
    m_name->setObjectName(QStringLiteral("repositoryName"));
    m_activity->setObjectName(QStringLiteral("repositoryActivity"));
    auto *const row = makeRow(style::points(2));
    row->addWidget(m_folder);
    row->addWidget(m_name);
    row->addStretch();
    row->addWidget(m_activity);
    connect(this, &QAbstractButton::clicked, this, [this] { m_viewer.reveal(m_path, {}); });
}

void RepoRow::setStats(const RepositoryStats &stats, const DateTexts &texts, Instant now)
{
    if (stats.path != m_path)
        setDown(false);
    m_path = stats.path;
    m_name->setText(stats.displayName());
    setFigures(stats, texts, now);
    setAccessibleName(QStringLiteral("%1, %2").arg(m_name->text(), m_activity->text()));
}

void RepoRow::setFigures(const RepositoryStats &stats, const DateTexts &texts, Instant now)
{
    const bool isActive = stats.todayCommits >= 1;
    m_activity->setText(isActive ? tr("%1 today").arg(stats.todayCommits) : stats.lastCommitRelative(texts, now));
    m_activity->setTone(isActive ? style::Tone(Accent::Green) : style::Tone(Ink::Secondary));
}

void RepoRow::enterEvent(QEnterEvent *event)
{
    setHovering(true);
    PlainButton::enterEvent(event);
}

void RepoRow::leaveEvent(QEvent *event)
{
    setHovering(false);
    PlainButton::leaveEvent(event);
}

void RepoRow::hideEvent(QHideEvent *event)
{
    setHovering(false);
    PlainButton::hideEvent(event);
}

void RepoRow::setHovering(bool isHovering)
{
    m_folder->setTone(isHovering ? style::Tone(Accent::Blue) : style::Tone(Ink::Secondary));
    m_name->setTone(isHovering ? style::Tone(Accent::Blue) : style::Tone(Ink::Primary));
}

}  // namespace velquarin
