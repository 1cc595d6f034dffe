// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT

#include "Views/Dashboard/RepoRow.h"

#include "Platform/DateTexts.h"
#include "Platform/FileViewer.h"
#include "Platform/PluralForm.h"
#include "Views/Controls/Symbols.h"
#include "Views/Controls/Text.h"

#include <QHBoxLayout>
#include <QMouseEvent>
#include <QPointer>

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
    connect(this, &QAbstractButton::pressed, this, [this] { m_pressedPath = m_path; });
    connect(this, &QAbstractButton::clicked, this, &RepoRow::showFolder);
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
    m_activity->setText(isActive ? tr("%1 today", nullptr, pluralForm(stats.todayCommits)).arg(stats.todayCommits)
                                 : stats.lastCommitRelative(texts, now));
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

// A press that is over would begin again at the next movement of the pointer.
void RepoRow::mouseMoveEvent(QMouseEvent *event)
{
    if (isPressStillMeant())
        PlainButton::mouseMoveEvent(event);
    else
        event->ignore();
}

// The press of a screen reader takes a moment, in which the row may become another repository's. The dashboard goes
// before another window comes: while it is open on X11 it takes every click and every key, and the other window's with
// them.
void RepoRow::showFolder()
{
    const auto makeWay = [dashboard = QPointer(window())] {
        if (dashboard)
            dashboard->hide();
    };
    if (isPressStillMeant())
        m_viewer.reveal(m_path, makeWay);
}

void RepoRow::setHovering(bool isHovering)
{
    m_folder->setTone(isHovering ? style::Tone(Accent::Blue) : style::Tone(Ink::Secondary));
    m_name->setTone(isHovering ? style::Tone(Accent::Blue) : style::Tone(Ink::Primary));
}

}  // namespace velquarin
